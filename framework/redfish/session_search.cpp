#include "redfish/session_search.h"

#include "redfish/client.h"
#include "redfish/json.h"

#include <boost/date_time/posix_time/posix_time.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <exception>

namespace redfish
{
namespace
{
constexpr std::size_t kMostSessions = 32;

// A date and time of RFC 3339, without its fraction and zone: all times of one service have the same.
std::optional<std::chrono::seconds> timeOf(const std::string& text)
{
    namespace time = boost::posix_time;
    constexpr std::size_t wholeSeconds = 19;
    static const time::ptime epoch(boost::gregorian::date(1970, 1, 1));
    try
    {
        const time::ptime read = time::from_iso_extended_string(text.substr(0, wholeSeconds));
        return read.is_special() ? std::nullopt
                                 : std::make_optional(std::chrono::seconds((read - epoch).total_seconds()));
    }
    catch (const std::exception&) // whatever else a service says there
    {
        return std::nullopt;
    }
}

bool read(const std::string& path, const std::string& token, const Perform& perform, nlohmann::json& document)
{
    std::string reason;
    const Exchange answer = path.empty() ? Exchange() : perform(farewell("GET", path, token));
    return isOk(answer) && parseJson(answer.body, document, reason);
}
} // namespace

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

std::vector<ListedSession> sessionsOf(const std::string& user, const std::string& collection, const std::string& token,
                                      const Perform& perform)
{
    nlohmann::json sessions;
    if (!read(collection, token, perform, sessions))
    {
        return {};
    }
    const std::vector<std::string> links = linksOf(member(sessions, "Members"));
    if (links.size() > kMostSessions)
    {
        return {};
    }
    std::vector<ListedSession> own;
    for (const std::string& link : links)
    {
        nlohmann::json session;
        const std::string path = requestPath(link);
        if (!read(path, token, perform, session))
        {
            return {};
        }
        if (textAt(session, "UserName") == user)
        {
            own.push_back({path, timeOf(textAt(session, "CreatedTime")), textAt(session, "ClientOriginIPAddress")});
        }
    }
    return own;
}

const ListedSession* newest(const std::vector<ListedSession>& sessions)
{
    if (sessions.size() == 1)
    {
        return &sessions.front();
    }
    const ListedSession* found = nullptr;
    bool alone = false;
    for (const ListedSession& session : sessions)
    {
        if (!session.created)
        {
            return nullptr;
        }
        if (found == nullptr || *session.created >= *found->created)
        {
            alone = found == nullptr || *session.created > *found->created;
            found = &session;
        }
    }
    return alone ? found : nullptr;
}

std::vector<std::string> openedBefore(const std::string& own, std::chrono::seconds earlier,
                                      const std::vector<ListedSession>& sessions)
{
    const auto self = std::find_if(sessions.begin(), sessions.end(),
                                   [&own](const ListedSession& session) { return session.path == own; });
    std::vector<std::string> found;
    if (self == sessions.end() || !self->created || self->origin.empty())
    {
        return found;
    }
    for (const ListedSession& session : sessions)
    {
        const bool near =
            session.created && *session.created <= *self->created && *session.created + earlier >= *self->created;
        if (near && session.path != own && session.origin == self->origin)
        {
            found.push_back(session.path);
        }
    }
    return found;
}
} // namespace redfish
