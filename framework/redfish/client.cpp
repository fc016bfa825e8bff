#include "redfish/client.h"

#include "interrupt.h"
#include "redfish/curl_transport.h"
#include "redfish/failure.h"
#include "redfish/json.h"
#include "redfish/session.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <thread>

namespace redfish
{
namespace
{
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr char kSource[] = "framework/redfish/client";
constexpr std::size_t kLongestPath = 4096;
constexpr milliseconds kWaitStep{50};
constexpr milliseconds kFarewellTime{5000}; // for deleting the session, beyond the target's limit
constexpr int kStrikes = 2; // requests without an answer to their question in a row after which the target is given up
constexpr int kMostSessions = 3;   // logins of one client, when the service keeps ending its sessions
constexpr int kMostLostLogins = 2; // each may leave a session that nobody can delete

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 307 || status == 308;
}

bool isBusy(int status)
{
    return status == 429 || status == 502 || status == 503 || status == 504;
}

// Failures that asking for another resource does not cure.
bool isFinal(Fault fault)
{
    return fault == Fault::Interrupted || fault == Fault::Certificate || fault == Fault::Login ||
           fault == Fault::PasswordChange;
}
} // namespace

struct Client::State
{
    State(const ConnectOption& connectOption, const ClientLimits& clientLimits, std::unique_ptr<Transport> wire)
        : option(connectOption), limits(clientLimits), transport(std::move(wire)), target(targetName(connectOption))
    {
    }

    milliseconds remaining();
    bool waitFor(milliseconds time);
    Exchange send(Request request);
    Exchange sendFollowing(Request request);
    Exchange sendLoggedIn(const Request& request);
    Exchange sendWithSlash(Request request);
    bool logIn(Exchange& refusal);
    bool retryAfter(const Exchange& answer, int attempt, Request& request);
    Reply replyTo(const Exchange& answer, const std::string& requestStage) const;
    Reply get(const std::string& path, const std::string& stage, std::string& body);
    void judge(const Reply& reply);

    ConnectOption option;
    ClientLimits limits;
    std::unique_ptr<Transport> transport;
    std::string target;
    std::string sessionsPath;
    Session session;
    int sessionsOpened = 0;
    Exchange failedLogin;    // the last one that failed, when there is one
    bool inLogin = false;    // what failed was a login, not the request that it was for
    bool slashTried = false; // whether the service wants a slash at the end of every path has been found out
    bool slashWanted = false;
    bool answered = false;      // the service has answered at least once
    bool ranOut = false;        // the target's time limit, not one request's
    bool sessionsTaken = false; // the service takes no further session
    int strikes = 0;
    Reply final; // not ok: the client is of no more use
};

milliseconds Client::State::remaining()
{
    if (option.deadline == Clock::time_point())
    {
        option.deadline = Clock::now() + option.targetTimeout;
    }
    return timeLeft(option);
}

bool Client::State::waitFor(milliseconds time)
{
    const auto end = Clock::now() + time;
    while (Clock::now() < end)
    {
        if (interrupt::requested())
        {
            return false;
        }
        const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
        std::this_thread::sleep_for(std::min(kWaitStep, std::max(left, milliseconds(1))));
    }
    return true;
}

Exchange Client::State::send(Request request)
{
    const bool farewell = request.interruptUse == InterruptUse::Ignore;
    const milliseconds left = farewell ? kFarewellTime : remaining();
    const bool finishes = request.interruptUse == InterruptUse::Finish;
    const milliseconds allowed = left + (finishes ? kFinishTime : milliseconds(0));
    request.timeLimit = std::min(allowed, milliseconds(option.requestTimeout));
    request.connectLimit = std::min(request.timeLimit, milliseconds(option.connectTimeout));
    Exchange answer;
    if (left.count() == 0)
    {
        answer.fault = TransportFault::TimeLimit;
    }
    else
    {
        answer = transport->perform(request);
    }
    answered = answered || answer.fault == TransportFault::None;
    ranOut = ranOut || (answer.fault == TransportFault::TimeLimit && !farewell && remaining().count() == 0);
    KORVAN_LOG(4, kSource) << target << ": " << request.method << " " << request.path << " " << answer.status << " "
                           << answer.duration.count() << " ms" << (answer.detail.empty() ? "" : " ") << answer.detail;
    return answer;
}

Exchange Client::State::sendFollowing(Request request)
{
    Exchange answer = send(request);
    for (int hop = 0; hop < limits.redirects; ++hop)
    {
        if (answer.fault != TransportFault::None || !isRedirect(answer.status) || answer.location.empty())
        {
            break;
        }
        request.path = answer.location;
        answer = send(request);
    }
    return answer;
}

bool Client::State::logIn(Exchange& refusal)
{
    // A service that offers Basic has refused the login itself; asking again elsewhere would count against the account.
    const bool basicOffered = !session.active() && refusal.authenticate.find("basic") != std::string::npos;
    if (sessionsPath.empty() || option.user.empty() || basicOffered || sessionsOpened >= kMostSessions)
    {
        return false;
    }
    const auto perform = [this](const Request& next) { return sendFollowing(next); };
    session.drop(perform);
    inLogin = true;
    if (session.lost() >= kMostLostLogins)
    {
        refusal = failedLogin;
        return false;
    }
    const Exchange answer = session.open(sessionsPath, option, perform);
    if (!session.active())
    {
        failedLogin = answer;
        const bool telling = answer.fault != TransportFault::None || answer.status == 401 || answer.status == 403 ||
                             isBusy(answer.status);
        inLogin = telling;
        refusal = telling ? answer : refusal;
        sessionsTaken = isBusy(answer.status);
        return false;
    }
    inLogin = false;
    ++sessionsOpened;
    KORVAN_LOG(3, kSource) << target << ": logged in with a session";
    return true;
}

Exchange Client::State::sendLoggedIn(const Request& request)
{
    const auto withLogin = [this](Request bare)
    {
        bare.login = session.active() ? Login::Token : (option.user.empty() ? Login::None : Login::Basic);
        bare.token = session.token();
        return bare;
    };
    inLogin = false;
    Exchange answer = sendFollowing(withLogin(request));
    if (answer.fault == TransportFault::None && answer.status == 401 && logIn(answer))
    {
        answer = sendFollowing(withLogin(request));
    }
    return answer;
}

// Some services know a resource only with a slash at the end of its path; the first that is missing without tells.
Exchange Client::State::sendWithSlash(Request request)
{
    const bool plain = request.path.back() != '/' && request.path.find('?') == std::string::npos;
    if (slashWanted && plain)
    {
        request.path += '/';
        return sendLoggedIn(request);
    }
    Exchange answer = sendLoggedIn(request);
    if (answer.fault != TransportFault::None || answer.status != 404 || !plain || slashTried)
    {
        return answer;
    }
    slashTried = true;
    request.path += '/';
    Exchange second = sendLoggedIn(request);
    slashWanted = second.fault == TransportFault::None && second.status >= 200 && second.status <= 299;
    return slashWanted ? second : answer;
}

// Decides whether the request is worth another try, and waits for its time.
bool Client::State::retryAfter(const Exchange& answer, int attempt, Request& request)
{
    const bool cut = answer.fault == TransportFault::Cut;
    // A service that never answered is not there; one that did may be restarting.
    const bool gone = answer.fault == TransportFault::Unreachable && answered;
    const bool busy = answer.fault == TransportFault::None && isBusy(answer.status);
    if (attempt >= limits.retries || !(cut || gone || busy) || session.lost() >= kMostLostLogins)
    {
        return false;
    }
    request.connectionUse = ConnectionUse::Fresh;
    if (cut && answer.reusedConnection)
    {
        return true; // the service had closed the kept-alive connection
    }
    milliseconds wait = std::min(limits.backOff * (1 << std::min(attempt, 10)), limits.longestWait);
    if (busy && answer.retryAfter.count() > 0)
    {
        wait = answer.retryAfter; // as told, or not at all
    }
    if (wait >= remaining())
    {
        return false;
    }
    KORVAN_LOG(3, kSource) << target << ": trying again in " << wait.count() << " ms";
    return waitFor(wait);
}

Reply Client::State::replyTo(const Exchange& answer, const std::string& requestStage) const
{
    const std::string stage = inLogin ? "logging in at " + sessionsPath : requestStage;
    if (answer.fault == TransportFault::TimeLimit && ranOut)
    {
        return deadlineFailure(target, stage);
    }
    if (answer.fault != TransportFault::None)
    {
        return transportFailure(answer, target, stage, option.caCert);
    }
    if (isRedirect(answer.status))
    {
        return redirectFailure(answer, target, stage);
    }
    if (answer.status < 200 || answer.status > 299)
    {
        return statusFailure(answer, target, stage);
    }
    Reply reply;
    reply.status = answer.status;
    return reply;
}

Reply Client::State::get(const std::string& path, const std::string& stage, std::string& body)
{
    Request request;
    request.path = path;
    Exchange answer;
    for (int attempt = 0;; ++attempt)
    {
        if (interrupt::requested())
        {
            return interruptedFailure(target, stage);
        }
        answer = sendWithSlash(request);
        if (!retryAfter(answer, attempt, request))
        {
            break;
        }
    }
    if (interrupt::requested() && (answer.fault != TransportFault::None || isBusy(answer.status)))
    {
        return interruptedFailure(target, stage);
    }
    body = std::move(answer.body);
    answer.body.clear();
    Exchange described = answer;
    described.body = answer.fault == TransportFault::None && answer.status >= 400 ? body : std::string();
    return replyTo(described, stage);
}

void Client::State::judge(const Reply& reply)
{
    const bool lost = reply.fault == Fault::TimeLimit || reply.fault == Fault::Unreachable;
    const bool busy = reply.fault == Fault::Busy;
    strikes = lost || busy ? strikes + 1 : 0;
    const bool loginLost = inLogin && (session.lost() >= kMostLostLogins || reply.fault == Fault::TimeLimit);
    const bool givenUp = loginLost || (lost && (ranOut || !answered)) || (busy && sessionsTaken) || strikes >= kStrikes;
    if (isFinal(reply.fault) || givenUp)
    {
        final = reply;
    }
}

Client::Client(const ConnectOption& option, const ClientLimits& limits)
    : Client(option, limits, std::make_unique<CurlTransport>(option, limits.largestBody))
{
}

Client::Client(const ConnectOption& option, const ClientLimits& limits, std::unique_ptr<Transport> transport)
    : state_(std::make_unique<State>(option, limits, std::move(transport)))
{
    if (!option.user.empty() && option.password.empty())
    {
        state_->final = noPasswordFailure(state_->target);
    }
}

Client::~Client()
{
    state_->session.close(state_->target, [this](const Request& request) { return state_->sendFollowing(request); });
}

Reply Client::getJson(const std::string& path, nlohmann::json& document)
{
    document = nullptr;
    if (!state_->final.ok())
    {
        return state_->final;
    }
    const std::string stage = "reading " + path.substr(0, 200);
    const std::string wanted = requestPath(path);
    if (wanted.empty())
    {
        return unreadableFailure("it links to what is no path on this service", state_->target, stage);
    }
    std::string body;
    Reply reply = state_->get(wanted, stage, body);
    state_->judge(reply);
    std::string reason;
    if (reply.ok() && !parseJson(body, document, reason))
    {
        return unreadableFailure(reason, state_->target, stage);
    }
    return reply;
}

void Client::offerSessions(const std::string& sessionsPath)
{
    state_->sessionsPath = requestPath(sessionsPath);
}

bool Client::usable() const
{
    return state_->final.ok();
}

const std::string& Client::target() const
{
    return state_->target;
}

std::string targetName(const ConnectOption& option)
{
    const std::string host = option.host.find(':') == std::string::npos ? option.host : "[" + option.host + "]";
    return option.port == 0 ? host : host + ":" + std::to_string(option.port);
}

std::string requestPath(const std::string& link)
{
    const std::string path = link.substr(0, link.find('#'));
    if (path.empty() || path.front() != '/' || path.size() > kLongestPath)
    {
        return std::string();
    }
    std::string encoded;
    for (const char character : path)
    {
        if (static_cast<unsigned char>(character) < 0x20 || character == 0x7F || character == '\\')
        {
            return std::string();
        }
        encoded += character == ' ' ? std::string("%20") : std::string(1, character);
    }
    return encoded;
}
} // namespace redfish
