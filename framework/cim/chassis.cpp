#include "cim/chassis.h"

#include "redfish/client.h"
#include "redfish/curl_transport.h"
#include "redfish/failure.h"
#include "result_codes.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <algorithm>

namespace cim
{
namespace
{
using std::chrono::milliseconds;

constexpr char kSource[] = "framework/cim/chassis";
constexpr char kPath[] = "/cimom";
constexpr char kStage[] = "CIM: reading CIM_Chassis";
constexpr std::uint32_t kHttpsPort = 5989;
constexpr std::uint32_t kHttpPort = 5988;
constexpr milliseconds kRequestTime{30000};
constexpr std::size_t kLargestBody = std::size_t{1024} * 1024; // bytes

redfish::Request chassisExchange(const ConnectOption& option)
{
    redfish::Request request;
    request.method = "POST";
    request.path = kPath;
    request.headers = {"Content-Type: application/xml; charset=\"utf-8\"", "Accept: application/xml, text/xml",
                       "CIMOperation: MethodCall", std::string("CIMMethod: ") + kOperation,
                       std::string("CIMObject: ") + kNamespace};
    request.body = chassisRequest();
    request.login = option.user.empty() ? redfish::Login::None : redfish::Login::Basic;
    request.timeLimit = std::min(kRequestTime, timeLeft(option));
    request.connectLimit = std::min<milliseconds>(option.connectTimeout, request.timeLimit);
    return request;
}

KorvanResult failed(std::uint32_t code, const std::string& target, const std::string& what)
{
    return KorvanResult(code, text::visible(target + ": " + kStage + ": " + what));
}

KorvanResult noService(const std::string& target, const std::string& why)
{
    return failed(result_code::kNoCimService, target,
                  why + "; check --bmc-cim-port, and that the controller's CIM service is switched on.");
}

// The statuses with which a web server says that it does not know the path or what is asked of it there.
bool saysNoService(int status)
{
    return status == 404 || status == 405 || status == 410 || status == 501 || (status >= 300 && status <= 399);
}

KorvanResult errorResult(const Answer& answer, const std::string& target)
{
    const std::string what =
        "CIM error " + std::to_string(answer.errorCode) + (answer.text.empty() ? "" : ", " + answer.text);
    switch (answer.errorCode)
    {
    case kAccessDenied:
        return failed(result_code::kAuthenticationFailed, target,
                      "the account may not read this (" + what + "); use an account with read access.");
    case kInvalidNamespace:
    case kInvalidClass:
    case kNotSupported:
        return noService(target, "the service knows no chassis (" + what + ")");
    default:
        return failed(result_code::kRestDataUnreadable, target,
                      "the service answered with an error (" + what + "); look at the controller's own log.");
    }
}

KorvanResult judgeAnswer(Answer answer, const std::string& target, std::vector<Chassis>& chassis)
{
    switch (answer.kind)
    {
    case AnswerKind::Unreadable:
        return redfish::unreadableFailure(answer.text, target, kStage).result;
    case AnswerKind::Error:
        return errorResult(answer, target);
    case AnswerKind::Instances:
        break;
    }
    if (answer.chassis.empty())
    {
        return noService(target, "the service has no chassis");
    }
    chassis = std::move(answer.chassis);
    return KorvanResult();
}
} // namespace

ConnectOption cimOption(const ConnectOption& option)
{
    ConnectOption changed = option;
    const std::uint32_t usual = option.scheme == "http" ? kHttpPort : kHttpsPort;
    changed.port = option.cimPort == 0 ? usual : option.cimPort;
    return changed;
}

ChassisReading readChassis(const ConnectOption& option)
{
    const ConnectOption service = cimOption(option);
    const std::string target = redfish::targetName(service);
    ChassisReading reading;
    if (timeLeft(service).count() == 0)
    {
        reading.result = redfish::deadlineFailure(target, kStage).result;
        return reading;
    }
    redfish::CurlTransport transport(service, kLargestBody);
    redfish::Exchange exchange = transport.perform(chassisExchange(service));
    KORVAN_LOG(4, kSource) << target << ": POST " << kPath << " " << exchange.status << " " << exchange.duration.count()
                           << " ms" << (exchange.detail.empty() ? "" : " ") << exchange.detail;
    if (exchange.fault != redfish::TransportFault::None)
    {
        const bool ranOut = exchange.fault == redfish::TransportFault::TimeLimit && timeLeft(service).count() == 0;
        reading.result = ranOut ? redfish::deadlineFailure(target, kStage).result
                                : redfish::transportFailure(exchange, target, kStage, service.caCert).result;
        return reading;
    }
    if (exchange.status >= 200 && exchange.status <= 299)
    {
        reading.result = judgeAnswer(readChassisAnswer(exchange.body), target, reading.chassis);
        return reading;
    }
    if (saysNoService(exchange.status))
    {
        reading.result =
            noService(target, "there is no CIM service (HTTP status " + std::to_string(exchange.status) + ")");
        return reading;
    }
    reading.loginRefused = exchange.status == 401;
    exchange.body.clear();
    reading.result = redfish::statusFailure(exchange, target, kStage).result;
    return reading;
}
} // namespace cim
