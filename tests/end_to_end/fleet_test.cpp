#include "end_to_end/fleet_fixture.h"
#include "end_to_end/names.h"

namespace
{
using namespace end_to_end;

class Fleet : public FleetFixture
{
  protected:
    const Words all_ = {"rack-a", "rack-b", "blade-c", "node-d", "edge-e"};

    static std::size_t count(const std::string& text, const std::string& piece)
    {
        std::size_t found = 0;
        for (std::string::size_type at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1))
        {
            ++found;
        }
        return found;
    }
};

TEST_F(Fleet, ComparesFiveDifferentServers)
{
    serve(all_);
    const ProcessOutcome outcome = compare({"--config", targetList(all_), "--pattern", "uefi|bmc|nic", "--log", "4"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out << outcome.err;
    EXPECT_EQ(count(outcome.out, "Compare Result"), 1U);
    for (const std::string& name : all_)
    {
        EXPECT_GE(count(outcome.out, "| " + folder(name) + " "), 1U) << name << "\n" << outcome.out;
        for (const char* file : {"Korvan-update-scan.xml", "scan_result.txt", "Korvan-update-query.xml",
                                 "Korvan-update-compare.xml", "compare_result.txt", "common_result.xml"})
        {
            EXPECT_TRUE(exists("out/SUCCESS-" + folder(name) + "/" + file)) << name << " " << file;
        }
    }
    const json result = json::parse(readFile(tree_.file("out/compare_result.json")));
    EXPECT_EQ(result["COMPARISON"].size(), 5U);
    expectNoSecret(outcome.out + outcome.err, kPassword);
}

TEST_F(Fleet, KnowsEachServersMachineTypeAndController)
{
    serve(all_);
    compare({"--config", targetList(all_), "--pattern", "."});
    std::map<std::string, std::pair<std::string, std::string>> seen;
    const json result = json::parse(readFile(tree_.file("out/compare_result.json")));
    for (const json& host : result["COMPARISON"])
    {
        seen[host["HOST"]] = {host["MT"], host["BMCTYPE"]};
    }
    using Kind = std::pair<std::string, std::string>;
    EXPECT_EQ(seen[folder("rack-a")], Kind("7Y41", "PMX3"));
    EXPECT_EQ(seen[folder("rack-b")], Kind("7Y41", "PMX2"));
    EXPECT_EQ(seen[folder("blade-c")], Kind("7X20", "AMI"));
    EXPECT_EQ(seen[folder("node-d")], Kind("7Z90", "AMD"));
    EXPECT_EQ(seen[folder("edge-e")], Kind("7D35", "PMX3"));
}

TEST_F(Fleet, ShowsOneFailedTargetBesideTheOthers)
{
    serve({"rack-a", "rack-b"});
    const ProcessOutcome outcome =
        compare({"--bmc", login("rack-a"), "--bmc", login("rack-b", kWrongPassword), "--pattern", "uefi"});
    EXPECT_EQ(outcome.exitStatus, 58);
    EXPECT_TRUE(exists("out/SUCCESS-" + folder("rack-a") + "/Korvan-update-compare.xml"));
    EXPECT_TRUE(exists("out/FAILURE-" + folder("rack-b") + "/common_result.xml"));
    EXPECT_FALSE(exists("out/FAILURE-" + folder("rack-b") + "/Korvan-update-compare.xml"));
    EXPECT_EQ(json::parse(readFile(tree_.file("out/compare_result.json")))["COMPARISON"].size(), 1U);
    EXPECT_NE(outcome.out.find("FAILED"), std::string::npos) << outcome.out;
    expectNoSecret(outcome.out + outcome.err, kPassword);
    expectNoSecret(outcome.out + outcome.err, kWrongPassword);
}

TEST_F(Fleet, ReplacesTheFoldersOfAnEarlierRun)
{
    serve({"rack-a"});
    EXPECT_EQ(compare({"--config", targetList({"rack-a"}, kWrongPassword)}).exitStatus, 58);
    EXPECT_TRUE(exists("out/FAILURE-" + folder("rack-a")));
    EXPECT_EQ(compare({"--config", targetList({"rack-a"})}).exitStatus, 0);
    EXPECT_FALSE(exists("out/FAILURE-" + folder("rack-a")));
    EXPECT_TRUE(exists("out/SUCCESS-" + folder("rack-a")));
}

TEST_F(Fleet, DoesNotTrustAnUnknownCertificate)
{
    serve({"rack-a"});
    const ProcessOutcome outcome =
        tree_.korvan({"update", "compare", "--output", "out", "--config", targetList({"rack-a"})});
    EXPECT_EQ(outcome.exitStatus, 58);
    EXPECT_NE(outcome.out.find("36"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find(address("rack-a")), std::string::npos) << outcome.out;
}

TEST_F(Fleet, SkipsTheTrustWhenToldTo)
{
    serve({"rack-a"});
    const ProcessOutcome outcome =
        tree_.korvan({"update", "compare", "--output", "out", "--never-check-trust", "--dir",
                      std::string(KORVAN_SOURCE_DIR) + "/samples/repository", "--config", targetList({"rack-a"})});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out;
}

TEST_F(Fleet, ComparesASavedScanAndQueryAsTheLiveRun)
{
    serve({"rack-a"});
    ASSERT_EQ(compare({"--config", targetList({"rack-a"})}).exitStatus, 0);
    const std::string folderOfRun = "out/SUCCESS-" + folder("rack-a") + "/";
    const std::string live = readFile(tree_.file(folderOfRun + "Korvan-update-compare.xml"));
    fs::copy_file(tree_.file(folderOfRun + "Korvan-update-scan.xml"), tree_.file("scan.xml"));
    fs::copy_file(tree_.file(folderOfRun + "Korvan-update-query.xml"), tree_.file("query.xml"));
    const ProcessOutcome outcome =
        compare({"--config", targetList({"rack-a"}), "--scanxml", "scan.xml", "--queryxml", "query.xml"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out;
    EXPECT_EQ(readFile(tree_.file(folderOfRun + "Korvan-update-compare.xml")), live);
    EXPECT_NE(live, "");
    EXPECT_THAT(outcome.err, Not(HasSubstr("warning")));
    const ProcessOutcome warned = compare({"--config", targetList({"rack-a"}), "--scanxml", "scan.xml", "--queryxml",
                                           "query.xml", "--excludeid", "krv_fw_pmx3_5.10_platform"});
    EXPECT_EQ(warned.exitStatus, 0) << warned.out;
    EXPECT_THAT(warned.err, HasSubstr("korvan: warning: --queryxml takes"));
    EXPECT_EQ(readFile(tree_.file(folderOfRun + "Korvan-update-compare.xml")), live);
}

TEST_F(Fleet, SaysOnceForAllTargetsWhichIdsNoPackageHas)
{
    serve({"rack-a", "rack-b"});
    const ProcessOutcome outcome = compare({"--config", targetList({"rack-a", "rack-b"}), "--excludeid", "krv_fw_gone",
                                            "--forceid", "krv_fw_pmx3_5.10_platform", "--psu", "9"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out;
    EXPECT_THAT(outcome.err, HasSubstr("korvan: warning: --excludeid: "));
    EXPECT_EQ(count(outcome.err, "krv_fw_gone"), 1U) << outcome.err;
    EXPECT_THAT(outcome.err, Not(HasSubstr("--forceid")));
    EXPECT_THAT(outcome.out, Not(HasSubstr("krv_fw_gone")));
    EXPECT_EQ(count(outcome.out, "  OK          0  --psu names power supplies that the target does not have: 9"), 2U);
}

TEST_F(Fleet, AsksAControllerOverOneConnectionWithOneLogin)
{
    serveEntries({controller("rack-a", {{"behaviour", {{"authentication", "sessions_only"}}}})});
    EXPECT_EQ(compare({"--config", targetList({"rack-a"})}).exitStatus, 0);
    const json counted = statistics()["controllers"][0];
    EXPECT_EQ(counted["connections"], 1) << counted.dump(2);
    EXPECT_EQ(counted["sessions_created"], 1);
    EXPECT_EQ(counted["sessions_deleted"], 1);
}

TEST_F(Fleet, ComplainsOfAWrongOptionOnceAndAsksNobody)
{
    serve({"rack-a", "rack-b"});
    const std::string list = targetList({"rack-a", "rack-b"});
    const std::pair<Words, int> wrongOptions[] = {{{"--scope", "everything"}, 5},
                                                  {{"--pattern", "(uefi"}, 5},
                                                  {{"--scanxml", "nowhere.xml"}, 6},
                                                  {{"--queryxml", list}, 88}};
    for (const auto& [words, status] : wrongOptions)
    {
        Words more = {"--config", list};
        more.insert(more.end(), words.begin(), words.end());
        const ProcessOutcome outcome = compare(more);
        EXPECT_EQ(outcome.exitStatus, status) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err.find("korvan: option " + words[0] + ": "), 0U) << outcome.err;
        EXPECT_EQ(count(outcome.err, "\n"), 1U) << outcome.err;
        EXPECT_FALSE(exists("out"));
    }
    const json counted = statistics();
    for (const json& controller : counted["controllers"])
    {
        EXPECT_EQ(controller["connections"], 0) << controller.dump(2);
    }
}

TEST_F(Fleet, RefusesToNameATargetTwice)
{
    const ProcessOutcome outcome = tree_.korvan(
        {"update", "compare", "--output", "out", "--bmc", "u:hush@127.0.0.1", "--pmx", "u:hush@127.0.0.1"});
    EXPECT_EQ(outcome.exitStatus, 5);
    EXPECT_NE(outcome.err.find("127.0.0.1"), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.err.find("hush"), std::string::npos);
    EXPECT_FALSE(exists("out"));
}

TEST_F(Fleet, StopsAtCtrlCAndReportsTheRest)
{
    serve({"rack-a", "rack-b"}, {"rack-a", "rack-b"});
    tree_.options.interruptAfter = std::chrono::milliseconds(1500);
    const ProcessOutcome outcome = compare({"--config", targetList({"rack-a", "rack-b"}), "--parallel", "1"});
    EXPECT_FALSE(outcome.timedOut);
    EXPECT_EQ(count(outcome.out, "SKIPPED    47"), 2U) << outcome.out << outcome.err;
    EXPECT_EQ(outcome.exitStatus, 59);
}
} // namespace
