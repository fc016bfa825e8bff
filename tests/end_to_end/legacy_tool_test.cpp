#include "end_to_end/names.h"
#include "end_to_end/program_tree.h"

namespace
{
using namespace end_to_end;

constexpr char kPathWrong[] = "You are running on an Tolmar system. Please make sure VELPAKI_PATH is set correctly to "
                              "the executable binary of VELPAKI in global.config.";
constexpr char kUnsupported[] = "You are running against an Tolmar system. But the current command is not supported.";

// An in-band target of the legacy generation, with the installer tool's stand-in configured.
class LegacyTool : public ::testing::Test
{
  protected:
    LegacyTool()
    {
        tree_.write("local.json", R"({"targets": [{"kind": "local"}]})");
        tree_.options.environment = {{"FAKE_INSTALLER_RECORD", tree_.file("record")}};
        install("tools/velpaki.exe");
    }

    void install(const std::string& name)
    {
        fs::create_directories(fs::path(tree_.file(name)).parent_path());
        fs::copy_file(KORVAN_FAKE_INSTALLER, tree_.file(name));
        tree_.configure("VELPAKI_PATH", tool(name));
    }

    // As the command interpreter takes it for a program: with the system's own separators.
    std::string tool(const std::string& name) const { return fs::path(tree_.file(name)).make_preferred().string(); }

    ProcessOutcome run(const Words& options) const
    {
        Words words = {"update", "compare", "--config", "local.json", "--output", "out", "--mt", "7T01"};
        words.insert(words.end(), options.begin(), options.end());
        return tree_.korvan(words);
    }

    // What the tool was called with, its own name first, one word a line.
    std::string record() const { return readFile(tree_.file("record")); }

    void expectRefused(const ProcessOutcome& outcome, const std::string& message) const
    {
        EXPECT_EQ(outcome.exitStatus, 58) << outcome.out << outcome.err;
        EXPECT_NE(outcome.out.find(message), std::string::npos) << outcome.out;
        EXPECT_EQ(record(), "");
        EXPECT_NE(summary("FAILURE-localhost").find(message), std::string::npos);
    }

    std::string summary(const std::string& folder) const
    {
        return readFile(tree_.file("out/" + folder + "/common_result.xml"));
    }

    ProgramTree tree_;
};

TEST_F(LegacyTool, GetsTheTranslatedCommandLine)
{
    const ProcessOutcome outcome = run(
        {"--type", "fw", "--dir", "my pkgs", "--excludeid=X", "--scope", "latest", "--noscan", "--xml", "--backup"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out << outcome.err;
    EXPECT_EQ(record(), tool("tools/velpaki.exe") +
                            "\ncompare\n-u\n-F\n-l\nmy pkgs\n-e\nX\n-L\n--noinventory\n--xml\n-m\n7T01\n"
                            "--update-args=UEFI:--backup,PMX:--backup\n");
    EXPECT_NE(outcome.out.find("VELPAKI cmd:compare -u -F -l \"my pkgs\" -e X -L --noinventory --xml -m 7T01 "
                               "--update-args=\"UEFI:--backup,PMX:--backup\"\n"),
              std::string::npos)
        << outcome.out;
    EXPECT_NE(summary("SUCCESS-localhost").find("Succeed."), std::string::npos);
}

TEST_F(LegacyTool, LeavesNoReportsOfScanQueryOrCompare)
{
    run({});
    EXPECT_TRUE(fs::exists(tree_.file("out/SUCCESS-localhost/common_result.xml")));
    for (const char* name :
         {"Korvan-update-scan.xml", "Korvan-update-query.xml", "Korvan-update-compare.xml", "compare_result.txt"})
    {
        EXPECT_FALSE(fs::exists(tree_.file(std::string("out/SUCCESS-localhost/") + name))) << name;
    }
}

TEST_F(LegacyTool, ReportsStatusThreeAs1779)
{
    tree_.options.environment.emplace_back("FAKE_INSTALLER_STATUS", "3");
    const ProcessOutcome outcome = run({});
    EXPECT_EQ(outcome.exitStatus, 58);
    EXPECT_NE(record(), "");
    EXPECT_NE(outcome.out.find("1779"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("VELPAKI does not run successfully, to trace error, see log relate to VELPAKI."),
              std::string::npos);
}

TEST_F(LegacyTool, IsNotRunForAnOutOfBandTarget)
{
    const ProcessOutcome outcome =
        tree_.korvan({"update", "compare", "--bmc", "127.0.0.1:1", "--output", "out", "--mt", "7T01"});
    EXPECT_EQ(outcome.exitStatus, 58);
    EXPECT_NE(outcome.out.find("You are running out-of-band update against an older system, which is not supported by "
                               "Halvard Suite"),
              std::string::npos)
        << outcome.out;
    EXPECT_EQ(record(), "");
    EXPECT_NE(summary("FAILURE-127.0.0.1_1").find("out-of-band update against an older system"), std::string::npos);
}

TEST_F(LegacyTool, IsNotRunForACurrentSystem)
{
    const ProcessOutcome outcome = tree_.korvan({"update", "compare", "--config", "local.json", "--output", "out",
                                                 "--mt", "7Y41", "--noscan", "--dir", "gone"});
    EXPECT_EQ(outcome.exitStatus, 58);
    EXPECT_EQ(record(), "");
    EXPECT_NE(outcome.out.find("gone"), std::string::npos) << outcome.out;
}

TEST_F(LegacyTool, RefusesItsProxyBesideTheProgram)
{
    fs::copy_file(KORVAN_FAKE_INSTALLER, tree_.bin("velpaki.exe"));
    tree_.configure("VELPAKI_PATH", tree_.bin("velpaki.exe"));
    expectRefused(run({}),
                  "You are running on an Tolmar system. Please don't use proxy tool in korvan extract path when "
                  "set the executable binary of legacy Kitbay path in global.config.");
}

TEST_F(LegacyTool, IsRefusedWithoutAConfiguredPath)
{
    tree_.configure("OTHER_ITEM", "x");
    expectRefused(run({}), kPathWrong);
}

TEST_F(LegacyTool, IsRefusedWhenThePathIsADirectory)
{
    tree_.configure("VELPAKI_PATH", tree_.file("tools"));
    expectRefused(run({}), kPathWrong);
}

TEST_F(LegacyTool, IsRefusedWhenItsNameIsInCapitals)
{
    install("OTHER/VELPAKI.EXE");
    expectRefused(run({}), kPathWrong);
}

// The configured path goes to the command interpreter as it stands, so blanks end the program's name there.
TEST_F(LegacyTool, IsNotFoundThroughAPathWithBlanks)
{
    install("my tools/velpaki.exe");
    const ProcessOutcome outcome = run({});
    EXPECT_EQ(outcome.exitStatus, 58);
    EXPECT_EQ(record(), "");
    EXPECT_NE(outcome.out.find("1779"), std::string::npos) << outcome.out;
}

TEST_F(LegacyTool, OfTheSameNameElsewhereIsNoProxy)
{
    fs::copy_file(KORVAN_FAKE_INSTALLER, tree_.bin("velpaki.exe"));
    EXPECT_EQ(run({}).exitStatus, 0);
    EXPECT_NE(record(), "");
}

TEST_F(LegacyTool, IsRefusedForAnOptionThatItDoesNotKnow)
{
    const ProcessOutcome outcome = run({"--pattern", "nic"});
    expectRefused(outcome, kUnsupported);
    EXPECT_NE(outcome.out.find("The parameter: --pattern is not supported!\n"), std::string::npos) << outcome.out;
}

TEST_F(LegacyTool, IsRefusedForAWrongScope)
{
    const ProcessOutcome outcome = run({"--scope", "everything"});
    expectRefused(outcome, kUnsupported);
    EXPECT_NE(outcome.out.find("The value of the parameter --scope everything is not valid. \n"), std::string::npos);
}

TEST_F(LegacyTool, IsRefusedForAnEmptyType)
{
    const ProcessOutcome outcome = run({"--type="});
    expectRefused(outcome, kUnsupported);
    EXPECT_NE(outcome.out.find("The parameter --type can not be empty. \n"), std::string::npos);
}

TEST_F(LegacyTool, IsRefusedForAnEmptyForcedId)
{
    const ProcessOutcome outcome = run({"--forceid="});
    expectRefused(outcome, kUnsupported);
    EXPECT_NE(outcome.out.find("The parameter value of --forceid can not be empty. \n"), std::string::npos);
}
} // namespace
