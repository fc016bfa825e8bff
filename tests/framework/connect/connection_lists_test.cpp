#include "framework/ipmi/simulated_ipmi.h"
#include "framework/redfish/simulated_controller.h"
#include "interrupt.h"
#include "korvan_connect.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
    EXPECT_EQ(
        13U,
        GetRESTConnectionList(contextFor("bmc", "u:p@127.0.0.1:" + std::to_string(freePort())), connections).number());
}

TEST(RestConnections, AreNotMadeToTheLocalSystem)
{
    std::vector<ConnectionInfo> connections;
    const KorvanResult result = GetRESTConnectionList(contextFor("local", ""), connections);
    EXPECT_EQ(25U, result.number());
    EXPECT_FALSE(result.message.empty());
}

TEST(CimConnections, SayThatTheyAreNotAvailable)
{
    std::vector<ConnectionInfo> connections;
    const KorvanResult result = FetchCIMConnectionList(contextFor("bmc", "u:Hidden-1@192.0.2.7"), connections);
    EXPECT_EQ(66U, result.number());
    EXPECT_THAT(result.message, HasSubstr("192.0.2.7"));
    EXPECT_THAT(result.message, Not(HasSubstr("Hidden-1")));
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
