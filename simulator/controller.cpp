#include "controller.h"

#include "cim_service.h"
#include "redfish_error.h"
#include "redfish_paths.h"
#include "resource_view.h"

#include <nlohmann/json.hpp>

#include <openssl/evp.h>

#include <algorithm>
#include <utility>

namespace simulator
{
namespace
{
using nlohmann::json;

constexpr std::size_t kMostTarget = 4096;

std::string base64(const std::string& text)
{
    std::string encoded(4 * ((text.size() + 2) / 3) + 1, '\0');
    const int length =
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(encoded.data()),
                        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    encoded.resize(static_cast<std::size_t>(length));
    return encoded;
}

bool isOpen(const std::string& path)
{
    return path == "/redfish" || path == kServiceRoot || path == "/redfish/v1/odata" || path == "/redfish/v1/$metadata";
}

Reply jsonReply(const json& body)
{
    Reply reply;
    reply.body = body.dump();
    return reply;
}
} // namespace

Controller::Controller(ControllerConfig config, std::shared_ptr<const ResourceStore> store)
    : config_(std::move(config)), store_(std::move(store)), basicHeader_(base64(config_.user + ":" + config_.password)),
      sessions_(config_.behaviour.maxSessions), faults_(config_.faults)
{
}

Reply Controller::answer(const Request& request)
{
    if (request.target.size() > kMostTarget)
    {
        return redfishError(414);
    }
    const std::optional<RequestTarget> target = parseTarget(request.target);
    const FaultHit hit = faults_.next(request.method, request.target);
    Reply reply;
    if (hit.rule != nullptr)
    {
        statistics_.update([](ControllerStatistics& values) { ++values.faults; });
        reply = applyFault(*hit.rule, request, target);
    }
    else
    {
        reply = target ? plainAnswer(request, *target) : redfishError(400);
    }
    reply.delay += config_.latency + hit.delay;
    statistics_.update([this](ControllerStatistics& values) { values.sessionsOpen = sessions_.open(); });
    return reply;
}

Reply Controller::plainAnswer(const Request& request, const RequestTarget& target)
{
    const Behaviour& behaviour = config_.behaviour;
    Reply reply;
    if (behaviour.cim != CimService::Off && target.path == kCimPath)
    {
        const bool open = behaviour.authentication == Authentication::None || hasBasic(request);
        return open ? cimAnswer(request, behaviour) : unauthorized(true);
    }
    if (behaviour.noRedfish)
    {
        reply.status = 404;
        reply.contentType = "text/html";
        reply.body = "<html><body><h1>404 Not Found</h1></body></html>\n";
        return reply;
    }
    std::optional<Reply> early = slashAnswer(request, target);
    if (!early && behaviour.maxParallelRequests != 0 &&
        statistics_.snapshot().requestsNow > behaviour.maxParallelRequests)
    {
        early = redfishError(503);
        early->headers.emplace_back("Retry-After", "1");
    }
    if (!early)
    {
        early = refusal(request, target);
    }
    if (early)
    {
        reply = std::move(*early);
    }
    else if (target.path == kSessions || target.path.rfind(std::string(kSessions) + "/", 0) == 0)
    {
        reply = sessionsAnswer(request, target);
    }
    else
    {
        reply = resourceAnswer(request, target);
    }
    reply.contentType = behaviour.contentType;
    return reply;
}

std::optional<Reply> Controller::slashAnswer(const Request& request, const RequestTarget& target) const
{
    const TrailingSlash way = config_.behaviour.trailingSlash;
    if (way == TrailingSlash::Both)
    {
        return std::nullopt;
    }
    if (way == TrailingSlash::OnlyWith || way == TrailingSlash::OnlyWithout)
    {
        return target.endsWithSlash == (way == TrailingSlash::OnlyWith) ? std::nullopt
                                                                        : std::optional<Reply>(redfishError(404));
    }
    const bool wanted = config_.behaviour.canonicalPath == CanonicalPath::WithSlash;
    if (target.endsWithSlash == wanted)
    {
        return std::nullopt;
    }
    const std::size_t mark = std::min(request.target.find('?'), request.target.size());
    std::string location = request.target.substr(0, mark);
    if (wanted)
    {
        location += '/';
    }
    else
    {
        location.pop_back();
    }
    Reply reply;
    reply.status = way == TrailingSlash::Redirect301 ? 301 : 308;
    reply.headers.emplace_back("Location", location + request.target.substr(mark));
    return reply;
}

bool Controller::hasBasic(const Request& request) const
{
    return request.authorization == "Basic " + basicHeader_;
}

Reply Controller::unauthorized(bool basicHelps)
{
    statistics_.update([](ControllerStatistics& values) { ++values.refusedLogins; });
    Reply reply = redfishError(401);
    if (basicHelps)
    {
        reply.headers.emplace_back("WWW-Authenticate", "Basic realm=\"Redfish\"");
    }
    return reply;
}

std::optional<Reply> Controller::refusal(const Request& request, const RequestTarget& target)
{
    const Behaviour& behaviour = config_.behaviour;
    const bool login = request.method == "POST" && target.path == kSessions;
    if (behaviour.authentication == Authentication::None || isOpen(target.path) ||
        (login && !behaviour.sessionNeedsBasic))
    {
        return std::nullopt;
    }
    const bool basicHelps = behaviour.authentication != Authentication::SessionsOnly || login;
    const bool basic = hasBasic(request) && basicHelps;
    const bool session = behaviour.authentication != Authentication::BasicOnly && sessions_.isToken(request.token);
    if (!basic && !session)
    {
        return unauthorized(basicHelps);
    }
    const bool logout = request.method == "DELETE" && session;
    if (behaviour.passwordChangeRequired && !login && !logout)
    {
        return passwordChangeRequired(kAccount);
    }
    return std::nullopt;
}

Reply Controller::resourceAnswer(const Request& request, const RequestTarget& target)
{
    if (target.path == "/redfish" && request.method == "GET")
    {
        return jsonReply({{"v1", "/redfish/v1/"}});
    }
    const std::string* text = store_->find(target.path);
    std::string made;
    if (text == nullptr && faults_.has(FaultAction::HugeCollection))
    {
        made = generatedMember(target.path);
    }
    if (text == nullptr && made.empty() && target.path == kSessionService)
    {
        made = json({{"@odata.id", kSessionService},
                     {"@odata.type", "#SessionService.v1_1_8.SessionService"},
                     {"Id", "SessionService"},
                     {"Name", "Session Service"},
                     {"ServiceEnabled", true},
                     {"Sessions", {{"@odata.id", kSessions}}}})
                   .dump();
    }
    if (text == nullptr && made.empty())
    {
        return redfishError(404);
    }
    if (request.method != "GET" && request.method != "HEAD")
    {
        Reply reply = redfishError(405);
        reply.headers.emplace_back("Allow", "GET, HEAD");
        return reply;
    }
    const json resource = json::parse(text != nullptr ? *text : made, nullptr, false);
    return showResource(resource, *store_, config_.behaviour, target);
}
} // namespace simulator
