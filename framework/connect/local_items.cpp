#include "connect/local_items.h"

#include "connect/smbios.h"

namespace connect
{
namespace
{
service::ScanItem boardItem(const std::string& softwareId, const std::string& machineType)
{
    service::ScanItem item;
    item.softwareId = machineType.empty() ? softwareId : softwareId + "-" + machineType;
    item.category = "Firmware";
    item.classification = softwareId;
    item.slotType = "0";
    item.slotNumber = "0";
    return item;
}
} // namespace

void addSystemFirmware(const std::string& vendor, const std::string& version, const std::string& date,
                       service::UpdateScanReport& report)
{
    if (version.empty())
    {
        return;
    }
    service::ScanItem item = boardItem("UEFI", report.GetMT());
    item.id = "bios";
    item.name = "System firmware (UEFI)";
    item.version = version;
    item.manufacturer = vendor;
    item.releaseDate = isoDateOfBios(date);
    report.AddScanResult(item);
}

void addManagementController(const std::string& version, service::UpdateScanReport& report)
{
    service::ScanItem item = boardItem("BMC", report.GetMT());
    item.id = "bmc";
    item.name = "Management controller";
    item.version = version;
    report.AddScanResult(item);
}

service::ScanItem driverItem(const std::string& driver, const std::string& version)
{
    service::ScanItem item;
    item.id = "driver-" + driver;
    item.name = driver + " driver";
    item.softwareId = driver;
    item.version = version;
    item.category = "Driver";
    return item;
}

void markNetworkDriver(service::ScanItem& item)
{
    item.name = item.softwareId + " network driver";
    item.classification = "Network";
}
} // namespace connect
