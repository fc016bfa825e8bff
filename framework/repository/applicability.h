#pragma once

#include <cstdint>
#include <string>
#include <vector>

// What a package or an update pack is meant for, and the platform that it is asked about. Values, without threads or
// failures.
namespace repository
{
// The code of os_names.h that stands for a target reached over its management controller alone.
constexpr std::uint32_t kPlatformOs = 402;

// One operating system and architecture that is asked about; codes of os_names.h, all bits set: not stated.
struct System
{
    std::uint32_t os = static_cast<std::uint32_t>(-1);
    std::uint32_t arch = static_cast<std::uint32_t>(-1);
    std::string minorVersion;
};

struct OsEntry
{
    std::uint32_t code = 0;
    std::string minorVersion; // empty: any
};

struct Applicability
{
    bool anyMachineType = false;
    bool anyOs = false;
    bool anyArch = false;
    std::vector<std::string> machineTypes; // upper case
    std::vector<OsEntry> systems;
    std::vector<std::uint32_t> archCodes;

    // Letter case is folded.
    bool fitsMachineType(const std::string& machineType) const;
    bool fitsOs(const System& system) const;

    // A target that states no architecture, or "none", takes packages of every architecture.
    bool fitsArch(const System& system) const;
};
} // namespace repository
