#include "log/log_control.h"
#include "xmodule_log.h"

#include "support/file_rights.h"
#include "support/pattern.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <thread>
#include <vector>

using test_support::readFile;
using test_support::ScratchFolder;
using testing::HasSubstr;
using testing::Not;

namespace
{
constexpr char kSource[] = "tests/log_test";

class LogFile : public testing::Test
{
  protected:
    ~LogFile() override { log_control::close(); }

    void open(int level)
    {
        std::string error;
        ASSERT_TRUE(log_control::open(path(), level, error)) << error;
    }

    std::string path() const { return folder_.file("korvan.log"); }

    std::string closedContent() const
    {
        log_control::close();
        return readFile(path());
    }

    const ScratchFolder folder_;
};

} // namespace

TEST_F(LogFile, HoldsTimeLevelSourceAndText)
{
    open(4);
    KORVAN_LOG(3, kSource) << "one and " << 2;
    EXPECT_THAT(closedContent(),
                test_support::FitsPattern(
                    "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8}\\.[0-9]{3} info tests/log_test:[0-9]+ one and 2\n"));
}

TEST_F(LogFile, IsForTheUserAlone)
{
    open(3);
    EXPECT_TRUE(test_support::isForOwnerAlone(path()));
}

TEST_F(LogFile, LeavesOutRecordsBelowItsLevelWithoutFormattingThem)
{
    open(2);
    bool formatted = false;
    const auto text = [&formatted]
    {
        formatted = true;
        return "information";
    };
    KORVAN_LOG(3, kSource) << text();
    KORVAN_LOG(2, kSource) << "warning text";
    EXPECT_FALSE(formatted);
    const std::string content = closedContent();
    EXPECT_THAT(content, HasSubstr("warning text"));
    EXPECT_THAT(content, Not(HasSubstr("information")));
}

TEST_F(LogFile, HasErrorsAtOnce)
{
    open(3);
    KORVAN_LOG(1, kSource) << "broken";
    EXPECT_THAT(readFile(path()), HasSubstr(" error "));
    EXPECT_THAT(readFile(path()), HasSubstr("broken"));
}

TEST_F(LogFile, NamesTheTargetOfTheThread)
{
    open(3);
    {
        const log_control::TargetScope outer("10.0.0.1");
        {
            const log_control::TargetScope inner("10.0.0.2");
            KORVAN_LOG(3, kSource) << "second";
            std::thread([] { KORVAN_LOG(3, kSource) << "elsewhere"; }).join();
        }
        KORVAN_LOG(3, kSource) << "first";
    }
    KORVAN_LOG(3, kSource) << "none";
    const std::string content = closedContent();
    EXPECT_THAT(content, test_support::HasPattern("info \\[10\\.0\\.0\\.2\\] tests/log_test:[0-9]+ second"));
    EXPECT_THAT(content, test_support::HasPattern("info \\[10\\.0\\.0\\.1\\] tests/log_test:[0-9]+ first"));
    EXPECT_THAT(content, test_support::HasPattern("info tests/log_test:[0-9]+ none"));
    EXPECT_THAT(content, test_support::HasPattern("info tests/log_test:[0-9]+ elsewhere"));
}

TEST_F(LogFile, KeepsOneRecordOnOneLine)
{
    open(3);
    KORVAN_LOG(3, kSource) << "a\nb\x1B[0m{}%v\n";
    const std::string content = closedContent();
    EXPECT_THAT(content, HasSubstr("a\\x0Ab\\x1B[0m{}%v\n"));
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 1);
}

TEST_F(LogFile, LosesNothingFromManyThreads)
{
    constexpr int kThreads = 8;
    constexpr int kRecords = 500;
    open(3);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
    {
        threads.emplace_back(
            []
            {
                for (int record = 0; record < kRecords; ++record)
                {
                    KORVAN_LOG(3, kSource) << "record";
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    const std::string content = closedContent();
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), kThreads * kRecords);
}

TEST_F(LogFile, StaysAsItWasWhenTheNextCannotBeOpened)
{
    open(3);
    std::string error;
    EXPECT_FALSE(log_control::open(folder_.file("none/korvan.log"), 4, error));
    EXPECT_FALSE(error.empty());
    KORVAN_LOG(3, kSource) << "still here";
    EXPECT_THAT(closedContent(), HasSubstr("still here"));
    EXPECT_EQ(XModule::Log::GetMinLogLevel(), 0);
}

TEST_F(LogFile, IsAppendedTo)
{
    folder_.write("korvan.log", "earlier\n");
    open(3);
    KORVAN_LOG(3, kSource) << "later";
    EXPECT_THAT(closedContent(), testing::StartsWith("earlier\n2"));
}

TEST(LogObserver, SeesRecordsUpToItsLevel)
{
    std::vector<std::string> seen;
    log_control::observe(2, [&seen](int level, const std::string& source, int, const std::string& text)
                         { seen.push_back(std::to_string(level) + source + text); });
    EXPECT_EQ(XModule::Log::GetMinLogLevel(), 2);
    KORVAN_LOG(2, "s") << "w\n";
    KORVAN_LOG(3, "s") << "i";
    log_control::observe(4, log_control::Observer());
    KORVAN_LOG(1, "s") << "after";
    EXPECT_EQ(seen, std::vector<std::string>{"2sw"});
}

TEST(LogObserver, SeesTimingRecords)
{
    std::vector<std::string> seen;
    log_control::observe(3, [&seen](int, const std::string&, int line, const std::string& text)
                         { seen.push_back(std::to_string(line) + " " + text); });
    AddDetailTimeDebugLog(3, "s", 7, "[B]", 11, 0, "");
    AddDetailTimeDebugLog(3, "s", 8, "[E]", 11, 13, "more");
    AddDetailTimeDebugLog(4, "s", 9, "[E]", 11, 13, "trace");
    log_control::observe(0, log_control::Observer());
    EXPECT_EQ(seen, (std::vector<std::string>{"7 [B] step 11 code 0", "8 [E] step 11 code 13 more"}));
}
