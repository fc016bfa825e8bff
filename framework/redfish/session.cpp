#include "redfish/session.h"

#include "redfish/json.h"
#include "xmodule_log.h"

#include <nlohmann/json.hpp>

namespace redfish
{
namespace
{
constexpr char kSource[] = "framework/redfish/session";

std::string loginBody(const ConnectOption& option)
{
    nlohmann::json body;
    body["UserName"] = option.user;
    body["Password"] = option.password;
    // A login that is no UTF-8 cannot stand in JSON; replaced, it is refused by the service instead of throwing here.
    return body.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}
} // namespace

Exchange Session::open(const std::string& collection, const ConnectOption& option, const Perform& perform)
{
    Request request;
    request.method = "POST";
    request.path = collection;
    request.body = loginBody(option);
    Exchange answer = perform(request);
    const bool wantsBasic = answer.authenticate.find("basic") != std::string::npos;
    if (answer.fault == TransportFault::None && answer.status == 401 && wantsBasic)
    {
        request.login = Login::Basic;
        answer = perform(request);
    }
    if (answer.fault != TransportFault::None || answer.status < 200 || answer.status > 299 || answer.token.empty())
    {
        return answer;
    }
    token_ = answer.token;
    location_ = answer.location;
    nlohmann::json document;
    std::string reason;
    if (location_.empty() && parseJson(answer.body, document, reason))
    {
        location_ = linkOf(&document);
    }
    return answer;
}

void Session::close(const std::string& target, const Perform& perform)
{
    if (!active())
    {
        return;
    }
    if (location_.empty() || location_.front() != '/')
    {
        KORVAN_LOG(2, kSource) << target << ": the service did not say where its session is; it ends by its time limit";
        forget();
        return;
    }
    Request request;
    request.method = "DELETE";
    request.path = location_;
    request.login = Login::Token;
    request.token = token_;
    request.interruptUse = InterruptUse::Ignore;
    const Exchange answer = perform(request);
    if (answer.fault != TransportFault::None || answer.status < 200 || answer.status > 299)
    {
        KORVAN_LOG(2, kSource) << target << ": the session could not be deleted (HTTP status " << answer.status << " "
                               << answer.detail << ")";
    }
    forget();
}

void Session::forget()
{
    token_.clear();
    location_.clear();
}
} // namespace redfish
