#include "end_to_end/faulty_fleet_fixture.h"

#include "end_to_end/names.h"

#include <algorithm>

using namespace end_to_end;

std::map<std::string, std::string> FaultyFleet::undisturbed_;

void FaultyFleet::SetUp()
{
    if (undisturbed_.empty())
    {
        serve({kGood, kFaulty});
        ASSERT_EQ(compareBoth({}).exitStatus, 0);
        for (const char* name : {kGood, kFaulty})
        {
            const std::string file = "out/SUCCESS-" + folder(name) + "/Korvan-update-compare.xml";
            undisturbed_[name] = readFile(tree_.file(file));
            ASSERT_NE(undisturbed_[name], "");
        }
        fs::remove_all(tree_.file("out"));
    }
}

void FaultyFleet::serveBeside(const json& entry)
{
    serveEntries({controller(kFaulty, entry), controller(kGood)});
}

ProcessOutcome FaultyFleet::compareBoth(const Words& more) const
{
    // None of them answers over IPMI; the connect time bounds how long that is waited for.
    Words words = {"--bmc",        login(kFaulty),      "--bmc", login(kGood), "--pattern",
                   "uefi|bmc|nic", "--connect-timeout", "1"};
    words.insert(words.end(), more.begin(), more.end());
    return compare(words);
}

void FaultyFleet::expectGoodUntouched(const ProcessOutcome& outcome) const
{
    const std::string files = "out/SUCCESS-" + folder(kGood) + "/";
    for (const char* file : {"Korvan-update-scan.xml", "scan_result.txt", "Korvan-update-query.xml",
                             "compare_result.txt", "common_result.xml"})
    {
        EXPECT_TRUE(exists(files + file)) << file;
    }
    EXPECT_EQ(readFile(tree_.file(files + "Korvan-update-compare.xml")), undisturbed_[kGood]);
    EXPECT_THAT(outcome.out, HasSubstr(folder(kGood) + "  OK          0"));
    const json table = json::parse(readFile(tree_.file("out/compare_result.json")))["COMPARISON"];
    EXPECT_TRUE(
        std::any_of(table.begin(), table.end(), [this](const json& host) { return host["HOST"] == folder(kGood); }));
}

void FaultyFleet::expectFailed(const ProcessOutcome& outcome, int code, const std::string& message) const
{
    EXPECT_EQ(outcome.exitStatus, kTargetFailed) << outcome.out << outcome.err;
    const std::string number = std::to_string(code);
    const std::string line = folder(kFaulty) + "  FAILED  " + std::string(5 - number.size(), ' ') + number + "  ";
    const std::size_t at = outcome.out.find(line);
    ASSERT_NE(at, std::string::npos) << line << "\n" << outcome.out;
    const std::string told = outcome.out.substr(at, outcome.out.find('\n', at) - at);
    EXPECT_THAT(told, HasSubstr(message));
    const std::string files = "out/FAILURE-" + folder(kFaulty) + "/";
    EXPECT_THAT(readFile(tree_.file(files + "common_result.xml")), HasSubstr(number));
    EXPECT_FALSE(exists(files + "Korvan-update-compare.xml"));
    EXPECT_FALSE(exists("out/SUCCESS-" + folder(kFaulty)));
}

void FaultyFleet::expectLivedThrough(const ProcessOutcome& outcome) const
{
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out << outcome.err;
    EXPECT_NE(comparisonOfFaulty(), "");
}

std::string FaultyFleet::comparisonOfFaulty() const
{
    return readFile(tree_.file("out/SUCCESS-" + folder(kFaulty) + "/Korvan-update-compare.xml"));
}
