#include "ipmi/child_process.h"

#include "interrupt.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace
{
using ipmi::ChildEnd;
using ipmi::ChildOutcome;
using ipmi::ChildRequest;
using Clock = std::chrono::steady_clock;

// This program's counterpart: tests/framework/ipmi/child_program.cpp.
ChildRequest child(const std::vector<std::string>& words)
{
    ChildRequest request;
    request.program = KORVAN_CHILD_PROGRAM;
    std::replace(request.program.begin(), request.program.end(), '/', '\\');
    request.arguments = words;
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
    const ChildOutcome outcome = ipmi::runChild(child({"streams", "7"}));
    EXPECT_EQ(ChildEnd::Exited, outcome.end);
    EXPECT_EQ(7, outcome.exitStatus);
    EXPECT_EQ("out\n", outcome.out);
    EXPECT_EQ("err\n", outcome.err);
}

TEST_F(ChildProcess, TakesArgumentsAsTheyAre)
{
    EXPECT_EQ(
        "a b|%PATH%||'\";|c\\|d\\\\\" e|&calc|\xC3\xA4|",
        ipmi::runChild(child({"words", "a b", "%PATH%", "", "'\";", "c\\", "d\\\\\" e", "&calc", "\xC3\xA4"})).out);
}

TEST_F(ChildProcess, HasOnlyTheEnvironmentThatItWasGiven)
{
    ::SetEnvironmentVariableA("KORVAN_TEST_LEFT_BEHIND", "1");
    ChildRequest request = child({"variables", "ONE", "TWO", "KORVAN_TEST_LEFT_BEHIND"});
    request.environment = {"TWO=2", "ONE=1"};
    EXPECT_EQ("1|2||", ipmi::runChild(request).out);
    ::SetEnvironmentVariableA("KORVAN_TEST_LEFT_BEHIND", nullptr);
}

TEST_F(ChildProcess, HasNothingToRead)
{
    EXPECT_EQ("end", ipmi::runChild(child({"read"})).out);
}

TEST_F(ChildProcess, IsKilledAtTheTimeLimit)
{
    ChildRequest request = child({"sleep"});
    request.timeLimit = std::chrono::milliseconds(500);
    const Clock::time_point begin = Clock::now();
    EXPECT_EQ(ChildEnd::TimeLimit, ipmi::runChild(request).end);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5));
}

TEST_F(ChildProcess, IsKilledWithItsOwnChildren)
{
    const Clock::time_point begin = Clock::now();
    const ChildOutcome outcome = ipmi::runChild(child({"start-another"}));
    EXPECT_EQ(ChildEnd::Exited, outcome.end);
    const HANDLE other = ::OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(std::stoul(outcome.out)));
    EXPECT_TRUE(other == nullptr || ::WaitForSingleObject(other, 5000) == WAIT_OBJECT_0);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5));
}

TEST_F(ChildProcess, IsKilledWhenItWritesTooMuch)
{
    ChildRequest request = child({"flood"});
    request.largestOutput = 10000;
    const ChildOutcome outcome = ipmi::runChild(request);
    EXPECT_EQ(ChildEnd::TooLarge, outcome.end);
    EXPECT_LE(outcome.out.size(), 10000U);
}

TEST_F(ChildProcess, IsKilledWhenTheUserWishesToStop)
{
    std::thread user(
        []
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            interrupt::request();
        });
    const Clock::time_point begin = Clock::now();
    EXPECT_EQ(ChildEnd::Interrupted, ipmi::runChild(child({"sleep"})).end);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5));
    user.join();
}

TEST_F(ChildProcess, TellsACrashFromAStatus)
{
    const ChildOutcome outcome = ipmi::runChild(child({"crash"}));
    EXPECT_EQ(ChildEnd::Signalled, outcome.end);
    EXPECT_EQ(-1, outcome.exitStatus);
}

TEST_F(ChildProcess, SaysWhyItCouldNotStart)
{
    ChildRequest request;
    for (const char* program : {"C:\\nowhere\\tool.exe", "C:\\nowhere\\tool.cmd"})
    {
        request.program = program;
        const ChildOutcome outcome = ipmi::runChild(request);
        EXPECT_EQ(ChildEnd::NotStarted, outcome.end) << program;
        EXPECT_FALSE(outcome.reason.empty()) << program;
    }
}

// The command interpreter would read the words in its own way.
TEST_F(ChildProcess, IsNeverABatchFile)
{
    const test_support::ScratchFolder folder;
    ChildRequest request;
    request.program = folder.write("tool.bat", "@exit /b 0\r\n");
    EXPECT_EQ(ChildEnd::NotStarted, ipmi::runChild(request).end);
}

TEST(ProgramFolders, AreSearchedInOrderForPrograms)
{
    const test_support::ScratchFolder folder;
    folder.write("a/tool.cmd", "no program");
    folder.write("b/tool.exe", "a program");
    EXPECT_EQ(folder.file("b") + "\\tool.exe",
              ipmi::findProgram("tool", {folder.file("none"), folder.file("a"), folder.file("b")}));
    EXPECT_EQ("", ipmi::findProgram("tool", {folder.file("a")}));
    EXPECT_FALSE(ipmi::programFolders().empty());
    for (const std::string& path : ipmi::programFolders())
    {
        EXPECT_EQ(":\\", path.substr(1, 2));
    }
}
