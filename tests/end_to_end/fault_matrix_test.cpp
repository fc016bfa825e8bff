// What real controllers do wrong, one by one.

#include "end_to_end/faulty_fleet_fixture.h"
#include "end_to_end/names.h"

#include <ostream>

namespace
{
using namespace end_to_end;

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
        EXPECT_EQ(lostNothing(), row.whole);
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
    {"KnowsOnlyPathsWithSlash", R"({"behaviour": {"trailing_slash": "only_with"}})", 0, ""},
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
    {"OldCipher", R"({"behaviour": {"old_cipher": true}})", 13, "old_tls"},
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
     "the inventory has gaps: ",
     {},
     false},
    {"FirmwareInventoryEmpty",
     R"({"faults": [{"path": "FirmwareInventory", "action": "without_members"}]})",
     0,
     "the service has no firmware inventory",
     {},
     false},
    {"SystemMissing",
     R"({"behaviour": {"expand": "ignored"}, "faults": [{"path": "Systems/1/?$", "action": "status", "status": 404}]})",
     60, "reading /redfish/v1/Systems/1: the service does not have it"},
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
} // namespace
