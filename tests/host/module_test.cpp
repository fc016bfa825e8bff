#include "host/host_fixture.h"

#include "support/environment.h"

#include <csignal>

using test_support::BackgroundProcess;
using test_support::ProcessOutcome;
using testing::EndsWith;
using testing::HasSubstr;

namespace
{
// With a module beside the program that does what it is told.
class ModuleTest : public HostTest
{
  protected:
    ModuleTest() { copy(KORVAN_TEST_MODULE); }

    ProcessOutcome runIn(const std::string& mode, std::vector<std::string> options) const
    {
        options.insert(options.begin(), {"update", "compare", "--output=out"});
        test_support::ProcessOptions process;
        process.environment = {{"KORVAN_TEST_MODE", mode}};
        return run(options, process);
    }
};

// Starts the program in the mode and waits until its task runs.
class WaitingProgram
{
  public:
    WaitingProgram(const std::string& program, const std::string& output, const char* mode)
    {
        test_support::setVariable("KORVAN_TEST_MODE", mode);
        process_ = std::make_unique<BackgroundProcess>(
            program, std::vector<std::string>{"update", "compare", "--bmc=a,b", "--parallel=1", "--output=" + output});
        test_support::clearVariable("KORVAN_TEST_MODE");
        std::string line;
        started = process_->readLine(line, std::chrono::seconds(10)) && line == "waiting";
    }

    BackgroundProcess& process() { return *process_; }

    bool started = false;

  private:
    std::unique_ptr<BackgroundProcess> process_;
};
} // namespace

TEST_F(ModuleTest, RunsFromCreationToDestruction)
{
    const ProcessOutcome outcome = runIn("", {"--bmc=good", "--dir=", "--noscan"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("bmc=good\ndir=\nnoscan=\noutput=out\nupdate compare 7\n"));
    EXPECT_THAT(outcome.out, HasSubstr("good  OK          0  Succeed.\n1 target: 1 succeeded"));
    EXPECT_THAT(outcome.out, EndsWith("destroyed\n"));
    EXPECT_TRUE(std::filesystem::is_directory(folder_.file("out/SUCCESS-good")));
}

TEST_F(ModuleTest, EndsWithTheResultsNumber)
{
    const ProcessOutcome outcome = runIn("", {"--bmc=good,bad"});
    EXPECT_EQ(outcome.exitStatus, 58);
    EXPECT_THAT(outcome.err, HasSubstr("bad FAILED 13"));
}

TEST_F(ModuleTest, NeverTurnsAFailureIntoStatusZero)
{
    EXPECT_EQ(runIn("flash", {}).exitStatus, 1) << "the low eight bits of 0x600 are zero";
}

TEST_F(ModuleTest, TellsWhyItCannotStart)
{
    const ProcessOutcome wrong = runIn("", {"--bmc=u:s3cret@h:0"});
    EXPECT_EQ(wrong.exitStatus, 56);
    EXPECT_EQ(wrong.err, "korvan: option --bmc, address 1: the port of h is no number from 1 to 65535\n");
    EXPECT_FALSE(std::filesystem::exists(folder_.file("out")));
    EXPECT_EQ(runIn("", {"--config=none.json"}).exitStatus, 6);
}

TEST_F(ModuleTest, SurvivesAModuleThatBreaksOff)
{
    const ProcessOutcome thrown = runIn("throw", {});
    EXPECT_EQ(thrown.exitStatus, 17);
    EXPECT_THAT(thrown.err, HasSubstr("broken by the test"));
    EXPECT_EQ(runIn("null", {}).exitStatus, 17);
}

TEST_F(ModuleTest, StartsNothingThatNobodyCanConfirm)
{
    const ProcessOutcome outcome = runIn("ask", {"--bmc=good"});
    EXPECT_EQ(outcome.exitStatus, 37);
    EXPECT_FALSE(std::filesystem::exists(folder_.file("out")));
}

TEST_F(ModuleTest, ReportsWhatIsDoneAfterAnInterrupt)
{
    for (const int signal : {SIGINT, SIGTERM})
    {
        WaitingProgram waiting(program(), folder_.file("out"), "wait");
        ASSERT_TRUE(waiting.started);
        waiting.process().sendSignal(signal);
        ProcessOutcome outcome;
        ASSERT_TRUE(waiting.process().wait(std::chrono::seconds(10), outcome));
        EXPECT_EQ(outcome.exitStatus, 59);
        EXPECT_TRUE(std::filesystem::is_directory(folder_.file("out/FAILURE-a")));
        EXPECT_FALSE(std::filesystem::exists(folder_.file("out/b")));
    }
}

TEST_F(ModuleTest, EndsAtOnceOnASecondInterrupt)
{
    WaitingProgram waiting(program(), folder_.file("out"), "stubborn");
    ASSERT_TRUE(waiting.started);
    waiting.process().sendSignal(SIGINT);
    ProcessOutcome outcome;
    EXPECT_FALSE(waiting.process().wait(std::chrono::milliseconds(100), outcome));
    waiting.process().sendSignal(SIGINT);
    ASSERT_TRUE(waiting.process().wait(std::chrono::seconds(5), outcome));
    EXPECT_EQ(outcome.exitStatus, 130);
}
