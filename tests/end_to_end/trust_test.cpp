#include "end_to_end/fleet_fixture.h"
#include "end_to_end/names.h"
#include "support/environment.h"

namespace
{
using namespace end_to_end;

constexpr char kKnown[] = "home/.korvan/known_controllers";

// One controller whose certificate no authority of the system vouches for, and a user with an empty home folder.
class Trust : public FleetFixture
{
  protected:
    Trust()
    {
        fs::create_directories(tree_.file("home"));
        tree_.options.environment.emplace_back(test_support::homeVariable(), tree_.file("home"));
    }

    // `place` is the "127.0.0.1:port" of an earlier start, or empty for a new port.
    void serveOne(const std::string& place = "", const json& behaviour = json::object())
    {
        const int port = place.empty() ? 0 : std::stoi(place.substr(place.find(':') + 1));
        serveEntries({controller("rack-a", {{"port", port}, {"behaviour", behaviour}})});
        address_ = address("rack-a");
    }

    ProcessOutcome compare(const Words& more, const json& keys = json::object()) const
    {
        json target = {{"kind", "bmc"}, {"address", address_}, {"user", "admin"}, {"password", kPassword}};
        target.update(keys);
        return tree_.compareTarget(target, more);
    }

    // The fingerprint that the file has of the controller.
    std::string knownFingerprint() const
    {
        const std::string content = readFile(tree_.file(kKnown));
        const std::string before = address_ + " sha256 ";
        const std::size_t at = content.find(before);
        return at == std::string::npos ? std::string() : content.substr(at + before.size(), 64);
    }

    std::string address_;
};
} // namespace

TEST_F(Trust, IsGivenOnFirstUseRememberedAndTakenBackFromAChangedController)
{
    serveOne();
    const ProcessOutcome unknown = compare({});
    EXPECT_EQ(unknown.exitStatus, kTargetFailed);
    EXPECT_THAT(unknown.out, AllOf(HasSubstr("36"), HasSubstr("--trust-on-first-use")));
    EXPECT_FALSE(fs::exists(tree_.file("home/.korvan"))) << "a refusal leaves nothing behind";

    const ProcessOutcome first = compare({"--trust-on-first-use"});
    EXPECT_EQ(first.exitStatus, 0) << first.out << first.err;
    const std::string fingerprint = knownFingerprint();
    ASSERT_EQ(fingerprint.size(), 64U) << readFile(tree_.file(kKnown));
    const std::string said = "korvan: " + address_ + ": trusted on first use, SHA-256 fingerprint " + fingerprint;
    EXPECT_THAT(first.err, HasSubstr(said));
    EXPECT_THAT(unknown.out, HasSubstr(fingerprint)) << "the refusal named what was trusted later";
    const std::string log = readFile(tree_.file("out/korvan.log"));
    EXPECT_THAT(log, HasSubstr("trusted on first use"));
    EXPECT_EQ(log.find("trusted on first use"), log.rfind("trusted on first use")) << "one record";

    const ProcessOutcome second = compare({});
    EXPECT_EQ(second.exitStatus, 0) << second.out << second.err;
    EXPECT_THAT(second.err, Not(HasSubstr("first use")));

    serveOne(address_);
    for (const Words& options : {Words{}, Words{"--trust-on-first-use"}})
    {
        const ProcessOutcome changed = compare(options);
        EXPECT_EQ(changed.exitStatus, kTargetFailed) << changed.out;
        EXPECT_THAT(changed.out, AllOf(HasSubstr("36"), HasSubstr(fingerprint), HasSubstr("fingerprint is ")));
        EXPECT_THAT(changed.out, Not(HasSubstr("fingerprint is " + fingerprint))) << "the new one is another";
        EXPECT_THAT(readFile(tree_.file("out/korvan.log")), HasSubstr("not asked over IPMI"));
    }
    EXPECT_EQ(knownFingerprint(), fingerprint);
    EXPECT_EQ(compare({"--cacert", tree_.file("ca.pem")}).exitStatus, 0);
}

TEST_F(Trust, IsKeptInTheFileThatTheUserNames)
{
    serveOne();
    const Words file = {"--known-controllers", tree_.file("mine")};
    EXPECT_EQ(compare({file[0], file[1], "--trust-on-first-use"}).exitStatus, 0);
    EXPECT_THAT(readFile(tree_.file("mine")), HasSubstr(address_ + " sha256 "));
    EXPECT_FALSE(fs::exists(tree_.file("home/.korvan")));
    EXPECT_EQ(compare(file).exitStatus, 0);
    EXPECT_EQ(compare({}).exitStatus, kTargetFailed);
}

TEST_F(Trust, IsNotAskedForWhenTheUserDeclines)
{
    serveOne();
    EXPECT_EQ(compare({"--never-check-trust", "--trust-on-first-use"}).exitStatus, 0);
    EXPECT_FALSE(fs::exists(tree_.file("home/.korvan")));
}

TEST_F(Trust, FollowsTheFingerprintInTheTargetList)
{
    serveOne();
    ASSERT_EQ(compare({"--trust-on-first-use"}).exitStatus, 0);
    const std::string right = knownFingerprint();
    fs::remove(tree_.file(kKnown));
    const ProcessOutcome accepted = compare({}, {{"fingerprint", right}});
    EXPECT_EQ(accepted.exitStatus, 0) << accepted.out;
    const std::string wrong(64, 'a');
    const ProcessOutcome refused =
        compare({"--trust-on-first-use", "--cacert", tree_.file("ca.pem")}, {{"fingerprint", wrong}});
    EXPECT_EQ(refused.exitStatus, kTargetFailed);
    EXPECT_THAT(refused.out, AllOf(HasSubstr("36"), HasSubstr(right), HasSubstr(wrong)));
    EXPECT_FALSE(fs::exists(tree_.file(kKnown)));
}

TEST_F(Trust, SpeaksOldTlsToTheTargetThatMay)
{
    serveOne("", {{"max_tls", "1.0"}});
    const Words authority = {"--cacert", tree_.file("ca.pem")};
    const ProcessOutcome refused = compare(authority);
    EXPECT_EQ(refused.exitStatus, kTargetFailed);
    EXPECT_THAT(refused.out, HasSubstr("old_tls"));
    const ProcessOutcome spoken = compare(authority, {{"old_tls", true}});
    EXPECT_EQ(spoken.exitStatus, 0) << spoken.out;
}
