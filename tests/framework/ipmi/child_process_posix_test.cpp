#include "ipmi/child_process.h"

#include "interrupt.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

namespace
{
using ipmi::ChildEnd;
using ipmi::ChildOutcome;
using ipmi::ChildRequest;
using Clock = std::chrono::steady_clock;

ChildRequest shell(const std::string& script)
{
    ChildRequest request;
    request.program = "/bin/sh";
    request.arguments = {"-c", script};
    request.environment = {"PATH=/usr/bin:/bin"};
    return request;
}

class ChildProcess : public ::testing::Test
{
  protected:
    ChildProcess() { interrupt::reset(); }
    ~ChildProcess() override { interrupt::reset(); }
};
} // namespace

TEST_F(ChildProcess, GivesStatusAndBothStreams)
{
    const ChildOutcome outcome = ipmi::runChild(shell("echo out; echo err >&2; exit 7"));
    EXPECT_EQ(ChildEnd::Exited, outcome.end);
    EXPECT_EQ(7, outcome.exitStatus);
    EXPECT_EQ("out\n", outcome.out);
    EXPECT_EQ("err\n", outcome.err);
}

TEST_F(ChildProcess, TakesArgumentsAsTheyAre)
{
    ChildRequest request = shell(R"(printf '%s|' "$@")");
    request.arguments.insert(request.arguments.end(), {"sh", "a b", "$(id)", "", "'\";"});
    EXPECT_EQ("a b|$(id)||'\";|", ipmi::runChild(request).out);
}

TEST_F(ChildProcess, HasOnlyTheEnvironmentThatItWasGiven)
{
    ::setenv("KORVAN_TEST_LEFT_BEHIND", "1", 1);
    ChildRequest request;
    request.program = "/usr/bin/env";
    request.environment = {"ONE=1", "TWO=2"};
    EXPECT_EQ("ONE=1\nTWO=2\n", ipmi::runChild(request).out);
    ::unsetenv("KORVAN_TEST_LEFT_BEHIND");
}

TEST_F(ChildProcess, HasNothingToReadAndNoTerminal)
{
    EXPECT_EQ("end\nno terminal\n",
              ipmi::runChild(shell("read line || echo end; (: </dev/tty) 2>/dev/null || echo no terminal")).out);
}

TEST_F(ChildProcess, IsKilledWithItsOwnChildrenAtTheTimeLimit)
{
    const test_support::ScratchFolder folder;
    ChildRequest request = shell("sleep 60 & echo $! > " + folder.file("pid") + "; echo begun; wait");
    request.timeLimit = std::chrono::milliseconds(300);
    const Clock::time_point begin = Clock::now();
    const ChildOutcome outcome = ipmi::runChild(request);
    EXPECT_EQ(ChildEnd::TimeLimit, outcome.end);
    EXPECT_EQ("begun\n", outcome.out);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5));
    // Killed, it lives on only until its new parent has taken notice.
    const int child = std::stoi(test_support::readFile(folder.file("pid")));
    const std::string statusFile = "/proc/" + std::to_string(child) + "/stat";
    const auto alive = [&statusFile]
    {
        const std::string status = test_support::readFile(statusFile);
        return !status.empty() && status.find(") Z ") == std::string::npos;
    };
    for (int tries = 0; tries < 100 && alive(); ++tries)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    EXPECT_FALSE(alive());
}

TEST_F(ChildProcess, IsNotWaitedForWhenOnlyItsChildHoldsTheOutput)
{
    const Clock::time_point begin = Clock::now();
    const ChildOutcome outcome = ipmi::runChild(shell("sleep 60 & echo done"));
    EXPECT_EQ(ChildEnd::Exited, outcome.end);
    EXPECT_EQ("done\n", outcome.out);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5));
}

TEST_F(ChildProcess, IsKilledWhenItWritesTooMuch)
{
    for (const char* script : {"while :; do echo 0123456789; done", "while :; do echo 0123456789 >&2; done"})
    {
        ChildRequest request = shell(script);
        request.largestOutput = 10000;
        const ChildOutcome outcome = ipmi::runChild(request);
        EXPECT_EQ(ChildEnd::TooLarge, outcome.end);
        EXPECT_LE(outcome.out.size() + outcome.err.size(), 10000U);
    }
}

TEST_F(ChildProcess, IsKilledWhenTheUserWishesToStop)
{
    std::thread user(
        []
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            interrupt::request();
        });
    const Clock::time_point begin = Clock::now();
    EXPECT_EQ(ChildEnd::Interrupted, ipmi::runChild(shell("sleep 60")).end);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5));
    user.join();
}

TEST_F(ChildProcess, TellsASignalFromAStatus)
{
    const ChildOutcome outcome = ipmi::runChild(shell("kill -SEGV $$"));
    EXPECT_EQ(ChildEnd::Signalled, outcome.end);
    EXPECT_EQ(-1, outcome.exitStatus);
}

TEST_F(ChildProcess, SaysWhyItCouldNotStart)
{
    ChildRequest request;
    request.program = "/nowhere/tool";
    const ChildOutcome outcome = ipmi::runChild(request);
    EXPECT_EQ(ChildEnd::NotStarted, outcome.end);
    EXPECT_FALSE(outcome.reason.empty());
}

TEST(ProgramFolders, AreSearchedInOrderForWhatCanBeRun)
{
    const test_support::ScratchFolder folder;
    folder.write("a/tool", "no program");
    const std::string program = folder.write("b/tool", "#!/bin/sh\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    EXPECT_EQ(program, ipmi::findProgram("tool", {folder.file("none"), folder.file("a"), folder.file("b")}));
    EXPECT_EQ("", ipmi::findProgram("tool", {folder.file("a")}));
    for (const std::string& path : ipmi::programFolders())
    {
        EXPECT_EQ('/', path.front());
    }
}
