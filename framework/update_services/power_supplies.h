#pragma once

#include "service/update_compare.h"
#include "update_services/child_comparison.h"

#include <string>
#include <vector>

// Power supplies and how --psu names them.
namespace update_services
{
bool isPsu(const service::PackageInfo& package, const service::PackageChild& update, const service::ScanItem& item);

// Whether the options take this power supply: by its slot's number, its name or its inventory id.
bool psuNamed(const service::CompareOptions& options, const service::ScanItem& item);

// What --psu names and the target does not have. What a power supply is, both inventory and packages say. Empty for an
// empty inventory, which knows of no device at all.
std::vector<std::string> unknownPsus(const std::vector<service::PackageInfo>& packages,
                                     const service::UpdateScanReport& scan, const InstalledItems& installed,
                                     const service::CompareOptions& options);
} // namespace update_services
