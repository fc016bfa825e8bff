#pragma once

#include "korvan_result.h"
#include "service/update_scan.h"

#include <string>

namespace connect
{
// Reads the system that the program runs on into the report: machine type, operating system, architecture, and as items
// the firmware of the machine, its management controller, disks and network adapters, and drivers with their versions
// (docs/local.md). No rights beyond those of any user are needed. What cannot be read stays empty and is logged at level
// 2. Code 25 where
// this operating system is not supported, else 0.
//
// `root` stands in front of every path that is read ("/sys/class/dmi/id"); empty for the real system.
KorvanResult readLocalInventory(const std::string& root, service::UpdateScanReport& report);
} // namespace connect
