// Every way in which an answer can stay out or break off, at every stage of a run.

#include "end_to_end/faulty_fleet_fixture.h"
#include "end_to_end/names.h"

#include <chrono>
#include <ostream>
#include <tuple>

namespace
{
using namespace end_to_end;

constexpr int kCut = 13;
constexpr int kTimeOver = 18;
constexpr int kNoRedfish = 52;
constexpr int kUnreadable = 60;

struct Stage
{
    const char* name;
    const char* path;
    // How many requests in a row it breaks; the second that stays unanswered ends the work on a target. 0: all.
    int requests;
    bool needed; // what it breaks cannot be done without
};

struct Break
{
    const char* name;
    const char* action;
    int code;
    const char* message;
};

std::ostream& operator<<(std::ostream& out, const Stage& stage)
{
    return out << stage.name;
}

std::ostream& operator<<(std::ostream& out, const Break& broken)
{
    return out << broken.name;
}

class BrokenAnswer : public FaultyFleet, public testing::WithParamInterface<std::tuple<Stage, Break>>
{
};

TEST_P(BrokenAnswer, CostsItsOwnResultAndNothingElse)
{
    const auto& [stage, broken] = GetParam();
    json fault = json::parse(broken.action);
    fault["path"] = stage.path;
    serveBeside({{"faults", json::array({fault})}, {"behaviour", {{"expand", "ignored"}}}});
    const auto begin = std::chrono::steady_clock::now();
    // With the type stated, only the scan asks; what it can do without is a gap.
    const ProcessOutcome outcome = compareBoth({"--target-timeout", "2", "--mt", "7Y41"});
    const auto took = std::chrono::steady_clock::now() - begin;
    ASSERT_FALSE(outcome.timedOut);
    EXPECT_LT(took, std::chrono::seconds(4)) << "the time limit of the target is 2 s";
    expectGoodUntouched(outcome);
    const bool noService = stage.requests == 0 && broken.code == kUnreadable;
    const bool goesOn = broken.code == kUnreadable || (broken.code == kCut && stage.requests == 1);
    if (!stage.needed && goesOn)
    {
        expectLivedThrough(outcome);
        EXPECT_THAT(outcome.out, HasSubstr(folder(kFaulty) + "  OK          0  the inventory has gaps: "));
        return;
    }
    expectFailed(outcome, noService ? kNoRedfish : broken.code, noService ? "no Redfish service" : broken.message);
}

std::string nameOfBreak(const testing::TestParamInfo<std::tuple<Stage, Break>>& info)
{
    return std::string(std::get<0>(info.param).name) + std::get<1>(info.param).name;
}

INSTANTIATE_TEST_SUITE_P(
    Everywhere, BrokenAnswer,
    testing::Combine(
        testing::Values(Stage{"Root", ".*", 0, true}, Stage{"Systems", "/Systems(\\?|$)", 2, false},
                        Stage{"System", "/Systems/1$", 1, false}, Stage{"Inventory", "/FirmwareInventory", 2, true}),
        testing::Values(Break{"Hangs", R"({"action": "hang"})", kTimeOver, "time limit"},
                        Break{"CutBeforeHeaders", R"({"action": "cut_before_headers"})", kCut, "closed"},
                        Break{"CutInHeaders", R"({"action": "cut_in_headers"})", kCut, "closed"},
                        Break{"CutInBody", R"({"action": "cut_in_body"})", kCut, "closed"},
                        Break{"CutAfterABit", R"({"action": "cut_after_bytes", "bytes": 9})", kCut, ""},
                        Break{"Empty", R"({"action": "empty_reply"})", kCut, "closed"},
                        Break{"EmptyBody", R"({"action": "empty_body"})", kUnreadable, "cannot be read"},
                        Break{"BrokenJson", R"({"action": "broken_json"})", kUnreadable, "cannot be read"})),
    nameOfBreak);
} // namespace
