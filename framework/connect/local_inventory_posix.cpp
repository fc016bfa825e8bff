#include "connect/local_inventory.h"

#include "connect/local_devices.h"
#include "connect/os_release.h"
#include "connect/system_tree.h"
#include "redfish/machine_type.h"
#include "xmodule_log.h"

#include <sys/utsname.h>
#include <vector>

namespace connect
{
namespace
{
constexpr char kSource[] = "framework/connect/local_inventory";
constexpr char kDmi[] = "/sys/class/dmi/id/";
constexpr std::size_t kLargestOsRelease = 65536;

// "07/24/2026", as SMBIOS has it (DMTF DSP0134, BIOS Information), to "2026-07-24".
std::string isoDate(const std::string& date)
{
    const bool american = date.size() == 10 && date[2] == '/' && date[5] == '/';
    return american ? date.substr(6) + "-" + date.substr(0, 2) + "-" + date.substr(3, 2) : std::string();
}

void readMachine(const SystemTree& tree, service::UpdateScanReport& report)
{
    std::vector<std::string> candidates;
    for (const char* name : {"product_sku", "product_name", "product_family", "product_version", "board_name"})
    {
        candidates.push_back(tree.attribute(std::string(kDmi) + name));
    }
    report.SetMT(redfish::firstMachineType(candidates));
    if (report.GetMT().empty())
    {
        KORVAN_LOG(2, kSource) << "localhost: no machine type in " << kDmi << "; state it with --mt";
    }
}

void readBios(const SystemTree& tree, service::UpdateScanReport& report)
{
    const std::string version = tree.attribute(std::string(kDmi) + "bios_version");
    if (version.empty())
    {
        return;
    }
    service::ScanItem item;
    item.id = "bios";
    item.name = "System firmware (UEFI)";
    item.softwareId = report.GetMT().empty() ? "UEFI" : "UEFI-" + report.GetMT();
    item.version = version;
    item.category = "Firmware";
    item.classification = "UEFI";
    item.manufacturer = tree.attribute(std::string(kDmi) + "bios_vendor");
    item.releaseDate = isoDate(tree.attribute(std::string(kDmi) + "bios_date"));
    item.slotType = "0";
    item.slotNumber = "0";
    report.AddScanResult(item);
}

void readOperatingSystem(const SystemTree& tree, service::UpdateScanReport& report)
{
    std::string content;
    for (const char* name : {"/etc/os-release", "/usr/lib/os-release"})
    {
        content = tree.content(name, kLargestOsRelease);
        if (!content.empty())
        {
            break;
        }
    }
    const OsRelease release = readOsRelease(content);
    report.SetOS(release.key);
    report.SetOSMinorVersion(release.minorVersion);
    if (release.key.empty())
    {
        KORVAN_LOG(2, kSource) << "localhost: the operating system is not a known one; state it with --ostype";
    }
}

// The program's own word size says little on a 64-bit kernel; the kernel's machine name does.
void readArchitecture(service::UpdateScanReport& report)
{
    utsname names = {};
    const std::string machine = uname(&names) == 0 ? names.machine : "";
    const bool narrow = machine.size() == 4 && machine[0] == 'i' && machine.substr(2) == "86";
    report.SetArch(narrow ? "x32" : (machine.find("64") != std::string::npos ? "x64" : ""));
    if (report.GetArch().empty())
    {
        KORVAN_LOG(2, kSource) << "localhost: unknown architecture " << machine << "; state it with --osarch";
    }
}

} // namespace

KorvanResult readLocalInventory(const std::string& root, service::UpdateScanReport& report)
{
    const SystemTree tree(root);
    // Only this machine's own interfaces can be asked.
    const AskNetworkDriver ask = tree.real() ? AskNetworkDriver(network_driver::ask)
                                             : [](const std::string&, network_driver::Facts&) { return false; };
    readMachine(tree, report);
    readBios(tree, report);
    addController(tree, report);
    addDisks(tree, report);
    readOperatingSystem(tree, report);
    readArchitecture(report);
    addAdaptersAndDrivers(tree, ask, report);
    KORVAN_LOG(3, kSource) << "localhost: machine type \"" << report.GetMT() << "\", system \"" << report.GetOS()
                           << "\", " << report.GetScanResults().size() << " items";
    return KorvanResult();
}
} // namespace connect
