#include "repository/applicability.h"

#include "text/text.h"

#include <algorithm>

namespace repository
{
namespace
{
constexpr std::uint32_t kNotStated = static_cast<std::uint32_t>(-1);
constexpr std::uint32_t kNoArch = 0;
} // namespace

bool Applicability::fitsMachineType(const std::string& machineType) const
{
    return anyMachineType || std::find(machineTypes.begin(), machineTypes.end(),
                                       text::toUpper(text::trim(machineType))) != machineTypes.end();
}

bool Applicability::fitsOs(const System& system) const
{
    if (anyOs)
    {
        return true;
    }
    return std::any_of(systems.begin(), systems.end(),
                       [&system](const OsEntry& entry)
                       {
                           return entry.code == system.os &&
                                  (entry.minorVersion.empty() || system.minorVersion.empty() ||
                                   entry.minorVersion == system.minorVersion);
                       });
}

bool Applicability::fitsArch(const System& system) const
{
    if (anyArch || system.arch == kNotStated || system.arch == kNoArch)
    {
        return true;
    }
    return std::any_of(archCodes.begin(), archCodes.end(),
                       [&system](std::uint32_t code) { return code == system.arch || code == kNoArch; });
}
} // namespace repository
