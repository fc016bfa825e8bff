#include "redfish/answer_receiver.h"

#include "interrupt.h"
#include "text/text.h"

#include <curl/curl.h>

#include <algorithm>

namespace redfish
{
AnswerReceiver::AnswerReceiver(Exchange& exchange, std::size_t largestBody, InterruptUse interruptUse)
    : exchange_(exchange), largestBody_(largestBody), interruptUse_(interruptUse)
{
}

struct AnswerReceiver::Callbacks
{
    // Fewer bytes than were given end the transfer, and so does anything but 0 of `progress`.
    static std::size_t body(char* data, std::size_t size, std::size_t count, void* user)
    {
        return static_cast<AnswerReceiver*>(user)->takeBody(data, size * count) ? size * count : 0;
    }

    static std::size_t header(char* data, std::size_t size, std::size_t count, void* user)
    {
        static_cast<AnswerReceiver*>(user)->takeLine(std::string(data, size * count));
        return size * count;
    }

    static int progress(void* user, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
    {
        return static_cast<AnswerReceiver*>(user)->isToEnd() ? 1 : 0;
    }
};

void AnswerReceiver::attach(void* easy)
{
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, Callbacks::body);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, Callbacks::header);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, Callbacks::progress);
    curl_easy_setopt(easy, CURLOPT_XFERINFODATA, this);
}

bool AnswerReceiver::takeBody(const char* data, std::size_t bytes)
{
    std::string& body = exchange_.body;
    if (bytes > largestBody_ - std::min(body.size(), largestBody_))
    {
        tooLarge_ = true;
        return false;
    }
    body.append(data, bytes);
    return true;
}

void AnswerReceiver::takeLine(const std::string& line)
{
    if (line.empty() || line.back() != '\n')
    {
        return; // broken off amid a line
    }
    if (text::startsWith(line, "HTTP/"))
    {
        // An interim answer (100 Continue) came before this one; nothing of it counts.
        location_.clear();
        exchange_.token.clear();
        exchange_.authenticate.clear();
        headersComplete_ = false;
    }
    else if (text::trim(line).empty())
    {
        headersComplete_ = true;
    }
    else
    {
        takeField(line);
    }
}

void AnswerReceiver::takeField(const std::string& line)
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
        location_ = value;
    }
    else if (name == "x-auth-token")
    {
        exchange_.token = value;
    }
    else if (name == "www-authenticate")
    {
        exchange_.authenticate += text::toLower(value) + " ";
    }
}

// Whether an interrupt ends the transfer now.
bool AnswerReceiver::isToEnd()
{
    if (interruptUse_ == InterruptUse::Ignore || !interrupt::requested())
    {
        return false;
    }
    const auto now = std::chrono::steady_clock::now();
    interruptSeen_ = interruptSeen_.value_or(now);
    interrupted_ = interruptUse_ == InterruptUse::Abort || now - *interruptSeen_ >= kFinishTime;
    return interrupted_;
}

TransportFault AnswerReceiver::fault(int outcome) const
{
    if (interrupted_)
    {
        return TransportFault::Interrupted;
    }
    if (tooLarge_)
    {
        return TransportFault::TooLarge;
    }
    switch (outcome)
    {
    case CURLE_OK:
        // An answer that ends amid its headers passes in libcurl for one with an empty body.
        return headersComplete_ ? TransportFault::None : TransportFault::Cut;
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
} // namespace redfish
