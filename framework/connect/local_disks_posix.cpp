#include "connect/local_devices.h"
#include "text/text.h"
#include "xmodule_log.h"

namespace connect
{
namespace
{
constexpr char kSource[] = "framework/connect/local_disks";
constexpr char kNvme[] = "/sys/class/nvme/";
constexpr char kBlock[] = "/sys/block/";

service::ScanItem disk(const std::string& id, const std::string& prefix, const std::string& model,
                       const std::string& version)
{
    service::ScanItem item;
    item.id = id;
    item.name = model;
    item.softwareId = prefix + idPiece(model);
    item.version = version;
    item.category = "Firmware";
    item.classification = "Disk";
    return item;
}

void addNvme(const SystemTree& tree, service::UpdateScanReport& report)
{
    for (const std::string& name : tree.names(kNvme))
    {
        const std::string folder = kNvme + name + "/";
        const std::string model = tree.attribute(folder + "model");
        if (model.empty())
        {
            continue;
        }
        service::ScanItem item = disk(name, "NVME-", model, tree.attribute(folder + "firmware_rev"));
        item.slotNumber = pciSlot(tree, tree.linkName(folder + "device"));
        item.slotType = item.slotNumber.empty() ? "" : "1";
        report.AddScanResult(item);
    }
}

// SCSI gives the first 16 characters of a model and a revision of 4 (INQUIRY, SPC-4, section 6.6.2); behind ATA they are
// what is left of the disk's own texts.
void addBlockDevices(const SystemTree& tree, service::UpdateScanReport& report)
{
    for (const std::string& name : tree.names(kBlock))
    {
        const std::string folder = kBlock + name + "/";
        const std::string version = tree.optionalAttribute(folder + "device/rev");
        const std::string model = tree.optionalAttribute(folder + "device/model");
        if (version.empty() || model.empty() || tree.optionalAttribute(folder + "removable") == "1")
        {
            KORVAN_LOG(4, kSource) << "localhost: " << folder << " is no disk with firmware of its own";
            continue;
        }
        service::ScanItem item = disk(name, "DISK-", model, version);
        const std::string vendor = tree.optionalAttribute(folder + "device/vendor");
        item.manufacturer = vendor == "ATA" ? std::string() : vendor; // the name of the interface, not of a maker
        report.AddScanResult(item);
    }
}
} // namespace

void addDisks(const SystemTree& tree, service::UpdateScanReport& report)
{
    addNvme(tree, report);
    addBlockDevices(tree, report);
}
} // namespace connect
