#include "controller.h"

#include "redfish_error.h"
#include "redfish_paths.h"
#include "resource_view.h"

#include <nlohmann/json.hpp>

// The session service (DMTF DSP0266, "Redfish session login authentication").
namespace simulator
{
namespace
{
using nlohmann::json;

Reply jsonReply(const json& body)
{
    Reply reply;
    reply.body = body.dump();
    return reply;
}

json sessionJson(const Session& session, const std::string& user)
{
    return {{"@odata.id", std::string(kSessions) + "/" + session.id},
            {"@odata.type", "#Session.v1_4_0.Session"},
            {"Id", session.id},
            {"Name", "User Session"},
            {"UserName", user},
            {"CreatedTime", session.created},
            {"ClientOriginIPAddress", session.origin}};
}
} // namespace

Reply Controller::sessionsAnswer(const Request& request, const RequestTarget& target)
{
    const std::string prefix = std::string(kSessions) + "/";
    if (config_.behaviour.authentication == Authentication::BasicOnly)
    {
        return redfishError(404);
    }
    if (target.path == kSessions && request.method == "POST")
    {
        return createSession(request);
    }
    if (target.path == kSessions && (request.method == "GET" || request.method == "HEAD"))
    {
        json members = json::array();
        for (const std::string& id : sessions_.ids())
        {
            members.push_back({{"@odata.id", prefix + id}});
        }
        const json collection = {{"@odata.id", kSessions},
                                 {"@odata.type", "#SessionCollection.SessionCollection"},
                                 {"Name", "Session Collection"},
                                 {"Members@odata.count", members.size()},
                                 {"Members", members}};
        return showResource(collection, *store_, config_.behaviour, target);
    }
    const std::string id = target.path.size() > prefix.size() ? target.path.substr(prefix.size()) : "";
    const Session* const session = sessions_.find(id);
    if (target.path != kSessions && session == nullptr)
    {
        return redfishError(404);
    }
    if (session != nullptr && (request.method == "GET" || request.method == "HEAD"))
    {
        return jsonReply(sessionJson(*session, config_.user));
    }
    if (request.method == "DELETE" && sessions_.remove(id))
    {
        statistics_.update([](ControllerStatistics& values) { ++values.sessionsDeleted; });
        Reply reply;
        reply.status = 204;
        return reply;
    }
    return redfishError(405);
}

Reply Controller::createSession(const Request& request)
{
    const json login = json::parse(request.body, nullptr, false);
    const auto field = [&login](const char* key)
    {
        const auto found = login.is_object() ? login.find(key) : login.end();
        return login.is_object() && found != login.end() && found->is_string() ? found->get<std::string>() : "";
    };
    if (!login.is_object())
    {
        return redfishError(400);
    }
    if (field("UserName") != config_.user || field("Password") != config_.password)
    {
        return unauthorized(config_.behaviour.authentication != Authentication::SessionsOnly);
    }
    const std::optional<Session> session = sessions_.create(request.client);
    if (!session)
    {
        return redfishError(503, "Base.1.4.0.SessionLimitExceeded",
                            "The maximum number of user sessions is reached; delete one first.");
    }
    statistics_.update([](ControllerStatistics& values) { ++values.sessionsCreated; });
    Reply reply;
    reply.status = config_.behaviour.sessionStatus;
    if (reply.status != 204)
    {
        json body = sessionJson(*session, config_.user);
        if (config_.behaviour.passwordChangeRequired)
        {
            body["@Message.ExtendedInfo"] =
                json::parse(passwordChangeRequired(kAccount).body)["error"]["@Message.ExtendedInfo"];
        }
        reply.body = body.dump();
    }
    reply.headers.emplace_back("X-Auth-Token", session->token);
    if (config_.behaviour.sessionLocation)
    {
        reply.headers.emplace_back("Location", std::string(kSessions) + "/" + session->id);
    }
    return reply;
}
} // namespace simulator
