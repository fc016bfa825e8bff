#include "end_to_end/fleet_fixture.h"
#include "end_to_end/names.h"

#include <pugixml.hpp>

#include <csignal>
#include <set>
#include <thread>

namespace
{
using namespace end_to_end;
using testing::AnyOf;

constexpr int kInterrupted = 47; // before any target was started
constexpr int kTasksSkipped = 59;

// Ctrl-C, this long after the start.
class InterruptedRun : public FleetFixture, public testing::WithParamInterface<int>
{
  protected:
    // Every file is one that Korvan makes, under its final name, and whole.
    void expectWholeFiles() const
    {
        static const std::set<std::string> usual = {
            "korvan.log",        "compare_result.json",     "Korvan-update-scan.xml",    "scan_result.txt",
            "common_result.xml", "Korvan-update-query.xml", "Korvan-update-compare.xml", "compare_result.txt"};
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree_.file("out")))
        {
            const fs::path path = entry.path();
            if (fs::is_directory(path))
            {
                EXPECT_THAT(path.filename().string(), testing::MatchesRegex("(SUCCESS|FAILURE)-.*"));
                continue;
            }
            EXPECT_EQ(usual.count(path.filename().string()), 1U) << path;
            if (path.extension() == ".xml")
            {
                pugi::xml_document document;
                EXPECT_TRUE(document.load_file(path.c_str())) << path;
            }
            if (path.extension() == ".json")
            {
                EXPECT_TRUE(json::accept(readFile(path.string()))) << path;
            }
        }
    }
};

TEST_P(InterruptedRun, LeavesWholeFilesNoSessionAndAReport)
{
    const json habits = {{"latency_ms", 25}, {"behaviour", {{"authentication", "sessions_only"}}}};
    const Words names = {"rack-a", "rack-b", "blade-c", "node-d"};
    std::vector<json> controllers;
    for (const std::string& name : names)
    {
        controllers.push_back(controller(name, habits));
    }
    serveEntries(controllers);
    const std::string list = targetList(names);
    tree_.options.interruptAfter = std::chrono::milliseconds(GetParam());
    const ProcessOutcome outcome = compare({"--config", list, "--parallel", "2", "--pattern", "."});
    ASSERT_FALSE(outcome.timedOut);
    if (outcome.signal != SIGINT) // which ends the program before it has begun to look for it
    {
        EXPECT_THAT(outcome.exitStatus, AnyOf(0, kInterrupted, kTasksSkipped)) << outcome.out << outcome.err;
    }
    if (exists("out"))
    {
        expectWholeFiles();
    }
    if (outcome.exitStatus == kTasksSkipped)
    {
        EXPECT_THAT(outcome.out, HasSubstr("4 targets: "));
        for (const std::string& name : names)
        {
            EXPECT_THAT(outcome.out, HasSubstr("\n" + folder(name) + "  "));
        }
    }
    const json counted = statistics();
    EXPECT_EQ(counted["sessions_open"], 0) << counted.dump(2);
}

TEST_F(FleetFixture, FinishesALoginThatIsUnderWayWhenInterrupted)
{
    const json slowLogin = {{"method", "POST"}, {"path", "Sessions$"}, {"action", "slow"}, {"delay_ms", 6500}};
    serveEntries({controller(
        "rack-a", {{"behaviour", {{"authentication", "sessions_only"}}}, {"faults", json::array({slowLogin})}})});
    tree_.options.interruptAfter = std::chrono::milliseconds(1000);
    const ProcessOutcome outcome = compare({"--bmc", login("rack-a")});
    ASSERT_FALSE(outcome.timedOut);
    EXPECT_EQ(outcome.exitStatus, kTasksSkipped) << outcome.out << outcome.err;
    const json counted = statistics();
    EXPECT_EQ(counted["controllers"][0]["sessions_created"], 1) << counted.dump(2);
    EXPECT_EQ(counted["sessions_open"], 0) << counted.dump(2);
}

TEST_F(FleetFixture, EndsInOrderWhenItsTerminalIsGone)
{
    serve({"rack-a"}, {"rack-a"});
    test_support::BackgroundProcess program(tree_.bin("korvan"),
                                            {"update", "compare", "--output", tree_.file("out"), "--cacert",
                                             tree_.file("ca.pem"), "--config", targetList({"rack-a"})});
    for (int attempt = 0; attempt < 100 && !exists("out/" + folder("rack-a")); ++attempt)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    program.sendSignal(SIGHUP);
    ProcessOutcome outcome;
    ASSERT_TRUE(program.wait(std::chrono::seconds(15), outcome));
    EXPECT_EQ(outcome.exitStatus, kTasksSkipped);
    EXPECT_TRUE(exists("out/FAILURE-" + folder("rack-a") + "/common_result.xml"));
}

INSTANTIATE_TEST_SUITE_P(AfterMilliseconds, InterruptedRun,
                         testing::Values(5, 40, 120, 250, 400, 600, 850, 1200, 1600, 2200),
                         testing::PrintToStringParamName());
} // namespace
