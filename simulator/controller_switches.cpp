#include "controller_switches.h"

#include "config_reader.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

namespace simulator
{
namespace
{
using nlohmann::json;

constexpr std::uint64_t kMostMilliseconds = 3600000;

template <class Enumeration>
Enumeration choose(ConfigReader& reader, const char* key, const std::vector<std::string>& names, Enumeration fallback)
{
    return static_cast<Enumeration>(reader.choice(key, names, static_cast<std::size_t>(fallback)));
}

void readSessionSwitches(ConfigReader& reader, Behaviour& behaviour)
{
    behaviour.sessionStatus = static_cast<unsigned>(reader.number("session_status", behaviour.sessionStatus, 299));
    if (behaviour.sessionStatus != 201 && behaviour.sessionStatus != 204 && behaviour.sessionStatus != 200)
    {
        reader.fail("session_status", "must be 200, 201 or 204");
    }
    behaviour.sessionLocation = reader.flag("session_location", behaviour.sessionLocation);
    behaviour.sessionNeedsBasic = reader.flag("session_needs_basic", behaviour.sessionNeedsBasic);
    behaviour.maxSessions = reader.number("max_sessions", behaviour.maxSessions, 100000);
}

void readTransportSwitches(ConfigReader& reader, Behaviour& behaviour)
{
    behaviour.httpVersion = choose(reader, "http_version", {"1.1", "1.0"}, behaviour.httpVersion);
    behaviour.keepAlive = reader.flag("keep_alive", behaviour.keepAlive);
    behaviour.chunked = reader.flag("chunked", behaviour.chunked);
    behaviour.gzip = reader.flag("gzip", behaviour.gzip);
    behaviour.contentType = reader.text("content_type", behaviour.contentType);
    if (behaviour.contentType.find_first_of("\r\n") != std::string::npos)
    {
        reader.fail("content_type", "must be one line");
    }
    behaviour.maxParallelRequests = reader.number("max_parallel_requests", behaviour.maxParallelRequests, 1000000);
    behaviour.maxTls = choose(reader, "max_tls", {"any", "1.0", "1.1", "1.2", "1.3"}, behaviour.maxTls);
    behaviour.oldCipher = reader.flag("old_cipher", behaviour.oldCipher);
    behaviour.certificate =
        choose(reader, "certificate", {"valid", "expired", "wrong_host", "self_signed"}, behaviour.certificate);
}

void readCimSwitches(ConfigReader& reader, Behaviour& behaviour)
{
    behaviour.cim =
        choose(reader, "cim",
               {"off", "works", "access_denied", "unknown_class", "failing", "no_chassis", "broken_xml", "deep_xml"},
               behaviour.cim);
    const json* chassis = reader.member("cim_chassis");
    if (chassis == nullptr)
    {
        return;
    }
    behaviour.cimChassis.clear();
    ConfigReader properties(*chassis, reader.where() + ", cim_chassis");
    for (const char* name : {"Manufacturer", "Model", "PartNumber", "SKU"})
    {
        if (properties.has(name))
        {
            behaviour.cimChassis[name] = properties.text(name, "");
        }
    }
    properties.finish();
}

void readFaultDetails(ConfigReader& reader, FaultRule& rule)
{
    switch (rule.action)
    {
    case FaultAction::Status:
        rule.status = static_cast<unsigned>(reader.number("status", rule.status, 599));
        if (rule.status < 200)
        {
            reader.fail("status", "must be a final status, 200 to 599");
        }
        if (reader.has("retry_after"))
        {
            rule.retryAfter = static_cast<unsigned>(reader.number("retry_after", 0, 86400));
        }
        rule.text = reader.text("message_id", "");
        break;
    case FaultAction::Slow:
        rule.delay = std::chrono::milliseconds(reader.number("delay_ms", 1000, kMostMilliseconds));
        break;
    case FaultAction::CutAfterBytes:
        rule.amount = reader.number("bytes", 64, std::uint64_t{1} << 40U);
        break;
    case FaultAction::HugeBody:
        rule.amount = reader.number("mib", 64, std::uint64_t{1} << 20U);
        break;
    case FaultAction::HugeCollection:
        rule.amount = reader.number("members", 100000, 100000000);
        break;
    case FaultAction::ContentType:
        rule.text = reader.text("content_type", "text/html");
        break;
    case FaultAction::Redirect:
        rule.status = static_cast<unsigned>(reader.number("status", 301, 308));
        rule.text = reader.text("location", "");
        if (rule.status < 301 || rule.text.empty())
        {
            reader.fail("location", "and a status of 301 to 308 belong to a redirect");
        }
        break;
    default:
        break;
    }
    if (rule.text.find_first_of("\r\n") != std::string::npos)
    {
        reader.fail("action", "has a text of several lines");
    }
}

} // namespace

Behaviour readBehaviour(const json& object, const std::string& where)
{
    Behaviour behaviour;
    ConfigReader reader(object, where);
    behaviour.authentication =
        choose(reader, "authentication", {"basic_and_sessions", "basic_only", "sessions_only", "none"},
               behaviour.authentication);
    behaviour.passwordChangeRequired = reader.flag("password_change_required", behaviour.passwordChangeRequired);
    readSessionSwitches(reader, behaviour);
    behaviour.trailingSlash =
        choose(reader, "trailing_slash", {"both", "redirect301", "redirect308", "only_without", "only_with"},
               behaviour.trailingSlash);
    behaviour.canonicalPath =
        choose(reader, "canonical_path", {"without_slash", "with_slash"}, behaviour.canonicalPath);
    behaviour.expand = choose(reader, "expand", {"works", "ignored", "broken_json", "refused"}, behaviour.expand);
    behaviour.pageSize = reader.number("page_size", behaviour.pageSize, 1000000);
    behaviour.membersCount = choose(reader, "members_count", {"right", "wrong", "missing"}, behaviour.membersCount);
    behaviour.cyclicPaging = reader.flag("cyclic_paging", behaviour.cyclicPaging);
    readTransportSwitches(reader, behaviour);
    behaviour.noRedfish = reader.flag("no_redfish", behaviour.noRedfish);
    readCimSwitches(reader, behaviour);
    reader.finish();
    return behaviour;
}

FaultRule readFault(const json& object, const std::string& where)
{
    FaultRule rule;
    ConfigReader reader(object, where);
    rule.method = reader.text("method", "");
    try
    {
        rule.path = PathPattern(reader.text("path", ""));
    }
    catch (const std::invalid_argument&)
    {
        reader.fail("path", "is no valid regular expression");
    }
    rule.skip = reader.number("skip", 0, UINT32_MAX);
    rule.times = reader.number("times", 0, UINT32_MAX);
    if (!reader.has("action"))
    {
        reader.fail("action", "is missing");
    }
    rule.action =
        choose(reader, "action",
               {"status", "slow", "hang", "cut_before_headers", "cut_in_headers", "cut_in_body", "cut_after_bytes",
                "empty_reply", "empty_body", "broken_json", "huge_body", "huge_collection", "content_type", "redirect",
                "redirect_to_http", "without_members", "with_error", "annotated_members"},
               FaultAction::Status);
    readFaultDetails(reader, rule);
    reader.finish();
    return rule;
}
} // namespace simulator
