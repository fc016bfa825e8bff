#include "redfish/curl_transport.h"

#include "interrupt.h"
#include "text/text.h"
#include "trust/certificate_check.h"
#include "trust/controller_trust.h"

#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <mutex>
#include <optional>

namespace redfish
{
namespace
{
constexpr int kPollMilliseconds = 100; // how long an interrupt may go unnoticed
constexpr long kIdleSecondsOfConnection = 60;
constexpr curl_off_t kLongestRetryAfter = 86400; // seconds
constexpr char kNoFingerprints[] =
    "; this program's libcurl is not built on OpenSSL and shows no certificate, so that known controllers and "
    "--trust-on-first-use do not count: give the issuer's certificate with --cacert, or take a program with OpenSSL";

struct UrlHandle
{
    UrlHandle() : url(curl_url()) {}
    ~UrlHandle() { curl_url_cleanup(url); }
    UrlHandle(const UrlHandle&) = delete;
    UrlHandle& operator=(const UrlHandle&) = delete;

    std::string part(CURLUPart which, unsigned int flags) const
    {
        char* value = nullptr;
        if (curl_url_get(url, which, &value, flags) != CURLUE_OK || value == nullptr)
        {
            return std::string();
        }
        std::string result(value);
        curl_free(value);
        return result;
    }

    CURLU* url;
};

// Everything that the callbacks of one exchange see.
struct Receiver
{
    Exchange* exchange = nullptr;
    std::string rawLocation;
    std::size_t largestBody = 0;
    InterruptUse interruptUse = InterruptUse::Abort;
    bool headersComplete = false;
    bool tooLarge = false;
    bool interrupted = false;
    std::optional<std::chrono::steady_clock::time_point> interruptSeen;
};

std::size_t takeBody(char* data, std::size_t size, std::size_t count, void* user)
{
    auto* receiver = static_cast<Receiver*>(user);
    const std::size_t bytes = size * count;
    std::string& body = receiver->exchange->body;
    if (bytes > receiver->largestBody - std::min(body.size(), receiver->largestBody))
    {
        receiver->tooLarge = true;
        return 0;
    }
    body.append(data, bytes);
    return bytes;
}

void takeField(Receiver& receiver, const std::string& line)
{
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos)
    {
        return;
    }
    const std::string name = text::toLower(line.substr(0, colon));
    const std::string value = text::trim(line.substr(colon + 1));
    if (name == "location")
    {
        receiver.rawLocation = value;
    }
    else if (name == "x-auth-token")
    {
        receiver.exchange->token = value;
    }
    else if (name == "www-authenticate")
    {
        receiver.exchange->authenticate += text::toLower(value) + " ";
    }
}

std::size_t takeHeader(char* data, std::size_t size, std::size_t count, void* user)
{
    auto* receiver = static_cast<Receiver*>(user);
    const std::string line(data, size * count);
    if (line.empty() || line.back() != '\n')
    {
        return size * count; // broken off amid a line
    }
    if (text::startsWith(line, "HTTP/"))
    {
        // An interim answer (100 Continue) came before this one; nothing of it counts.
        receiver->rawLocation.clear();
        receiver->exchange->token.clear();
        receiver->exchange->authenticate.clear();
        receiver->headersComplete = false;
    }
    else if (text::trim(line).empty())
    {
        receiver->headersComplete = true;
    }
    else
    {
        takeField(*receiver, line);
    }
    return size * count;
}

int watchInterrupt(void* user, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    auto* receiver = static_cast<Receiver*>(user);
    if (receiver->interruptUse == InterruptUse::Ignore || !interrupt::requested())
    {
        return 0;
    }
    const auto now = std::chrono::steady_clock::now();
    receiver->interruptSeen = receiver->interruptSeen.value_or(now);
    receiver->interrupted =
        receiver->interruptUse == InterruptUse::Abort || now - *receiver->interruptSeen >= kFinishTime;
    return receiver->interrupted ? 1 : 0;
}

TransportFault faultOf(CURLcode code, const Receiver& receiver)
{
    if (receiver.interrupted)
    {
        return TransportFault::Interrupted;
    }
    if (receiver.tooLarge)
    {
        return TransportFault::TooLarge;
    }
    switch (code)
    {
    case CURLE_OK:
        // An answer that ends amid its headers passes in libcurl for one with an empty body.
        return receiver.headersComplete ? TransportFault::None : TransportFault::Cut;
    case CURLE_OPERATION_TIMEDOUT:
        return TransportFault::TimeLimit;
    case CURLE_COULDNT_RESOLVE_HOST:
        return TransportFault::NameNotFound;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_ISSUER_ERROR:
        return TransportFault::Certificate;
    case CURLE_SSL_CACERT_BADFILE:
        return TransportFault::CaFile;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CIPHER:
        return TransportFault::Tls;
    case CURLE_GOT_NOTHING:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_PARTIAL_FILE:
        return TransportFault::Cut;
    case CURLE_COULDNT_CONNECT:
        return TransportFault::Unreachable;
    default:
        return TransportFault::Malformed;
    }
}

std::string originOf(const UrlHandle& url)
{
    return url.part(CURLUPART_SCHEME, 0) + "://" + text::toLower(url.part(CURLUPART_HOST, 0)) + ":" +
           url.part(CURLUPART_PORT, CURLU_DEFAULT_PORT);
}

// Resolves the Location against the request's URL (RFC 9110, section 10.2.2).
void resolveLocation(const std::string& requestUrl, const std::string& location, Exchange& exchange)
{
    if (location.empty())
    {
        return;
    }
    const UrlHandle base;
    const UrlHandle target;
    if (curl_url_set(base.url, CURLUPART_URL, requestUrl.c_str(), 0) != CURLUE_OK ||
        curl_url_set(target.url, CURLUPART_URL, requestUrl.c_str(), 0) != CURLUE_OK ||
        curl_url_set(target.url, CURLUPART_URL, location.c_str(), CURLU_URLENCODE) != CURLUE_OK ||
        originOf(base) != originOf(target))
    {
        exchange.leadsElsewhere = true;
        return;
    }
    const std::string query = target.part(CURLUPART_QUERY, 0);
    exchange.location = target.part(CURLUPART_PATH, 0) + (query.empty() ? "" : "?" + query);
}

// DSP0266, section "Request headers".
std::vector<std::string> redfishHeaders(const std::string& method)
{
    std::vector<std::string> headers = {"Accept: application/json", "OData-Version: 4.0"};
    if (method == "POST")
    {
        headers.emplace_back("Content-Type: application/json");
    }
    return headers;
}

void initialiseOnce()
{
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}
} // namespace

struct CurlTransport::State
{
    State(const ConnectOption& connectOption, std::size_t bodyLimit)
        : option(connectOption), largestBody(bodyLimit), controllerTrust(connectOption),
          certificateCheck(connectOption.host, [this](const trust::PresentedCertificate& certificate)
                           { return controllerTrust.accepts(certificate); })
    {
        initialiseOnce();
        const bool bracketed = option.host.find(':') != std::string::npos;
        base = (option.scheme == "http" ? "http" : "https") + std::string("://") +
               (bracketed ? "[" + option.host + "]" : option.host) +
               (option.port == 0 ? "" : ":" + std::to_string(option.port));
        easy = curl_easy_init();
        multi = curl_multi_init();
    }

    ~State()
    {
        curl_easy_cleanup(easy);
        curl_multi_cleanup(multi);
    }

    State(const State&) = delete;
    State& operator=(const State&) = delete;

    bool prepare(const Request& request, const std::string& url, Receiver& receiver, curl_slist*& headers);
    void prepareTlsVersion();
    bool prepareTrust();
    CURLcode run();

    ConnectOption option;
    std::size_t largestBody;
    std::string base; // without login and path
    trust::ControllerTrust controllerTrust;
    trust::CertificateCheck certificateCheck;
    CURL* easy = nullptr;
    CURLM* multi = nullptr;
    char errorText[CURL_ERROR_SIZE] = {};
};

void CurlTransport::State::prepareTlsVersion()
{
    const auto oldest = static_cast<long>(option.oldTls ? CURL_SSLVERSION_TLSv1_0 : CURL_SSLVERSION_TLSv1_2);
    curl_easy_setopt(easy, CURLOPT_SSLVERSION, oldest);
    if (option.oldTls)
    {
        // OpenSSL's higher levels refuse the signatures of the old versions (SSL_CTX_set_security_level(3)).
        curl_easy_setopt(easy, CURLOPT_SSL_CIPHER_LIST, "DEFAULT:@SECLEVEL=0");
    }
    else if (trust::CertificateCheck::available()) // the names of ciphers are OpenSSL's
    {
        curl_easy_setopt(easy, CURLOPT_SSL_CIPHER_LIST, "DEFAULT:!SHA1");
    }
}

// False when the target's certificate could not be judged as the option asks; nothing may be sent then.
bool CurlTransport::State::prepareTrust()
{
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, option.checkTrust ? 1L : 0L);
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, option.checkTrust ? 2L : 0L);
    controllerTrust.clearRefusal();
    if (!option.checkTrust)
    {
        return true;
    }
    const bool ownFingerprint = !option.fingerprint.empty();
    if (ownFingerprint)
    {
        // No authority counts, so none needs to be there.
        curl_easy_setopt(easy, CURLOPT_CAINFO, nullptr);
        curl_easy_setopt(easy, CURLOPT_CAPATH, nullptr);
    }
    else if (!option.caCert.empty())
    {
        curl_easy_setopt(easy, CURLOPT_CAINFO, option.caCert.c_str());
        // Without this the system's folder of certificates would count beside the user's file.
        curl_easy_setopt(easy, CURLOPT_CAPATH, nullptr);
    }
    else
    {
        // Where the system keeps its authorities in a store instead of files; elsewhere this changes nothing.
        curl_easy_setopt(easy, CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_NATIVE_CA));
    }
    if (trust::CertificateCheck::available())
    {
        return certificateCheck.install(easy) && !(ownFingerprint && option.scheme == "http");
    }
    return !ownFingerprint;
}

bool CurlTransport::State::prepare(const Request& request, const std::string& url, Receiver& receiver,
                                   curl_slist*& headers)
{
    curl_easy_reset(easy); // keeps connections and the TLS session cache
    errorText[0] = '\0';
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, errorText);
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_PROXY, "");
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "korvan");
    curl_easy_setopt(easy, CURLOPT_MAXAGE_CONN, kIdleSecondsOfConnection);
    curl_easy_setopt(easy, CURLOPT_FRESH_CONNECT, request.connectionUse == ConnectionUse::Fresh ? 1L : 0L);
    // libcurl takes 0 for "no limit".
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS,
                     std::max<long>(1, static_cast<long>(request.connectLimit.count())));
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, std::max<long>(1, static_cast<long>(request.timeLimit.count())));
    prepareTlsVersion();

    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, takeBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &receiver);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, takeHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, &receiver);
    curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, watchInterrupt);
    curl_easy_setopt(easy, CURLOPT_XFERINFODATA, &receiver);

    for (const std::string& header : request.headers.empty() ? redfishHeaders(request.method) : request.headers)
    {
        headers = curl_slist_append(headers, header.c_str());
    }
    if (request.method == "POST")
    {
        headers = curl_slist_append(headers, "Expect:");
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()));
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, request.body.c_str());
    }
    else if (request.method != "GET")
    {
        curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, request.method.c_str());
    }
    if (request.login == Login::Token)
    {
        headers = curl_slist_append(headers, ("X-Auth-Token: " + request.token).c_str());
    }
    if (request.login == Login::Basic)
    {
        curl_easy_setopt(easy, CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC));
        curl_easy_setopt(easy, CURLOPT_USERNAME, option.user.c_str());
        curl_easy_setopt(easy, CURLOPT_PASSWORD, option.password.c_str());
    }
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers);
    return prepareTrust();
}

// The multi interface instead of curl_easy_perform: that one looks for an interrupt only once a second.
CURLcode CurlTransport::State::run()
{
    if (curl_multi_add_handle(multi, easy) != CURLM_OK)
    {
        return CURLE_FAILED_INIT;
    }
    CURLcode outcome = CURLE_FAILED_INIT;
    int running = 1;
    while (running != 0)
    {
        if (curl_multi_perform(multi, &running) != CURLM_OK)
        {
            break;
        }
        if (running != 0 && curl_multi_poll(multi, nullptr, 0, kPollMilliseconds, nullptr) != CURLM_OK)
        {
            break;
        }
    }
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi, &left))
    {
        if (message->msg == CURLMSG_DONE && message->easy_handle == easy)
        {
            outcome = message->data.result;
        }
    }
    curl_multi_remove_handle(multi, easy);
    return outcome;
}

CurlTransport::CurlTransport(const ConnectOption& option, std::size_t largestBody)
    : state_(std::make_unique<State>(option, largestBody))
{
}

CurlTransport::~CurlTransport() = default;

Exchange CurlTransport::perform(const Request& request)
{
    Exchange exchange;
    if (state_->easy == nullptr || state_->multi == nullptr)
    {
        exchange.fault = TransportFault::Unreachable;
        exchange.detail = "the HTTP library could not be started";
        return exchange;
    }
    Receiver receiver;
    receiver.exchange = &exchange;
    receiver.largestBody = state_->largestBody;
    receiver.interruptUse = request.interruptUse;

    const std::string url = state_->base + request.path;
    curl_slist* headers = nullptr;
    if (!state_->prepare(request, url, receiver, headers))
    {
        curl_slist_free_all(headers);
        exchange.fault = TransportFault::Certificate;
        exchange.refusal = "a fingerprint can be checked only over https, with a libcurl that is built on OpenSSL; "
                           "correct the target's address or leave out its fingerprint";
        return exchange;
    }
    const CURLcode code = state_->run();

    CURL* easy = state_->easy;
    long status = 0;
    long connections = 0;
    curl_off_t microseconds = 0;
    curl_off_t beforeRequest = 0;
    curl_off_t retryAfter = 0;
    curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
    curl_easy_getinfo(easy, CURLINFO_NUM_CONNECTS, &connections);
    curl_easy_getinfo(easy, CURLINFO_TOTAL_TIME_T, &microseconds);
    curl_easy_getinfo(easy, CURLINFO_PRETRANSFER_TIME_T, &beforeRequest);
    curl_easy_getinfo(easy, CURLINFO_RETRY_AFTER, &retryAfter);
    curl_slist_free_all(headers);

    exchange.fault = faultOf(code, receiver);
    exchange.status = static_cast<int>(status);
    exchange.reusedConnection = connections == 0;
    exchange.connected = beforeRequest > 0;
    exchange.duration = std::chrono::milliseconds(microseconds / 1000);
    exchange.retryAfter = std::chrono::seconds(std::clamp<curl_off_t>(retryAfter, 0, kLongestRetryAfter));
    if (exchange.fault != TransportFault::None)
    {
        exchange.detail = state_->errorText[0] != '\0' ? state_->errorText : curl_easy_strerror(code);
        exchange.refusal = exchange.fault == TransportFault::Certificate && !trust::CertificateCheck::available()
                               ? exchange.detail + kNoFingerprints
                               : state_->controllerTrust.refusal();
    }
    resolveLocation(url, receiver.rawLocation, exchange);
    return exchange;
}
} // namespace redfish
