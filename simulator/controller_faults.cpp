#include "controller.h"

#include "redfish_error.h"
#include "resource_view.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <utility>

namespace simulator
{
namespace
{
Reply statusReply(const FaultRule& rule)
{
    Reply reply = rule.text.empty() ? redfishError(rule.status) : redfishError(rule.status, rule.text, "Provoked.");
    if (rule.status < 400)
    {
        reply.body.clear();
    }
    if (rule.status == 401)
    {
        reply.headers.emplace_back("WWW-Authenticate", "Basic realm=\"Redfish\"");
    }
    if (rule.retryAfter)
    {
        reply.headers.emplace_back("Retry-After", std::to_string(*rule.retryAfter));
    }
    return reply;
}

Reply redirectReply(unsigned status, const std::string& location)
{
    Reply reply;
    reply.status = status;
    reply.headers.emplace_back("Location", location);
    return reply;
}

// Valid JSON so far, so that a client cannot give up early for another reason than the size.
Reply hugeBody(std::uint64_t mebibytes)
{
    Reply reply;
    reply.body = "{\"Filler\":\"";
    auto left = std::make_shared<std::uint64_t>(mebibytes * 16 + 1);
    reply.more = [left]() -> std::string
    {
        constexpr std::size_t kPieceBytes = 65536;
        if (*left == 0)
        {
            return "";
        }
        return --*left == 0 ? "\"}" : std::string(kPieceBytes, 'x');
    };
    return reply;
}

// The answer with one change to its JSON.
void changeBody(FaultAction action, Reply& reply)
{
    nlohmann::json body = nlohmann::json::parse(reply.body, nullptr, false);
    if (!body.is_object())
    {
        return;
    }
    if (action == FaultAction::WithoutMembers)
    {
        body.erase("Members");
    }
    else if (action == FaultAction::AnnotatedMembers)
    {
        for (nlohmann::json& member : body["Members"])
        {
            member["@odata.type"] = "#SoftwareInventory.v1_2_3.SoftwareInventory";
        }
    }
    else
    {
        body["error"] = nlohmann::json::parse(redfishError(500).body)["error"];
    }
    reply.body = body.dump();
}

Delivery deliveryOf(FaultAction action)
{
    switch (action)
    {
    case FaultAction::Hang:
        return Delivery::Hang;
    case FaultAction::CutBeforeHeaders:
        return Delivery::CutBeforeHeaders;
    case FaultAction::CutInHeaders:
        return Delivery::CutInHeaders;
    case FaultAction::CutInBody:
        return Delivery::CutInBody;
    case FaultAction::CutAfterBytes:
        return Delivery::CutAfterBytes;
    case FaultAction::EmptyReply:
        return Delivery::EmptyReply;
    default:
        return Delivery::Whole;
    }
}
} // namespace

Reply Controller::applyFault(const FaultRule& rule, const Request& request, const std::optional<RequestTarget>& target)
{
    const std::string path = target ? target->path : "";
    Reply reply;
    switch (rule.action)
    {
    case FaultAction::Status:
        reply = statusReply(rule);
        break;
    case FaultAction::Redirect:
        reply = redirectReply(rule.status, rule.text);
        break;
    case FaultAction::RedirectToHttp:
        reply = redirectReply(301, "http://" + request.host + request.target);
        break;
    case FaultAction::HugeBody:
        reply = hugeBody(rule.amount);
        break;
    case FaultAction::HugeCollection:
        reply =
            hugeCollection(path, rule.amount,
                           target && target->query.count("$expand") != 0 && config_.behaviour.expand == Expand::Works
                               ? MemberForm::Expanded
                               : MemberForm::Reference);
        break;
    case FaultAction::Hang:
    case FaultAction::CutBeforeHeaders:
    case FaultAction::EmptyReply:
        break;
    default:
        reply = target ? plainAnswer(request, *target) : redfishError(400);
        break;
    }
    reply.contentType = config_.behaviour.contentType;
    reply.delivery = deliveryOf(rule.action);
    reply.cutAfter = rule.amount;
    if (rule.action == FaultAction::BrokenJson)
    {
        reply.body.resize(reply.body.size() / 2);
    }
    else if (rule.action == FaultAction::WithoutMembers || rule.action == FaultAction::WithError ||
             rule.action == FaultAction::AnnotatedMembers)
    {
        changeBody(rule.action, reply);
    }
    else if (rule.action == FaultAction::EmptyBody)
    {
        reply.body.clear();
    }
    else if (rule.action == FaultAction::ContentType)
    {
        reply.contentType = rule.text;
    }
    return reply;
}
} // namespace simulator
