#include "redfish/session.h"

#include "redfish/json.h"
#include "target_run/target_run.h"
#include "xmodule_log.h"

#include <nlohmann/json.hpp>

#include <thread>

namespace redfish
{
namespace
{
using Clock = std::chrono::steady_clock;

constexpr char kSource[] = "framework/redfish/session";
constexpr int kDeletionRetries = 3;
constexpr std::chrono::milliseconds kDeletionPause{500};
constexpr std::chrono::seconds kClockStep{2}; // both ends of a span in the service's whole seconds

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

bool holdsToken(const Exchange& answer)
{
    return answer.status >= 200 && answer.status <= 299 && !answer.token.empty();
}

// The service may have opened a session, and what came back does not tell.
bool isLost(const Exchange& answer)
{
    return answer.fault != TransportFault::None && answer.connected;
}

Exchange deleted(const std::string& location, const std::string& token, const Perform& perform)
{
    Exchange answer = perform(farewell("DELETE", location, token));
    for (int attempt = 0; attempt < kDeletionRetries && !isOk(answer) && isPassing(answer); ++attempt)
    {
        std::this_thread::sleep_for(kDeletionPause);
        answer = perform(farewell("DELETE", location, token));
    }
    return answer;
}

void tellOfLeftSession(const std::string& target, const std::string& why)
{
    const std::string text = "a session may be left on the controller: " + why +
                             "; it ends by its own time limit, or delete it in the controller's interface";
    KORVAN_LOG(2, kSource) << target << ": " << text;
    target_run::remark(text);
}

std::string whyOf(const Exchange& answer)
{
    return answer.fault == TransportFault::None ? "HTTP status " + std::to_string(answer.status) : answer.detail;
}
} // namespace

Exchange Session::open(const std::string& collection, const ConnectOption& option, const Perform& perform)
{
    Request request;
    request.method = "POST";
    request.path = collection;
    request.body = loginBody(option);
    request.interruptUse = InterruptUse::Finish;
    const Clock::time_point begin = Clock::now();
    Exchange answer = perform(request);
    const bool wantsBasic = answer.authenticate.find("basic") != std::string::npos;
    if (answer.fault == TransportFault::None && answer.status == 401 && wantsBasic)
    {
        request.login = Login::Basic;
        answer = perform(request);
    }
    if (!holdsToken(answer))
    {
        if (isLost(answer))
        {
            ++lost_;
            firstLost_ = firstLost_.value_or(begin);
        }
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
    if (location_.empty() || firstLost_)
    {
        find(perform);
    }
    return answer;
}

// Some services do not say where the new session is: it is this user's newest, when that can be told. A session that a
// lost login has left is one that the same client opened since.
void Session::find(const Perform& perform)
{
    const std::vector<ListedSession> sessions = sessionsOf(user_, collection_, token_, perform);
    const ListedSession* const own = location_.empty() ? newest(sessions) : nullptr;
    location_ = own != nullptr ? own->path : location_;
    if (!firstLost_)
    {
        return;
    }
    const auto span = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - *firstLost_) + kClockStep;
    int cleaned = 0;
    for (const std::string& left : openedBefore(location_, span, sessions))
    {
        cleaned += isOk(deleted(left, token_, perform)) ? 1 : 0;
    }
    if (cleaned > 0)
    {
        lost_ = 0;
        firstLost_.reset();
    }
}

void Session::close(const std::string& target, const Perform& perform)
{
    if (lost_ > 0)
    {
        tellOfLeftSession(target, "the answer to a login was lost");
    }
    if (!active())
    {
        return;
    }
    if (location_.empty() || location_.front() != '/')
    {
        tellOfLeftSession(target, "the service does not tell which one is this program's");
        forget();
        return;
    }
    const Exchange answer = deleted(location_, token_, perform);
    if (!isOk(answer))
    {
        tellOfLeftSession(target, "it could not be deleted (" + whyOf(answer) + ")");
    }
    forget();
}

void Session::drop(const Perform& perform)
{
    if (active() && !location_.empty() && location_.front() == '/')
    {
        perform(farewell("DELETE", location_, token_));
    }
    forget();
}

void Session::forget()
{
    token_.clear();
    location_.clear();
}
} // namespace redfish
