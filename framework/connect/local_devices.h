#pragma once

#include "connect/network_driver.h"
#include "connect/system_tree.h"
#include "service/update_scan.h"

#include <functional>
#include <string>

// Parts of the local machine's inventory, each added to the report as items. How an item's software id is formed is
// described in docs/local.md.
namespace connect
{
// The machine's own management controller, with its firmware as the kernel's IPMI driver tells it. The machine type must be
// in the report already.
void addController(const SystemTree& tree, service::UpdateScanReport& report);

// The firmware of NVMe disks and of other disks that tell one. Virtual and removable disks are left out.
void addDisks(const SystemTree& tree, service::UpdateScanReport& report);

// False when the interface cannot be asked.
using AskNetworkDriver = std::function<bool(const std::string& interface, network_driver::Facts& facts)>;

// The firmware of network adapters, one item for a device whatever its number of ports, and all loaded drivers that have a
// version; those of network adapters also without one.
void addAdaptersAndDrivers(const SystemTree& tree, const AskNetworkDriver& ask, service::UpdateScanReport& report);

// The number of the slot that a PCI device ("0000:3b:00.0") stands in; empty when the firmware does not tell.
std::string pciSlot(const SystemTree& tree, const std::string& device);

// A piece of a software id: capital letters, digits, dots, and hyphens for everything else.
std::string idPiece(const std::string& value);
} // namespace connect
