#include "cim/chassis.h"

#include "framework/redfish/simulated_controller.h"
#include "interrupt.h"
#include "support/loopback_port.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using Clock = std::chrono::steady_clock;

namespace
{
// A controller with a CIM service on its own port.
class CimController : public SimulatedController
{
  public:
    // `behaviour`: members of that object; `more`: further members of the controller's entry.
    explicit CimController(const std::string& behaviour, const std::string& more = R"("tls": false)")
        : SimulatedController("rack-a", R"("behaviour": {"no_redfish": true, )" + behaviour + "}, " + more)
    {
        interrupt::reset();
    }

    ConnectOption option() const
    {
        ConnectOption option = SimulatedController::option();
        option.cimPort = option.port;
        option.port = 0;
        return option;
    }

    cim::ChassisReading read() const { return cim::readChassis(option()); }
};

std::string faultAt(const std::string& fault)
{
    return R"("tls": false, "faults": [{"path": "^/cimom$", )" + fault + "}]";
}
} // namespace

TEST(Cim, GivesTheChassis)
{
    const CimController controller(R"("cim": "works")");
    const cim::ChassisReading reading = controller.read();
    EXPECT_EQ(0U, reading.result.number()) << reading.result;
    ASSERT_EQ(1U, reading.chassis.size());
    EXPECT_EQ("Example Works", reading.chassis[0].manufacturer);
    EXPECT_EQ("Node X20", reading.chassis[0].model);
    EXPECT_EQ("SN00X20", reading.chassis[0].partNumber);
    EXPECT_EQ("7X20CTO1WW", reading.chassis[0].sku);
}

TEST(Cim, ComesOverOldAndOddTransports)
{
    for (const char* habit : {R"("http_version": "1.0")", R"("chunked": true, "gzip": true)", R"("keep_alive": false)"})
    {
        const CimController controller(R"("cim": "works", )" + std::string(habit));
        EXPECT_EQ(0U, controller.read().result.number()) << habit;
    }
}

TEST(Cim, LeavesBlankFieldsBlank)
{
    const CimController controller(R"("cim": "works", "cim_chassis": {"Model": "", "SKU": "N/A"})");
    const cim::ChassisReading reading = controller.read();
    EXPECT_EQ(0U, reading.result.number()) << reading.result;
    ASSERT_EQ(1U, reading.chassis.size());
    EXPECT_EQ("", reading.chassis[0].manufacturer + reading.chassis[0].model + reading.chassis[0].sku);
}

TEST(Cim, RefusesAWrongLoginWithoutAskingTwice)
{
    CimController controller(R"("cim": "works")");
    ConnectOption option = controller.option();
    option.password = "Hidden-1";
    const cim::ChassisReading reading = cim::readChassis(option);
    EXPECT_EQ(12U, reading.result.number()) << reading.result;
    EXPECT_TRUE(reading.loginRefused);
    EXPECT_THAT(reading.result.message, AllOf(HasSubstr("127.0.0.1:" + std::to_string(option.cimPort)),
                                              HasSubstr("CIM: reading CIM_Chassis"), Not(HasSubstr("Hidden-1"))));
    EXPECT_THAT(controller.stopForStatistics(), HasSubstr(R"("refused_logins": 1,)"));
}

TEST(Cim, TellsAnAccountWithoutRightsFromAWrongLogin)
{
    const CimController denied(R"("cim": "access_denied")");
    const CimController forbidden(R"("cim": "works")", faultAt(R"("action": "status", "status": 403)"));
    for (const CimController* controller : {&denied, &forbidden})
    {
        const cim::ChassisReading reading = controller->read();
        EXPECT_EQ(12U, reading.result.number()) << reading.result;
        EXPECT_FALSE(reading.loginRefused);
        EXPECT_THAT(reading.result.message, HasSubstr("may not read this"));
    }
}

TEST(Cim, SaysWhereThereIsNoServiceForChassis)
{
    const CimController off(R"("cim": "off")");
    const CimController unknown(R"("cim": "unknown_class")");
    const CimController none(R"("cim": "no_chassis")");
    const CimController elsewhere(R"("cim": "works")",
                                  faultAt(R"("action": "redirect", "location": "https://elsewhere.invalid/cimom")"));
    for (const CimController* controller : {&off, &unknown, &none, &elsewhere})
    {
        const cim::ChassisReading reading = controller->read();
        EXPECT_EQ(66U, reading.result.number()) << reading.result;
        EXPECT_THAT(reading.result.message, HasSubstr("--bmc-cim-port"));
        EXPECT_TRUE(reading.chassis.empty());
    }
}

TEST(Cim, SaysWhatCannotBeRead)
{
    const CimController broken(R"("cim": "broken_xml")");
    const CimController deep(R"("cim": "deep_xml")");
    const CimController failing(R"("cim": "failing")");
    const CimController huge(R"("cim": "works")", faultAt(R"("action": "huge_body", "mib": 4)"));
    const CimController error(R"("cim": "works")", faultAt(R"("action": "status", "status": 500)"));
    for (const CimController* controller : {&broken, &deep, &failing, &huge, &error})
    {
        const cim::ChassisReading reading = controller->read();
        EXPECT_EQ(60U, reading.result.number()) << reading.result;
        EXPECT_THAT(reading.result.message, HasSubstr("127.0.0.1:"));
        EXPECT_TRUE(reading.chassis.empty());
    }
    EXPECT_THAT(failing.read().result.message, HasSubstr("CIM error 1, The provider of the chassis failed"));
}

TEST(Cim, SaysWhereNobodyIsOrTheNameIsUnknown)
{
    ConnectOption option;
    option.scheme = "http";
    option.host = "127.0.0.1";
    option.cimPort = test_support::freePort();
    EXPECT_EQ(13U, cim::readChassis(option).result.number());
    option.host = "no-such-host.invalid";
    EXPECT_EQ(13U, cim::readChassis(option).result.number());
}

TEST(Cim, LivesThroughCutConnections)
{
    for (const char* action : {"cut_before_headers", "cut_in_headers", "cut_in_body", "empty_reply"})
    {
        const CimController controller(R"("cim": "works")", faultAt(R"("action": ")" + std::string(action) + "\""));
        const cim::ChassisReading reading = controller.read();
        EXPECT_EQ(13U, reading.result.number()) << action << ": " << reading.result;
    }
}

TEST(Cim, EndsAtTheTimeLimitWhenNoAnswerComes)
{
    const CimController controller(R"("cim": "works")", faultAt(R"("action": "hang")"));
    ConnectOption option = controller.option();
    option.targetTimeout = std::chrono::seconds(1);
    const Clock::time_point begin = Clock::now();
    EXPECT_EQ(18U, cim::readChassis(option).result.number());
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(3));
}

TEST(Cim, IsNotAskedOnceTheTargetsTimeIsOver)
{
    CimController controller(R"("cim": "works")");
    ConnectOption option = controller.option();
    option.deadline = Clock::now() - std::chrono::seconds(1);
    const cim::ChassisReading late = cim::readChassis(option);
    EXPECT_EQ(18U, late.result.number());
    EXPECT_THAT(late.result.message, HasSubstr("--target-timeout"));
    EXPECT_THAT(controller.stopForStatistics(), HasSubstr(R"("requests": 0,)"));
}

TEST(Cim, StopsWhenTheUserWishesTo)
{
    const CimController controller(R"("cim": "works")", faultAt(R"("action": "hang")"));
    interrupt::request();
    EXPECT_EQ(47U, controller.read().result.number());
    interrupt::reset();
}

TEST(Cim, TrustsTheCertificatesThatRestTrusts)
{
    const CimController controller(R"("cim": "works")", R"("tls": true)");
    ConnectOption option = controller.option();
    EXPECT_EQ(0U, cim::readChassis(option).result.number()) << "never checked";
    option.checkTrust = true;
    const cim::ChassisReading refused = cim::readChassis(option);
    EXPECT_EQ(36U, refused.result.number()) << refused.result;
    option.caCert = controller.caFile();
    EXPECT_EQ(0U, cim::readChassis(option).result.number());
    option.fingerprint = std::string(64, 'a');
    EXPECT_EQ(36U, cim::readChassis(option).result.number());

    const std::string& text = refused.result.message;
    const std::string before = "SHA-256 fingerprint is ";
    ASSERT_THAT(text, HasSubstr(before));
    option.caCert.clear();
    option.fingerprint = text.substr(text.find(before) + before.size(), 64);
    EXPECT_EQ(0U, cim::readChassis(option).result.number());
}

TEST(Cim, AddsAControllerOnFirstUseUnderThePortOfItsService)
{
    const CimController controller(R"("cim": "works")", R"("tls": true)");
    const test_support::ScratchFolder folder;
    ConnectOption option = controller.option();
    option.checkTrust = true;
    option.knownControllers = folder.file("known");
    EXPECT_EQ(36U, cim::readChassis(option).result.number());
    option.trustOnFirstUse = true;
    EXPECT_EQ(0U, cim::readChassis(option).result.number());
    EXPECT_THAT(test_support::readFile(folder.file("known")),
                HasSubstr("127.0.0.1:" + std::to_string(option.cimPort) + " sha256 "));
    option.trustOnFirstUse = false;
    EXPECT_EQ(0U, cim::readChassis(option).result.number());
}

TEST(Cim, SpeaksOldTlsOnlyWhereItMay)
{
    const CimController controller(R"("cim": "works", "max_tls": "1.0")", R"("tls": true)");
    ConnectOption option = controller.option();
    EXPECT_EQ(13U, cim::readChassis(option).result.number());
    option.oldTls = true;
    EXPECT_EQ(0U, cim::readChassis(option).result.number());
}

TEST(Cim, GoesToTheStandardPortOfTheTargetsScheme)
{
    ConnectOption option;
    option.scheme = "https";
    option.port = 8443;
    EXPECT_EQ(5989U, cim::cimOption(option).port);
    option.scheme = "http";
    EXPECT_EQ(5988U, cim::cimOption(option).port);
    option.cimPort = 7000;
    EXPECT_EQ(7000U, cim::cimOption(option).port);
}
