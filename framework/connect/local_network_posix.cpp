#include "connect/local_devices.h"
#include "connect/local_items.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <algorithm>
#include <map>
#include <set>

namespace connect
{
namespace
{
constexpr char kSource[] = "framework/connect/local_network";
constexpr char kNetwork[] = "/sys/class/net/";
constexpr char kModules[] = "/sys/module/";
constexpr char kSlots[] = "/sys/bus/pci/slots/";

// One adapter's interface, as far as a physical device stands behind it.
struct Port
{
    std::string interface;
    std::string driver;
    std::string device; // the device's name on its bus, "0000:3b:00.0"
    network_driver::Facts told;
};

std::vector<Port> readPorts(const SystemTree& tree, const AskNetworkDriver& ask)
{
    std::vector<Port> ports;
    for (const std::string& interface : tree.names(kNetwork))
    {
        const std::string device = kNetwork + interface + "/device";
        Port port;
        port.interface = interface;
        port.driver = tree.linkName(device + "/driver");
        port.device = tree.linkName(device);
        if (port.driver.empty())
        {
            continue;
        }
        if (!ask(interface, port.told))
        {
            KORVAN_LOG(2, kSource) << "localhost: the driver of "
                                   << interface << " cannot be asked; its firmware version stays unknown";
        }
        ports.push_back(port);
    }
    return ports;
}

// "0x15b3" to "15B3"; empty when it is no such number.
std::string pciNumber(const std::string& value)
{
    const bool hexadecimal = text::startsWith(value, "0x") && value.size() == 6 &&
                             value.find_first_not_of("0123456789abcdef", 2) == std::string::npos;
    return hexadecimal ? text::toUpper(value.substr(2)) : std::string();
}

// "PCI-VVVV-DDDD-SSSS-SSSS"; empty for a device that is not on PCI, such as a virtual one.
std::string pciIdentity(const SystemTree& tree, const std::string& folder)
{
    std::string identity = "PCI";
    for (const char* name : {"vendor", "device", "subsystem_vendor", "subsystem_device"})
    {
        const std::string number = pciNumber(tree.optionalAttribute(folder + name));
        if (number.empty())
        {
            return std::string();
        }
        identity += "-" + number;
    }
    return identity;
}

std::string withoutFunction(const std::string& device)
{
    return device.substr(0, device.find('.'));
}

void addAdapters(const SystemTree& tree, const std::vector<Port>& ports, service::UpdateScanReport& report)
{
    std::set<std::string> seen;
    for (const Port& port : ports)
    {
        const std::string identity = pciIdentity(tree, kNetwork + port.interface + "/device/");
        const bool known = !port.device.empty() && !seen.insert(withoutFunction(port.device) + identity).second;
        if (identity.empty() || known)
        {
            continue;
        }
        service::ScanItem item;
        item.id = "nic-" + port.interface;
        item.name = "Network adapter of " + port.interface;
        item.softwareId = identity;
        item.version = port.told.firmware;
        item.category = "Firmware";
        item.classification = "Network";
        item.slotNumber = pciSlot(tree, port.device);
        item.slotType = item.slotNumber.empty() ? "" : "1";
        report.AddScanResult(item);
    }
}

std::string moduleOf(const std::string& driver)
{
    std::string module = driver;
    std::replace(module.begin(), module.end(), '-', '_');
    return module;
}

// Modules that drive something have a folder with their drivers; others, such as protocols, are part of the system.
bool drivesSomething(const SystemTree& tree, const std::string& module)
{
    return !tree.names(kModules + module + "/drivers").empty();
}

void addDrivers(const SystemTree& tree, const std::vector<Port>& ports, service::UpdateScanReport& report)
{
    std::map<std::string, service::ScanItem> drivers; // by module
    for (const Port& port : ports)
    {
        const std::string module = moduleOf(port.driver);
        if (drivers.count(module) != 0)
        {
            continue;
        }
        const std::string version = tree.optionalAttribute(kModules + module + "/version");
        service::ScanItem item = driverItem(port.driver, version.empty() ? port.told.version : version);
        markNetworkDriver(item);
        if (item.version.empty())
        {
            KORVAN_LOG(2, kSource) << "localhost: the driver " << port.driver << " tells no version of its own";
        }
        drivers[module] = item;
    }
    for (const std::string& module : tree.names(kModules))
    {
        const std::string version =
            drivers.count(module) == 0 ? tree.optionalAttribute(kModules + module + "/version") : std::string();
        if (!version.empty() && drivesSomething(tree, module))
        {
            drivers[module] = driverItem(module, version);
        }
    }
    for (const auto& driver : drivers)
    {
        report.AddScanResult(driver.second);
    }
}
} // namespace

void addAdaptersAndDrivers(const SystemTree& tree, const AskNetworkDriver& ask, service::UpdateScanReport& report)
{
    const std::vector<Port> ports = readPorts(tree, ask);
    addAdapters(tree, ports, report);
    addDrivers(tree, ports, report);
}

std::string pciSlot(const SystemTree& tree, const std::string& device)
{
    if (device.empty())
    {
        return std::string();
    }
    for (const std::string& slot : tree.names(kSlots))
    {
        const bool number = slot.find_first_not_of("0123456789") == std::string::npos;
        if (number && tree.optionalAttribute(kSlots + slot + "/address") == withoutFunction(device))
        {
            return slot;
        }
    }
    return std::string();
}

std::string idPiece(const std::string& value)
{
    std::string piece;
    for (const char character : text::toUpper(text::trim(value)))
    {
        const bool plain =
            (character >= 'A' && character <= 'Z') || (character >= '0' && character <= '9') || character == '.';
        if (plain)
        {
            piece += character;
        }
        else if (!piece.empty() && piece.back() != '-')
        {
            piece += '-';
        }
    }
    return !piece.empty() && piece.back() == '-' ? piece.substr(0, piece.size() - 1) : piece;
}
} // namespace connect
