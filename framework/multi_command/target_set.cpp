#include "multi_command/target_set.h"

#include "multi_command/target_address.h"
#include "multi_command/target_list.h"
#include "multi_command/target_name.h"
#include "option_names.h"
#include "text/text.h"

#include <set>

namespace
{
constexpr std::uint32_t kInvalidParameter = 5;
constexpr const char* kKinds[] = {option::kBmc, option::kPmx, option::kEsxi, option::kCmm, option::kSmm};

// The entries are named by their position: their texts may hold passwords.
KorvanResult readOption(const std::string& kind, const std::string& value, std::vector<nova::ServerInfo>& servers)
{
    const std::vector<std::string> entries = text::split(value, ',');
    for (std::size_t index = 0; index < entries.size(); ++index)
    {
        const std::string where = "option --" + kind + ", address " + std::to_string(index + 1) + ": ";
        multi_command::TargetAddress address;
        std::string reason;
        if (!multi_command::parseTargetAddress(text::trim(entries[index]), address, reason))
        {
            return KorvanResult(kInvalidParameter, where + reason);
        }
        nova::ServerInfo server;
        server.option = kind;
        server.user = address.user;
        server.password = address.password;
        server.host = address.host;
        server.port = address.port;
        server.scheme = address.scheme;
        servers.push_back(server);
    }
    return KorvanResult();
}

KorvanResult readDefaults(const UserContext& context, std::string& user, std::string& password)
{
    user = GetOption(context, option::kBmcUsername, std::string());
    password = GetOption(context, option::kBmcPassword, std::string());
    if (!multi_command::isValidUser(user))
    {
        return KorvanResult(kInvalidParameter, std::string("option --") + option::kBmcUsername +
                                                   ": the name holds a ':', a blank or a control character");
    }
    if (!multi_command::isValidPassword(password))
    {
        return KorvanResult(kInvalidParameter, std::string("option --") + option::kBmcPassword +
                                                   ": the password holds a control character");
    }
    return KorvanResult();
}

KorvanResult collectServers(const UserContext& context, std::vector<nova::ServerInfo>& servers)
{
    for (const char* const kind : kKinds)
    {
        if (HasOption(context, kind))
        {
            KorvanResult result = readOption(kind, GetOption(context, kind, std::string()), servers);
            if (!result.succeeded())
            {
                return result;
            }
        }
    }
    if (!HasOption(context, option::kConfig))
    {
        return KorvanResult();
    }
    const std::string path = GetOption(context, option::kConfig, std::string());
    if (path.empty())
    {
        return KorvanResult(kInvalidParameter, std::string("option --") + option::kConfig + ": names no file");
    }
    return multi_command::readTargetList(path, servers);
}

void fillIn(std::string& value, const std::string& defaultValue)
{
    if (value.empty())
    {
        value = defaultValue;
    }
}
} // namespace

namespace multi_command
{
KorvanResult buildTargetSet(const UserContext& context, std::vector<Target>& targets)
{
    std::string user;
    std::string password;
    std::vector<nova::ServerInfo> servers;
    KorvanResult result = readDefaults(context, user, password);
    if (result.succeeded())
    {
        result = collectServers(context, servers);
    }
    if (!result.succeeded())
    {
        return result;
    }
    std::vector<Target> collected;
    std::set<std::string> names;
    for (nova::ServerInfo& server : servers)
    {
        fillIn(server.user, user);
        fillIn(server.password, password);
        const std::string name = targetName(server);
        if (!names.insert(name).second)
        {
            return KorvanResult(kInvalidParameter, "the target " + name + " is named twice; name each target once");
        }
        collected.push_back({server, name});
    }
    targets.swap(collected);
    return KorvanResult();
}
} // namespace multi_command
