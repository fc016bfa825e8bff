#include "command_line.h"

#include "compare_options.h"
#include "option_names.h"

#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <set>

using testing::HasSubstr;
using testing::Not;
using Options = std::map<std::string, std::string>;

namespace
{
CommandLine parse(std::vector<std::string> options)
{
    options.insert(options.begin(), {"korvan", "update", "compare"});
    return parseCompare(options);
}

Options optionsOf(const std::vector<std::string>& words)
{
    const CommandLine line = parse(words);
    EXPECT_EQ(line.outcome, CommandLine::Outcome::Run) << line.text;
    return line.context.options;
}

std::string complaint(const std::vector<std::string>& words)
{
    const CommandLine line = parse(words);
    EXPECT_EQ(line.outcome, CommandLine::Outcome::Wrong);
    EXPECT_THAT(line.text, Not(HasSubstr("\n")));
    EXPECT_THAT(line.text, Not(HasSubstr("s3cret")));
    return line.text;
}
} // namespace

TEST(CommandLine, FillsTheContext)
{
    const CommandLine line = parse({"--bmc", "h", "--output=o", "--parallel", "3", "--connect-timeout=4",
                                    "--request-timeout=6", "--target-timeout=5", "--log", "4"});
    ASSERT_EQ(line.outcome, CommandLine::Outcome::Run) << line.text;
    EXPECT_EQ(line.context.programPath, "korvan");
    EXPECT_EQ(line.context.command, "update");
    EXPECT_EQ(line.context.subCommand, "compare");
    EXPECT_EQ(line.context.argumentCount, 13);
    EXPECT_EQ(line.context.argumentVector.size(), 13U);
    EXPECT_EQ(line.context.outputDir, "o");
    EXPECT_EQ(line.context.parallel, 3);
    EXPECT_EQ(line.context.connectTimeout, 4);
    EXPECT_EQ(line.context.requestTimeout, 6);
    EXPECT_EQ(line.context.targetTimeout, 5);
    EXPECT_EQ(line.context.options.at("log"), "4");
}

TEST(CommandLine, HasDefaults)
{
    const CommandLine line = parse({});
    ASSERT_EQ(line.outcome, CommandLine::Outcome::Run);
    EXPECT_TRUE(line.context.options.empty());
    EXPECT_EQ(line.context.parallel, 16);
    EXPECT_EQ(line.context.connectTimeout, 20);
    EXPECT_EQ(line.context.requestTimeout, 120);
    EXPECT_EQ(line.context.targetTimeout, 900);
}

TEST(CommandLine, GivesFlagsAnEmptyValue)
{
    EXPECT_EQ(optionsOf({"--noscan", "--verbose", "--noscan"}), (Options{{"noscan", ""}, {"verbose", ""}}));
}

TEST(CommandLine, JoinsRepeatedTargets)
{
    EXPECT_EQ(optionsOf({"--bmc", "a,b", "--type=fw", "--bmc=c", "--smm", "d"}),
              (Options{{"bmc", "a,b,c"}, {"smm", "d"}, {"type", "fw"}}));
}

TEST(CommandLine, KeepsAnEmptyValue)
{
    EXPECT_EQ(optionsOf({"--dir=", "--noscan"}), (Options{{"dir", ""}, {"noscan", ""}}));
    EXPECT_EQ(optionsOf({"--dir", "", "--mt="}), (Options{{"dir", ""}, {"mt", ""}}));
}

TEST(CommandLine, TakesValuesAsTheyStand)
{
    for (const char* value : {"[fe80::1]:8443", "u:p@[::1]", "-x", "--x", "--", "a=b", "\"q\"", "'q'", "%%", "{}",
                              "[a,b]", " a ", "\\", "/x", "a b", "\xC3\xA4", "#", "@file"})
    {
        EXPECT_EQ(optionsOf({"--bmc", value}), (Options{{"bmc", value}}));
        EXPECT_EQ(optionsOf({std::string("--bmc-password=") + value, "--xml"}),
                  (Options{{"bmc-password", value}, {"xml", ""}}));
    }
}

TEST(CommandLine, NamesAWrongOptionAndNoValue)
{
    EXPECT_THAT(complaint({"--bmcpassword=s3cret"}), HasSubstr("--bmcpassword;"));
    EXPECT_THAT(complaint({"--bmcpassword", "s3cret"}), HasSubstr("--bmcpassword;"));
    EXPECT_THAT(complaint({"--bmc-password", "my", "s3cret"}), HasSubstr("behind --bmc-password"));
    EXPECT_THAT(complaint({"u:s3cret@h"}), HasSubstr("unexpected word"));
    EXPECT_THAT(complaint({"-p", "s3cret"}), HasSubstr("unexpected word"));
    EXPECT_THAT(complaint({"--type"}), HasSubstr("--type needs a value"));
    EXPECT_THAT(complaint({"--bmc", "--type", "fw"}), HasSubstr("--bmc needs a value"));
    EXPECT_THAT(complaint({"--noscan=s3cret"}), HasSubstr("--noscan takes no value"));
    EXPECT_THAT(complaint({"--bmc-password=s3cret", "--bmc-password=s3cret2"}),
                HasSubstr("--bmc-password may stand once"));
    EXPECT_THAT(complaint({"--local"}), HasSubstr("unknown option --local"));
    EXPECT_THAT(complaint({"--"}), HasSubstr("unexpected word"));
    EXPECT_THAT(complaint({""}), HasSubstr("unexpected word"));
    EXPECT_THAT(complaint({"--Type=fw"}), HasSubstr("--Type"));
}

TEST(CommandLine, ChecksTheRangeOfNumbers)
{
    for (const char* value : {"", "0", "257", "-1", "1x", "0x10", "9999999999999999999", " 1", "1.5", "s3cret"})
    {
        EXPECT_THAT(complaint({std::string("--parallel=") + value}), HasSubstr("--parallel")) << value;
    }
    EXPECT_THAT(complaint({"--connect-timeout=0"}), HasSubstr("--connect-timeout"));
    EXPECT_THAT(complaint({"--target-timeout=86401"}), HasSubstr("--target-timeout"));
    EXPECT_THAT(complaint({"--log=5"}), HasSubstr("--log"));
    EXPECT_THAT(complaint({"--bmc-cim-port=65536"}), HasSubstr("--bmc-cim-port"));
    EXPECT_THAT(complaint({"--ipmi-port=0"}), HasSubstr("--ipmi-port"));
    EXPECT_THAT(complaint({"--ipmi-cipher-suite=18"}), HasSubstr("--ipmi-cipher-suite"));
    EXPECT_EQ(parse({"--parallel=256"}).context.parallel, 256);
}

TEST(CommandLine, HelpListsEveryOptionOnce)
{
    const CommandLine line = parse({"--help"});
    ASSERT_EQ(line.outcome, CommandLine::Outcome::Help);
    for (const char* heading : {"Targets:", "Scan:", "Query:", "Compare:", "Run and report:", "Legacy hand-over:"})
    {
        EXPECT_THAT(line.text, HasSubstr(heading));
    }
    for (const OptionDescription& description : compareOptions())
    {
        const std::string entry = std::string("\n  --") + description.name + " ";
        const std::size_t found = line.text.find(entry);
        EXPECT_NE(found, std::string::npos) << description.name;
        EXPECT_EQ(line.text.find(entry, found + 1), std::string::npos) << description.name;
        EXPECT_THAT(line.text, HasSubstr(description.text));
    }
}

TEST(CommandLine, KnowsEveryNameThatTheContractNames)
{
    std::set<std::string> known;
    for (const OptionDescription& description : compareOptions())
    {
        known.insert(description.name);
    }
    const std::string header = test_support::readFile(KORVAN_SOURCE_DIR "/framework/include/option_names.h");
    std::set<std::string> named;
    const std::string begin = "[] = \"";
    for (std::size_t at = header.find(begin); at != std::string::npos; at = header.find(begin, at + 1))
    {
        const std::size_t name = at + begin.size();
        named.insert(header.substr(name, header.find('"', name) - name));
    }
    for (const char* name : {option::kLocal, option::kFingerprint, option::kOldTls})
    {
        EXPECT_EQ(named.erase(name), 1U) << name << ": the framework alone sets it";
        EXPECT_EQ(known.count(name), 0U) << name;
    }
    EXPECT_EQ(known, named);
}

TEST(CommandLine, HelpWinsOverValuesThatAreWrong)
{
    EXPECT_EQ(parse({"--parallel", "0", "-h"}).outcome, CommandLine::Outcome::Help);
}
