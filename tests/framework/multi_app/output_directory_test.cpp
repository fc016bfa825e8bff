#include "framework/multi_app/test_application.h"

#include "korvan_directory.h"
#include "multi_app/output_folder.h"
#include "support/file_rights.h"
#include "support/pattern.h"

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

namespace
{
class OutputDirectory : public MultiAppTest
{
  protected:
    KorvanResult initialize()
    {
        TestApplication application([](const TestApplication&, const nova::ServerInfo&, const std::string&)
                                    { return KorvanResult(); });
        const KorvanResult result = application.Initialize(context_);
        application.Cleanup();
        return result;
    }
};

// Puts the working directory elsewhere while it lives.
class WorkingFolder
{
  public:
    explicit WorkingFolder(const std::string& path) : previous_(fs::current_path()) { fs::current_path(path); }
    ~WorkingFolder()
    {
        std::error_code ignored;
        fs::current_path(previous_, ignored);
    }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

  private:
    fs::path previous_;
};
} // namespace

TEST_F(OutputDirectory, IsMadeForTheUserAlone)
{
    context_.outputDir = folder_.file("a/b/");
    EXPECT_TRUE(initialize().succeeded());
    EXPECT_EQ(KorvanDirectory::getOutputDir(), folder_.file("a/b"));
    EXPECT_TRUE(test_support::isForOwnerAlone(folder_.file("a")));
    EXPECT_TRUE(test_support::isForOwnerAlone(folder_.file("a/b")));
    EXPECT_TRUE(test_support::isForOwnerAlone(folder_.file("a/b/korvan.log")));
}

TEST_F(OutputDirectory, IsANewDatedOneWhenNoneIsNamed)
{
    const WorkingFolder here(folder_.path());
    context_.outputDir.clear();
    std::set<std::string> made;
    for (int time = 0; time < 3; ++time)
    {
        EXPECT_TRUE(initialize().succeeded());
        made.insert(KorvanDirectory::getOutputDir());
    }
    EXPECT_EQ(made.size(), 3U);
    for (const std::string& path : made)
    {
        EXPECT_THAT(path, test_support::FitsPattern(".*[/\\\\]logs[/\\\\]Korvan-[0-9]{8}-[0-9]{6}(-[23])?"));
        EXPECT_TRUE(test_support::isForOwnerAlone(path));
    }
}

TEST_F(OutputDirectory, CannotBeMadeBelowAFile)
{
    folder_.write("file", "");
    for (const char* path : {"file", "file/below"})
    {
        context_.outputDir = folder_.file(path);
        const KorvanResult result = initialize();
        EXPECT_EQ(result.code, 8U) << path;
        EXPECT_THAT(result.message, HasSubstr(context_.outputDir + ": "));
    }
}

TEST_F(OutputDirectory, IsNoGoodWithoutALog)
{
    fs::create_directories(context_.outputDir + "/korvan.log");
    const KorvanResult result = initialize();
    EXPECT_EQ(result.code, 8U);
    EXPECT_THAT(result.message, HasSubstr("korvan.log"));
}

TEST_F(OutputDirectory, IsNotMadeForWrongTargetsOrOptions)
{
    context_.options = {{"bmc", "h:0"}};
    EXPECT_EQ(initialize().code, 56U);
    for (const char* level : {"", "0", "5", "33", "x", "-1"})
    {
        context_.options = {{"log", level}};
        EXPECT_EQ(initialize().code, 5U) << level;
    }
    context_.options = {{"config", folder_.file("none.json")}};
    EXPECT_EQ(initialize().code, 6U);
    EXPECT_FALSE(fs::exists(context_.outputDir));
}

TEST(OutputFolder, TellsWhatIsThereAlready)
{
    const test_support::ScratchFolder folder;
    std::string error;
    EXPECT_EQ(output_folder::makeOne(folder.file("a"), error), output_folder::Creation::Made);
    EXPECT_EQ(output_folder::makeOne(folder.file("a"), error), output_folder::Creation::AlreadyThere);
    EXPECT_EQ(output_folder::makeOne(folder.file("b/c"), error), output_folder::Creation::Failed);
    EXPECT_FALSE(error.empty());
}

TEST_F(OutputDirectory, WarnsOnceOfReportsThatAreNotOfThisRun)
{
    context_.options = {{"bmc", "a,b"}, {"pattern", "."}};
    for (const char* const folder : {"SUCCESS-a", "FAILURE-b", "SUCCESS-c", "FAILURE-d/below", "elsewhere/SUCCESS-a"})
    {
        folder_.write(std::string("out/") + folder + "/Korvan-update-compare.xml", "");
    }
    folder_.write("out/SUCCESS-e/other.xml", "");
    const auto succeed = [](const TestApplication&, const nova::ServerInfo&, const std::string&)
    { return KorvanResult(); };
    run(succeed);
    EXPECT_THAT(err_, testing::StartsWith(
                          "korvan: warning: the folder " + context_.outputDir +
                          " holds 3 reports of targets that this run does not name; the table and compare_result.json "
                          "will show them too. Give --output a new folder to leave them out\n"));
    context_.options.erase("pattern");
    run(succeed);
    EXPECT_THAT(err_, Not(HasSubstr("warning"))) << "without a pattern there is no table";
    context_.options = {{"pattern", "."}};
    run(succeed);
    EXPECT_THAT(err_, Not(HasSubstr("warning"))) << "the run is there to show them";
}
