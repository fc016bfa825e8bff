#include "service_option/update_query_adapter.h"

#include "option_names.h"
#include "os_names.h"
#include "query_package.h"
#include "xmodule_log.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/split.hpp>

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace
{
constexpr char kSource[] = "include/service_option/update_query_adapter";
constexpr char kOperation[] = "service::adapter::convert_to";

constexpr char kScopeLatest[] = "latest";
constexpr char kScopeVelpak[] = "velpak";
constexpr char kScopeIndividual[] = "individual";
constexpr char kAll[] = "all";
constexpr char kDefaultTypes[] = "fw,dd,mm";
constexpr char kSecondPlatformBmc[] = "PMX2";

constexpr std::uint32_t kOsPlatform = 402;
constexpr std::uint32_t kOsRhel6 = 208;

constexpr std::int32_t kTypeFirmware = 1;
constexpr std::int32_t kTypeDriver = 3;
constexpr std::int32_t kTypeMm = 5;
constexpr std::int32_t kTypeSoftware = 12;
constexpr std::int32_t kTypeAll = 99;

// Machine types that always query every update type at the latest level; two generations, treated alike.
constexpr const char* kQueryAllFirstGeneration[] = {"7893", "8721", "8724"};
constexpr const char* kQueryAllSecondGeneration[] = {"7X20", "7X22", "7X81", "7X85"};

bool queriesEverything(const std::string& machineType)
{
    const auto same = [&machineType](const char* listed) { return machineType == listed; };
    return std::any_of(std::begin(kQueryAllFirstGeneration), std::end(kQueryAllFirstGeneration), same) ||
           std::any_of(std::begin(kQueryAllSecondGeneration), std::end(kQueryAllSecondGeneration), same);
}

// Empty pieces are kept.
std::vector<std::string> splitAtCommas(const std::string& value)
{
    std::vector<std::string> pieces;
    boost::algorithm::split(pieces, value, boost::algorithm::is_any_of(","));
    return pieces;
}

void convertPlatform(const UserContext& context, service::QueryOptions& options)
{
    if (HasOption(context, option::kMt))
    {
        options.machineType = GetOption(context, option::kMt, "");
    }
    else
    {
        KORVAN_LOG(1, kSource) << "Need parameter --mt  to specify machine type.";
    }
    if (HasOption(context, option::kOsType))
    {
        options.osType = GetOsTypeCode(GetOption(context, option::kOsType, ""));
    }
    else
    {
        KORVAN_LOG(1, kSource) << "Need specify machine OS with --ostype parameter.";
    }
    if (HasOption(context, option::kOsArch))
    {
        options.osArch = GetOsArchCode(GetOption(context, option::kOsArch, ""));
    }
    else
    {
        KORVAN_LOG(1, kSource) << "Need parameter --osarch to get os architecture, valid value: none/x64/x32.";
    }
}

// The directory always ends in a backslash, on every platform and also behind a slash: the package query expects it.
void convertDirectory(const UserContext& context, service::QueryOptions& options)
{
    if (HasOption(context, option::kDir))
    {
        options.queryDir = GetOption(context, option::kDir, "");
    }
    else
    {
        KORVAN_LOG(3, kSource) << "--dir no specified, use ./ as query dir.";
        options.queryDir = ".";
    }
    if (options.queryDir.empty())
    {
        throw std::out_of_range("invalid string position");
    }
    if (options.queryDir.back() != '\\')
    {
        options.queryDir += '\\';
    }
}

// True also when the check itself fails: an update pack is what most repositories hold.
bool velpakSupported(const service::QueryOptions& options)
{
    bool supported = true;
    try
    {
        std::vector<XModule::OSInfo> systems;
        systems.emplace_back(options.osType, options.osArch, options.osMinorVersion);
        if (boost::algorithm::iequals(options.bmcType, kSecondPlatformBmc) && options.osType == kOsPlatform)
        {
            systems.emplace_back(kOsRhel6, options.osArch, "");
        }
        XModule::QueryPackage query;
        query.SetPlatform(systems, options.machineType);
        supported = query.CheckIsVelpakSupport(options.queryDir);
    }
    catch (...) // whatever the package query throws
    {
        KORVAN_LOG(1, kSource) << "failed to check if support VELPAK";
    }
    return supported;
}

void convertScope(const UserContext& context, service::QueryOptions& options)
{
    if (HasOption(context, option::kScope))
    {
        options.scope = GetOption(context, option::kScope, "");
    }
    else if (queriesEverything(options.machineType))
    {
        options.scope = kScopeLatest;
    }
    else if (!options.includeIds.empty())
    {
        options.scope = kScopeVelpak;
    }
    else
    {
        options.scope = velpakSupported(options) ? kScopeVelpak : kScopeLatest;
    }
}

// Forced ids are included ids too.
void convertForcedIds(const UserContext& context, service::QueryOptions& options)
{
    if (HasOption(context, option::kForceId))
    {
        options.forceIds = splitAtCommas(GetOption(context, option::kForceId, ""));
    }
    options.forceAll = false;
    for (const std::string& id : options.forceIds)
    {
        if (id == kAll)
        {
            options.forceAll = true;
        }
        else if (std::find(options.includeIds.begin(), options.includeIds.end(), id) == options.includeIds.end())
        {
            options.includeIds.push_back(id);
        }
    }
}

void convertGivenTypes(const std::string& value, service::QueryOptions& options)
{
    options.typeText = boost::algorithm::to_lower_copy(value);
    for (const std::string& piece : splitAtCommas(options.typeText))
    {
        if (piece == "fw")
        {
            options.typeCodes.push_back(kTypeFirmware);
        }
        else if (piece == "dd")
        {
            options.typeCodes.push_back(kTypeDriver);
        }
        else if (piece == "sw")
        {
            options.typeCodes.push_back(kTypeSoftware);
        }
        else if (piece == "mm")
        {
            options.typeCodes.push_back(kTypeMm);
        }
        else if (piece == kAll)
        {
            options.typeText = kAll;
            options.typeCodes.assign(1, kTypeAll);
            return;
        }
        else
        {
            KORVAN_LOG(2, kSource) << "Update type is not valid. Valid values: fw/dd/sw/mm/all";
        }
    }
}

void convertTypes(const UserContext& context, service::QueryOptions& options)
{
    if (queriesEverything(options.machineType))
    {
        options.typeText = kAll;
        options.typeCodes.assign(1, kTypeAll);
    }
    else if (!HasOption(context, option::kType))
    {
        options.typeCodes.insert(options.typeCodes.end(), {kTypeFirmware, kTypeDriver, kTypeMm});
        options.typeText = kDefaultTypes;
    }
    else
    {
        convertGivenTypes(GetOption(context, option::kType, ""), options);
    }
}
} // namespace

namespace service
{
namespace adapter
{
KorvanResult convert_to(const UserContext& context, QueryOptions& options)
{
    KORVAN_LOG(4, kSource) << "Entering  " << kOperation;
    options.noReq = HasOption(context, option::kNoReq);
    convertPlatform(context, options);
    if (HasOption(context, option::kIncludeId))
    {
        options.includeIds = splitAtCommas(GetOption(context, option::kIncludeId, ""));
    }
    convertDirectory(context, options);
    if (HasOption(context, option::kExcludeId))
    {
        options.excludeIds = splitAtCommas(GetOption(context, option::kExcludeId, ""));
    }
    options.ignoreMtOsCheck = HasOption(context, option::kIgnoreMtOsCheck);
    // Sees the caller's scope only: the user's scope and the forced ids are read further down. Kept, scripts know when
    // the warning comes.
    if (options.scope == kScopeIndividual && options.includeIds.empty())
    {
        KORVAN_LOG(2, kSource)
            << "The update scope is individual, it needs to specify update ids with --includeid or --forceid.";
    }
    convertScope(context, options);
    convertForcedIds(context, options);
    convertTypes(context, options);
    KORVAN_LOG(4, kSource) << "Exiting  " << kOperation;
    return KorvanResult(0);
}
} // namespace adapter
} // namespace service
