#include "framework/multi_app/test_application.h"
#include "support/pattern.h"
#include "target_run/target_run.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <fstream>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

namespace
{
KorvanResult succeed(const TestApplication&, const nova::ServerInfo&, const std::string&)
{
    return KorvanResult();
}

using BasicMultiAppTest = MultiAppTest;

std::string addresses(int count)
{
    std::string list;
    for (int number = 1; number <= count; ++number)
    {
        list += (list.empty() ? "h" : ",h") + std::to_string(number);
    }
    return list;
}
} // namespace

TEST_F(BasicMultiAppTest, GivesEveryTargetAnEmptyFolderOfItsOwn)
{
    context_.options = {{"bmc", "10.0.0.1,10.0.0.2:8443,[fe80::1]"}, {"smm", "u@s"}};
    std::mutex mutex;
    std::set<std::string> seen;
    const KorvanResult result = run(
        [&](const TestApplication&, const nova::ServerInfo& server, const std::string& folder)
        {
            const std::lock_guard<std::mutex> lock(mutex);
            EXPECT_TRUE(fs::is_empty(folder));
            std::ofstream(folder + "/file") << server.host;
            seen.insert(server.option + " " + server.host + " " + fs::path(folder).filename().string());
            return KorvanResult(server.host == "10.0.0.2" ? 13U : 0U);
        });
    EXPECT_EQ(result.code, 58U);
    EXPECT_EQ(seen, (std::set<std::string>{"bmc 10.0.0.1 10.0.0.1", "bmc 10.0.0.2 10.0.0.2_8443", "bmc fe80::1 fe80__1",
                                           "smm s s"}));
    EXPECT_EQ(entries(), (std::set<std::string>{"SUCCESS-10.0.0.1", "FAILURE-10.0.0.2_8443", "SUCCESS-fe80__1",
                                                "SUCCESS-s", "korvan.log"}));
    EXPECT_EQ(test_support::readFile(context_.outputDir + "/SUCCESS-fe80__1/file"), "fe80::1");
    EXPECT_EQ(results_.size(), 4U);
    EXPECT_EQ(results_["10.0.0.2_8443"].code, 13U);
}

TEST_F(BasicMultiAppTest, RunsAsManyTasksAtOnceAsAllowedAndNoMore)
{
    context_.options = {{"bmc", addresses(12)}};
    context_.parallel = 4;
    std::mutex mutex;
    std::condition_variable arrived;
    int running = 0;
    int most = 0;
    const KorvanResult result = run(
        [&](const TestApplication&, const nova::ServerInfo&, const std::string&)
        {
            std::unique_lock<std::mutex> lock(mutex);
            most = std::max(most, ++running);
            arrived.notify_all();
            // Only the first ones wait for each other; a pool of fewer threads would end here after the time.
            arrived.wait_for(lock, std::chrono::milliseconds(500), [&] { return most >= 4; });
            --running;
            return KorvanResult();
        });
    EXPECT_TRUE(result.succeeded());
    EXPECT_EQ(most, 4);
    EXPECT_EQ(results_.size(), 12U);
}

TEST_F(BasicMultiAppTest, TurnsAnExceptionIntoTheTargetsResult)
{
    context_.options = {{"bmc", "a,b,c"}};
    const KorvanResult result = run(
        [](const TestApplication&, const nova::ServerInfo& server, const std::string&) -> KorvanResult
        {
            if (server.host == "a")
            {
                throw std::runtime_error("broken by the test");
            }
            if (server.host == "b")
            {
                throw 1;
            }
            return KorvanResult();
        });
    EXPECT_EQ(result.code, 58U);
    EXPECT_EQ(results_["a"].code, 17U);
    EXPECT_EQ(results_["a"].message, "broken by the test");
    EXPECT_EQ(results_["b"].message, "unknown exception");
    EXPECT_TRUE(results_["c"].succeeded());
    EXPECT_EQ(entries(), (std::set<std::string>{"FAILURE-a", "FAILURE-b", "SUCCESS-c", "korvan.log"}));
}

TEST_F(BasicMultiAppTest, StartsNoFurtherTargetAfterAnInterrupt)
{
    context_.options = {{"bmc", addresses(5)}};
    context_.parallel = 1;
    folder_.write("out/SUCCESS-h4/old", "of an earlier run");
    TestApplication application(
        [](const TestApplication&, const nova::ServerInfo& server, const std::string&)
        {
            if (server.host == "h2")
            {
                interrupt::request();
            }
            return KorvanResult();
        });
    const KorvanResult result = run(application);
    EXPECT_EQ(result.code, 59U);
    EXPECT_EQ(entries(), (std::set<std::string>{"SUCCESS-h1", "SUCCESS-h2", "korvan.log"}));
    EXPECT_EQ(application.results["h2"].code, 0U);
    EXPECT_EQ(application.results["h3"].code, 47U);
    EXPECT_EQ(application.results["h5"].code, 47U);
    EXPECT_EQ(application.handled, 1);
    EXPECT_THAT(out_, HasSubstr("5 targets: 2 succeeded, 0 failed, 3 skipped."));
}

TEST_F(BasicMultiAppTest, RemovesTheTargetsFoldersOfEarlierRunsAndNoOthers)
{
    context_.options = {{"bmc", "h1"}};
    for (const char* name : {"h1", "SUCCESS-h1", "FAILURE-h1", "SUCCESS-h10", "FAILURE-h1.other"})
    {
        folder_.write(std::string("out/") + name + "/deep/old", "old");
    }
    EXPECT_TRUE(run(succeed).succeeded());
    EXPECT_EQ(entries(), (std::set<std::string>{"SUCCESS-h1", "SUCCESS-h10", "FAILURE-h1.other", "korvan.log"}));
    EXPECT_TRUE(fs::is_empty(context_.outputDir + "/SUCCESS-h1"));
}

TEST_F(BasicMultiAppTest, NeverFollowsALinkWhenItRemoves)
{
    context_.options = {{"bmc", "h1,h2"}};
    const std::string kept = folder_.write("elsewhere/kept", "content");
    fs::create_directories(context_.outputDir + "/SUCCESS-h2");
    fs::create_directory_symlink(folder_.file("elsewhere"), context_.outputDir + "/h1");
    fs::create_directory_symlink(folder_.file("elsewhere"), context_.outputDir + "/SUCCESS-h2/link");
    EXPECT_TRUE(run(succeed).succeeded());
    EXPECT_EQ(test_support::readFile(kept), "content");
    EXPECT_FALSE(fs::is_symlink(context_.outputDir + "/SUCCESS-h1"));
    EXPECT_TRUE(fs::is_empty(folder_.file("out/SUCCESS-h2")));
}

TEST_F(BasicMultiAppTest, FailsATargetWhoseFolderCannotBeRenamed)
{
    context_.options = {{"bmc", "h1,h2"}};
    const KorvanResult result = run(
        [](const TestApplication&, const nova::ServerInfo& server, const std::string& folder)
        {
            if (server.host == "h1")
            {
                fs::remove_all(folder);
            }
            return KorvanResult();
        });
    EXPECT_EQ(result.code, 58U);
    EXPECT_EQ(results_["h1"].code, 17U);
    EXPECT_THAT(results_["h1"].message, HasSubstr("h1"));
    EXPECT_TRUE(results_["h2"].succeeded());
}

TEST_F(BasicMultiAppTest, FailsATargetWhoseFolderCannotBeMade)
{
    context_.options = {{"bmc", "h1," + std::string(60, 'a')}};
    context_.parallel = 1;
    const KorvanResult result = run(
        [this](const TestApplication&, const nova::ServerInfo&, const std::string&)
        {
            fs::rename(context_.outputDir, folder_.file("moved"));
            return KorvanResult(13);
        });
    EXPECT_EQ(result.code, 58U);
    EXPECT_EQ(results_["h1"].code, 13U) << "the task's own failure stays";
    EXPECT_EQ(results_[std::string(60, 'a')].code, 8U);
}

TEST_F(BasicMultiAppTest, ReportsWithoutAnyTarget)
{
    TestApplication application(succeed);
    EXPECT_EQ(run(application).code, 0U);
    EXPECT_EQ(application.handled, 1);
    EXPECT_THAT(out_,
                testing::AllOf(HasSubstr("\nNo target was named; "), HasSubstr("Results: " + context_.outputDir)));
    EXPECT_EQ(entries(), std::set<std::string>{"korvan.log"});
}

TEST_F(BasicMultiAppTest, FailsARunWhoseReportBreaksOff)
{
    context_.options = {{"bmc", "h1"}};
    TestApplication application(succeed);
    application.handler = [] { throw std::runtime_error("no report"); };
    EXPECT_EQ(run(application).code, 17U);
    EXPECT_THAT(err_, HasSubstr("no report"));
    EXPECT_THAT(out_, HasSubstr("1 target: 1 succeeded"));
}

TEST_F(BasicMultiAppTest, TellsWhatConcernsAllTargetsOnce)
{
    context_.options = {{"bmc", "h1,h2,h3"}};
    target_run::remarkOnRun("of an earlier run");
    run(
        [](const TestApplication&, const nova::ServerInfo&, const std::string&)
        {
            target_run::remarkOnRun("wrong\nid");
            return KorvanResult();
        });
    EXPECT_THAT(err_, testing::EndsWith("\nkorvan: warning: wrong\\x0Aid\n"));
    EXPECT_EQ(err_.find("wrong"), err_.rfind("wrong"));
    EXPECT_THAT(err_, Not(HasSubstr("earlier")));
    EXPECT_THAT(out_, Not(HasSubstr("wrong")));
    EXPECT_THAT(test_support::readFile(context_.outputDir + "/korvan.log"), HasSubstr("wrong\\x0Aid"));
}

TEST_F(BasicMultiAppTest, TellsOneLineForEveryTargetThatEnds)
{
    context_.options = {{"bmc", "h1,h2"}};
    context_.parallel = 1;
    run([](const TestApplication&, const nova::ServerInfo& server, const std::string&)
        { return server.host == "h1" ? KorvanResult() : KorvanResult(13, "line\nbreak"); });
    EXPECT_EQ(err_, "[1/2] h1 OK\n[2/2] h2 FAILED 13 line\\x0Abreak\n");
}

TEST_F(BasicMultiAppTest, NamesTheTargetInTheLogAndNoPassword)
{
    context_.options = {{"bmc", "u:s3cret@h1"}, {"bmc-password", "s3cret"}};
    run(succeed);
    const std::string log = test_support::readFile(context_.outputDir + "/korvan.log");
    EXPECT_THAT(log, test_support::HasPattern("info \\[h1\\] framework/multi_app/target_task:[0-9]+ started as bmc"));
    EXPECT_THAT(log, Not(HasSubstr("s3cret")));
}

TEST_F(BasicMultiAppTest, InheritsNoOptionThatNamesOtherTargets)
{
    context_.options = {{"bmc", "b"},
                        {"pmx", "p"},
                        {"esxi", "e"},
                        {"cmm", "c"},
                        {"smm", "s"},
                        {"type", "fw"},
                        {"config", folder_.write("t.json", R"({"targets": [{"kind": "local"}]})")}};
    std::mutex mutex;
    std::map<std::string, std::string> kept;
    std::map<std::string, std::size_t> whole;
    TestApplication application(
        [&](const TestApplication& self, const nova::ServerInfo& server, const std::string&)
        {
            const std::lock_guard<std::mutex> lock(mutex);
            for (const auto& entry : self.inherited(false).options)
            {
                kept[server.option] += entry.first + " ";
            }
            whole[server.option] = self.inherited(true).options.size();
            return KorvanResult();
        });
    EXPECT_TRUE(run(application).succeeded());
    EXPECT_EQ(kept["bmc"], "bmc config type ");
    EXPECT_EQ(kept["smm"], "config smm type ");
    EXPECT_EQ(kept["esxi"], "config esxi type ");
    EXPECT_EQ(kept["local"], "config esxi type ");
    EXPECT_EQ(whole["bmc"], context_.options.size());
    EXPECT_EQ(application.inherited(false).options, context_.options) << "outside of a task";
}

TEST_F(BasicMultiAppTest, LaysTheTrustOfATargetIntoItsContextAlone)
{
    const std::string fingerprint(64, 'a');
    context_.options = {
        {"bmc", "h2"},
        {"config", folder_.write("t.json", R"({"targets": [{"kind": "bmc", "address": "h1", "fingerprint": ")" +
                                               fingerprint + R"(", "old_tls": true}]})")}};
    std::mutex mutex;
    std::map<std::string, std::string> laidIn;
    TestApplication application(
        [&](const TestApplication& self, const nova::ServerInfo& server, const std::string&)
        {
            const UserContext context = self.inherited(false);
            const std::lock_guard<std::mutex> lock(mutex);
            laidIn[server.host] =
                GetOption(context, "fingerprint", "none") + (HasOption(context, "old-tls") ? " old" : "");
            return KorvanResult();
        });
    EXPECT_TRUE(run(application).succeeded());
    EXPECT_EQ(laidIn["h1"], fingerprint + " old");
    EXPECT_EQ(laidIn["h2"], "none");
}

TEST_F(BasicMultiAppTest, DoesNothingBeforeInitialize)
{
    TestApplication application(succeed);
    EXPECT_EQ(application.CreateConfigure(), nullptr);
    EXPECT_EQ(application.Running().code, 17U);
    EXPECT_EQ(application.handled, 0);
    EXPECT_TRUE(application.Cleanup().succeeded());
}

TEST_F(BasicMultiAppTest, CanRunTwice)
{
    context_.options = {{"bmc", "h1"}};
    TestApplication application(succeed);
    EXPECT_TRUE(run(application).succeeded());
    EXPECT_TRUE(run(application).succeeded());
    EXPECT_EQ(application.handled, 2);
}
