#include "reports.h"
#include "target_run/target_run.h"
#include "update_services/unselected_reasons.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using reports::compare;
using reports::decisions;
using reports::item;
using reports::package;
using reports::query;
using reports::scan;
using service::CompareOptions;
using service::CompareReport;
using service::VersionOutcome;
using testing::ElementsAre;
using testing::HasSubstr;

KorvanResult codeOf(const service::UpdateScanReport& scanned, const service::QueryReport& queried,
                    const CompareOptions& options = CompareOptions())
{
    service::ServiceUpdateCompare comparison(options);
    comparison.SetReports(scanned, queried);
    CompareReport report;
    return comparison.RunCompare(report);
}

TEST(UpdateCompare, VersionsDecide)
{
    const auto queried = query({package("newer", "A", "2.0"), package("same", "B", "1.0"), package("older", "C", "0.9"),
                                package("gone", "D", "1.0"), package("unclear", "E", "1.0.5")});
    const auto scanned = scan({item("a", "1.0"), item("B", "v1.0 "), item("C", "1.0"), item("E", "1.0")});
    const CompareReport report = compare(scanned, queried);
    EXPECT_THAT(decisions(report), ElementsAre("selected", "1", "2", "3", "4"));
    EXPECT_EQ(report.packages[0].outcome, VersionOutcome::Newer);
    EXPECT_EQ(report.packages[1].outcome, VersionOutcome::Same);
    EXPECT_EQ(report.packages[2].outcome, VersionOutcome::Older);
    EXPECT_EQ(report.packages[3].outcome, VersionOutcome::NotDetected);
    EXPECT_EQ(report.packages[4].outcome, VersionOutcome::NotComparable);
    EXPECT_EQ(report.packages[3].children[0].installedVersion, "Undetected");
    EXPECT_EQ(report.packages[3].children[0].selected, 0);
    EXPECT_EQ(report.packages[1].children[0].installedVersion, "v1.0");
    EXPECT_EQ(report.packages[0].children[0].update.adapterName, "Name of a");
}

TEST(UpdateCompare, ADeviceWithoutAVersionIsNotComparable)
{
    const CompareReport report = compare(scan({item("A", " ")}), query({package("p", "A", "1.0")}));
    EXPECT_THAT(decisions(report), ElementsAre("4"));
    EXPECT_EQ(report.packages[0].children[0].installedVersion, "N/A");
}

TEST(UpdateCompare, EachInstalledDeviceStandsForItself)
{
    auto first = item("N", "1.0", "slot1");
    first.slotNumber = "1";
    first.slotType = "1";
    const CompareReport report = compare(scan({first, item("N", "2.0", "slot2")}), query({package("p", "N", "2.0")}));
    ASSERT_EQ(report.packages[0].children.size(), 2U);
    EXPECT_EQ(report.packages[0].children[0].selected, 1);
    EXPECT_EQ(report.packages[0].children[0].slotNumber, "1");
    EXPECT_EQ(report.packages[0].children[0].instanceId, "slot1");
    EXPECT_EQ(report.packages[0].children[1].selected, 0);
    EXPECT_THAT(decisions(report), ElementsAre("selected"));
    EXPECT_EQ(report.packages[0].outcome, VersionOutcome::Newer);
    EXPECT_EQ(report.packages[0].children[0].unselectedReason, "");
    EXPECT_EQ(report.packages[0].children[1].unselectedReason, "1-The installed version is up to date.");
}

TEST(UpdateCompare, AChildHasItsOwnReasonOrThatOfItsPackage)
{
    auto queried = query({package("out", "A", "2.0"), package("old", "B", "2.0"), package("new", "B", "3.0")});
    queried.options.excludeIds = {"out"};
    const CompareReport report = compare(scan({item("A", "1.0"), item("B", "1.0")}), queried);
    EXPECT_THAT(decisions(report), ElementsAre("5", "11", "selected"));
    EXPECT_THAT(report.packages[0].children[0].unselectedReason, HasSubstr("5-"));
    EXPECT_THAT(report.packages[1].children[0].unselectedReason, HasSubstr("11-"));
    EXPECT_EQ(report.packages[2].children[0].unselectedReason, "");
}

TEST(UpdateCompare, HexadecimalVersionsAreReadAsSuch)
{
    auto info = package("p", "A", "1A");
    info.children[0].hexVersion = true;
    EXPECT_THAT(decisions(compare(scan({item("A", "9")}), query({info}))), ElementsAre("selected"));
}

TEST(UpdateCompare, ForcedIdsWinOverTheOrderOfVersionsButNotOverAMissingDevice)
{
    auto queried = query({package("same", "B", "1.0"), package("older", "C", "0.9"), package("gone", "D", "1.0"),
                          package("unclear", "E", "x1")});
    const auto scanned = scan({item("B", "1.0"), item("C", "1.0"), item("E", "1.0")});
    queried.options.forceIds = {"same", "gone", "unclear"};
    CompareReport report = compare(scanned, queried);
    EXPECT_THAT(decisions(report), ElementsAre("selected", "2", "3", "selected"));
    EXPECT_EQ(report.packages[0].forceId, 1);
    EXPECT_EQ(report.packages[1].forceId, 0);
    queried.options.forceAll = true;
    report = compare(scanned, queried);
    EXPECT_THAT(decisions(report), ElementsAre("selected", "selected", "3", "selected"));
}

TEST(UpdateCompare, ExclusionIsSaidAndWinsOverForce)
{
    auto queried = query({package("p", "A", "2.0")});
    queried.options.excludeIds = {"p"};
    queried.options.forceIds = {"p"};
    const CompareReport report = compare(scan({item("A", "1.0")}), queried);
    EXPECT_THAT(decisions(report), ElementsAre("5"));
    EXPECT_EQ(report.packages[0].children[0].selected, 0);
    EXPECT_EQ(report.packages[0].outcome, VersionOutcome::Newer);
}

TEST(UpdateCompare, SupersededPackagesGiveWay)
{
    auto newer = package("b", "B", "2.0");
    newer.supersede = "a";
    const auto queried = query({package("a", "A", "2.0"), newer});
    const auto scanned = scan({item("A", "1.0"), item("B", "1.0")});
    EXPECT_THAT(decisions(compare(scanned, queried)), ElementsAre("6", "selected"));
    CompareOptions options;
    options.noSupersede = true;
    EXPECT_THAT(decisions(compare(scanned, queried, options)), ElementsAre("selected", "selected"));
    EXPECT_THAT(decisions(compare(scan({item("A", "1.0")}), queried)), ElementsAre("selected", "3"));
}

TEST(UpdateCompare, PackagesThatSupersedeEachOtherAreLeftAlone)
{
    auto first = package("a", "A", "2.0");
    first.supersede = "b";
    auto second = package("b", "B", "2.0");
    second.supersede = "a";
    EXPECT_THAT(decisions(compare(scan({item("A", "1.0"), item("B", "1.0")}), query({first, second}))),
                ElementsAre("selected", "selected"));
}

TEST(UpdateCompare, AgentBoundPackagesAreRefusedRemotely)
{
    auto info = package("p", "A", "2.0");
    info.agentlessSupport = "false";
    auto queried = query({info});
    EXPECT_THAT(decisions(compare(scan({item("A", "1.0")}), queried)), ElementsAre("9"));
    queried.options.remote = false;
    EXPECT_THAT(decisions(compare(scan({item("A", "1.0")}), queried)), ElementsAre("selected"));
}

TEST(UpdateCompare, PowerSuppliesAreTakenBySlotOrName)
{
    auto info = package("p", "PSU-1", "2.0");
    info.children[0].category = "PSU";
    auto first = item("PSU-1", "1.0", "supply1");
    first.slotNumber = "1";
    auto second = item("PSU-1", "1.0", "supply2");
    second.slotNumber = "2";
    const auto scanned = scan({first, second});
    CompareOptions options;
    options.psuList = {"02"};
    CompareReport report = compare(scanned, query({info}), options);
    EXPECT_THAT(decisions(report), ElementsAre("selected"));
    EXPECT_EQ(report.packages[0].children[0].selected, 0);
    EXPECT_EQ(report.packages[0].children[1].selected, 1);
    options.psuList = {"name of supply1"};
    EXPECT_EQ(compare(scanned, query({info}), options).packages[0].children[0].selected, 1);
    // Where the inventory tells no slot, its id may end in one.
    auto unplaced = item("PSU-1", "1.0", "PSU.2");
    EXPECT_EQ(compare(scan({unplaced}), query({info}), options).packages[0].children[0].selected, 0);
    options.psuList = {"2"};
    EXPECT_EQ(compare(scan({unplaced}), query({info}), options).packages[0].children[0].selected, 1);
    options.psuList = {"7", ""};
    EXPECT_THAT(decisions(compare(scanned, query({info}), options)), ElementsAre("10"));
    options.allPsu = true;
    EXPECT_THAT(decisions(compare(scanned, query({info}), options)), ElementsAre("selected"));
}

TEST(UpdateCompare, PowerSuppliesThatTheTargetLacksAreRemarked)
{
    auto info = package("p", "PSU-1", "2.0");
    info.component = "PSU";
    auto first = item("PSU-1", "1.0", "supply1");
    first.slotNumber = "1";
    auto other = item("PSU-9", "1.0", "supply2"); // no package is for it
    other.slotNumber = "2";
    other.classification = "psu";
    auto card = item("NIC", "1.0", "nic3");
    card.slotNumber = "3";
    CompareOptions options;
    options.psuList = {"01", "supply2", " 3", "", "7"};
    {
        const target_run::Scope target;
        compare(scan({first, other, card}), query({info}), options);
        EXPECT_THAT(target.remarks(), ElementsAre("--psu names power supplies that the target does not have: 3, 7"));
    }
    const target_run::Scope target;
    compare(scan({}), query({info}), options);
    options.psuList = {"1"};
    compare(scan({first}), query({info}), options);
    options.psuList = {"7"};
    options.allPsu = true;
    compare(scan({first}), query({info}), options);
    EXPECT_THAT(target.remarks(), testing::IsEmpty());
}

TEST(UpdateCompare, TheNewestOrForcedPackageTakesTheDevice)
{
    auto queried = query({package("old", "A", "2.0"), package("new", "A", "3.0")});
    const auto scanned = scan({item("A", "1.0")});
    EXPECT_THAT(decisions(compare(scanned, queried)), ElementsAre("11", "selected"));
    queried.options.forceIds = {"old"};
    EXPECT_THAT(decisions(compare(scanned, queried)), ElementsAre("selected", "11"));
}

TEST(UpdateCompare, DevicesThatCannotBeUpdatedAreCheckedOnRequest)
{
    auto installed = item("A", "1.0");
    installed.updateable = false;
    const auto queried = query({package("p", "A", "2.0")});
    EXPECT_THAT(decisions(compare(scan({installed}), queried)), ElementsAre("selected"));
    CompareOptions options;
    options.checkDevice = true;
    EXPECT_THAT(decisions(compare(scan({installed}), queried, options)), ElementsAre("16"));
}

TEST(UpdateCompare, APackageWithoutChildrenIsNotSelected)
{
    auto info = package("p", "A", "2.0");
    info.children.clear();
    EXPECT_THAT(decisions(compare(scan({item("A", "1.0")}), query({info}))), ElementsAre("17"));
}

TEST(UpdateCompare, AllDriversTakesDriversOfUndetectedDevices)
{
    auto driver = package("x_dd_y", "D", "2.0");
    driver.type = 3;
    CompareOptions options;
    options.allDriver = true;
    const CompareReport report = compare(scan({item("A", "1.0")}), query({driver, package("fw", "B", "1.0")}), options);
    EXPECT_THAT(decisions(report), ElementsAre("selected", "3"));
    EXPECT_EQ(report.packages[0].children[0].installedVersion, "Undetected");
}

TEST(UpdateCompare, TheBackupBankIsComparedOnRequestOnly)
{
    auto spare = item("A", "1.0", "spare");
    spare.backupBank = true;
    const auto queried = query({package("p", "A", "2.0")});
    const auto scanned = scan({item("A", "2.0"), spare});
    EXPECT_THAT(decisions(compare(scanned, queried)), ElementsAre("1"));
    CompareOptions options;
    options.backup = true;
    const CompareReport report = compare(scanned, queried, options);
    EXPECT_THAT(decisions(report), ElementsAre("selected"));
    EXPECT_EQ(report.packages[0].children[0].instanceId, "spare");
    EXPECT_EQ(codeOf(scan({item("A", "2.0")}), queried, options).code, 0x1006CU);
}

TEST(UpdateCompare, AnEmptyScanLeavesEverythingUndetected)
{
    const service::UpdateScanReport nothing;
    const auto queried = query({package("p", "A", "2.0")});
    EXPECT_TRUE(codeOf(nothing, queried).succeeded());
    EXPECT_THAT(decisions(compare(nothing, queried)), ElementsAre("3"));
}

TEST(UpdateCompare, OtherMachineTypesAreRefusedWhenNothingFits)
{
    auto queried = query({package("p", "A", "2.0")});
    queried.options.machineType = "7X20";
    const KorvanResult result = codeOf(scan({}), queried);
    EXPECT_EQ(result.code, 0x10058U);
    EXPECT_THAT(result.message, testing::AllOf(HasSubstr("7Y41"), HasSubstr("7X20")));
    queried.options.machineType = " 7y41";
    EXPECT_TRUE(codeOf(scan({}), queried).succeeded());
    queried.options.machineType = "";
    EXPECT_TRUE(codeOf(scan({}), queried).succeeded());
    CompareReport report;
    EXPECT_EQ(service::ServiceUpdateCompare(CompareOptions()).RunCompare(report).code, 0x10058U);
}

TEST(UpdateCompare, AStatedMachineTypeWinsOverTheScannedOneWhenAPackageFits)
{
    auto queried = query({package("p", "A", "2.0")});
    queried.options.machineType = "7X20";
    const auto scanned = scan({item("A", "1.0")});
    EXPECT_TRUE(codeOf(scanned, queried).succeeded());
    EXPECT_THAT(decisions(compare(scanned, queried)), ElementsAre("selected"));
    EXPECT_EQ(compare(scanned, queried).machineType, "7X20");
}

TEST(UpdateCompare, TheHeadNamesWhatWasAskedFor)
{
    auto scanned = scan({});
    scanned.SetPartition(true);
    CompareReport report = compare(scanned, query({}));
    EXPECT_EQ(report.machineType, "7Y41");
    EXPECT_EQ(report.bmcType, "PMX3");
    EXPECT_EQ(report.os, "platform");
    EXPECT_EQ(report.arch, "x64");
    EXPECT_EQ(report.directory, "pkgs\\");
    EXPECT_EQ(report.scope, "latest");
    EXPECT_TRUE(report.partition);
    auto queried = query({});
    queried.options.osType = 311;
    scanned.SetOS("esxi5.1");
    EXPECT_EQ(compare(scanned, queried).os, "esxi5.1");
}

TEST(UpdateCompare, EveryVersionTextIsAPhraseForReaders)
{
    auto info = package("p", "A", "2.0");
    info.packageVersion = "2.0";
    EXPECT_EQ(compare(scan({}), query({info})).packages[0].package.packageVersion, "Package p Version 2.0");
}

TEST(UnselectedReasons, HaveStableNumbersWithinOneToNineteen)
{
    for (std::int32_t number = 1; number <= 17; ++number)
    {
        const std::string text = reasonText(static_cast<update_services::UnselectedReason>(number));
        EXPECT_EQ(text.substr(0, text.find('-')), std::to_string(number));
        EXPECT_GT(text.size(), 10U);
    }
    EXPECT_EQ(reasonText(update_services::UnselectedReason::None), "");
}
} // namespace
