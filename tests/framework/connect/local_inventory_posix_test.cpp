#include "connect/local_inventory.h"

#include "connect/os_release.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

using connect::readOsRelease;

TEST(OsRelease, IsAKeyOfTheKnownSystems)
{
    EXPECT_EQ("rhel9", readOsRelease("ID=\"rhel\"\nVERSION_ID=\"9.4\"\n").key);
    EXPECT_EQ("4", readOsRelease("ID=\"rhel\"\nVERSION_ID=\"9.4\"\n").minorVersion);
    EXPECT_EQ("sles15", readOsRelease("ID='sles'\nVERSION_ID='15.5'\n").key);
    EXPECT_EQ("debian", readOsRelease("# a comment=1\nID=debian\nVERSION_ID=\"12\"\n").key);
    EXPECT_EQ("", readOsRelease("ID=debian\nVERSION_ID=\"12\"\n").minorVersion);
    EXPECT_EQ("ubuntu", readOsRelease("ID=ubuntu\nID_LIKE=debian\nVERSION_ID=24.04").key);
    EXPECT_EQ("rhel8", readOsRelease("ID=other\nID_LIKE=\"rhel fedora\"\nVERSION_ID=8.9").key);
    EXPECT_EQ("", readOsRelease("ID=other\n").key);
    EXPECT_EQ("", readOsRelease("").key);
}

TEST(LocalInventory, ReadsMachineTypeFirmwareSystemAndDrivers)
{
    const test_support::ScratchFolder root;
    root.write("sys/class/dmi/id/product_sku", "To be filled by O.E.M.\n");
    root.write("sys/class/dmi/id/product_name", "Halvorsen H2 -[7X20]-\n");
    root.write("sys/class/dmi/id/bios_version", "HVE128K \n");
    root.write("sys/class/dmi/id/bios_vendor", "Halvorsen\n");
    root.write("sys/class/dmi/id/bios_date", "07/24/2025\n");
    root.write("etc/os-release", "ID=rhel\nVERSION_ID=\"8.6\"\n");
    root.write("sys/module/nic_2510/version", "23.10-1.1.9\n");
    root.write("sys/bus/drivers/nic-2510/bind", "");
    root.write("sys/class/net/eth0/device/vendor", "0x1234\n");
    root.write("sys/class/net/lo/address", "\n");
    std::filesystem::create_symlink(root.path() + "/sys/bus/drivers/nic-2510",
                                    root.path() + "/sys/class/net/eth0/device/driver");

    service::UpdateScanReport report;
    EXPECT_TRUE(connect::readLocalInventory(root.path(), report).succeeded());
    EXPECT_EQ("7X20", report.GetMT());
    EXPECT_EQ("rhel8", report.GetOS());
    EXPECT_EQ("6", report.GetOSMinorVersion());
    ASSERT_EQ(2U, report.GetScanResults().size());
    const service::ScanItem& bios = report.GetScanResults()[0];
    EXPECT_EQ("UEFI-7X20", bios.softwareId);
    EXPECT_EQ("HVE128K", bios.version);
    EXPECT_EQ("2025-07-24", bios.releaseDate);
    const service::ScanItem& driver = report.GetScanResults()[1];
    EXPECT_EQ("nic-2510", driver.softwareId);
    EXPECT_EQ("23.10-1.1.9", driver.version);
    EXPECT_EQ("Driver", driver.category);
}

TEST(LocalInventory, LeavesEmptyWhatCannotBeRead)
{
    const test_support::ScratchFolder root;
    service::UpdateScanReport report;
    EXPECT_TRUE(connect::readLocalInventory(root.path(), report).succeeded());
    EXPECT_EQ("", report.GetMT());
    EXPECT_EQ("", report.GetOS());
    EXPECT_TRUE(report.GetScanResults().empty());
}
