#include "end_to_end/names.h"
#include "end_to_end/program_tree.h"
#include "framework/ipmi/simulated_ipmi.h"
#include "framework/redfish/simulated_controller.h"
#include "support/loopback_port.h"

#include <chrono>

// How the machine type of a controller is found that has no Redfish service, or refuses it.
namespace
{
using namespace end_to_end;
using Clock = std::chrono::steady_clock;

constexpr char kLegacyRefusal[] =
    "You are running out-of-band update against an older system, which is not supported by Halvard Suite";

class OtherProtocols : public ::testing::Test
{
  protected:
    static SimulatedController controller(const json& behaviour)
    {
        return SimulatedController("rack-a", "\"behaviour\": " + behaviour.dump());
    }

    ProcessOutcome compare(const std::string& url, const Words& more,
                           const std::string& password = SimulatedController::kPassword) const
    {
        const std::size_t host = url.find("//") + 2;
        const json target = {{"kind", "bmc"},
                             {"address", url.substr(host)},
                             {"user", SimulatedController::kUser},
                             {"password", password}};
        return tree_.compareTarget(target, more);
    }

    std::string log() const { return readFile(tree_.file("out/korvan.log")); }

    void expectNoSecret(const ProcessOutcome& outcome, const std::string& secret) const
    {
        tree_.expectNoSecret(outcome.out + outcome.err, secret);
    }

    ProgramTree tree_;
};

std::string portOf(const SimulatedController& controller)
{
    return std::to_string(controller.option().port);
}

std::string freeUrl()
{
    return "https://127.0.0.1:" + std::to_string(test_support::freePort());
}
} // namespace

TEST_F(OtherProtocols, FindALegacySystemOverCim)
{
    const SimulatedController cim =
        controller({{"no_redfish", true}, {"cim", "works"}, {"cim_chassis", {{"SKU", "7T12CTO1WW"}}}});
    const ProcessOutcome outcome = compare(cim.url(), {"--cacert", cim.caFile(), "--bmc-cim-port", portOf(cim)});
    EXPECT_EQ(outcome.exitStatus, kTargetFailed) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr(kLegacyRefusal));
    EXPECT_THAT(log(), AllOf(HasSubstr("GetRESTConnectionList:52 "), HasSubstr("FetchCIMConnectionList:0 "),
                             Not(HasSubstr("FetchIPMIConnectionList")), HasSubstr("sc.IsBlueSystem(mt) = 1")));
    expectNoSecret(outcome, SimulatedController::kPassword);
}

TEST_F(OtherProtocols, LeaveACurrentSystemToTheScan)
{
    const SimulatedController cim = controller({{"no_redfish", true}, {"cim", "works"}});
    const ProcessOutcome outcome = compare(cim.url(), {"--cacert", cim.caFile(), "--bmc-cim-port", portOf(cim)});
    EXPECT_EQ(outcome.exitStatus, kTargetFailed);
    EXPECT_THAT(outcome.out, AllOf(HasSubstr(" 52 "), Not(HasSubstr(kLegacyRefusal))));
    EXPECT_THAT(log(), HasSubstr("sc.IsBlueSystem(mt) = 0"));
}

TEST_F(OtherProtocols, FindALegacySystemOverIpmiAfterRestAndCimFailed)
{
    const SimulatedController none = controller({{"no_redfish", true}});
    const SimulatedIpmi ipmi("Node T12", "7T12CTO1WW");
    const ProcessOutcome outcome =
        compare(none.url(),
                {"--cacert", none.caFile(), "--bmc-cim-port", portOf(none), "--ipmi-port", std::to_string(ipmi.port())},
                SimulatedIpmi::kPassword);
    EXPECT_EQ(outcome.exitStatus, kTargetFailed) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr(kLegacyRefusal));
    EXPECT_THAT(log(), AllOf(HasSubstr("GetRESTConnectionList:52 "), HasSubstr("FetchCIMConnectionList:66 "),
                             HasSubstr("FetchIPMIConnectionList:0 "), HasSubstr("sc.IsBlueSystem(mt) = 1")));
    expectNoSecret(outcome, SimulatedIpmi::kPassword);
}

TEST_F(OtherProtocols, SayThatIpmiRefusedTheLogin)
{
    const SimulatedIpmi ipmi("Node T12", "7T12CTO1WW");
    const ProcessOutcome outcome = compare(
        freeUrl(),
        {"--bmc-cim-port", std::to_string(test_support::freePort()), "--ipmi-port", std::to_string(ipmi.port())},
        "Hidden-1");
    EXPECT_EQ(outcome.exitStatus, kTargetFailed);
    EXPECT_THAT(outcome.out, AllOf(HasSubstr(" 13 "), Not(HasSubstr(kLegacyRefusal))));
    EXPECT_THAT(log(), AllOf(HasSubstr("FetchCIMConnectionList:13 "), HasSubstr("FetchIPMIConnectionList:63 "),
                             HasSubstr("user name or password was refused"), HasSubstr("All connection failed.")));
    expectNoSecret(outcome, "Hidden-1");
}

TEST_F(OtherProtocols, EndInTimeWhereNobodyAnswers)
{
    const Clock::time_point begin = Clock::now();
    const ProcessOutcome outcome =
        compare(freeUrl(), {"--connect-timeout", "3", "--bmc-cim-port", std::to_string(test_support::freePort()),
                            "--ipmi-port", std::to_string(freeUdpPort())});
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(8));
    EXPECT_EQ(outcome.exitStatus, kTargetFailed);
    EXPECT_THAT(outcome.out, HasSubstr(" 13 "));
    EXPECT_THAT(log(), AllOf(HasSubstr("FetchIPMIConnectionList:18 "), HasSubstr("All connection failed.")));
}

TEST_F(OtherProtocols, DoNotRepeatARefusedPassword)
{
    SimulatedController both = controller({{"cim", "works"}});
    const SimulatedIpmi ipmi("Node T12", "7T12CTO1WW");
    const ProcessOutcome outcome =
        compare(both.url(),
                {"--cacert", both.caFile(), "--bmc-cim-port", portOf(both), "--ipmi-port", std::to_string(ipmi.port())},
                "Hidden-1");
    EXPECT_EQ(outcome.exitStatus, kTargetFailed);
    EXPECT_THAT(outcome.out, AllOf(HasSubstr(" 12 "), HasSubstr("user name or password was refused")));
    EXPECT_THAT(log(), AllOf(HasSubstr("FetchCIMConnectionList:12 "), HasSubstr("FetchIPMIConnectionList:12 ")));
    expectNoSecret(outcome, "Hidden-1");
    EXPECT_THAT(both.stopForStatistics(), HasSubstr("\"refused_logins\": 1,")) << "in the whole run";
}

TEST_F(OtherProtocols, RefuseABadCimPort)
{
    const ProcessOutcome outcome = compare(freeUrl(), {"--bmc-cim-port", "70000"});
    EXPECT_EQ(outcome.exitStatus, 5);
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("--bmc-cim-port"), HasSubstr("65535")));
}
