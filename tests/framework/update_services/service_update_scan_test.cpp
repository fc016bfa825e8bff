#include "service/update_scan.h"

#include "framework/redfish/simulated_controller.h"
#include "interrupt.h"
#include "korvan_connect.h"
#include "log/log_control.h"
#include "target_run/target_run.h"
#include "update_services/scan_wishes.h"

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

TEST_F(ServiceUpdateScanTest, FailsWithoutAMachineTypeUnlessTheUserStatesIt)
{
    SimulatedController controller("rack-a", R"("faults": [{"path": "Systems", "action": "status", "status": 403}])");
    ConnectOption option = controller.option();
    EXPECT_EQ(12U, scan(option).number());
    EXPECT_EQ(0U, count());
    option.machineTypeStated = true;
    const target_run::Scope target;
    EXPECT_EQ(12U, scan(option).number());
    EXPECT_EQ(14U, count());
    ASSERT_EQ(1U, target.remarks().size());
    EXPECT_THAT(target.remarks().front(), HasSubstr("the inventory has gaps: " + option.host));
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
    SimulatedController worse("rack-a",
                              R"("tls": false, "faults": [{"path": "FirmwareInventory", "action": "broken_json"}])");
    EXPECT_EQ(60U, scan(worse.option()).number());
    EXPECT_EQ(0U, count()) << "without any firmware nothing can be said of the machine";
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

TEST_F(ServiceUpdateScanTest, DoesNotRepeatALoginThatTheTargetRefusedInThisRun)
{
    SimulatedController controller("rack-a");
    UserContext context;
    context.options["bmc"] = "admin:Hidden-1@127.0.0.1:" + std::to_string(controller.option().port);
    context.options["never-check-trust"] = "";
    std::vector<XModule::XModuleConnection::ConnectionInfo> connections;
    const KorvanResult refused = GetRESTConnectionList(context, connections);
    ASSERT_EQ(12U, refused.number()) << refused;
    ConnectOption option = controller.option();
    option.password = "Hidden-1";
    const KorvanResult result = scan(option);
    EXPECT_EQ(12U, result.number());
    EXPECT_EQ(refused.message, result.message);
    EXPECT_EQ(0U, scan(controller.option()).number()) << "the right password is another login";
    EXPECT_THAT(controller.stopForStatistics(), HasSubstr("\"refused_logins\": 1,"));
}

TEST_F(ServiceUpdateScanTest, NarrowsAChassisToOneBay)
{
    SimulatedController controller("rack-a");
    UpdateScanOption option;
    option.connectOption = controller.option();
    option.connectOption.kind = "smm";
    option.ioBay = 4;
    EXPECT_EQ(0U, ServiceUpdateScan(option).Run(report_).number());
    EXPECT_EQ(1U, count());
    EXPECT_EQ("RAID-9460-FW 51.16.0-4076 Firmware 4/1", item("PcieSlot4.Firmware"));
    option.ioBay = 444;
    const KorvanResult nothing = ServiceUpdateScan(option).Run(report_);
    EXPECT_EQ(28U, nothing.number()) << nothing;
    EXPECT_THAT(nothing.message, HasSubstr("I/O bay 444"));
    option.ioBay = 0;
    EXPECT_EQ(0U, ServiceUpdateScan(option).Run(report_).number());
    EXPECT_EQ(14U, count());
}

namespace
{
constexpr int kWarning = 2;

// Collects warnings and errors of the log.
class Warnings
{
  public:
    Warnings()
    {
        log_control::observe(kWarning,
                             [this](int, const std::string&, int, const std::string& text) { all_ += text + "\n"; });
    }
    ~Warnings() { log_control::observe(0, nullptr); }
    Warnings(const Warnings&) = delete;
    Warnings& operator=(const Warnings&) = delete;

    const std::string& text() const { return all_; }

  private:
    std::string all_;
};

ScanItem itemIn(const std::string& id, const std::string& slotNumber, const std::string& slotType)
{
    ScanItem item;
    item.id = id;
    item.name = "Device " + id;
    item.slotNumber = slotNumber;
    item.slotType = slotType;
    return item;
}
} // namespace

TEST(ScanWishes, KeepOnlyTheBayOfAChassis)
{
    const std::vector<ScanItem> all = {itemIn("a", "3", "1"), itemIn("b", "3", "0"), itemIn("c", "13", "1"),
                                       itemIn("d", "", "")};
    UpdateScanOption option;
    option.ioBay = 3;
    for (const char* kind : {"cmm", "smm"})
    {
        option.connectOption.kind = kind;
        std::vector<ScanItem> items = all;
        update_services::narrowToBay(option, "host", items);
        ASSERT_EQ(1U, items.size()) << kind;
        EXPECT_EQ("a", items[0].id);
    }
    for (const std::int32_t none : {0, -1})
    {
        option.ioBay = none;
        std::vector<ScanItem> items = all;
        update_services::narrowToBay(option, "host", items);
        EXPECT_EQ(4U, items.size());
    }
}

TEST(ScanWishes, LeaveOtherTargetsWholeWithAWarning)
{
    UpdateScanOption option;
    option.ioBay = 3;
    option.connectOption.kind = "bmc";
    std::vector<ScanItem> items = {itemIn("c", "13", "1")};
    const Warnings warnings;
    update_services::narrowToBay(option, "host:1", items);
    EXPECT_EQ(1U, items.size());
    EXPECT_THAT(warnings.text(), testing::AllOf(HasSubstr("host:1"), HasSubstr("--iobay")));
}

TEST(ScanWishes, NameTheDevicesThatCannotBeUpdated)
{
    std::vector<ScanItem> items = {itemIn("a", "", ""), itemIn("b", "", "")};
    items[1].updateable = false;
    UpdateScanOption option;
    {
        const Warnings quiet;
        update_services::nameFixedDevices(option, "host", items);
        EXPECT_EQ("", quiet.text());
    }
    option.checkDevice = true;
    const Warnings warnings;
    update_services::nameFixedDevices(option, "host:1", items);
    EXPECT_EQ("host:1: Device b (b) says that it cannot be updated\n", warnings.text());
}

TEST(ScanWishes, WarnOfALegacySystemUnlessThereIsNone)
{
    const std::string list = std::string(KORVAN_SOURCE_DIR) + "/samples/system_lists/Tolmar_systems_list.txt";
    UpdateScanOption option;
    const Warnings warnings;
    update_services::warnOfLegacySystem(option, "host", "7Y41", list);
    update_services::warnOfLegacySystem(option, "host", "", list);
    option.useTarn = true;
    update_services::warnOfLegacySystem(option, "host", "7T12", list);
    EXPECT_EQ("", warnings.text());
    option.useTarn = false;
    update_services::warnOfLegacySystem(option, "host:1", "7T12", list);
    EXPECT_THAT(warnings.text(), testing::AllOf(HasSubstr("host:1: machine type 7T12"), HasSubstr("--tarn")));
}
