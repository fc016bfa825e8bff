// Logins with a session that break off or go wrong, through the real program: what it says, and what stays open on the
// controller.

#include "end_to_end/fleet_fixture.h"
#include "end_to_end/names.h"

#include <chrono>
#include <ostream>
#include <thread>

namespace
{
using namespace end_to_end;

constexpr char kServer[] = "rack-a";
constexpr char kLeft[] = "a session may be left on the controller: ";

struct Row
{
    const char* name;
    const char* fault;
    const char* line; // a piece of the target's line at the end, after its name
    int open;         // sessions that stay: those of logins whose answer nobody has seen
    Words options = {};
};

std::ostream& operator<<(std::ostream& out, const Row& row)
{
    return out << row.name;
}

class BrokenSession : public FleetFixture
{
  protected:
    void serveWith(const json& faults, json behaviour = json::object())
    {
        behaviour["authentication"] = "sessions_only";
        serveEntries({controller(kServer, {{"faults", faults}, {"behaviour", behaviour}})});
    }

    ProcessOutcome compareOne(const Words& more = {}) const
    {
        Words words = {"--bmc", login(kServer), "--connect-timeout", "1"};
        words.insert(words.end(), more.begin(), more.end());
        return compare(words);
    }

    std::string lineOf(const ProcessOutcome& outcome) const
    {
        const std::size_t at = outcome.out.find("\n" + folder(kServer) + "  ");
        return at == std::string::npos ? outcome.out
                                       : outcome.out.substr(at + 1, outcome.out.find('\n', at + 1) - at - 1);
    }
};

class BrokenSessions : public BrokenSession, public testing::WithParamInterface<Row>
{
};

TEST_P(BrokenSessions, LeaveNothingOpenThatCouldBeClosed)
{
    const Row& row = GetParam();
    serveWith(json::array({json::parse(row.fault)}));
    const ProcessOutcome outcome = compareOne(row.options);
    ASSERT_FALSE(outcome.timedOut);
    EXPECT_THAT(lineOf(outcome), HasSubstr(row.line)) << outcome.out << outcome.err;
    EXPECT_EQ(lineOf(outcome).find(kLeft) != std::string::npos, row.open != 0) << lineOf(outcome);
    expectNoSecret(outcome.out + outcome.err, kPassword);
    const json counted = statistics();
    EXPECT_EQ(counted["sessions_open"], row.open) << counted.dump(2);
}

const Row kRows[] = {
    {"LoginCutInItsBody", R"({"method": "POST", "path": "Sessions$", "action": "cut_in_body"})", "  OK          0", 0},
    {"LoginCutInItsHeadersOnce", R"({"method": "POST", "path": "Sessions$", "times": 1, "action": "cut_in_headers"})",
     "  OK          0", 0},
    {"LoginCutBeforeItsHeadersOnce",
     R"({"method": "POST", "path": "Sessions$", "times": 1, "action": "cut_before_headers"})", "  OK          0", 0},
    {"LoginCutAlways", R"({"method": "POST", "path": "Sessions$", "action": "cut_in_headers"})", "  FAILED     13", 2},
    {"LoginSlowerThanTheTargetMayTake",
     R"({"method": "POST", "path": "Sessions$", "action": "slow", "delay_ms": 3500})",
     "  FAILED     18",
     0,
     {"--target-timeout", "2"}},
    {"TokenRefusedOnce", R"({"path": "FirmwareInventory", "times": 1, "action": "status", "status": 401})",
     "  OK          0", 0},
    {"TokenRefusedAlways", R"({"path": "FirmwareInventory", "action": "status", "status": 401})", "  FAILED     12", 0},
    {"DeletionRefused", R"({"method": "DELETE", "action": "status", "status": 405})",
     "a session may be left on the controller: it could not be deleted (HTTP status 405)", 1},
};
std::string nameOf(const testing::TestParamInfo<Row>& info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Rows, BrokenSessions, testing::ValuesIn(kRows), nameOf);

TEST_F(BrokenSession, NamesTheLoginAsWhatFailed)
{
    serveWith(json::array({{{"method", "POST"}, {"path", "Sessions$"}, {"action", "hang"}}}));
    const ProcessOutcome outcome = compareOne({"--request-timeout", "1"});
    EXPECT_THAT(lineOf(outcome), HasSubstr("  FAILED     18"));
    EXPECT_THAT(lineOf(outcome),
                HasSubstr("logging in at /redfish/v1/SessionService/Sessions: no answer within the time limit"));
    EXPECT_THAT(lineOf(outcome), HasSubstr("--request-timeout"));
}

TEST_F(BrokenSession, TellsItsOwnSessionFromAnEarlierOneOfTheSameUser)
{
    // The first run cannot delete its session; no service says where a new one is.
    serveWith(json::array({{{"method", "DELETE"}, {"times", 1}, {"action", "status"}, {"status", 405}}}),
              {{"session_status", 204}, {"session_location", false}});
    EXPECT_THAT(lineOf(compareOne()), HasSubstr(kLeft));
    std::this_thread::sleep_for(std::chrono::milliseconds(1100)); // the times of sessions are whole seconds
    EXPECT_THAT(lineOf(compareOne()), Not(HasSubstr(kLeft)));
    const json counted = statistics();
    EXPECT_EQ(counted["sessions_open"], 1) << counted.dump(2);
}
} // namespace
