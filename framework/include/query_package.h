#pragma once

#include "korvan_framework_export.h"

#include <cstdint>
#include <string>
#include <vector>

namespace XModule
{
// An operating system that packages are asked for. Codes: os_names.h.
struct OSInfo
{
    OSInfo(std::uint32_t osCode, std::uint32_t archCode, const std::string& minor)
        : osType(osCode), osArch(archCode), minorVersion(minor)
    {
    }

    std::uint32_t osType;
    std::uint32_t osArch;
    std::string minorVersion;
};

// Asks the repository about one platform before the query itself runs.
class KORVAN_FRAMEWORK_EXPORT QueryPackage
{
  public:
    QueryPackage();

    void SetPlatform(const std::vector<OSInfo>& systems, const std::string& machineType);

    // True when the directory holds an update pack ("Velpak") for the platform. Throws std::runtime_error, with the
    // directory's name, when the directory cannot be read.
    bool CheckIsVelpakSupport(const std::string& directory) const;

  private:
    std::vector<OSInfo> systems_;
    std::string machineType_;
};
} // namespace XModule
