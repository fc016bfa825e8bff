#include "multi_command/target_set.h"

#include "multi_command/address_sources.h"
#include "multi_command/credentials.h"
#include "multi_command/target_exclusion.h"
#include "multi_command/target_list.h"
#include "multi_command/target_name.h"
#include "option_names.h"
#include "result_codes.h"

#include <iostream>
#include <unordered_set>

namespace
{
constexpr const char* kKinds[] = {option::kBmc, option::kPmx, option::kEsxi, option::kCmm, option::kSmm};

multi_command::OpenFiles openFiles(const UserContext& context)
{
    return HasOption(context, option::kAllowOpenFiles) ? multi_command::OpenFiles::Allow
                                                       : multi_command::OpenFiles::Refuse;
}

KorvanResult readConfig(const UserContext& context, std::vector<nova::ServerInfo>& servers)
{
    if (!HasOption(context, option::kConfig))
    {
        return KorvanResult();
    }
    const std::string path = GetOption(context, option::kConfig, std::string());
    if (path.empty())
    {
        return KorvanResult(result_code::kInvalidParameter,
                            std::string("option --") + option::kConfig + ": names no file");
    }
    return multi_command::readTargetList(path, servers, openFiles(context));
}

KorvanResult applyExclusion(const UserContext& context, multi_command::AddressSources& sources,
                            std::vector<nova::ServerInfo>& servers)
{
    if (!HasOption(context, option::kExclude))
    {
        return KorvanResult();
    }
    std::vector<multi_command::AddressEntry> entries;
    sources.countAnew();
    KorvanResult result = sources.read(option::kExclude, GetOption(context, option::kExclude, std::string()), entries);
    if (!result.succeeded())
    {
        return result;
    }
    for (const std::string& complaint : multi_command::exclude(entries, servers))
    {
        std::cerr << "korvan: warning: " + complaint + "\n" << std::flush;
    }
    return KorvanResult();
}

KorvanResult collectServers(const UserContext& context, multi_command::AddressSources& sources,
                            std::vector<nova::ServerInfo>& servers)
{
    std::vector<multi_command::AddressEntry> entries;
    for (const char* const kind : kKinds)
    {
        if (HasOption(context, kind))
        {
            KorvanResult result = sources.read(kind, GetOption(context, kind, std::string()), entries);
            if (!result.succeeded())
            {
                return result;
            }
        }
    }
    for (const multi_command::AddressEntry& entry : entries)
    {
        servers.insert(servers.end(), entry.servers.begin(), entry.servers.end());
    }
    KorvanResult result = readConfig(context, servers);
    return result.succeeded() ? applyExclusion(context, sources, servers) : result;
}

KorvanResult nameServers(const std::vector<nova::ServerInfo>& servers, std::vector<std::string>& names)
{
    std::unordered_set<std::string> taken;
    for (const nova::ServerInfo& server : servers)
    {
        names.push_back(multi_command::targetName(server));
        if (!taken.insert(names.back()).second)
        {
            return KorvanResult(result_code::kInvalidParameter,
                                "the target " + names.back() + " is named twice; name each target once");
        }
    }
    return KorvanResult();
}
} // namespace

namespace multi_command
{
KorvanResult buildTargetSet(const UserContext& context, std::vector<Target>& targets, const ServersCheck& check)
{
    std::vector<nova::ServerInfo> servers;
    AddressSources sources(openFiles(context));
    std::vector<std::string> names;
    KorvanResult result = collectServers(context, sources, servers);
    if (result.succeeded())
    {
        result = nameServers(servers, names);
    }
    if (result.succeeded() && check)
    {
        result = check(servers);
    }
    if (result.succeeded())
    {
        result = fillCredentials(context, sources.inputTaken() ? StandardInput::Taken : StandardInput::Free, servers);
    }
    if (!result.succeeded())
    {
        return result;
    }
    std::vector<Target> collected;
    collected.reserve(servers.size());
    for (std::size_t index = 0; index < servers.size(); ++index)
    {
        collected.push_back({servers[index], names[index]});
    }
    targets.swap(collected);
    return KorvanResult();
}
} // namespace multi_command
