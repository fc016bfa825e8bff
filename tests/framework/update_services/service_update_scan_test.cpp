#include "service/update_scan.h"

#include "framework/redfish/simulated_controller.h"
#include "interrupt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using service::ScanItem;
using service::ServiceUpdateScan;
using service::UpdateScanReport;
using testing::HasSubstr;

namespace
{
class ServiceUpdateScanTest : public testing::Test
{
  protected:
    ServiceUpdateScanTest() { interrupt::reset(); }

    KorvanResult scan(const ConnectOption& connection)
    {
        UpdateScanOption option;
        option.connectOption = connection;
        return ServiceUpdateScan(option).Run(report_);
    }

    // "softwareId version category slotNumber/slotType" of the item, or empty.
    std::string item(const std::string& id) const
    {
        for (const ScanItem& found : report_.GetScanResults())
        {
            if (found.id == id)
            {
                return found.softwareId + " " + found.version + " " + found.category + " " + found.slotNumber + "/" +
                       found.slotType + (found.backupBank ? " backup" : "");
            }
        }
        return std::string();
    }

    std::size_t count() const { return report_.GetScanResults().size(); }

    UpdateScanReport report_;
};
} // namespace

TEST_F(ServiceUpdateScanTest, ReadsARackServer)
{
    SimulatedController controller("rack-a");
    const KorvanResult result = scan(controller.option());
    EXPECT_EQ(0U, result.number()) << result;
    EXPECT_EQ("7Y41", report_.GetMT());
    EXPECT_EQ("PMX3", report_.GetBmcType());
    EXPECT_EQ("platform", report_.GetOS());
    EXPECT_EQ("none", report_.GetArch());
    EXPECT_EQ(14U, count());
    EXPECT_EQ("PMX3-FW 5.10 Firmware /", item("BMC-Primary"));
    EXPECT_EQ("PMX3-FW 5.02 Firmware / backup", item("BMC-Backup"));
    EXPECT_EQ("NIC-2510-FW 22.31.1014 Firmware 1/1", item("PcieSlot1.Firmware"));
    EXPECT_EQ("RAID-9460-FW 51.16.0-4076 Firmware 4/1", item("PcieSlot4.Firmware"));
    EXPECT_THAT(item("Disk_7"), HasSubstr(" 7/1"));
    EXPECT_THAT(item("NIC-2510-Driver"), HasSubstr("Driver"));
}

TEST_F(ServiceUpdateScanTest, ReadsAServiceWithPagesAndTrailingBlanks)
{
    SimulatedController controller("rack-b");
    const KorvanResult result = scan(controller.option());
    EXPECT_EQ(0U, result.number()) << result;
    EXPECT_EQ("7Y41", report_.GetMT());
    EXPECT_EQ("PMX2", report_.GetBmcType());
    EXPECT_EQ(9U, count());
    EXPECT_EQ("NIC-2510-FW 20.30.1004 Firmware 1/1", item("NIC.1"));
    EXPECT_EQ("UEFI-7Y41 v2.30 Firmware /", item("UEFI"));
}

TEST_F(ServiceUpdateScanTest, ReadsAServiceWhoseItemsOnlyTheirIdTellsApart)
{
    SimulatedController controller("blade-c");
    const KorvanResult result = scan(controller.option());
    EXPECT_EQ(0U, result.number()) << result;
    EXPECT_EQ("7X20", report_.GetMT());
    EXPECT_EQ("AMI", report_.GetBmcType());
    EXPECT_EQ(10U, count());
    EXPECT_EQ("CPLD-MAIN  Firmware /", item("CPLD-MAIN"));
    EXPECT_EQ("UEFI-7X20 3.18 Firmware /", item("UEFI-7X20"));
}

TEST_F(ServiceUpdateScanTest, ReadsAServiceThatKeepsThreeBanksOfAComponent)
{
    SimulatedController controller("node-d");
    const KorvanResult result = scan(controller.option());
    EXPECT_EQ(0U, result.number()) << result;
    EXPECT_EQ("7Z90", report_.GetMT());
    EXPECT_EQ("AMD", report_.GetBmcType());
    const auto& items = report_.GetScanResults();
    EXPECT_EQ(1, std::count_if(items.begin(), items.end(),
                               [](const ScanItem& each) { return each.softwareId == "UEFI-7Z90"; }));
    EXPECT_TRUE(
        std::none_of(items.begin(), items.end(), [](const ScanItem& each) { return each.id.find("Previous-") == 0; }));
    EXPECT_EQ("AMD-BMC-FW 12.1 Firmware / backup", item("AMD-BMC-FW-Backup"));
    EXPECT_EQ("NIC-2510-FW 22.41.1000 Firmware 5/1", item("Installed-NIC-2510-FW__NIC.Slot.5-1"));
    EXPECT_EQ("NIC-10GT-FW 8.60 Firmware 2/1", item("Installed-NIC-10GT-FW__NIC.Adapter-2"));
    EXPECT_EQ("RAID-9460-FW 51.19.0-4532 Firmware 3/1", item("Installed-RAID-9460-FW__RAID.Slot.3-1"));
}

TEST_F(ServiceUpdateScanTest, ReadsAServiceWithTwoSystemsAndNoSoftwareInventory)
{
    SimulatedController controller("edge-e");
    const KorvanResult result = scan(controller.option());
    EXPECT_EQ(0U, result.number()) << result;
    EXPECT_EQ("7D35", report_.GetMT());
    EXPECT_EQ("PMX3", report_.GetBmcType());
    EXPECT_EQ(5U, count());
    EXPECT_EQ("DPU-4100-FW  Firmware /", item("DPU0"));
}

TEST_F(ServiceUpdateScanTest, KeepsTheItemsThatWereReadBeforeAFailure)
{
    SimulatedController controller(
        "rack-a", R"("tls": false, "faults": [{"path": "SoftwareInventory", "action": "broken_json"}])");
    const KorvanResult result = scan(controller.option());
    EXPECT_EQ(60U, result.number()) << result;
    EXPECT_EQ(12U, count());
    EXPECT_EQ("7Y41", report_.GetMT());
}

TEST_F(ServiceUpdateScanTest, SaysWhenNothingWasFound)
{
    SimulatedController controller(
        "rack-a", R"("tls": false, "faults": [{"path": "wareInventory", "action": "status", "status": 404}])");
    const KorvanResult result = scan(controller.option());
    EXPECT_EQ(28U, result.number()) << result;
    EXPECT_THAT(result.message, HasSubstr("127.0.0.1:"));
    EXPECT_EQ(0U, count());
}

TEST_F(ServiceUpdateScanTest, AWrongPasswordIsTheResult)
{
    SimulatedController controller("rack-a", R"("tls": false)");
    ConnectOption option = controller.option();
    option.password = "Wrong-Secret-77";
    EXPECT_EQ(12U, scan(option).number());
    EXPECT_EQ(0U, count());
}

TEST_F(ServiceUpdateScanTest, ATargetWithoutAddressIsRefused)
{
    ConnectOption option;
    option.kind = "bmc";
    EXPECT_EQ(56U, scan(option).number());
}
