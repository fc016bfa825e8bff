#include "os_names.h"
#include "repository/package_fields.h"
#include "repository/repository_walk.h"
#include "repository_tools.h"
#include "text/text.h"

#include <algorithm>
#include <set>

namespace repository_tools
{
namespace
{
constexpr char kAny[] = "*";

void addOnce(std::vector<std::string>& values, const std::string& value)
{
    if (std::find(values.begin(), values.end(), value) == values.end())
    {
        values.push_back(value);
    }
}

// The key of the first row with the code; a descriptor's systems were all found among the rows.
std::string systemName(const repository::OsEntry& system)
{
    const std::vector<PlatformName>& rows = OsNames();
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&system](const PlatformName& name) { return name.code == system.code; });
    const std::string key = row == rows.end() ? std::to_string(system.code) : row->key;
    return system.minorVersion.empty() ? key : key + "." + system.minorVersion;
}

ListedPackage listed(const repository::Package& package)
{
    ListedPackage result;
    result.updateId = package.info.updateId;
    result.type = repository::typeName(package.info.type);
    if (package.appliesTo.anyMachineType)
    {
        result.machineTypes.push_back(kAny);
    }
    for (const std::string& machineType : package.appliesTo.machineTypes)
    {
        addOnce(result.machineTypes, machineType);
    }
    if (package.appliesTo.anyOs)
    {
        result.systems.push_back(kAny);
    }
    for (const repository::OsEntry& system : package.appliesTo.systems)
    {
        addOnce(result.systems, systemName(system));
    }
    for (const service::PackageChild& child : package.info.children)
    {
        addOnce(result.newVersions, child.newVersion);
    }
    return result;
}
} // namespace

KorvanResult ListRepository(const std::string& directory, Listing& listing)
{
    listing = Listing();
    std::size_t left = 0;
    std::set<std::string> seen;
    const auto take = [&](const std::string& file, repository::Descriptor&& descriptor)
    {
        const bool package = descriptor.kind == repository::DescriptorKind::Package;
        if (descriptor.kind == repository::DescriptorKind::Broken ||
            (package && !seen.insert(descriptor.package.info.updateId).second))
        {
            listing.skippedFiles.push_back(file);
        }
        else if (package)
        {
            listing.packages.push_back(listed(descriptor.package));
        }
    };
    return repository::walk(repository::walkPath(directory), take, left);
}
} // namespace repository_tools
