#pragma once

#include <set>
#include <string>

namespace connect
{
// What the firmware tells of the machine (DMTF DSP0134, System Management BIOS). Empty: not told.
struct MachineDescription
{
    std::string biosVendor;
    std::string biosVersion;
    std::string biosDate; // "07/24/2026", as it stands there
    std::string productName;
    std::string productVersion;
    std::string productSku;
    std::string productFamily;
    std::string boardName;
};

// Reads the structure table, without an entry point in front. What is cut off or points outside is left out. The first
// structure of each type counts.
MachineDescription readSmbios(const std::string& table);

// Structure types that say that a management controller is there (sections 7.39 and 7.43).
constexpr unsigned kSmbiosIpmiDevice = 38;
constexpr unsigned kSmbiosControllerInterface = 42;

// The types of the structures before the end of the table, or before the first that is cut off.
std::set<unsigned> smbiosTypes(const std::string& table);

// True when one of them says that a management controller is there.
bool tellsOfController(const std::string& table);

// That date to "2026-07-24"; empty when it is none.
std::string isoDateOfBios(const std::string& date);
} // namespace connect
