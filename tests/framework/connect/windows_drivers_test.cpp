#include "connect/windows_drivers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using connect::DeviceDriver;
using connect::driverItems;
using service::ScanItem;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
// "driver version" of each item.
std::vector<std::string> drivers(const std::vector<DeviceDriver>& devices)
{
    std::vector<std::string> result;
    for (const ScanItem& item : driverItems(devices))
    {
        result.push_back(item.softwareId + " " + item.version);
    }
    return result;
}
} // namespace

TEST(WindowsDrivers, AreItemsOfEveryKindOfHardware)
{
    const std::vector<ScanItem> items = driverItems({{"KNic10", "PCI", "Net", "Kestrel", "4.1.7.0"},
                                                     {"kraid", "PCI", "SCSIAdapter", "Kestrel", "7.2.0.1"},
                                                     {"kdisplay", "PCI", "Display", "Kestrel", "31.0.1.2"},
                                                     {"kserial", "USB", "Ports", "Kestrel", "2.12.36.4"},
                                                     {"kchan", "VMBUS", "System", "Kestrel", "1.0.0.3"}});
    ASSERT_EQ(items.size(), 5U);
    const ScanItem& network = items[2];
    EXPECT_EQ(network.id, "driver-knic10");
    EXPECT_EQ(network.name, "knic10 network driver");
    EXPECT_EQ(network.softwareId, "knic10");
    EXPECT_EQ(network.version, "4.1.7.0");
    EXPECT_EQ(network.category, "Driver");
    EXPECT_EQ(network.classification, "Network");
    const ScanItem& storage = items[3];
    EXPECT_EQ(storage.name, "kraid driver");
    EXPECT_EQ(storage.category, "Driver");
    EXPECT_EQ(storage.classification, "");
}

TEST(WindowsDrivers, LeaveOutWhatTheSystemMakesItself)
{
    EXPECT_THAT(drivers({{"vpn", "ROOT", "Net", "Kestrel", "1.0"},
                         {"switch", "SWD", "Net", "Microsoft", "10.0.20348.1"},
                         {"bridge", "Sw", "Net", "Kestrel", "1.0"},
                         {"volume", "STORAGE", "Volume", "Kestrel", "1.0"},
                         {"nobody", "", "Net", "Kestrel", "1.0"},
                         {"", "PCI", "Net", "Kestrel", "1.0"}}),
                IsEmpty());
}

TEST(WindowsDrivers, OfTheSystemCountForNetworkAndStorageAlone)
{
    EXPECT_THAT(drivers({{"pci", "ACPI", "System", "Microsoft", "10.0.20348.1"},
                         {"usbhub3", "USB", "USB", "Microsoft", "10.0.20348.1"},
                         {"stornvme", "PCI", "SCSIAdapter", "Microsoft", "10.0.20348.2"},
                         {"atadisk", "PCI", "hdc", "Microsoft", "10.0.20348.3"},
                         {"netvsc", "VMBUS", "Net", "Microsoft", "10.0.20348.4"},
                         {"kdisplay", "PCI", "Display", "Kestrel", ""}}),
                ElementsAre("atadisk 10.0.20348.3", "netvsc 10.0.20348.4", "stornvme 10.0.20348.2"));
}

TEST(WindowsDrivers, OfSeveralDevicesAreOneItemWithTheNewestVersion)
{
    EXPECT_THAT(drivers({{"knic10", "PCI", "Net", "Kestrel", "4.9.0.0"},
                         {"KNIC10", "PCI", "Net", "Kestrel", "4.10.0.0"},
                         {"knic10", "PCI", "Net", "Kestrel", "4.1.7.0"},
                         {"knic10", "PCI", "Net", "Kestrel", ""},
                         {"kraid", "PCI", "SCSIAdapter", "Kestrel", ""},
                         {"kraid", "PCI", "SCSIAdapter", "Kestrel", "7.2.0.1"}}),
                ElementsAre("knic10 4.10.0.0", "kraid 7.2.0.1"));
}
