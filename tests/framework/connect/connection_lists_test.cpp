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

TEST(OtherConnections, SayThatTheyAreNotAvailable)
{
    std::vector<ConnectionInfo> connections;
    const UserContext context = contextFor("bmc", "u:Hidden-1@192.0.2.7");
    const KorvanResult cim = FetchCIMConnectionList(context, connections);
    const KorvanResult ipmi = FetchIPMIConnectionList(context, connections);
    EXPECT_EQ(66U, cim.number());
    EXPECT_EQ(63U, ipmi.number());
    for (const KorvanResult& result : {cim, ipmi})
    {
        EXPECT_THAT(result.message, HasSubstr("192.0.2.7"));
        EXPECT_THAT(result.message, Not(HasSubstr("Hidden-1")));
    }
    EXPECT_TRUE(connections.empty());
}
