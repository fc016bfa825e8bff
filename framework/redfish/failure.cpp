#include "redfish/failure.h"

#include "redfish/json.h"
#include "result_codes.h"
#include "text/text.h"

#include <nlohmann/json.hpp>

namespace redfish
{
namespace
{
Reply failure(Fault fault, std::uint32_t code, int status, const std::string& target, const std::string& stage,
              const std::string& what)
{
    Reply reply;
    reply.fault = fault;
    reply.status = status;
    reply.result = KorvanResult(code, text::visible(target + ": " + stage + ": " + what));
    return reply;
}

std::string inBrackets(const std::string& detail)
{
    return detail.empty() ? std::string() : " (" + detail + ")";
}

// For transfers that libcurl judges alone: its words are all that is known of the certificate.
std::string certificateAdvice(const std::string& detail)
{
    const bool expired = text::toLower(detail).find("expired") != std::string::npos;
    return expired ? "renew it on the controller" : "give the issuer's certificate with --cacert";
}

std::string messageIdOf(const Exchange& exchange)
{
    nlohmann::json document;
    std::string reason;
    return parseJson(exchange.body, document, reason) ? errorMessageId(document) : std::string();
}

std::string statusText(const Exchange& exchange, const std::string& messageId)
{
    return "HTTP status " + std::to_string(exchange.status) + (messageId.empty() ? "" : ", " + messageId);
}
} // namespace

Reply transportFailure(const Exchange& exchange, const std::string& target, const std::string& stage,
                       const std::string& caCert)
{
    const std::string detail = inBrackets(exchange.detail);
    switch (exchange.fault)
    {
    case TransportFault::Interrupted:
        return interruptedFailure(target, stage);
    case TransportFault::TimeLimit:
        return failure(Fault::TimeLimit, result_code::kTimeout, 0, target, stage,
                       "no answer within the time limit" + detail +
                           (exchange.connected
                                ? "; check whether the controller is overloaded, or give it more time for one request "
                                  "with --request-timeout."
                                : "; check the address and whether the controller is overloaded, or give it more time "
                                  "to connect with --connect-timeout."));
    case TransportFault::NameNotFound:
        return failure(Fault::Unreachable, result_code::kConnectionFailed, 0, target, stage,
                       "the host name is not known" + detail + "; check the target's address.");
    case TransportFault::Certificate:
        if (!exchange.refusal.empty())
        {
            return failure(Fault::Certificate, result_code::kCertificateNotTrusted, 0, target, stage,
                           "the service's certificate is not trusted: " + exchange.refusal + ".");
        }
        return failure(Fault::Certificate, result_code::kCertificateNotTrusted, 0, target, stage,
                       "the service's certificate is not trusted" + detail + "; " + certificateAdvice(exchange.detail) +
                           ", or --never-check-trust to accept any.");
    case TransportFault::CaFile:
        return failure(Fault::Certificate, result_code::kCertificateNotTrusted, 0, target, stage,
                       "the certificate file " + caCert + " cannot be used" + detail +
                           "; give a readable PEM file with --cacert.");
    case TransportFault::TooLarge:
        return unreadableFailure("it is too large", target, stage);
    case TransportFault::Malformed:
        return unreadableFailure("it is no valid HTTP answer" + detail, target, stage);
    case TransportFault::Cut:
        return failure(Fault::Unreachable, result_code::kConnectionFailed, 0, target, stage,
                       "the connection was closed before the answer was complete" + detail +
                           "; check that the address and port are those of the controller's web service, or try "
                           "again when it has restarted.");
    case TransportFault::Tls:
        return failure(Fault::Unreachable, result_code::kConnectionFailed, 0, target, stage,
                       "no encrypted connection could be set up" + detail +
                           "; check that the port speaks HTTPS with TLS 1.2 or later, allow an old controller less "
                           "with \"old_tls\" "
                           "in the target list, or name the target with http://.");
    case TransportFault::Unreachable:
    case TransportFault::None:
        break;
    }
    return failure(Fault::Unreachable, result_code::kConnectionFailed, 0, target, stage,
                   "the connection failed" + detail + "; check address, port and network of the controller.");
}

Reply statusFailure(const Exchange& exchange, const std::string& target, const std::string& stage)
{
    const std::string messageId = messageIdOf(exchange);
    const std::string what = statusText(exchange, messageId);
    const int status = exchange.status;
    if ((status == 401 || status == 403) && messageId == "PasswordChangeRequired")
    {
        return failure(Fault::PasswordChange, result_code::kPasswordChangeRequired, status, target, stage,
                       "the account's password must be changed before it may be used (" + what +
                           "); change it in the controller's own interface.");
    }
    if (status == 401)
    {
        return failure(Fault::Login, result_code::kAuthenticationFailed, status, target, stage,
                       "the user name or password was refused (" + what + "); check the login of this target.");
    }
    if (status == 403)
    {
        return failure(Fault::Forbidden, result_code::kAuthenticationFailed, status, target, stage,
                       "the account may not read this (" + what + "); use an account with read access.");
    }
    if (status == 404 || status == 410)
    {
        return failure(Fault::Missing, result_code::kRestDataUnreadable, status, target, stage,
                       "the service does not have it (" + what + ").");
    }
    if (status == 429 || status == 503)
    {
        return failure(Fault::Busy, result_code::kRestDataUnreadable, status, target, stage,
                       "the controller stays busy (" + what + "); try again later, or close other sessions to it.");
    }
    return failure(Fault::Status, result_code::kRestDataUnreadable, status, target, stage,
                   "the service answered with an error (" + what + "); look at the controller's own log.");
}

Reply unreadableFailure(const std::string& reason, const std::string& target, const std::string& stage)
{
    return failure(Fault::Unreadable, result_code::kRestDataUnreadable, 0, target, stage,
                   "the answer cannot be read, " + reason +
                       "; restart the controller or update its firmware when this stays so.");
}

Reply redirectFailure(const Exchange& exchange, const std::string& target, const std::string& stage)
{
    const std::string what = exchange.leadsElsewhere
                                 ? "leads to another address, which is not followed; name the right scheme, host and "
                                   "port of the target"
                                 : "leads in a circle or nowhere; check the address of the target";
    return failure(Fault::Redirected, result_code::kRestDataUnreadable, exchange.status, target, stage,
                   "the redirection (HTTP status " + std::to_string(exchange.status) + ") " + what + ".");
}

Reply interruptedFailure(const std::string& target, const std::string& stage)
{
    return failure(Fault::Interrupted, result_code::kInterruptedByUser, 0, target, stage, "interrupted by the user.");
}

Reply deadlineFailure(const std::string& target, const std::string& stage)
{
    return failure(Fault::TimeLimit, result_code::kTimeout, 0, target, stage,
                   "the time limit for this target is over; give more with --target-timeout.");
}

Reply noPasswordFailure(const std::string& target)
{
    return failure(Fault::Login, result_code::kAuthenticationFailed, 0, target, "logging in",
                   "the user has no password; give one with --password-file, --password-stdin or KORVAN_PASSWORD. It "
                   "was not tried without, since refused logins can lock the account.");
}

Reply noServiceFailure(const std::string& target, const std::string& why)
{
    return failure(Fault::Missing, result_code::kNoRestService, 0, target, "opening the Redfish service",
                   why + "; check that the address and port are those of a management controller with Redfish "
                         "switched on.");
}
} // namespace redfish
