#pragma once

#include "service/update_scan.h"

#include <string>

// Items of the local machine's inventory that every operating system's reading makes alike (docs/local.md). The machine type
// must be in the report already.
namespace connect
{
// The machine's own firmware; nothing without a version. `date` as SMBIOS has it ("07/24/2026").
void addSystemFirmware(const std::string& vendor, const std::string& version, const std::string& date,
                       service::UpdateScanReport& report);

// The management controller; `version` may be empty.
void addManagementController(const std::string& version, service::UpdateScanReport& report);

service::ScanItem driverItem(const std::string& driver, const std::string& version);

// Makes the item that of a network adapter's driver.
void markNetworkDriver(service::ScanItem& item);
} // namespace connect
