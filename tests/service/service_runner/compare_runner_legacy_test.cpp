#include "service_runner/service_update_compare_runner.h"

#include "common/module_directory.h"
#include "result_codes.h"
#include "support/module_test.h"

#include <boost/filesystem/operations.hpp>

namespace
{
using Words = std::vector<std::string>;

constexpr char kLogSource[] = "service\\service_runner/service_update_compare_runner";
constexpr int kPathWrong = 0x1006A;
constexpr int kUnsupported = 0x1006D;

class LegacyCommandTest : public ModuleTest
{
  protected:
    LegacyCommandTest()
    {
        write("tools/velpaki.exe", "#!/bin/sh\n");
        configure("tools/velpaki.exe");
    }

    void configure(const std::string& name) { fake::framework().config["VELPAKI_PATH"] = path(name); }

    int run(const Words& words, std::string& command)
    {
        UserContext context = context_;
        context.argumentVector = {"korvan"};
        context.argumentVector.insert(context.argumentVector.end(), words.begin(), words.end());
        context.argumentCount = static_cast<int>(context.argumentVector.size());
        CompareRunner runner(context, folder_.path(), false);
        return runner.GetBlueCmd(command);
    }

    int run(const Words& words) { return run(words, command_); }

    void expectRefused(const Words& words, int code)
    {
        command_ = "untouched";
        EXPECT_EQ(run(words), code);
        EXPECT_EQ(command_, "untouched");
        const std::string message = GetErrorMessage(static_cast<std::uint32_t>(code));
        EXPECT_EQ(logged(1, message), 1U);
        EXPECT_EQ(record(message).source, kLogSource);
        EXPECT_EQ(logged(4, "Exiting  CompareRunner::GetBlueCmd"), 0U);
    }

    UserContext context_;
    std::string command_;
};

TEST_F(LegacyCommandTest, JoinsToolPathAndArguments)
{
    EXPECT_EQ(run({"update", "compare", "--mt", "7T01"}), 0);
    EXPECT_EQ(command_, path("tools/velpaki.exe") + " compare -u -m 7T01");
    EXPECT_EQ(out(), "VELPAKI cmd:compare -u -m 7T01\n");
}

TEST_F(LegacyCommandTest, LogsItsSteps)
{
    run({"update", "compare"});
    ASSERT_EQ(log_.size(), 4U);
    EXPECT_EQ(log_[0], (LogRecord{4, "", 0, "Entering  CompareRunner::GetBlueCmd"}));
    EXPECT_EQ(log_[1], (LogRecord{4, "", 0, "BlueHelper::GetFullCmd vellitePath=" + path("tools/velpaki.exe")}));
    EXPECT_EQ(log_[2],
              (LogRecord{4, "", 0, "BlueHelper::GetFullCmd fullCmd=" + path("tools/velpaki.exe") + " compare -u"}));
    EXPECT_EQ(log_[3], (LogRecord{4, "", 0, "Exiting  CompareRunner::GetBlueCmd"}));
    EXPECT_EQ(log_[0].source, kLogSource);
}

TEST_F(LegacyCommandTest, PassesAnEmptyArgumentList)
{
    EXPECT_EQ(run({"update", "compare"}), 0);
    EXPECT_EQ(command_, path("tools/velpaki.exe") + " compare -u");
}

TEST_F(LegacyCommandTest, RunsFlashAsTheToolsUpdate)
{
    EXPECT_EQ(run({"update", "flash"}), 0);
    EXPECT_EQ(command_, path("tools/velpaki.exe") + " update -u");
}

TEST_F(LegacyCommandTest, RefusesAnotherSubCommand)
{
    expectRefused({"update", "scan"}, kUnsupported);
    EXPECT_EQ(out(), "The command: scan is not supported.\n");
}

TEST_F(LegacyCommandTest, RefusesAnEmptySubCommand)
{
    expectRefused({"update", ""}, kUnsupported);
    EXPECT_EQ(out(), "Please specify the command!\n");
}

TEST_F(LegacyCommandTest, RefusesAnotherCommandWithoutAWord)
{
    expectRefused({"Update", "compare"}, kUnsupported);
    EXPECT_EQ(out(), "");
}

TEST_F(LegacyCommandTest, RefusesFewerThanThreeWordsWithoutAWord)
{
    expectRefused({"update"}, kUnsupported);
    EXPECT_EQ(out(), "");
}

TEST_F(LegacyCommandTest, RefusesABadShape)
{
    expectRefused({"update", "compare", "latest"}, kUnsupported);
    EXPECT_NE(out().find("should start with  --."), std::string::npos);
}

TEST_F(LegacyCommandTest, RefusesWhatCannotBeTranslated)
{
    expectRefused({"update", "compare", "--scope", "all"}, kUnsupported);
    EXPECT_NE(out().find("The value of the parameter --scope all is not valid. "), std::string::npos);
}

TEST_F(LegacyCommandTest, RefusesAMissingConfiguration)
{
    fake::framework().config.clear();
    expectRefused({"update", "compare"}, kPathWrong);
}

TEST_F(LegacyCommandTest, RefusesAMissingFile)
{
    configure("tools/velpaki.gone");
    expectRefused({"update", "compare"}, kPathWrong);
}

TEST_F(LegacyCommandTest, RefusesADirectory)
{
    boost::filesystem::create_directory(path("velpaki"));
    configure("velpaki");
    expectRefused({"update", "compare"}, kPathWrong);
}

TEST_F(LegacyCommandTest, RefusesAFileNamedInCapitals)
{
    write("VELPAKI.EXE", "x");
    configure("VELPAKI.EXE");
    expectRefused({"update", "compare"}, kPathWrong);
}

TEST_F(LegacyCommandTest, TakesTheNameAnywhereInThePath)
{
    write("velpaki/tool", "x");
    configure("velpaki/tool");
    EXPECT_EQ(run({"update", "compare"}), 0);
}

// A file for the time of a test in the directory of the running program.
class FileBesideProgram
{
  public:
    explicit FileBesideProgram(const std::string& name) : path_(GetModuleDirectory(nullptr) + name)
    {
        std::ofstream(path_) << "x";
    }
    ~FileBesideProgram() { boost::filesystem::remove(path_); }
    FileBesideProgram(const FileBesideProgram&) = delete;
    FileBesideProgram& operator=(const FileBesideProgram&) = delete;

    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

TEST_F(LegacyCommandTest, RefusesTheProgramsOwnProxyTool)
{
    const FileBesideProgram proxy("velpaki.exe");
    fake::framework().config["VELPAKI_PATH"] = proxy.path();
    expectRefused({"update", "compare"}, 20);
}

TEST_F(LegacyCommandTest, PassesAnotherFileBesideTheProgram)
{
    const FileBesideProgram tool("velpaki-real.exe");
    fake::framework().config["VELPAKI_PATH"] = tool.path();
    EXPECT_EQ(run({"update", "compare"}), 0);
}

TEST_F(LegacyCommandTest, RefusesAnotherToolBesideTheProgramByItsName)
{
    const FileBesideProgram other("other-tool");
    fake::framework().config["VELPAKI_PATH"] = other.path();
    EXPECT_EQ(run({"update", "compare"}), kPathWrong);
}

TEST_F(LegacyCommandTest, LooksAtThePathBeforeTheWords)
{
    fake::framework().config.clear();
    expectRefused({"update", "scan"}, kPathWrong);
    EXPECT_EQ(out(), "");
}

TEST_F(LegacyCommandTest, LooksAtTheShapeBeforeTheOptions)
{
    expectRefused({"update", "compare", "--bad", "a", "b"}, kUnsupported);
    EXPECT_EQ(out(), "The command parameters are not vaild!\nA paramter can not carry two values! \n");
}

TEST_F(LegacyCommandTest, KeepsTheCommandLineOutOfTheLogForEsxi)
{
    context_.options["esxi"] = "root:hush@h";
    EXPECT_EQ(run({"update", "compare", "--esxi", "root:hush@h"}), 0);
    EXPECT_EQ(logged(4, "BlueHelper::GetFullCmd ESXi case"), 1U);
    for (const LogRecord& line : log_)
    {
        EXPECT_EQ(line.text.find("hush"), std::string::npos) << line.text;
    }
    EXPECT_EQ(out(), "VELPAKI cmd:compare -u --vmware-esxi=https://root:hush@h\n");
    EXPECT_EQ(command_, path("tools/velpaki.exe") + " compare -u --vmware-esxi=https://root:hush@h");
}

TEST_F(LegacyCommandTest, NeitherQuotesNorCompletesThePath)
{
    write("my tools/velpaki", "x");
    configure("my tools/velpaki");
    EXPECT_EQ(run({"update", "compare"}), 0);
    EXPECT_EQ(command_, path("my tools/velpaki") + " compare -u");
}
} // namespace
