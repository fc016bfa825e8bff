#include "connect/target_memory.h"

#include "redfish/client.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>

namespace connect
{
namespace
{
struct Known
{
    Asked asked = Asked::Rest;
    Finding finding = Finding::Nothing;
    std::size_t login = 0;
    KorvanResult result;
};

std::mutex& guard()
{
    static std::mutex mutex;
    return mutex;
}

std::map<std::string, Known>& targets()
{
    static std::map<std::string, Known> known;
    return known;
}

// A number instead of the password itself, which has no business in here for as long as the program runs.
std::size_t loginOf(const ConnectOption& option)
{
    return std::hash<std::string>()(std::to_string(option.user.size()) + ":" + option.user + option.password);
}

Known knownOf(const ConnectOption& option)
{
    const std::lock_guard<std::mutex> lock(guard());
    const auto found = targets().find(redfish::targetName(option));
    const bool another = found != targets().end() && found->second.finding == Finding::LoginRefused &&
                         found->second.login != loginOf(option);
    return found == targets().end() || another ? Known() : found->second;
}
} // namespace

void rememberFinding(const ConnectOption& option, Asked asked, Finding finding, const KorvanResult& result)
{
    const std::lock_guard<std::mutex> lock(guard());
    if (finding == Finding::Nothing)
    {
        targets().erase(redfish::targetName(option));
        return;
    }
    targets()[redfish::targetName(option)] = {asked, finding, loginOf(option), result};
}

Finding findingOf(const ConnectOption& option)
{
    return knownOf(option).finding;
}

KorvanResult restRefusalOf(const ConnectOption& option)
{
    const Known known = knownOf(option);
    const bool refused = known.finding == Finding::LoginRefused && known.asked == Asked::Rest;
    return refused ? known.result : KorvanResult();
}
} // namespace connect
