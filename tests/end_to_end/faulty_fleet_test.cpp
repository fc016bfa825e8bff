// What real controllers do wrong, one by one: a controller that does it beside one that works, through the real
// program. Each fault costs its own target's result and nothing else.

#include "end_to_end/fleet_fixture.h"

#include <boost/filesystem/operations.hpp>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <ostream>

namespace
{
namespace fs = boost::filesystem;
using nlohmann::json;
using test_support::ProcessOutcome;
using test_support::readFile;
using testing::HasSubstr;
using Words = std::vector<std::string>;

constexpr int kTargetFailed = 58;
constexpr int kCut = 13;
constexpr int kTimeOver = 18;
constexpr int kNoRedfish = 52;
constexpr int kUnreadable = 60;
constexpr char kFaulty[] = "rack-a";
constexpr char kGood[] = "rack-b";

const Words kShort = {"--target-timeout", "2"};

struct Row
{
    const char* name;
    const char* entry;   // keys of the faulty controller's entry of the fleet file
    int code;            // 0: it is lived through
    const char* message; // a piece of the target's line on the screen
    Words options = {};
    bool whole = true; // lived through without losing anything
};

std::ostream& operator<<(std::ostream& out, const Row& row)
{
    return out << row.name;
}

class FaultyFleet : public FleetFixture
{
  protected:
    void serveBeside(const json& entry) { serveEntries({controller(kFaulty, entry), controller(kGood)}); }

    ProcessOutcome compareBoth(const Words& more) const
    {
        // None of them answers over IPMI; the connect time bounds how long that is waited for.
        Words words = {"--bmc",        login(kFaulty),      "--bmc", login(kGood), "--pattern",
                       "uefi|bmc|nic", "--connect-timeout", "1"};
        words.insert(words.end(), more.begin(), more.end());
        return compare(words);
    }

    // The good one's files are whole and say what they say without a faulty one beside it.
    void expectGoodUntouched(const ProcessOutcome& outcome) const
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
        EXPECT_TRUE(std::any_of(table.begin(), table.end(),
                                [this](const json& host) { return host["HOST"] == folder(kGood); }));
    }

    void expectFailed(const ProcessOutcome& outcome, int code, const std::string& message) const
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

    void expectLivedThrough(const ProcessOutcome& outcome) const
    {
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.out << outcome.err;
        EXPECT_NE(comparisonOfFaulty(), "");
    }

    std::string comparisonOfFaulty() const
    {
        return readFile(tree_.file("out/SUCCESS-" + folder(kFaulty) + "/Korvan-update-compare.xml"));
    }

    // The comparisons when nothing is wrong; made once.
    void SetUp() override
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

    static std::map<std::string, std::string> undisturbed_;
};

std::map<std::string, std::string> FaultyFleet::undisturbed_;

class FaultMatrix : public FaultyFleet, public testing::WithParamInterface<Row>
{
};

TEST_P(FaultMatrix, CostsItsOwnResultAndNothingElse)
{
    const Row& row = GetParam();
    serveBeside(json::parse(row.entry));
    const auto begin = std::chrono::steady_clock::now();
    const ProcessOutcome outcome = compareBoth(row.options);
    ASSERT_FALSE(outcome.timedOut);
    if (row.options == kShort) // one budget for all that is asked of the target, not one for each of its steps
    {
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(3900));
    }
    expectGoodUntouched(outcome);
    if (row.code == 0)
    {
        expectLivedThrough(outcome);
        EXPECT_EQ(comparisonOfFaulty() == undisturbed_[kFaulty], row.whole);
        EXPECT_THAT(outcome.out + readFile(tree_.file("out/korvan.log")), HasSubstr(row.message));
    }
    else
    {
        expectFailed(outcome, row.code, row.message);
    }
    expectNoSecret(outcome.out + outcome.err, kPassword);
    const json counted = statistics();
    EXPECT_EQ(counted["sessions_open"], 0) << counted.dump(2);
}

std::string nameOf(const testing::TestParamInfo<Row>& info)
{
    return info.param.name;
}

const Row kLogins[] = {
    {"WrongPassword", R"({"password": "another-one"})", 12, "the user name or password was refused"},
    {"SessionsOnly", R"({"behaviour": {"authentication": "sessions_only"}})", 0, ""},
    {"SessionAnswered204", R"({"behaviour": {"authentication": "sessions_only", "session_status": 204}})", 0, ""},
    {"SessionWithoutLocation", R"({"behaviour": {"authentication": "sessions_only", "session_location": false}})", 0,
     ""},
    {"SessionNeedsBasic", R"({"behaviour": {"authentication": "sessions_only", "session_needs_basic": true}})", 0, ""},
    {"SessionsAllTaken", R"({"behaviour": {"authentication": "sessions_only"}, "faults": [{"method": "POST",
      "path": "Sessions", "action": "status", "status": 503,
      "retry_after": 1, "message_id": "Base.1.4.0.SessionLimitExceeded"}]})",
     60, "close other sessions"},
    {"SessionFailsAfterLogin", R"({"behaviour": {"authentication": "sessions_only"},
      "faults": [{"path": "Systems", "action": "broken_json"}]})",
     60, "cannot be read"},
    {"PasswordChangeRequired", R"({"behaviour": {"password_change_required": true}})", 54, "must be changed"},
    {"PasswordChangeRequiredInASession",
     R"({"behaviour": {"password_change_required": true, "authentication": "sessions_only"}})", 54, "must be changed"},
    {"MayNotReadSystems", R"({"faults": [{"path": "Systems", "action": "status", "status": 403,
      "message_id": "Base.v1_4_0.InsufficientPrivilege"}]})",
     12, "InsufficientPrivilege"},
};
INSTANTIATE_TEST_SUITE_P(Logins, FaultMatrix, testing::ValuesIn(kLogins), nameOf);

const Row kAddresses[] = {
    {"Redirects301", R"({"behaviour": {"trailing_slash": "redirect301"}})", 0, ""},
    {"Redirects308", R"({"behaviour": {"trailing_slash": "redirect308"}})", 0, ""},
    {"Redirects308OnSessions",
     R"({"behaviour": {"trailing_slash": "redirect308", "canonical_path": "with_slash",
      "authentication": "sessions_only"}})",
     0, ""},
    {"KnowsOnlyPathsWithoutSlash", R"({"behaviour": {"trailing_slash": "only_without"}})", 0, ""},
    {"RedirectsToHttp", R"({"faults": [{"path": "Systems", "action": "redirect_to_http"}]})", 60, "another address"},
    {"RedirectsToAnotherHost", R"({"faults": [{"path": "Systems", "action": "redirect",
      "location": "https://127.0.0.99/redfish/v1/Systems"}]})",
     60, "another address"},
    {"RedirectsInACircle", R"({"faults": [{"path": "Systems", "action": "redirect",
      "location": "/redfish/v1/Systems"}]})",
     60, "in a circle"},
    {"HasNoRedfish", R"({"behaviour": {"no_redfish": true}})", 52, "Redfish"},
    {"SelfSignedCertificate", R"({"behaviour": {"certificate": "self_signed"}})", 36, "--trust-on-first-use"},
    {"ExpiredCertificate", R"({"behaviour": {"certificate": "expired"}})", 36, "certificate"},
    {"CertificateOfAnotherHost", R"({"behaviour": {"certificate": "wrong_host"}})", 36, "certificate"},
    {"SelfSignedAndNotChecked", R"({"behaviour": {"certificate": "self_signed"}})", 0, "", {"--never-check-trust"}},
    {"OldTls", R"({"behaviour": {"max_tls": "1.0"}})", 13, "old_tls"},
    {"PlainHttpBehindHttps", R"({"tls": false})", 13, "http://"},
};
INSTANTIATE_TEST_SUITE_P(Addresses, FaultMatrix, testing::ValuesIn(kAddresses), nameOf);

const Row kTransports[] = {
    {"TakesOneRequestAtATime", R"({"latency_ms": 10, "behaviour": {"max_parallel_requests": 1}})", 0, ""},
    {"IsSlow", R"({"latency_ms": 60})", 0, ""},
    {"BusyOnce", R"({"faults": [{"path": "FirmwareInventory", "times": 1, "action": "status", "status": 503,
      "retry_after": 1}]})",
     0, "trying again in 1000 ms"},
    {"TooManyRequestsOnce", R"({"faults": [{"path": "FirmwareInventory", "times": 1, "action": "status",
      "status": 429, "retry_after": 1}]})",
     0, "trying again"},
    {"BusyForever", R"({"faults": [{"path": "Systems", "action": "status", "status": 503, "retry_after": 1}]})", 60,
     "stays busy"},
    {"BusyForHours", R"({"faults": [{"path": "Systems", "action": "status", "status": 503, "retry_after": 7200}]})", 60,
     "stays busy"},
    {"EmptyReplyOnce", R"({"faults": [{"path": "Systems", "times": 1, "action": "empty_reply"}]})", 0, ""},
    {"Http10", R"({"behaviour": {"http_version": "1.0"}})", 0, ""},
    {"Http10Chunked", R"({"behaviour": {"http_version": "1.0", "chunked": true}})", 0, ""},
    {"NoKeepAlive", R"({"behaviour": {"keep_alive": false}})", 0, ""},
    {"Chunked", R"({"behaviour": {"chunked": true}})", 0, ""},
    {"Gzip", R"({"behaviour": {"gzip": true, "chunked": true}})", 0, ""},
    {"WrongContentType", R"({"behaviour": {"content_type": "text/plain"}})", 0, ""},
    {"NoContentType", R"({"behaviour": {"content_type": ""}})", 0, ""},
    {"HangsFromTheStart", R"({"faults": [{"action": "hang"}]})", 18, "time limit", kShort},
    {"HangsAfterTheLogin", R"({"faults": [{"path": "UpdateService", "action": "hang"}]})", 18, "time limit", kShort},
    {"ServerError", R"({"faults": [{"path": "Systems", "action": "status", "status": 500,
      "message_id": "Base.1.8.InternalError"}]})",
     60, "InternalError"},
};
INSTANTIATE_TEST_SUITE_P(Transports, FaultMatrix, testing::ValuesIn(kTransports), nameOf);

const Row kCollections[] = {
    {"ExpandIgnored", R"({"behaviour": {"expand": "ignored"}})", 0, ""},
    {"ExpandBroken", R"({"behaviour": {"expand": "broken_json"}})", 0, "members are read singly"},
    {"ExpandRefused", R"({"behaviour": {"expand": "refused"}})", 0, "members are read singly"},
    {"PagesOfTwo", R"({"behaviour": {"page_size": 2}})", 0, ""},
    {"CyclicPages", R"({"behaviour": {"page_size": 2, "cyclic_paging": true}})", 0, "go in a circle"},
    {"CyclicExpandedPages", R"({"behaviour": {"page_size": 2, "cyclic_paging": true, "expand": "works"}})", 0,
     "go in a circle"},
    {"WrongCount", R"({"behaviour": {"members_count": "wrong"}})", 0, ""},
    {"NoCount", R"({"behaviour": {"members_count": "missing"}})", 0, ""},
    {"FirmwareInventoryMissing",
     R"({"faults": [{"path": "FirmwareInventory", "action": "status", "status": 404}]})",
     0,
     "",
     {},
     false},
    {"SoftwareInventoryMissing",
     R"({"faults": [{"path": "SoftwareInventory", "action": "status", "status": 404}]})",
     0,
     "",
     {},
     false},
    {"SoftwareInventoryWithoutMembers",
     R"({"faults": [{"path": "SoftwareInventory", "action": "without_members"}]})",
     0,
     "",
     {},
     false},
    {"MembersBesideAnError", R"({"faults": [{"path": "Inventory", "action": "with_error"}]})", 0, ""},
    {"NoInventoryAtAll", R"({"faults": [{"path": "(Firmware|Software)Inventory", "action": "status", "status": 404}]})",
     28, "found no firmware"},
    {"HundredThousandMembers",
     R"({"faults": [{"path": "FirmwareInventory(\\?.*)?$", "action": "huge_collection", "members": 100000}]})", 60,
     "the collection has more than 5000 members"},
    {"FirmwareInventoryForbidden", R"({"faults": [{"path": "FirmwareInventory", "action": "status", "status": 403}]})",
     12, "the account may not read this"},
    {"MembersAnnotatedButNotExpanded", R"({"behaviour": {"expand": "ignored"},
      "faults": [{"path": "Inventory(\\?.*)?$", "action": "annotated_members"}]})",
     0, ""},
    {"AnswerOfTwoGibibytes", R"({"faults": [{"path": "Systems", "action": "huge_body", "mib": 2048}]})", 60,
     "too large"},
    {"InventoryItemOfTwoGibibytes",
     R"({"behaviour": {"expand": "ignored"}, "faults": [{"path": "UEFI$", "action": "huge_body", "mib": 2048}]})",
     0,
     "the inventory has gaps: ",
     {},
     false},
    {"InventoryItemForbidden",
     R"({"behaviour": {"expand": "ignored"},
      "faults": [{"path": "UEFI$", "action": "status", "status": 403}]})",
     0,
     "the inventory has gaps: ",
     {},
     false},
};
INSTANTIATE_TEST_SUITE_P(Collections, FaultMatrix, testing::ValuesIn(kCollections), nameOf);

// Every way in which an answer can stay out or break off, at every stage of a run.
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
