#pragma once

#include "service/update_scan.h"

#include <string>
#include <vector>

// What the user's options ask of a scan beyond reading the target.
namespace update_services
{
// Keeps what sits in the one I/O bay that `option.ioBay` names: of a chassis (kinds "cmm" and "smm") the items whose slot
// has this number. 0 and less keep all; so do other kinds of targets, which is logged at level 2 with `target`.
void narrowToBay(const UpdateScanOption& option, const std::string& target, std::vector<service::ScanItem>& items);

// With `option.checkDevice` names at level 2 the items that say that they cannot be updated; a comparison refuses them.
void nameFixedDevices(const UpdateScanOption& option, const std::string& target,
                      const std::vector<service::ScanItem>& items);

// Says at level 2 that a machine type that was scanned stands in the list of legacy systems, for targets whose machine type
// could not be asked for before; not with `option.useTarn`, which says that no target is one. `listPath`: the list.
void warnOfLegacySystem(const UpdateScanOption& option, const std::string& target, const std::string& machineType,
                        const std::string& listPath);
} // namespace update_services
