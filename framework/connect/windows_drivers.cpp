#include "connect/windows_drivers.h"

#include "connect/local_items.h"
#include "repository/version.h"
#include "text/text.h"

#include <algorithm>
#include <array>
#include <map>

namespace connect
{
namespace
{
template <std::size_t size>
bool isOneOf(const std::string& value, const std::array<const char*, size>& names)
{
    const std::string lower = text::toLower(value);
    return std::any_of(names.begin(), names.end(), [&lower](const char* name) { return lower == name; });
}

// Enumerators of devices without hardware of their own.
bool isMadeBySystem(const std::string& bus)
{
    return bus.empty() || isOneOf(bus, std::array<const char*, 5>{"root", "htree", "sw", "swd", "storage"});
}

bool isNetwork(const DeviceDriver& device)
{
    return text::toLower(device.deviceClass) == "net";
}

bool isStorage(const DeviceDriver& device)
{
    return isOneOf(device.deviceClass, std::array<const char*, 2>{"scsiadapter", "hdc"});
}

bool counts(const DeviceDriver& device)
{
    const bool systemsOwn = device.version.empty() || text::toLower(device.provider) == "microsoft";
    return !device.service.empty() && !isMadeBySystem(device.bus) &&
           (isNetwork(device) || isStorage(device) || !systemsOwn);
}

bool isNewer(const std::string& version, const std::string& than)
{
    return than.empty() || repository::compareVersions(version, than, repository::VersionStyle::Decimal) ==
                               repository::VersionOrder::Newer;
}
} // namespace

std::vector<service::ScanItem> driverItems(const std::vector<DeviceDriver>& devices)
{
    std::map<std::string, service::ScanItem> drivers;
    for (const DeviceDriver& device : devices)
    {
        if (!counts(device))
        {
            continue;
        }
        const std::string name = text::toLower(device.service);
        service::ScanItem& item = drivers.emplace(name, driverItem(name, device.version)).first->second;
        if (isNewer(device.version, item.version))
        {
            item.version = device.version;
        }
        if (isNetwork(device))
        {
            markNetworkDriver(item);
        }
    }
    std::vector<service::ScanItem> items;
    for (const auto& driver : drivers)
    {
        items.push_back(driver.second);
    }
    return items;
}
} // namespace connect
