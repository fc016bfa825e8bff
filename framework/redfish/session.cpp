#include "redfish/session.h"

#include "redfish/client.h"
#include "redfish/json.h"
#include "xmodule_log.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <thread>

namespace redfish
{
namespace
{
constexpr char kSource[] = "framework/redfish/session";
constexpr int kDeletionRetries = 3;
constexpr std::chrono::milliseconds kDeletionPause{500};

std::string loginBody(const ConnectOption& option)
{
    nlohmann::json body;
    body["UserName"] = option.user;
    body["Password"] = option.password;
    // A login that is no UTF-8 cannot stand in JSON; replaced, it is refused by the service instead of throwing here.
    return body.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// A refusal that may be over in a moment.
bool isPassing(const Exchange& answer)
{
    return answer.fault == TransportFault::Cut || answer.status == 429 ||
           (answer.status >= 500 && answer.status != 501);
}

// A request of a session that ends, also after an interrupt.
Request farewell(const std::string& method, const std::string& path, const std::string& token)
{
    Request request;
    request.method = method;
    request.path = path;
    request.login = Login::Token;
    request.token = token;
    request.interruptUse = InterruptUse::Ignore;
    return request;
}

bool isOk(const Exchange& answer)
{
    return answer.fault == TransportFault::None && answer.status >= 200 && answer.status <= 299;
}
} // namespace

Exchange Session::open(const std::string& collection, const ConnectOption& option, const Perform& perform)
{
    Request request;
    request.method = "POST";
    request.path = collection;
    request.body = loginBody(option);
    request.interruptUse = InterruptUse::Finish;
    Exchange answer = perform(request);
    const bool wantsBasic = answer.authenticate.find("basic") != std::string::npos;
    if (answer.fault == TransportFault::None && answer.status == 401 && wantsBasic)
    {
        request.login = Login::Basic;
        answer = perform(request);
    }
    if (!isOk(answer) || answer.token.empty())
    {
        return answer;
    }
    collection_ = collection;
    user_ = option.user;
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

// Some services do not say where the new session is. It is the one of this user, when there is only one; among
// several it cannot be told from those of other programs.
std::string Session::searched(const Perform& perform) const
{
    constexpr std::size_t mostSessions = 32;
    nlohmann::json sessions;
    std::string reason;
    const Exchange answer = perform(farewell("GET", collection_, token_));
    if (!isOk(answer) || !parseJson(answer.body, sessions, reason))
    {
        return std::string();
    }
    const std::vector<std::string> links = linksOf(member(sessions, "Members"));
    std::vector<std::string> own;
    for (std::size_t i = 0; i < links.size() && links.size() <= mostSessions; ++i)
    {
        nlohmann::json session;
        const std::string path = requestPath(links[i]);
        const Exchange entry = path.empty() ? Exchange() : perform(farewell("GET", path, token_));
        if (!isOk(entry) || !parseJson(entry.body, session, reason))
        {
            return std::string();
        }
        if (textAt(session, "UserName") == user_)
        {
            own.push_back(path);
        }
    }
    return own.size() == 1 ? own.front() : std::string();
}

void Session::close(const std::string& target, const Perform& perform)
{
    if (!active())
    {
        return;
    }
    if (location_.empty())
    {
        location_ = searched(perform);
    }
    if (location_.empty() || location_.front() != '/')
    {
        KORVAN_LOG(2, kSource) << target
                               << ": the service does not tell which session is this one; it ends by its time limit";
        forget();
        return;
    }
    Exchange answer = perform(farewell("DELETE", location_, token_));
    for (int attempt = 0; attempt < kDeletionRetries && !isOk(answer) && isPassing(answer); ++attempt)
    {
        std::this_thread::sleep_for(kDeletionPause);
        answer = perform(farewell("DELETE", location_, token_));
    }
    if (!isOk(answer))
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
