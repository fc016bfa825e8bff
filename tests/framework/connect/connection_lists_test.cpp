#include "framework/ipmi/simulated_ipmi.h"
#include "framework/redfish/simulated_controller.h"
#include "interrupt.h"
#include "korvan_connect.h"
#include "support/loopback_port.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using XModule::XModuleConnection::ConnectionInfo;
using XModule::XModuleConnection::Protocol;

namespace
{
UserContext contextFor(const std::string& option, const std::string& value)
{
    interrupt::reset();
    UserContext context;
    context.options[option] = value;
    context.options["never-check-trust"] = "";
    return context;
}

UserContext ipmiContext(unsigned port, const std::string& password)
{
    UserContext context = contextFor("bmc", std::string(SimulatedIpmi::kUser) + ":" + password + "@127.0.0.1");
    context.options["ipmi-port"] = std::to_string(port);
    return context;
}

std::string addressOf(const SimulatedController& controller, const std::string& password)
{
    const std::size_t host = controller.url().find("//") + 2;
    return controller.url().substr(0, host) + "admin:" + password + "@" + controller.url().substr(host);
}
constexpr char kCimOnly[] = R"("tls": false, "behaviour": {"no_redfish": true, "cim": "works"})";

// The controller's CIM service stands at the port of its web service.
UserContext cimContext(const SimulatedController& controller, const std::string& password)
{
    UserContext context = contextFor("bmc", addressOf(controller, password));
    context.options["bmc-cim-port"] = std::to_string(controller.option().port);
    context.options["ipmi-port"] = std::to_string(freeUdpPort());
    return context;
}

using Fetch = KorvanResult (*)(const UserContext& context, std::vector<ConnectionInfo>& connections);

// The codes that the protocols give, one after the other.
std::vector<std::uint32_t> codesOf(const UserContext& context,
                                   const std::vector<Fetch>& protocols = {GetRESTConnectionList, FetchCIMConnectionList,
                                                                          FetchIPMIConnectionList})
{
    std::vector<ConnectionInfo> connections;
    std::vector<std::uint32_t> codes;
    for (const Fetch fetch : protocols)
    {
        codes.push_back(fetch(context, connections).number());
    }
    return codes;
}

std::size_t refusedLogins(SimulatedController& controller)
{
    const std::string statistics = controller.stopForStatistics();
    const std::string before = "\"refused_logins\": ";
    return std::stoul(statistics.substr(statistics.find(before) + before.size()));
}
} // namespace

TEST(RestConnections, HoldTheOneThatWorks)
{
    SimulatedController controller("rack-a", R"("tls": false)");
    std::vector<ConnectionInfo> connections;
    const KorvanResult result =
        GetRESTConnectionList(contextFor("bmc", addressOf(controller, SimulatedController::kPassword)), connections);
    EXPECT_EQ(0U, result.number()) << result;
    ASSERT_EQ(1U, connections.size());
    EXPECT_EQ(Protocol::Rest, connections[0].protocol);
    EXPECT_EQ("bmc", connections[0].option.kind);
}

TEST(RestConnections, AreEmptyWithTheReasonWhenTheLoginIsRefused)
{
    SimulatedController controller("rack-a", R"("tls": false)");
    std::vector<ConnectionInfo> connections;
    const KorvanResult result =
        GetRESTConnectionList(contextFor("bmc", addressOf(controller, "Hidden-1")), connections);
    EXPECT_EQ(12U, result.number()) << result;
    EXPECT_THAT(result.message, Not(HasSubstr("Hidden-1")));
    EXPECT_TRUE(connections.empty());
}

TEST(RestConnections, FailWhereNobodyListens)
{
    std::vector<ConnectionInfo> connections;
    EXPECT_EQ(13U, GetRESTConnectionList(contextFor("bmc", "u:p@127.0.0.1:" + std::to_string(test_support::freePort())),
                                         connections)
                       .number());
}

TEST(RestConnections, NameTheLocalSystemWithoutConnecting)
{
    std::vector<ConnectionInfo> connections;
    const KorvanResult result = GetRESTConnectionList(contextFor("local", ""), connections);
    EXPECT_EQ(0U, result.number()) << result;
    ASSERT_EQ(1U, connections.size());
    EXPECT_EQ(Protocol::Local, connections[0].protocol);
}

TEST(CimConnections, HoldTheOneThatWorks)
{
    SimulatedController controller("rack-a", kCimOnly);
    std::vector<ConnectionInfo> connections;
    const KorvanResult result =
        FetchCIMConnectionList(cimContext(controller, SimulatedController::kPassword), connections);
    EXPECT_EQ(0U, result.number()) << result;
    ASSERT_EQ(1U, connections.size());
    EXPECT_EQ(Protocol::Cim, connections[0].protocol);
    EXPECT_EQ(controller.option().port, connections[0].option.cimPort);
}

TEST(CimConnections, AreEmptyWithTheReasonWhenTheyFail)
{
    SimulatedController controller("rack-a", kCimOnly);
    std::vector<ConnectionInfo> connections;
    const KorvanResult refused = FetchCIMConnectionList(cimContext(controller, "Hidden-1"), connections);
    EXPECT_EQ(12U, refused.number()) << refused;
    EXPECT_THAT(refused.message, HasSubstr("127.0.0.1"));
    EXPECT_THAT(refused.message, Not(HasSubstr("Hidden-1")));
    SimulatedController without("rack-a", R"("tls": false)");
    EXPECT_EQ(66U, FetchCIMConnectionList(cimContext(without, SimulatedController::kPassword), connections).number());
    EXPECT_EQ(25U, FetchCIMConnectionList(contextFor("local", ""), connections).number());
    EXPECT_TRUE(connections.empty());
}

TEST(IpmiConnections, HoldTheOneThatWorks)
{
    const SimulatedIpmi controller("Node X20", "7X20CTO1WW");
    std::vector<ConnectionInfo> connections;
    const KorvanResult result =
        FetchIPMIConnectionList(ipmiContext(controller.port(), SimulatedIpmi::kPassword), connections);
    EXPECT_EQ(0U, result.number()) << result;
    ASSERT_EQ(1U, connections.size());
    EXPECT_EQ(Protocol::Ipmi, connections[0].protocol);
    EXPECT_EQ(controller.port(), connections[0].option.ipmiPort);
}

TEST(IpmiConnections, AreEmptyWithTheReasonWhenTheLoginIsRefused)
{
    const SimulatedIpmi controller("Node X20", "7X20CTO1WW");
    std::vector<ConnectionInfo> connections;
    const KorvanResult wrong = FetchIPMIConnectionList(ipmiContext(controller.port(), "Hidden-1"), connections);
    EXPECT_EQ(63U, wrong.number()) << wrong;
    EXPECT_THAT(wrong.message, HasSubstr("127.0.0.1"));
    EXPECT_THAT(wrong.message, Not(HasSubstr("Hidden-1")));
    EXPECT_EQ(51U, FetchIPMIConnectionList(ipmiContext(controller.port(), std::string(21, 'p')), connections).number());
    EXPECT_TRUE(connections.empty());
}

TEST(IpmiConnections, FailInTimeWhereNobodyAnswers)
{
    std::vector<ConnectionInfo> connections;
    UserContext context = ipmiContext(freeUdpPort(), "p");
    context.connectTimeout = 1;
    EXPECT_EQ(18U, FetchIPMIConnectionList(context, connections).number());
    EXPECT_TRUE(connections.empty());
}

TEST(IpmiConnections, AreNotMadeToTheLocalSystem)
{
    std::vector<ConnectionInfo> connections;
    EXPECT_EQ(25U, FetchIPMIConnectionList(contextFor("local", ""), connections).number());
}

TEST(LaterProtocols, DoNotRepeatALoginThatRestRefused)
{
    SimulatedController controller("rack-a", R"("tls": false, "behaviour": {"cim": "works"})");
    UserContext context = cimContext(controller, "Hidden-1");
    EXPECT_THAT(codesOf(context), ElementsAre(12U, 12U, 12U));
    std::vector<ConnectionInfo> connections;
    const KorvanResult result = FetchCIMConnectionList(context, connections);
    EXPECT_THAT(result.message, HasSubstr("has refused this user name and password already"));
    EXPECT_THAT(result.message, Not(HasSubstr("Hidden-1")));
    const UserContext right = cimContext(controller, SimulatedController::kPassword);
    EXPECT_EQ(0U, FetchCIMConnectionList(right, connections).number()) << "another password is not the refused one";
    EXPECT_EQ(1U, refusedLogins(controller));
}

TEST(LaterProtocols, DoNotRepeatALoginThatCimRefused)
{
    SimulatedController controller("rack-a", kCimOnly);
    EXPECT_THAT(codesOf(cimContext(controller, "Hidden-1")), ElementsAre(52U, 12U, 12U));
    EXPECT_EQ(1U, refusedLogins(controller));
}

TEST(LaterProtocols, AreTriedWhenTheAccountMerelyMayNotReadOverRest)
{
    SimulatedController controller("rack-a", R"("tls": false, "behaviour": {"cim": "works"}, "faults": [)"
                                             R"({"path": "^/redfish/v1/.", "action": "status", "status": 403}])");
    const UserContext context = cimContext(controller, SimulatedController::kPassword);
    EXPECT_THAT(codesOf(context, {GetRESTConnectionList, FetchCIMConnectionList}), ElementsAre(12U, 0U));
}

TEST(LaterProtocols, AreTriedAgainOnceTheLoginIsTaken)
{
    SimulatedController controller("rack-a",
                                   R"("tls": false, "behaviour": {"cim": "works"}, "faults": [)"
                                   R"({"path": "^/redfish/v1/.", "times": 1, "action": "status", "status": 401}])");
    const UserContext context = cimContext(controller, SimulatedController::kPassword);
    const std::vector<Fetch> protocols = {GetRESTConnectionList, FetchCIMConnectionList};
    EXPECT_THAT(codesOf(context, protocols), ElementsAre(12U, 12U));
    EXPECT_THAT(codesOf(context, protocols), ElementsAre(0U, 0U));
}

TEST(LaterProtocols, AreNotTriedWithAControllerWhoseCertificateWasRefused)
{
    SimulatedController overRest("rack-a", R"("behaviour": {"cim": "works"})");
    UserContext context = cimContext(overRest, SimulatedController::kPassword);
    context.options.erase("never-check-trust");
    context.options["known-controllers"] = "";
    EXPECT_THAT(codesOf(context), ElementsAre(36U, 36U, 36U));

    // Nobody at the web service's port, and a CIM service with a certificate of its own making.
    context.options["bmc"] = "admin:p@127.0.0.1:" + std::to_string(test_support::freePort());
    EXPECT_THAT(codesOf(context), ElementsAre(13U, 36U, 36U));
}

TEST(LaterProtocols, WaitLittleForAHostThatDidNotAnswerRest)
{
    SimulatedController controller("rack-a", R"("tls": false, "faults": [{"path": ".*", "action": "hang"}])");
    UserContext context = cimContext(controller, SimulatedController::kPassword);
    context.targetTimeout = 1;
    EXPECT_THAT(codesOf(context, {GetRESTConnectionList, FetchCIMConnectionList}), ElementsAre(18U, 18U));
    context.targetTimeout = 60;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THAT(codesOf(context, {FetchIPMIConnectionList}), ElementsAre(18U));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(3500)) << "6 seconds otherwise";
}
