#include "framework/multi_app/test_application.h"

#include "service/update_scan.h"
#include "summary_report.h"

#include <mutex>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{
class Resume : public MultiAppTest
{
  protected:
    Resume() { context_.options = {{"bmc", "a,b,c,d,e"}, {"resume", ""}}; }

    // Runs with tasks that fail for "d"; the hosts that had a task are in `ran_`.
    KorvanResult resume()
    {
        return run(
            [this](const TestApplication&, const nova::ServerInfo& server, const std::string&)
            {
                const std::lock_guard<std::mutex> lock(mutex_);
                ran_.insert(server.host);
                return KorvanResult(server.host == "d" ? 13U : 0U);
            });
    }

    std::mutex mutex_;
    std::set<std::string> ran_;
};
} // namespace

TEST_F(Resume, RunsOnlyTargetsThatHaveNotSucceeded)
{
    folder_.write("out/SUCCESS-a/report", "of the earlier run");
    folder_.write("out/FAILURE-b/report", "old");
    folder_.write("out/c/report", "cut off");
    folder_.write("out/SUCCESS-e", "a file");
    EXPECT_EQ(resume().code, 58U);
    EXPECT_THAT(ran_, ElementsAre("b", "c", "d", "e"));
    EXPECT_EQ(entries(),
              (std::set<std::string>{"SUCCESS-a", "SUCCESS-b", "SUCCESS-c", "FAILURE-d", "SUCCESS-e", "korvan.log"}));
    EXPECT_EQ(test_support::readFile(context_.outputDir + "/SUCCESS-a/report"), "of the earlier run");
}

TEST_F(Resume, CountsTheTargetsOfTheEarlierRun)
{
    folder_.write("out/SUCCESS-a/report", "");
    folder_.write("out/SUCCESS-c/report", "");
    resume();
    EXPECT_EQ(results_.size(), 5U);
    EXPECT_THAT(out_, HasSubstr("e  OK          0  Succeed.\na  OK          0  done in an earlier run\n"));
    EXPECT_THAT(out_, HasSubstr("5 targets: 4 succeeded, 1 failed, 0 skipped."));
}

TEST_F(Resume, TellsWhichInventoriesHadGaps)
{
    SummaryReport summary(fs::path(folder_.write("out/SUCCESS-a/report", "")).parent_path().string());
    summary.PushServiceResult(service::ServiceUpdateScan::ActionName(), 60, "the slots were not read\x1b[2J");
    summary.PushServiceResult("CompareUpdates", 0, "");
    summary.GenerateReportFile();
    folder_.write("out/SUCCESS-b/common_result.xml", "<broken");
    folder_.write("out/SUCCESS-c/report", "");
    resume();
    EXPECT_THAT(out_, HasSubstr("a  OK          0  done in an earlier run; the inventory has gaps: the slots were not "
                                "read"));
    EXPECT_THAT(out_, Not(HasSubstr("\x1b")));
    EXPECT_THAT(out_, HasSubstr("b  OK          0  done in an earlier run\n"));
    EXPECT_THAT(out_, HasSubstr("c  OK          0  done in an earlier run\n"));
}

TEST_F(Resume, ReportsWhenNothingIsLeftToDo)
{
    context_.options["bmc"] = "a";
    folder_.write("out/SUCCESS-a/report", "");
    TestApplication application([](const TestApplication&, const nova::ServerInfo&, const std::string&)
                                { return KorvanResult(13); });
    EXPECT_TRUE(run(application).succeeded());
    EXPECT_EQ(application.handled, 1);
    EXPECT_THAT(out_, HasSubstr("1 target: 1 succeeded"));
}

TEST_F(Resume, RunsAllInANewFolder)
{
    resume();
    EXPECT_EQ(ran_.size(), 5U);
}

TEST_F(Resume, FollowsNoSymbolicLink)
{
    folder_.write("other/report", "");
    fs::create_directories(context_.outputDir);
    fs::create_directory_symlink(folder_.file("other"), context_.outputDir + "/SUCCESS-a");
    resume();
    EXPECT_EQ(ran_.count("a"), 1U);
    EXPECT_TRUE(fs::exists(folder_.file("other/report")));
}

TEST_F(Resume, NeedsAnOutputDirectory)
{
    context_.outputDir.clear();
    const KorvanResult result = resume();
    EXPECT_EQ(result.code, 5U);
    EXPECT_THAT(result.message, HasSubstr("--output"));
    EXPECT_THAT(ran_, IsEmpty());
}
