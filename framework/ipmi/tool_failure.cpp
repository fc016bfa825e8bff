#include "ipmi/tool_failure.h"

#include "result_codes.h"
#include "text/text.h"

namespace ipmi
{
namespace
{
constexpr std::size_t kLongestDetail = 200;

bool holdsOneOf(const std::string& value, const std::vector<std::string>& pieces)
{
    for (const std::string& piece : pieces)
    {
        if (value.find(piece) != std::string::npos)
        {
            return true;
        }
    }
    return false;
}

// IPMI goes to a port of its own, whatever port the target's web service has.
std::string targetOf(const ConnectOption& option)
{
    const bool bracketed = option.host.find(':') != std::string::npos;
    return (bracketed ? "[" + option.host + "]" : option.host) + ":" + std::to_string(option.ipmiPort);
}

// The last thing that the program said before its closing line, for failures that have no text here.
std::string detailOf(const ChildOutcome& outcome, const ConnectOption& option)
{
    std::string detail;
    for (const std::string& line : text::split(outcome.err, '\n'))
    {
        const std::string trimmed = text::trim(line);
        if (!trimmed.empty() && !text::startsWith(trimmed, "Error: Unable to establish"))
        {
            detail = trimmed.substr(0, kLongestDetail);
        }
    }
    const bool secret = !option.password.empty() && detail.find(option.password) != std::string::npos;
    return detail.empty() || secret ? std::string() : " (" + detail + ")";
}

KorvanResult result(std::uint32_t code, const ConnectOption& option, const std::string& stage, const std::string& what)
{
    return KorvanResult(code, text::visible(targetOf(option) + ": IPMI: " + stage + ": " + what));
}

KorvanResult runResult(const ChildOutcome& outcome, const ConnectOption& option, const std::string& stage)
{
    switch (outcome.end)
    {
    case ChildEnd::Interrupted:
        return result(result_code::kInterruptedByUser, option, stage, "stopped by the user.");
    case ChildEnd::TimeLimit:
        return result(result_code::kTimeout, option, stage,
                      "ipmitool did not come to an end within the time limit; give more time with --connect-timeout.");
    case ChildEnd::TooLarge:
        return result(result_code::kIpmiSessionFailed, option, stage,
                      "ipmitool wrote more than an answer can be; look at the controller with it by hand.");
    default:
        return result(result_code::kIpmiSessionFailed, option, stage,
                      "ipmitool could not be run" + (outcome.reason.empty() ? "" : " (" + outcome.reason + ")") +
                          "; check its installation.");
    }
}
} // namespace

ToolFault faultOf(const ChildOutcome& outcome)
{
    if (outcome.end != ChildEnd::Exited)
    {
        return ToolFault::Run;
    }
    if (outcome.exitStatus == 0)
    {
        return ToolFault::None;
    }
    const std::string said = text::toLower(outcome.err);
    if (holdsOneOf(said, {"address lookup for", "could not open socket"}))
    {
        return ToolFault::NameNotFound;
    }
    if (holdsOneOf(said, {"get auth capabilities error", "no response from"}))
    {
        return ToolFault::NoAnswer;
    }
    // Not "RAKP" alone: a wrong suite shows only in the answer to the opening of the session.
    if (holdsOneOf(said, {"open session response message", "unsupported cipher suite"}))
    {
        return ToolFault::CipherSuite;
    }
    if (holdsOneOf(said, {"hmac is invalid", "message indicates an error", "integrity check value", "username is too"}))
    {
        return ToolFault::Login;
    }
    return said.find("unable to establish") == std::string::npos ? ToolFault::Command : ToolFault::Session;
}

KorvanResult failureResult(ToolFault fault, const ChildOutcome& outcome, const ConnectOption& option,
                           const std::string& stage)
{
    switch (fault)
    {
    case ToolFault::None:
        return KorvanResult();
    case ToolFault::CipherSuite:
        return result(result_code::kIpmiSessionFailed, option, stage,
                      "the controller refused the cipher suite; name one that it has with --ipmi-cipher-suite.");
    case ToolFault::Login:
        return result(result_code::kIpmiSessionFailed, option, stage,
                      "the user name or password was refused; check the login, and that the account may use IPMI over "
                      "LAN.");
    case ToolFault::NoAnswer:
        return result(result_code::kTimeout, option, stage,
                      "no answer within the time limit; check the address and --ipmi-port, and that the controller has "
                      "IPMI over LAN switched on.");
    case ToolFault::NameNotFound:
        return result(result_code::kConnectionFailed, option, stage,
                      "the host name is not known or the network does not reach it; check the target's address.");
    case ToolFault::Session:
        return result(result_code::kIpmiSessionFailed, option, stage,
                      "no session could be set up" + detailOf(outcome, option) +
                          "; check login, privileges and cipher suite.");
    case ToolFault::Command:
        return result(result_code::kIpmiSessionFailed, option, stage,
                      "the controller refused the command" + detailOf(outcome, option) +
                          "; check the privileges of the account.");
    case ToolFault::Run:
        break;
    }
    return runResult(outcome, option, stage);
}

KorvanResult passwordTooLong(const ConnectOption& option)
{
    return result(
        result_code::kIpmiPasswordTooLong, option, "login",
        "IPMI takes passwords of 20 characters at most, this target's is longer; use an account with a shorter "
        "one.");
}

KorvanResult toolMissing(const ConnectOption& option, const std::vector<std::string>& folders)
{
    return result(result_code::kIpmiSessionFailed, option, "looking for ipmitool",
                  "the program is in none of " + text::join(folders, ", ") + "; install the package ipmitool.");
}
} // namespace ipmi
