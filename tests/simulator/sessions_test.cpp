#include "simulator/http_client.h"
#include "simulator/simulated.h"

namespace simulator_tests
{
namespace
{
using simulator::Authentication;

class Sessions : public Simulated
{
  protected:
    static Call loginCall(const std::string& password = "Secret-1")
    {
        Call call;
        call.method = "POST";
        call.user.clear();
        call.headers.emplace_back("Content-Type: application/json");
        call.body = nlohmann::json{{"UserName", "admin"}, {"Password", password}}.dump();
        return call;
    }

    static Call tokenCall(const std::string& token, const std::string& method = "GET")
    {
        Call call;
        call.method = method;
        call.user.clear();
        call.headers.push_back("X-Auth-Token: " + token);
        return call;
    }
};

TEST_F(Sessions, AreOpenedUsedAndDeleted)
{
    start();
    const Answer opened = request(url(kSessions), loginCall());
    ASSERT_EQ(opened.status, 201);
    const std::string token = opened.headers.at("x-auth-token");
    const std::string place = opened.headers.at("location");
    EXPECT_EQ(parsed(opened.body).at("@odata.id"), place);
    EXPECT_EQ(statistics().sessionsOpen, 1U);
    EXPECT_EQ(request(url(kSystems), tokenCall(token)).status, 200);
    EXPECT_EQ(parsed(request(url(kSessions), tokenCall(token)).body).at("Members").size(), 1U);
    EXPECT_EQ(request(url(kSystems), tokenCall("wrong")).status, 401);
    EXPECT_EQ(request(url(place), tokenCall(token, "DELETE")).status, 204);
    EXPECT_EQ(request(url(kSystems), tokenCall(token)).status, 401);
    EXPECT_EQ(statistics().sessionsOpen, 0U);
    EXPECT_EQ(statistics().sessionsCreated, 1U);
    EXPECT_EQ(statistics().sessionsDeleted, 1U);
}

TEST_F(Sessions, NeedTheRightPassword)
{
    start();
    EXPECT_EQ(request(url(kSessions), loginCall("Secret-2")).status, 401);
    Call broken = loginCall();
    broken.body = "{";
    EXPECT_EQ(request(url(kSessions), broken).status, 400);
    EXPECT_EQ(statistics().sessionsCreated, 0U);
}

TEST_F(Sessions, MayComeWith204AndWithoutLocation)
{
    config.behaviour.sessionStatus = 204;
    config.behaviour.sessionLocation = false;
    start();
    const Answer opened = request(url(kSessions), loginCall());
    EXPECT_EQ(opened.status, 204);
    EXPECT_EQ(opened.headers.count("location"), 0U);
    EXPECT_EQ(request(url(kSystems), tokenCall(opened.headers.at("x-auth-token"))).status, 200);
}

TEST_F(Sessions, MayNeedBasicToBeOpened)
{
    config.behaviour.sessionNeedsBasic = true;
    start();
    EXPECT_EQ(request(url(kSessions), loginCall()).status, 401);
    Call both = loginCall();
    both.user = "admin";
    EXPECT_EQ(request(url(kSessions), both).status, 201);
}

TEST_F(Sessions, RunOut)
{
    config.behaviour.maxSessions = 2;
    start();
    EXPECT_EQ(request(url(kSessions), loginCall()).status, 201);
    EXPECT_EQ(request(url(kSessions), loginCall()).status, 201);
    EXPECT_EQ(request(url(kSessions), loginCall()).status, 503);
    EXPECT_EQ(statistics().sessionsOpen, 2U);
}

TEST_F(Sessions, MayBeTheOnlyWay)
{
    config.behaviour.authentication = Authentication::SessionsOnly;
    start();
    const Answer refused = request(url(kSystems));
    EXPECT_EQ(refused.status, 401);
    EXPECT_EQ(refused.headers.count("www-authenticate"), 0U);
    const Answer opened = request(url(kSessions), loginCall());
    EXPECT_EQ(request(url(kSystems), tokenCall(opened.headers.at("x-auth-token"))).status, 200);
}

TEST_F(Sessions, MayBeMissing)
{
    config.behaviour.authentication = Authentication::BasicOnly;
    start();
    EXPECT_EQ(request(url(kSessions), loginCall()).status, 404);
}

TEST_F(Sessions, SayWhenThePasswordMustBeChanged)
{
    config.behaviour.passwordChangeRequired = true;
    start();
    const Answer opened = request(url(kSessions), loginCall());
    ASSERT_EQ(opened.status, 201);
    EXPECT_NE(opened.body.find("PasswordChangeRequired"), std::string::npos);
    const std::string token = opened.headers.at("x-auth-token");
    EXPECT_EQ(request(url(kSystems), tokenCall(token)).status, 403);
    EXPECT_EQ(request(url(opened.headers.at("location")), tokenCall(token, "DELETE")).status, 204);
}
} // namespace
} // namespace simulator_tests
