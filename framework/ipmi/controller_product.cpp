#include "ipmi/controller_product.h"

#include "ipmi/tool_failure.h"
#include "xmodule_log.h"

#include <algorithm>
#include <cstdint>

namespace ipmi
{
namespace
{
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr char kSource[] = "framework/ipmi/controller_product";
constexpr std::size_t kLongestPassword = 20; // IPMI 2.0, section 22.30
constexpr seconds kReadingTime{60};          // slow controllers give a FRU out in small pieces

struct Patience
{
    int seconds; // before the first repetition; one more with each
    int tries;
};

// ipmitool asks for the controller's capabilities in two forms before it gives up, each with all the tries: what it
// then has waited is 2 * (n + (n + 1) + ...) seconds. A controller on the network answers in milliseconds, and many
// targets have no IPMI switched on, so that the usual limit is not used up.
Patience patienceFor(seconds limit)
{
    constexpr std::int64_t longestWait = 10;
    const std::int64_t wait = std::min(limit.count() / 12 - 1, longestWait);
    if (wait >= 1)
    {
        return {static_cast<int>(wait), 3};
    }
    return {1, limit >= seconds(6) ? 2 : 1};
}

ChildOutcome runTool(const std::string& tool, const ConnectOption& option, int cipherSuite,
                     const std::vector<std::string>& command)
{
    const Patience patience = patienceFor(option.connectTimeout);
    ChildRequest request;
    request.program = tool;
    request.arguments = {"-v",
                         "-I",
                         "lanplus",
                         "-H",
                         option.host,
                         "-p",
                         std::to_string(option.ipmiPort),
                         "-U",
                         option.user,
                         "-E",
                         "-L",
                         "USER",
                         "-C",
                         std::to_string(cipherSuite),
                         "-N",
                         std::to_string(patience.seconds),
                         "-R",
                         std::to_string(patience.tries)};
    request.arguments.insert(request.arguments.end(), command.begin(), command.end());
    request.environment = {"LC_ALL=C", "IPMI_PASSWORD=" + option.password};
    request.timeLimit = std::min<milliseconds>(option.connectTimeout + kReadingTime, timeLeft(option));
    return runChild(request);
}

std::vector<int> suitesFor(const ConnectOption& option)
{
    return option.ipmiCipherSuite < 0 ? std::vector<int>{3, 17} : std::vector<int>{option.ipmiCipherSuite};
}

// Runs the command with the first suite that the controller takes.
ChildOutcome runCommand(const std::string& tool, const ConnectOption& option, const std::vector<std::string>& command)
{
    ChildOutcome outcome;
    for (const int suite : suitesFor(option))
    {
        outcome = runTool(tool, option, suite, command);
        if (faultOf(outcome) != ToolFault::CipherSuite)
        {
            break;
        }
    }
    return outcome;
}
} // namespace

KorvanResult readProduct(const ConnectOption& option, Product& product, const std::vector<std::string>& folders)
{
    product = Product();
    if (option.password.size() > kLongestPassword)
    {
        return passwordTooLong(option);
    }
    const std::string tool = findProgram("ipmitool", folders);
    if (tool.empty())
    {
        return toolMissing(option, folders);
    }
    ChildOutcome outcome = runCommand(tool, option, {"fru", "print", "0"});
    ToolFault fault = faultOf(outcome);
    if (fault == ToolFault::None)
    {
        product = readFruText(outcome.out);
        return KorvanResult();
    }
    if (fault != ToolFault::Command)
    {
        return failureResult(fault, outcome, option, "reading FRU 0");
    }
    KORVAN_LOG(2, kSource) << option.host << ": IPMI: FRU 0 cannot be read; asking what the controller is";
    outcome = runCommand(tool, option, {"mc", "info"});
    return failureResult(faultOf(outcome), outcome, option, "reading the controller's identity");
}
} // namespace ipmi
