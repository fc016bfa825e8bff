#include "connect/local_inventory.h"

#include "connect/present_devices_win32.h"
#include "connect/smbios.h"
#include "framework/connect/smbios_fixture.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

TEST(LocalInventory, ReadsMachineTypeFirmwareSystemAndArchitecture)
{
    const test_support::ScratchFolder root;
    root.write("smbios", smbios_fixture::structure(38, 0x12, {}) + smbios_fixture::machine());
    service::UpdateScanReport report;
    EXPECT_TRUE(connect::readLocalInventory(root.path(), report).succeeded());
    EXPECT_EQ("7X20", report.GetMT());
    EXPECT_EQ("win", report.GetOS().substr(0, 3));
    EXPECT_EQ("x64", report.GetArch());
    ASSERT_EQ(2U, report.GetScanResults().size());
    const service::ScanItem& bios = report.GetScanResults()[0];
    EXPECT_EQ("UEFI-7X20", bios.softwareId);
    EXPECT_EQ("HVE128K", bios.version);
    EXPECT_EQ("Halvorsen", bios.manufacturer);
    EXPECT_EQ("2025-07-24", bios.releaseDate);
    const service::ScanItem& controller = report.GetScanResults()[1];
    EXPECT_EQ("BMC-7X20", controller.softwareId);
    EXPECT_EQ("", controller.version);
    EXPECT_EQ("BMC", controller.classification);
}

// What the system's call gives, taken apart; a virtual machine may tell little.
TEST(LocalInventory, ReadsTheRealFirmwaresTables)
{
    constexpr DWORD kProvider = 0x52534D42;
    constexpr std::size_t kHeader = 8;
    std::string raw(::GetSystemFirmwareTable(kProvider, 0, nullptr, 0), '\0');
    ASSERT_GT(raw.size(), kHeader);
    ::GetSystemFirmwareTable(kProvider, 0, raw.data(), static_cast<DWORD>(raw.size()));
    const std::string version = connect::readSmbios(raw.substr(kHeader)).biosVersion;
    service::UpdateScanReport report;
    EXPECT_TRUE(connect::readLocalInventory("", report).succeeded());
    const std::vector<service::ScanItem>& items = report.GetScanResults();
    EXPECT_EQ(version, items.empty() || items[0].id != "bios" ? "" : items[0].version);
}

TEST(LocalInventory, LeavesEmptyWhatCannotBeRead)
{
    const test_support::ScratchFolder root;
    service::UpdateScanReport report;
    EXPECT_TRUE(connect::readLocalInventory(root.path(), report).succeeded());
    EXPECT_EQ("", report.GetMT());
    EXPECT_TRUE(report.GetScanResults().empty());
}

// Every system has devices that it makes itself.
TEST(PresentDevices, HaveTheirBusAndTheServiceOfTheirDriver)
{
    bool made = false;
    for (const connect::DeviceDriver& device : connect::presentDevices())
    {
        EXPECT_NE("", device.service);
        EXPECT_EQ(std::string::npos, device.bus.find('\\')) << device.bus;
        made = made || device.bus == "ROOT";
    }
    EXPECT_TRUE(made);
}
