#include "redfish/client.h"

#include "framework/redfish/fake_transport.h"
#include "interrupt.h"
#include "redfish/transport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <thread>

using redfish::Client;
using redfish::ClientLimits;
using redfish::Fault;
using redfish::Reply;
using redfish::TransportFault;
using std::chrono::milliseconds;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace
{
class ClientTest : public testing::Test
{
  protected:
    ClientTest()
    {
        interrupt::reset();
        option_.host = "192.0.2.7";
        option_.port = 8443;
        option_.user = "admin";
        option_.password = "Pass-Word-9";
        limits_.backOff = milliseconds(1);
        limits_.longestWait = milliseconds(20);
        service_.resources["/x"] = "{\"Name\": \"x\"}";
    }

    ~ClientTest() override { interrupt::reset(); }

    void open() { client_ = std::make_unique<Client>(option_, limits_, std::make_unique<FakeTransport>(service_)); }

    Reply get(const std::string& path)
    {
        if (!client_)
        {
            open();
        }
        return client_->getJson(path, document_);
    }

    static redfish::Exchange faulty(TransportFault fault)
    {
        redfish::Exchange answer;
        answer.fault = fault;
        return answer;
    }

    ConnectOption option_;
    ClientLimits limits_;
    FakeTransport::Service service_;
    nlohmann::json document_;
    std::unique_ptr<Client> client_;
};

void refuseBasic(FakeTransport::Service& service)
{
    service.rules.push_back(
        [](const redfish::Request& request, redfish::Exchange& answer)
        {
            if (request.method == "POST" && request.path == "/Sessions")
            {
                answer = answerWith(201);
                answer.token = "Token-1";
                answer.location = "/Sessions/7";
                return true;
            }
            const bool refused = request.token != "Token-1";
            answer.status = refused ? 401 : 204;
            return refused || request.method == "DELETE";
        });
}
} // namespace

TEST_F(ClientTest, GivesTheResourceAsJson)
{
    ASSERT_TRUE(get("/x").ok());
    EXPECT_EQ("x", document_["Name"]);
}

TEST_F(ClientTest, RetriesABusyServiceAndHonoursRetryAfter)
{
    redfish::Exchange busy = answerWith(503);
    busy.retryAfter = std::chrono::seconds(1); // longer than any back-off here
    service_.rules.push_back(firstTimes("/x", 1, busy));
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_TRUE(get("/x").ok());
    const auto took = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(took, milliseconds(1000));
    EXPECT_EQ(2U, service_.count("GET", "/x"));
}

TEST_F(ClientTest, DoesNotAskBeforeTheServiceWantsToBeAskedAgain)
{
    redfish::Exchange busy = answerWith(503);
    busy.retryAfter = std::chrono::seconds(3600);
    service_.rules.push_back(firstTimes("/x", 1, busy));
    EXPECT_EQ(Fault::Busy, get("/x").fault);
    EXPECT_EQ(1U, service_.count("GET", "/x"));
}

TEST_F(ClientTest, IsNotTriedWithAUserWhoHasNoPassword)
{
    option_.password.clear();
    const Reply reply = get("/x");
    EXPECT_EQ(12U, reply.result.number());
    EXPECT_THAT(reply.result.message, HasSubstr("the user has no password"));
    EXPECT_TRUE(service_.requests.empty());
}

TEST_F(ClientTest, DeletesItsSessionAlsoWhenThatIsRefusedAtFirst)
{
    refuseBasic(service_);
    service_.rules.insert(service_.rules.begin(), firstTimes("/Sessions/7", 1, answerWith(503)));
    open();
    client_->offerSessions("/Sessions");
    ASSERT_TRUE(get("/x").ok());
    client_.reset();
    EXPECT_EQ(2U, service_.count("DELETE", "/Sessions/7"));
}

TEST_F(ClientTest, GivesUpOnAServiceThatStaysBusy)
{
    service_.rules.push_back(firstTimes("/x", 100, answerWith(503)));
    const Reply reply = get("/x");
    EXPECT_EQ(Fault::Busy, reply.fault);
    EXPECT_EQ(60U, reply.result.number());
    EXPECT_EQ(4U, service_.count("GET", "/x"));
}

TEST_F(ClientTest, RepeatsARequestOnAFreshConnectionWhenTheOldOneWasCut)
{
    redfish::Exchange cut = faulty(TransportFault::Cut);
    cut.reusedConnection = true;
    service_.rules.push_back(firstTimes("/x", 1, cut));
    ASSERT_TRUE(get("/x").ok());
    ASSERT_EQ(2U, service_.requests.size());
    EXPECT_EQ(redfish::ConnectionUse::Fresh, service_.requests[1].connectionUse);
}

TEST_F(ClientTest, DoesNotRepeatARequestToADeadPort)
{
    service_.rules.push_back(firstTimes("/x", 100, faulty(TransportFault::Unreachable)));
    const Reply reply = get("/x");
    EXPECT_EQ(13U, reply.result.number());
    EXPECT_THAT(reply.result.message, HasSubstr("192.0.2.7:8443: reading /x:"));
    EXPECT_EQ(1U, service_.requests.size());
    EXPECT_FALSE(client_->usable());
}

TEST_F(ClientTest, FollowsARedirectOnTheSameService)
{
    redfish::Exchange moved = answerWith(308);
    moved.location = "/x";
    service_.rules.push_back(firstTimes("/x/", 1, moved));
    EXPECT_TRUE(get("/x/").ok());
}

TEST_F(ClientTest, RefusesARedirectToAnotherPlace)
{
    redfish::Exchange moved = answerWith(302);
    moved.leadsElsewhere = true;
    service_.rules.push_back(firstTimes("/x", 100, moved));
    const Reply reply = get("/x");
    EXPECT_EQ(Fault::Redirected, reply.fault);
    EXPECT_EQ(1U, service_.requests.size());
}

TEST_F(ClientTest, EndsACircleOfRedirects)
{
    redfish::Exchange moved = answerWith(301);
    moved.location = "/x";
    service_.rules.push_back(firstTimes("/x", 1000, moved));
    EXPECT_EQ(Fault::Redirected, get("/x").fault);
    EXPECT_EQ(5U, service_.requests.size());
}

TEST_F(ClientTest, TellsARefusedLoginAndAsksNoMore)
{
    service_.rules.push_back(firstTimes("/x", 100, answerWith(401)));
    const Reply reply = get("/x");
    EXPECT_EQ(12U, reply.result.number());
    EXPECT_THAT(reply.result.message, Not(HasSubstr("Pass-Word-9")));
    EXPECT_EQ(12U, get("/y").result.number());
    EXPECT_EQ(1U, service_.requests.size());
}

TEST_F(ClientTest, TellsAPasswordThatMustBeChangedFromARefusedOne)
{
    service_.rules.push_back(firstTimes("/x", 1, answerWith(403, R"({"error": {"@Message.ExtendedInfo":
                                            [{"MessageId": "Base.v1_4_0.PasswordChangeRequired"}]}})")));
    EXPECT_EQ(54U, get("/x").result.number());
}

TEST_F(ClientTest, GoesOnAfterAResourceThatIsForbidden)
{
    service_.rules.push_back(firstTimes("/secret", 1, answerWith(403)));
    EXPECT_EQ(12U, get("/secret").result.number());
    EXPECT_TRUE(get("/x").ok());
}

TEST_F(ClientTest, MapsTransportFaultsToResultCodes)
{
    const std::vector<std::pair<TransportFault, unsigned>> table = {
        {TransportFault::NameNotFound, 13}, {TransportFault::Unreachable, 13}, {TransportFault::Tls, 13},
        {TransportFault::TimeLimit, 18},    {TransportFault::Certificate, 36}, {TransportFault::CaFile, 36},
        {TransportFault::Malformed, 60},    {TransportFault::TooLarge, 60},    {TransportFault::Cut, 13}};
    for (const auto& row : table)
    {
        service_.rules = {firstTimes("/x", 100, faulty(row.first))};
        open();
        EXPECT_EQ(row.second, get("/x").result.number()) << static_cast<int>(row.first);
    }
}

TEST_F(ClientTest, NamesNoAuthorityForACertificateThatHasExpired)
{
    redfish::Exchange refused = faulty(TransportFault::Certificate);
    refused.detail = "SSL certificate problem: certificate has expired";
    service_.rules = {firstTimes("/x", 100, refused)};
    EXPECT_THAT(get("/x").result.message, AllOf(HasSubstr("renew it"), Not(HasSubstr("--cacert"))));
    refused.detail = "SSL certificate problem: self-signed certificate";
    service_.rules = {firstTimes("/x", 100, refused)};
    open();
    EXPECT_THAT(get("/x").result.message, HasSubstr("--cacert"));
}

TEST_F(ClientTest, RefusesAnAnswerThatIsNoJson)
{
    for (const std::string& body : {std::string("<html>"), std::string(""), std::string("{\"a\": "),
                                    std::string(100, '['), std::string(100, '[') + std::string(100, ']')})
    {
        service_.resources["/x"] = body;
        EXPECT_EQ(60U, get("/x").result.number()) << body;
        EXPECT_TRUE(document_.is_null());
    }
}

TEST_F(ClientTest, FollowsNoLinkThatIsNoPath)
{
    for (const char* link : {"", "x", "https://192.0.2.8/x", "#/a", "/a\nb", "\\x"})
    {
        EXPECT_EQ(Fault::Unreadable, get(link).fault) << link;
    }
    EXPECT_TRUE(service_.requests.empty());
    EXPECT_EQ("/a%20b", redfish::requestPath("/a b#/Members/0"));
}

TEST_F(ClientTest, StopsWaitingWhenInterrupted)
{
    limits_.backOff = limits_.longestWait = std::chrono::seconds(15);
    service_.rules.push_back(firstTimes("/x", 100, answerWith(503)));
    std::thread user(
        []
        {
            std::this_thread::sleep_for(milliseconds(100));
            interrupt::request();
        });
    const auto begin = std::chrono::steady_clock::now();
    const Reply reply = get("/x");
    user.join();
    EXPECT_EQ(47U, reply.result.number());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    EXPECT_FALSE(client_->usable());
}

TEST_F(ClientTest, AsksNothingMoreWhenTheTargetsTimeIsOver)
{
    option_.targetTimeout = std::chrono::seconds(0);
    EXPECT_EQ(18U, get("/x").result.number());
    EXPECT_TRUE(service_.requests.empty());
}

// A service that refuses Basic and keeps sessions.

TEST_F(ClientTest, LogsInWithASessionWhereBasicIsRefusedAndDeletesItAtTheEnd)
{
    refuseBasic(service_);
    open();
    client_->offerSessions("/Sessions");
    ASSERT_TRUE(get("/x").ok());
    ASSERT_TRUE(get("/x").ok());
    EXPECT_EQ(1U, service_.count("POST", "/Sessions"));
    client_.reset();
    EXPECT_EQ(1U, service_.count("DELETE", "/Sessions/7"));
}

TEST_F(ClientTest, DeletesItsSessionAlsoAfterAnInterrupt)
{
    refuseBasic(service_);
    open();
    client_->offerSessions("/Sessions");
    ASSERT_TRUE(get("/x").ok());
    interrupt::request();
    EXPECT_EQ(47U, get("/x").result.number());
    client_.reset();
    EXPECT_EQ(1U, service_.count("DELETE", "/Sessions/7"));
    EXPECT_EQ(redfish::InterruptUse::Ignore, service_.requests.back().interruptUse);
}

TEST_F(ClientTest, FollowsARedirectionAlsoToDeleteItsSession)
{
    refuseBasic(service_);
    redfish::Exchange moved = answerWith(308);
    moved.location = "/Sessions/7/";
    service_.rules.insert(service_.rules.begin(), firstTimes("/Sessions/7", 1, moved));
    open();
    client_->offerSessions("/Sessions");
    ASSERT_TRUE(get("/x").ok());
    client_.reset();
    EXPECT_EQ(1U, service_.count("DELETE", "/Sessions/7/"));
}

TEST_F(ClientTest, FindsItsSessionWhereTheServiceDidNotSayWhereItIs)
{
    redfish::Exchange unplaced = answerWith(204);
    unplaced.token = "Token-1";
    const auto closeWith = [&](const std::string& otherUser)
    {
        service_.rules.clear();
        service_.requests.clear();
        service_.rules.push_back(
            [unplaced](const redfish::Request& request, redfish::Exchange& answer)
            {
                answer = unplaced;
                return request.method == "POST";
            });
        refuseBasic(service_);
        service_.resources["/Sessions"] =
            R"({"Members": [{"@odata.id": "/Sessions/3"}, {"@odata.id": "/Sessions/9"}]})";
        service_.resources["/Sessions/3"] = R"({"UserName": ")" + otherUser + "\"}";
        service_.resources["/Sessions/9"] = R"({"UserName": "admin"})";
        open();
        client_->offerSessions("/Sessions");
        EXPECT_TRUE(get("/x").ok());
        client_.reset();
    };
    closeWith("somebody");
    EXPECT_EQ(1U, service_.count("DELETE", "/Sessions/9"));
    EXPECT_EQ(0U, service_.count("DELETE", "/Sessions/3"));
    closeWith("admin");
    EXPECT_EQ(0U, service_.count("DELETE", "/Sessions/3") + service_.count("DELETE", "/Sessions/9"))
        << "either may be another program's";
}

TEST_F(ClientTest, AsksNothingMoreOfAServiceThatTakesNoFurtherSession)
{
    refuseBasic(service_);
    service_.rules.insert(service_.rules.begin(), firstTimes("/Sessions", 100, answerWith(503)));
    service_.resources["/y"] = "{}";
    open();
    client_->offerSessions("/Sessions");
    EXPECT_EQ(Fault::Busy, get("/x").fault);
    EXPECT_EQ(4U, service_.count("POST", "/Sessions")) << "the first time and three retries";
    EXPECT_FALSE(client_->usable());
    EXPECT_EQ(Fault::Busy, get("/y").fault);
    EXPECT_EQ(0U, service_.count("GET", "/y"));
}

TEST_F(ClientTest, EndsAtTheDeadlineOfItsTarget)
{
    option_.deadline = std::chrono::steady_clock::now() - milliseconds(1);
    EXPECT_EQ(18U, get("/x").result.number());
    EXPECT_TRUE(service_.requests.empty());
}

TEST_F(ClientTest, DoesNotTryTheLoginAgainWithASessionWhereBasicIsOffered)
{
    redfish::Exchange refused = answerWith(401);
    refused.authenticate = "basic realm=\"bmc\"";
    service_.rules.push_back(firstTimes("/x", 100, refused));
    open();
    client_->offerSessions("/Sessions");
    EXPECT_EQ(12U, get("/x").result.number());
    EXPECT_EQ(1U, service_.requests.size());
}
