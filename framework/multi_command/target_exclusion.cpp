#include "multi_command/target_exclusion.h"

#include "multi_command/target_name.h"
#include "text/text.h"

#include <algorithm>
#include <unordered_map>

namespace
{
// Which entries name a host or a host and port; an address may stand in several.
using Index = std::unordered_multimap<std::string, std::size_t>;

constexpr char kAnyPort[] = "host ";
constexpr char kOnePort[] = "port ";

std::string hostKey(const nova::ServerInfo& server)
{
    return kAnyPort + text::toLower(server.host);
}

std::string portKey(const nova::ServerInfo& server)
{
    return kOnePort + multi_command::targetName(server);
}

bool mark(const Index& index, const std::string& key, std::vector<bool>& used)
{
    const auto found = index.equal_range(key);
    for (auto entry = found.first; entry != found.second; ++entry)
    {
        used[entry->second] = true;
    }
    return found.first != found.second;
}

std::string complaint(const multi_command::AddressEntry& entry)
{
    const std::string first = text::visible(entry.servers.front().host);
    if (entry.servers.size() == 1)
    {
        return entry.where + ": no target is " + first;
    }
    return entry.where + ": no target is one of " + first + " to " + text::visible(entry.servers.back().host);
}
} // namespace

namespace multi_command
{
std::vector<std::string> exclude(const std::vector<AddressEntry>& entries, std::vector<nova::ServerInfo>& servers)
{
    Index index;
    for (std::size_t number = 0; number < entries.size(); ++number)
    {
        for (const nova::ServerInfo& server : entries[number].servers)
        {
            index.emplace(server.port == 0 ? hostKey(server) : portKey(server), number);
        }
    }
    std::vector<bool> used(entries.size(), false);
    const auto named = [&index, &used](const nova::ServerInfo& server)
    {
        const bool byHost = mark(index, hostKey(server), used);
        const bool byPort = mark(index, portKey(server), used);
        return byHost || byPort;
    };
    servers.erase(std::remove_if(servers.begin(), servers.end(), named), servers.end());
    std::vector<std::string> complaints;
    for (std::size_t number = 0; number < entries.size(); ++number)
    {
        if (!used[number])
        {
            complaints.push_back(complaint(entries[number]));
        }
    }
    return complaints;
}
} // namespace multi_command
