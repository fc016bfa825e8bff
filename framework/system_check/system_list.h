#pragma once

#include <set>
#include <string>

namespace system_check
{
// Names of the list files. Each holds one machine type a line; "#" begins a comment, blanks around it do not count.
constexpr char kTolmarList[] = "Tolmar_systems_list.txt";
constexpr char kCfcList[] = "CFC_systems_list.txt";

// The machine types of a list file, in capitals. A file that cannot be read, or is too large to be a list, counts as
// empty and is logged.
std::set<std::string> readSystemList(const std::string& path);

// Whether the list holds the machine type; letter case and blanks around it do not count, and an empty one is in none.
bool listHolds(const std::string& path, const std::string& machineType);
} // namespace system_check
