#include "end_to_end/fleet_fixture.h"
#include "end_to_end/names.h"

namespace
{
using namespace end_to_end;

using ResumedRun = FleetFixture;

TEST_F(ResumedRun, AsksOnlyTheTargetsThatFailedAndReportsAll)
{
    serve({"rack-a", "rack-b"});
    EXPECT_EQ(compare({"--bmc", login("rack-a", kPassword), "--bmc", login("rack-b", kWrongPassword)}).exitStatus, 58);
    const std::string done = "out/SUCCESS-" + folder("rack-a");
    const std::string mark = tree_.write(done + "/mark", "of the earlier run");
    // With a wrong password the first one would fail if it were asked again.
    const ProcessOutcome outcome = compare({"--bmc", login("rack-a", kWrongPassword), "--bmc",
                                            login("rack-b", kPassword), "--pattern", "uefi", "--resume"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out << outcome.err;
    EXPECT_EQ(readFile(mark), "of the earlier run");
    EXPECT_TRUE(exists("out/SUCCESS-" + folder("rack-b") + "/Korvan-update-compare.xml"));
    EXPECT_FALSE(exists("out/FAILURE-" + folder("rack-b")));
    EXPECT_NE(outcome.out.find(folder("rack-a") + "  OK          0  done in an earlier run"), std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.out.find("2 targets: 2 succeeded"), std::string::npos) << outcome.out;
    const json result = json::parse(readFile(tree_.file("out/compare_result.json")));
    EXPECT_EQ(result["COMPARISON"].size(), 2U);
    expectNoSecret(outcome.out + outcome.err, kPassword);
}

TEST_F(ResumedRun, TellsOfGapsInTheInventoriesThatItKeeps)
{
    const json fault = {{"path", "/Systems/1$"}, {"action", "broken_json"}};
    serveEntries({controller("rack-a", {{"faults", json::array({fault})}, {"behaviour", {{"expand", "ignored"}}}})});
    const std::string gaps = folder("rack-a") + "  OK          0  the inventory has gaps: ";
    const ProcessOutcome first = compare({"--bmc", login("rack-a"), "--mt", "7Y41"});
    EXPECT_NE(first.out.find(gaps), std::string::npos) << first.out;
    const ProcessOutcome second = compare({"--bmc", login("rack-a"), "--mt", "7Y41", "--resume"});
    const std::string kept = folder("rack-a") + "  OK          0  done in an earlier run; the inventory has gaps: ";
    EXPECT_NE(second.out.find(kept), std::string::npos) << second.out;
}

TEST_F(ResumedRun, NeedsTheFolderOfTheEarlierOne)
{
    const ProcessOutcome outcome = tree_.korvan({"update", "compare", "--bmc", "127.0.0.1", "--resume"});
    EXPECT_EQ(outcome.exitStatus, 5);
    EXPECT_NE(outcome.err.find("--resume: needs --output"), std::string::npos) << outcome.err;
    EXPECT_FALSE(exists("logs"));
}
} // namespace
