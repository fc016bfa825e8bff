#include "redfish/curl_transport.h"

#include "redfish/answer_receiver.h"
#include "redfish/redirect_location.h"
#include "trust/certificate_check.h"
#include "trust/controller_trust.h"

#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <mutex>

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

    bool prepare(const Request& request, const std::string& url, AnswerReceiver& receiver, curl_slist*& headers);
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

bool CurlTransport::State::prepare(const Request& request, const std::string& url, AnswerReceiver& receiver,
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

    receiver.attach(easy);

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
    AnswerReceiver receiver(exchange, state_->largestBody, request.interruptUse);

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

    exchange.fault = receiver.fault(code);
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
    resolveLocation(url, receiver.location(), exchange);
    return exchange;
}
} // namespace redfish
