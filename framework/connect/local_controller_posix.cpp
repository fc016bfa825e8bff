#include "connect/local_devices.h"
#include "connect/local_items.h"
#include "connect/smbios.h"
#include "text/text.h"
#include "xmodule_log.h"

namespace connect
{
namespace
{
constexpr char kSource[] = "framework/connect/local_controller";
constexpr char kPlatformDevices[] = "/sys/bus/platform/devices";
constexpr char kDmiEntries[] = "/sys/firmware/dmi/entries";
constexpr char kDmiTable[] = "/sys/firmware/dmi/tables/DMI";
constexpr std::size_t kLargestTable = std::size_t{1024} * 1024;

std::string bmcDevice(const SystemTree& tree)
{
    for (const std::string& name : tree.names(kPlatformDevices))
    {
        if (text::startsWith(name, "ipmi_bmc"))
        {
            return std::string(kPlatformDevices) + "/" + name + "/";
        }
    }
    return std::string();
}

// Names of the entries ("38-0") are there for everybody, the table itself only for root.
bool smbiosHasController(const SystemTree& tree)
{
    for (const std::string& name : tree.names(kDmiEntries))
    {
        if (text::startsWith(name, std::to_string(kSmbiosIpmiDevice) + "-") ||
            text::startsWith(name, std::to_string(kSmbiosControllerInterface) + "-"))
        {
            return true;
        }
    }
    return tellsOfController(tree.content(kDmiTable, kLargestTable));
}
} // namespace

void addController(const SystemTree& tree, service::UpdateScanReport& report)
{
    const std::string device = bmcDevice(tree);
    if (device.empty() && !smbiosHasController(tree))
    {
        KORVAN_LOG(3, kSource) << "localhost: no management controller is seen from here";
        return;
    }
    if (device.empty())
    {
        KORVAN_LOG(2, kSource)
            << "localhost: the firmware version of the management controller stays unknown; load the "
               "kernel's IPMI driver (ipmi_si)";
    }
    addManagementController(device.empty() ? std::string() : tree.attribute(device + "firmware_revision"), report);
}
} // namespace connect
