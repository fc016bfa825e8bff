#pragma once

#include "service/update_scan.h"

#include <string>
#include <vector>

// The drivers of a Windows system as items of its inventory (docs/local.md).
namespace connect
{
// What the system tells of one device that is there, in its own words; empty where it does not.
struct DeviceDriver
{
    std::string service;     // the driver's name among the system's services
    std::string bus;         // who found the device: "PCI", "USB", "VMBUS"
    std::string deviceClass; // "Net", "SCSIAdapter"
    std::string provider;    // of the driver
    std::string version;
};

// One item for each driver, by name, whatever its number of devices; of several versions the newest. Left out are devices
// that the system makes itself, and the system's own drivers, whose version is the system's; of network and storage devices
// these are items too.
std::vector<service::ScanItem> driverItems(const std::vector<DeviceDriver>& devices);
} // namespace connect
