#include "framework/redfish/simulated_controller.h"
#include "interrupt.h"
#include "redfish/client.h"
#include "redfish/service_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <thread>

using redfish::Client;
using redfish::ServiceRoot;
using std::chrono::milliseconds;
using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

namespace
{
class LiveServiceTest : public testing::Test
{
  protected:
    LiveServiceTest() { interrupt::reset(); }
    ~LiveServiceTest() override { interrupt::reset(); }

    static KorvanResult read(const ConnectOption& option, const std::string& path = "/redfish/v1/Systems")
    {
        redfish::ClientLimits limits;
        limits.backOff = milliseconds(10);
        Client client(option, limits);
        ServiceRoot root;
        const KorvanResult opened = redfish::openService(client, root);
        nlohmann::json document;
        return opened.succeeded() ? client.getJson(path, document).result : opened;
    }

    static std::string fault(const std::string& path, const std::string& rest)
    {
        return R"("faults": [{"path": ")" + path + R"(", )" + rest + "}]";
    }
};
} // namespace

TEST_F(LiveServiceTest, ACertificateIsVerifiedUnlessTheUserDeclines)
{
    SimulatedController controller("rack-a");
    ConnectOption option = controller.option();
    EXPECT_EQ(0U, read(option).number());
    option.checkTrust = true;
    const KorvanResult refused = read(option);
    EXPECT_EQ(36U, refused.number()) << refused;
    EXPECT_THAT(refused.message, HasSubstr("--cacert"));
    option.caCert = controller.caFile();
    const KorvanResult accepted = read(option);
    EXPECT_EQ(0U, accepted.number()) << accepted;
    option.caCert = "/nowhere/ca.pem";
    const KorvanResult missing = read(option);
    EXPECT_EQ(36U, missing.number()) << missing;
    EXPECT_THAT(missing.message, HasSubstr("/nowhere/ca.pem"));
}

TEST_F(LiveServiceTest, ACertificateOfAnotherHostIsRefused)
{
    SimulatedController controller("rack-a", R"("behaviour": {"certificate": "wrong_host"})");
    ConnectOption option = controller.option();
    option.checkTrust = true;
    option.caCert = controller.caFile();
    EXPECT_EQ(36U, read(option).number());
}

TEST_F(LiveServiceTest, AWrongPasswordIsRefusedAndStandsInNoText)
{
    SimulatedController controller("rack-a", R"("tls": false)");
    ConnectOption option = controller.option();
    option.password = "Wrong-Secret-77";
    const KorvanResult result = read(option);
    EXPECT_EQ(12U, result.number()) << result;
    EXPECT_THAT(result.message, Not(AnyOf(HasSubstr("Wrong-Secret-77"), HasSubstr("admin"))));
}

TEST_F(LiveServiceTest, APasswordThatMustBeChangedHasItsOwnCode)
{
    SimulatedController controller("rack-a", R"("tls": false, "behaviour": {"password_change_required": true})");
    EXPECT_EQ(54U, read(controller.option()).number());
}

TEST_F(LiveServiceTest, ASessionIsUsedWhereBasicIsRefusedAndLeavesNothingBehind)
{
    SimulatedController controller(
        "rack-a", R"("tls": false, "behaviour": {"authentication": "sessions_only", "max_sessions": 1})");
    const KorvanResult first = read(controller.option());
    EXPECT_EQ(0U, first.number()) << first;
    const KorvanResult second = read(controller.option());
    EXPECT_EQ(0U, second.number()) << second << "; the first session was not deleted";
}

TEST_F(LiveServiceTest, NobodyListens)
{
    ConnectOption option;
    option.host = "127.0.0.1";
    option.port = test_support::freePort();
    const KorvanResult result = read(option);
    EXPECT_EQ(13U, result.number()) << result;
    EXPECT_THAT(result.message, HasSubstr("127.0.0.1:" + std::to_string(option.port)));
}

TEST_F(LiveServiceTest, AnUnknownHostNameIsAFailedConnection)
{
    ConnectOption option;
    option.host = "no-such-host.invalid";
    option.connectTimeout = std::chrono::seconds(2);
    EXPECT_THAT(read(option).number(), AnyOf(13U, 18U));
}

TEST_F(LiveServiceTest, ABusyServiceIsAskedAgainAfterItsRetryAfter)
{
    SimulatedController controller(
        "rack-a",
        R"("tls": false, )" + fault("Systems$", R"("times": 1, "action": "status", "status": 503, "retry_after": 1)"));
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(0U, read(controller.option()).number());
    EXPECT_GE(std::chrono::steady_clock::now() - begin, milliseconds(1000));
}

TEST_F(LiveServiceTest, AHangEndsWithTheTargetsTimeLimit)
{
    SimulatedController controller("rack-a", R"("tls": false, )" + fault("Systems$", R"("action": "hang")"));
    ConnectOption option = controller.option();
    option.targetTimeout = std::chrono::seconds(1);
    const auto begin = std::chrono::steady_clock::now();
    const KorvanResult result = read(option);
    EXPECT_EQ(18U, result.number()) << result;
    EXPECT_LT(std::chrono::steady_clock::now() - begin, milliseconds(1800));
}

TEST_F(LiveServiceTest, AnInterruptEndsAHangAtOnce)
{
    SimulatedController controller("rack-a", R"("tls": false, )" + fault("Systems$", R"("action": "hang")"));
    std::thread user(
        []
        {
            std::this_thread::sleep_for(milliseconds(200));
            interrupt::request();
        });
    const auto begin = std::chrono::steady_clock::now();
    const KorvanResult result = read(controller.option());
    user.join();
    EXPECT_EQ(47U, result.number()) << result;
    EXPECT_LT(std::chrono::steady_clock::now() - begin, milliseconds(1000));
}

TEST_F(LiveServiceTest, ALoginIsNotBrokenOffByAnInterruptSoThatItsSessionCanBeDeleted)
{
    SimulatedController controller("rack-a", R"("tls": false, "behaviour": {"authentication": "sessions_only",
        "max_sessions": 1}, )" + fault("Sessions$",
                                       R"("method": "POST", "times": 1, "action": "slow", "delay_ms": 600)"));
    std::thread user(
        []
        {
            std::this_thread::sleep_for(milliseconds(300));
            interrupt::request();
        });
    EXPECT_EQ(47U, read(controller.option()).number());
    user.join();
    interrupt::reset();
    const KorvanResult next = read(controller.option());
    EXPECT_EQ(0U, next.number()) << next << "; the only session is still taken";
}

class LiveCutTest : public LiveServiceTest, public testing::WithParamInterface<const char*>
{
};

TEST_P(LiveCutTest, ACutConnectionIsTriedAgainAndThenReported)
{
    const std::string cut = std::string(R"("action": ")") + GetParam() + "\"";
    SimulatedController once("rack-a", R"("tls": false, )" + fault("Systems$", R"("times": 1, )" + cut));
    EXPECT_EQ(0U, read(once.option()).number());
    SimulatedController always("rack-a", R"("tls": false, )" + fault("Systems$", cut));
    const KorvanResult result = read(always.option());
    EXPECT_EQ(13U, result.number()) << result;
}

INSTANTIATE_TEST_SUITE_P(Actions, LiveCutTest,
                         testing::Values("cut_before_headers", "cut_in_headers", "cut_in_body", "empty_reply"));

TEST_F(LiveServiceTest, AnAnswerThatCannotBeReadIsReported)
{
    for (const char* rest :
         {R"("action": "broken_json")", R"("action": "empty_body")", R"("action": "huge_body", "mib": 24)"})
    {
        SimulatedController controller("rack-a", R"("tls": false, )" + fault("Systems$", rest));
        const KorvanResult result = read(controller.option());
        EXPECT_EQ(60U, result.number()) << rest << " " << result;
    }
}

TEST_F(LiveServiceTest, NoRedfishServiceHasItsOwnCode)
{
    SimulatedController controller("rack-a", R"("tls": false, "behaviour": {"no_redfish": true})");
    EXPECT_EQ(52U, read(controller.option()).number());
}

TEST_F(LiveServiceTest, ARedirectToPlainHttpIsNotFollowed)
{
    SimulatedController controller("rack-a", fault("Systems$", R"("action": "redirect_to_http")"));
    const KorvanResult result = read(controller.option());
    EXPECT_EQ(60U, result.number()) << result;
    EXPECT_THAT(result.message, HasSubstr("another address"));
}

class LiveHabitTest : public LiveServiceTest, public testing::WithParamInterface<const char*>
{
};

TEST_P(LiveHabitTest, IsLivedThrough)
{
    SimulatedController controller("rack-a", std::string(R"("tls": false, "behaviour": {)") + GetParam() + "}");
    const KorvanResult result = read(controller.option());
    EXPECT_EQ(0U, result.number()) << result;
}

INSTANTIATE_TEST_SUITE_P(Habits, LiveHabitTest,
                         testing::Values(R"("gzip": true)", R"("chunked": true)", R"("http_version": "1.0")",
                                         R"("keep_alive": false)", R"("content_type": "")",
                                         R"("trailing_slash": "redirect301")", R"("trailing_slash": "redirect308")",
                                         R"("trailing_slash": "redirect301", "canonical_path": "with_slash")",
                                         R"("trailing_slash": "only_without")"));
