#include "connect/local_inventory.h"

#include "connect/local_devices.h"
#include "connect/local_items.h"
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
    addSystemFirmware(tree.attribute(std::string(kDmi) + "bios_vendor"),
                      tree.attribute(std::string(kDmi) + "bios_version"),
                      tree.attribute(std::string(kDmi) + "bios_date"), report);
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
