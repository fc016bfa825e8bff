#pragma once

#include "service/update_scan.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace redfish
{
enum class InventoryKind
{
    Firmware,
    Software,
};

// One member of an inventory, before those that stand for the same thing are sorted out.
struct InventoryEntry
{
    service::ScanItem item;
    std::string bank;                 // "installed", "current", "previous", or empty: Id has no such prefix
    std::string component;            // what the banks of one component have in common
    std::vector<std::string> related; // links of RelatedItem, with their fragments
};

// Reads a SoftwareInventory resource (DMTF schema SoftwareInventory). False when it has nothing to be known by.
//
// Its identity (softwareId) is SoftwareId when that is neither empty nor "0", else its Id without a prefix
// "Installed-", "Current-" or "Previous-" and without a version in front of "__", else its Name. Fillers in Version
// ("N/A", "ff", "undefined") and ReleaseDate ("00:00:00Z") become empty. An item whose Status.State is StandbySpare is
// a backup bank. Firmware keeps the category "Firmware"; an item of a software collection is a "Driver" when its Id or
// Name says so, else "Software".
bool readInventoryItem(const nlohmann::json& resource, InventoryKind kind, InventoryEntry& entry);

// Keeps what is installed: of the banks of one component the installed one, or the current one when there is no
// installed one, never a previous one; and each of several identical items once.
std::vector<InventoryEntry> installedOnly(const std::vector<InventoryEntry>& entries);
} // namespace redfish
