#include "host/host_fixture.h"
#include "module_loader.h"
#include "support/pattern.h"

#include "os_names.h"

#include <algorithm>

using test_support::ProcessOutcome;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace
{
using ProgramTest = HostTest;

std::ptrdiff_t lines(const std::string& text)
{
    return std::count(text.begin(), text.end(), '\n');
}
} // namespace

TEST_F(ProgramTest, TellsItsVersion)
{
    const ProcessOutcome outcome = run({"--version"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    EXPECT_THAT(outcome.out, test_support::FitsPattern("korvan [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(ProgramTest, HelpsOnEveryLevel)
{
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"--help"}, {"-h"}, {"update", "--help"}, {"update", "compare", "--help"}})
    {
        const ProcessOutcome outcome = run(words);
        EXPECT_EQ(outcome.exitStatus, 0);
        EXPECT_EQ(outcome.err, "");
        EXPECT_THAT(outcome.out, HasSubstr("korvan update compare"));
    }
}

TEST_F(ProgramTest, RefusesUnknownCommands)
{
    for (const std::vector<std::string>& words : {std::vector<std::string>{},
                                                  {"flash"},
                                                  {"update"},
                                                  {"update", "flash"},
                                                  {"update", "--bmc"},
                                                  {"--bmc", "h"},
                                                  {""}})
    {
        const ProcessOutcome outcome = run(words);
        EXPECT_EQ(outcome.exitStatus, 4);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(lines(outcome.err), 1) << outcome.err;
        EXPECT_THAT(outcome.err, HasSubstr("--help"));
    }
    EXPECT_THAT(run({"u:s3cret@h"}).err, Not(HasSubstr("s3cret")));
}

TEST_F(ProgramTest, NamesAWrongOptionInOneLine)
{
    const ProcessOutcome outcome = run({"update", "compare", "--bmc-passwort", "s3cret"});
    EXPECT_EQ(outcome.exitStatus, 5);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "korvan: unknown option --bmc-passwort; see 'korvan update compare --help'\n");
}

TEST_F(ProgramTest, ShowsNoControlCharacterOfTheCommandLine)
{
    EXPECT_THAT(run({"update", "compare", "--a\x1B[2J\nb"}).err,
                StartsWith("korvan: unknown option --a\\x1B[2J\\x0Ab;"));
}

TEST_F(ProgramTest, NamesTheModuleThatItCannotLoad)
{
    const ProcessOutcome outcome = run({"update", "compare", "--output", "out"});
    EXPECT_EQ(outcome.exitStatus, 3);
    EXPECT_THAT(outcome.err, HasSubstr(folder_.file("bin/" + LoadedModule::fileName("korvan_update_multicompare"))));
    EXPECT_FALSE(std::filesystem::exists(folder_.file("out")));
}

TEST_F(ProgramTest, RefusesAModuleThatIsNone)
{
    folder_.write("bin/korvan_update_multicompare.so", "no library");
    EXPECT_EQ(run({"update", "compare"}).exitStatus, 3);
}

TEST_F(ProgramTest, TakesNoModuleFromTheWorkingFolder)
{
    std::filesystem::copy_file(KORVAN_TEST_MODULE, folder_.file("korvan_update_multicompare.so"));
    EXPECT_EQ(run({"update", "compare"}).exitStatus, 3);
}

TEST_F(ProgramTest, ExplainsCodes)
{
    EXPECT_EQ(run({"explain", "13"}).out, "13 (0xD): Connection failed.\n");
    EXPECT_EQ(run({"explain", "0x10068"}).out, run({"explain", "65640"}).out);
    EXPECT_THAT(run({"explain", "0x10068"}).out, StartsWith("104 (0x10068): No applicable update"));
    EXPECT_THAT(run({"explain", "1779"}).out, StartsWith("1779 (0x6F3): "));
    EXPECT_THAT(run({"explain", "104"}).out, HasSubstr("104 (0x10068): No applicable update"))
        << "a number that category 0 does not have is looked up in the others";
}

TEST_F(ProgramTest, DoesNotExplainWhatItDoesNotKnow)
{
    for (const char* code :
         {"2", "0xFFFFFFFF", "4294967296", "99999999999999999999", "x", "", "-1", "0x", "1.0", "13 "})
    {
        const ProcessOutcome outcome = run({"explain", code});
        EXPECT_EQ(outcome.exitStatus, 5) << code;
        EXPECT_EQ(outcome.out, "") << code;
        EXPECT_EQ(lines(outcome.err), 1);
    }
    EXPECT_EQ(run({"explain"}).exitStatus, 5);
    EXPECT_EQ(run({"explain", "1", "2"}).exitStatus, 5);
}

TEST_F(ProgramTest, ListsPlatformNames)
{
    const ProcessOutcome systems = run({"list", "os"});
    EXPECT_EQ(systems.exitStatus, 0);
    EXPECT_EQ(lines(systems.out), static_cast<std::ptrdiff_t>(OsNames().size()));
    const PlatformName& first = OsNames().front();
    EXPECT_THAT(systems.out,
                StartsWith(std::to_string(first.code) + "\t" + first.displayName + "\t" + first.key + "\n"));
    EXPECT_EQ(lines(run({"list", "arch"}).out), static_cast<std::ptrdiff_t>(OsArchNames().size()));
    EXPECT_EQ(run({"list", "x"}).exitStatus, 5);
    EXPECT_EQ(run({"list"}).exitStatus, 5);
}
