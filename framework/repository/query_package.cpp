#include "query_package.h"

#include "repository/repository.h"
#include "xmodule_log.h"

#include <stdexcept>

namespace XModule
{
QueryPackage::QueryPackage() = default;

void QueryPackage::SetPlatform(const std::vector<OSInfo>& systems, const std::string& machineType)
{
    systems_ = systems;
    machineType_ = machineType;
}

bool QueryPackage::CheckIsVelpakSupport(const std::string& directory) const
{
    std::string error;
    const auto repository = repository::Repository::open(directory, error);
    if (!repository)
    {
        throw std::runtime_error(directory + ": " + error);
    }
    std::vector<repository::System> systems;
    for (const OSInfo& info : systems_)
    {
        systems.push_back({info.osType, info.osArch, info.minorVersion});
    }
    const repository::Velpak* velpak = repository->findVelpak(systems, machineType_, false);
    if (velpak != nullptr)
    {
        KORVAN_LOG(3, "framework/repository/query_package")
            << "update pack " << velpak->file << " for " << machineType_;
    }
    return velpak != nullptr;
}
} // namespace XModule
