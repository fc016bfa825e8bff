#include "apps/update/multicompare/report_fixture.h"
#include "end_to_end/names.h"
#include "end_to_end/program_tree.h"

namespace
{
using namespace end_to_end;

constexpr char kGolden[] = KORVAN_SOURCE_DIR "/tests/golden/";

// Folders of reports as an earlier run left them, shown again with a pattern.
class PreparedReports : public ::testing::Test
{
  protected:
    void target(const std::string& folder, const std::string& xml) const
    {
        tree_.write("out/" + folder + "/Korvan-update-compare.xml", xml);
    }

    ProcessOutcome show(const std::string& pattern, const Words& more = {}) const
    {
        Words words = {"update", "compare", "--output", "out", "--pattern", pattern};
        words.insert(words.end(), more.begin(), more.end());
        return tree_.korvan(words);
    }

    // The report's part of the output: all before the framework's closing lines.
    static std::string reportOf(const ProcessOutcome& outcome)
    {
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
        const std::string::size_type closing = outcome.out.rfind("\nNo target was named; ");
        EXPECT_NE(closing, std::string::npos) << outcome.out;
        return outcome.out.substr(0, closing);
    }

    bool jsonWritten() const { return fs::exists(tree_.file("out/compare_result.json")); }

    // A fleet of three targets with undetected devices, drivers and reasons.
    void mixedFleet() const
    {
        const std::string gone = report::child({{"CINSTALLED", "Undetected"}, {"CNAME", "FPGA-1"}});
        target(
            "SUCCESS-10.0.0.1",
            report::file({report::package({report::child(), report::child({{"CSLOTTYPE", "0"}, {"CNAME", "NIC-2"}})}),
                          report::package({report::child({{"CADAPTERNAME", "Twoport 25"}, {"CSLOTNUM", ""}})},
                                          {{"NAME", "Nic driver"}, {"UPDATEID", "krv_dd_nic_2.0"}}),
                          report::package({gone, gone}, {{"NAME", "Nic FPGA"},
                                                         {"UPDATEID", "krv_fw_fpga_3"},
                                                         {"SELECTED", "0"},
                                                         {"UNSELECTEDREASON", "3-No such device."}})}));
        target("failure-10.0.0.2",
               report::file(
                   {report::package({report::child({{"CINSTALLED", "2.0"}})},
                                    {{"SELECTED", "0"}, {"UNSELECTEDREASON", "1-Up to date."}}),
                    report::package({report::child({{"CNAME", "RAID-7"}})}, {{"NAME", "Raid"},
                                                                             {"UPDATEID", "krv_fw_raid"},
                                                                             {"SELECTED", "0"},
                                                                             {"UNSELECTEDREASON", "10-Forced out."}})},
                   {{"BMCTYPE", "AMI"}, {"ISPARTITION", "1"}}));
        target("SUCCESS-fe80__3",
               report::file({report::package({gone}, {{"UNSELECTEDREASON", "20-beyond"}, {"SELECTED", "0"}})},
                            {{"BMCTYPE", "AMD"}}));
    }

    ProgramTree tree_;
};

TEST_F(PreparedReports, GiveTheGoldenTableAndJson)
{
    mixedFleet();
    const ProcessOutcome outcome = show("nic");
    EXPECT_EQ(reportOf(outcome), readFile(std::string(kGolden) + "mixed_fleet_table.txt"));
    EXPECT_EQ(readFile(tree_.file("out/compare_result.json")),
              readFile(std::string(kGolden) + "mixed_fleet_compare_result.json"));
}

TEST_F(PreparedReports, GiveTheSameTwice)
{
    mixedFleet();
    const std::string first = reportOf(show("nic"));
    const std::string json = readFile(tree_.file("out/compare_result.json"));
    EXPECT_EQ(reportOf(show("nic")), first);
    EXPECT_EQ(readFile(tree_.file("out/compare_result.json")), json);
}

TEST_F(PreparedReports, AreNarrowedInTheTableButNotInTheJson)
{
    mixedFleet();
    const std::string shown = reportOf(show("raid-7"));
    EXPECT_NE(shown.find("RAID-7"), std::string::npos);
    EXPECT_EQ(shown.find("NIC-1"), std::string::npos);
    // Reasons of packages that the pattern filtered out are explained all the same.
    EXPECT_NE(shown.find("    *1-Up to date.\n"), std::string::npos);
    const json json = json::parse(readFile(tree_.file("out/compare_result.json")));
    EXPECT_EQ(json["COMPARISON"].size(), 3U);
    EXPECT_EQ(json["COMPARISON"][0]["HOST"], "10.0.0.1");
}

TEST_F(PreparedReports, SayWhenThePatternMatchesNothing)
{
    mixedFleet();
    EXPECT_EQ(reportOf(show("no such thing")), "\n\n    The pattern you input match none package !");
    EXPECT_FALSE(jsonWritten());
}

TEST_F(PreparedReports, SayTheSameWhenThereAreNone)
{
    EXPECT_EQ(reportOf(show("nic")), "\n\n    The pattern you input match none package !");
    EXPECT_FALSE(jsonWritten());
}

TEST_F(PreparedReports, PrintTheErrorOfABadPattern)
{
    mixedFleet();
    const std::string shown = reportOf(show("nic(["));
    EXPECT_EQ(shown.find("Compare Result"), std::string::npos);
    EXPECT_NE(shown.find("regular expression"), std::string::npos) << shown;
    EXPECT_FALSE(jsonWritten());
}

TEST_F(PreparedReports, SkipBrokenXml)
{
    mixedFleet();
    target("SUCCESS-10.0.0.9", "<COMPARISON><CONTENT>");
    const std::string shown = reportOf(show("nic"));
    EXPECT_EQ(shown, readFile(std::string(kGolden) + "mixed_fleet_table.txt"));
    const std::string log = readFile(tree_.file("out/korvan.log"));
    EXPECT_NE(log.find("apps/update/multicompare/multicompare:487"), std::string::npos) << log;
    EXPECT_NE(log.find("Failed to Read XML"), std::string::npos) << log;
}

TEST_F(PreparedReports, EndAtAMissingKey)
{
    mixedFleet();
    target("SUCCESS-10.0.0.9", report::file({report::package({}, {{"SUPERSEDE", report::kAbsent}})}));
    EXPECT_EQ(reportOf(show("nic")), "No such node (SUPERSEDE)\n");
    EXPECT_FALSE(jsonWritten());
}

TEST_F(PreparedReports, EndAtABadNumber)
{
    mixedFleet();
    target("SUCCESS-10.0.0.9", report::file({}, {{"TOTAL", "many"}}));
    const std::string shown = reportOf(show("nic"));
    EXPECT_NE(shown.find("conversion of data"), std::string::npos) << shown;
    EXPECT_EQ(shown.find("Compare Result"), std::string::npos);
    EXPECT_FALSE(jsonWritten());
}

TEST_F(PreparedReports, AreNotShownWithoutAPattern)
{
    mixedFleet();
    const ProcessOutcome outcome = tree_.korvan({"update", "compare", "--output", "out"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    EXPECT_EQ(outcome.out.find("Compare Result"), std::string::npos);
    EXPECT_FALSE(jsonWritten());
}

TEST_F(PreparedReports, LogThatThereIsNothingToDisplayAtLevelFour)
{
    show("nic", {"--log", "4"});
    EXPECT_NE(readFile(tree_.file("out/korvan.log")).find("apps/update/multicompare/multicompare:554"),
              std::string::npos);
}
} // namespace
