#include "end_to_end/login_fixture.h"
#include "end_to_end/names.h"
#include "support/file_rights.h"

namespace
{
using namespace end_to_end;

TEST_F(Login, OfAListThatOthersCanReadIsRefused)
{
    const std::string list =
        tree_.write("targets.json", R"({"targets": [{"kind": "bmc", "address": ")" + address("rack-a") +
                                        R"(", "user": "admin", "password": "Sample-Passw0rd"}]})");
    test_support::setReaders(list, test_support::Readers::Everybody);
    expectRefused(compare({"--config", list}), 7, test_support::closingCommand(list));
    expectCompared(compare({"--config", list, "--allow-open-files"}));
}

TEST_F(Login, StandsInAListOfStandardInput)
{
    tree_.options.input = "# one\n" + login("rack-a") + "\n";
    expectCompared(compare({"--bmc", "-", "--log", "4"}));
}

TEST_F(Login, OfAWrongLineIsNotShown)
{
    tree_.options.input = "\n" + login("rack-a") + "x:y\n";
    expectRefused(compare({"--bmc", "@-"}), 7, "standard input, line 2: ");
}

TEST_F(Login, ComesFromAPasswordFile)
{
    expectCompared(compare({"--bmc", address("rack-a"), "--bmc-username", kUser, "--password-file",
                            tree_.write("password", std::string(kPassword) + "\n"), "--log", "4"}));
}

TEST_F(Login, ComesFromStandardInput)
{
    tree_.options.input = std::string(kPassword) + "\n";
    expectCompared(compare({"--bmc", "admin@" + address("rack-a"), "--password-stdin", "--log", "4"}));
}

TEST_F(Login, ComesFromTheEnvironment)
{
    tree_.options.environment = {{"KORVAN_USERNAME", kUser}, {"KORVAN_PASSWORD", kPassword}};
    expectCompared(compare({"--bmc", address("rack-a"), "--log", "4"}));
}

TEST_F(Login, OfTheAddressWinsOverTheOthers)
{
    tree_.options.environment = {{"KORVAN_USERNAME", "nobody"}, {"KORVAN_PASSWORD", kWrongPassword}};
    const ProcessOutcome outcome =
        compare({"--bmc", login("rack-a"), "--bmc-username", "none", "--bmc-password", kWrongPassword, "--log", "4"});
    expectCompared(outcome);
    expectNoSecret(outcome.out + outcome.err, kWrongPassword);
}

TEST_F(Login, IsNotAskedForWithoutATerminal)
{
    tree_.options.timeout = std::chrono::seconds(10);
    const ProcessOutcome outcome = compare({"--bmc", "admin@" + address("rack-a")});
    EXPECT_FALSE(outcome.timedOut);
    EXPECT_EQ(outcome.exitStatus, 58) << outcome.out;
    EXPECT_EQ(outcome.err.find("Password"), std::string::npos);
}
} // namespace
