#include "simulator/simulated.h"
#include "support/pattern.h"
#include "support/process.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

namespace simulator_tests
{
namespace
{
// Runs the built program with an ended standard input.
class Program : public Simulated
{
  protected:
    int run(const std::vector<std::string>& arguments)
    {
        outcome_ = test_support::runProcess(std::string(KORVAN_BIN_DIR) + "/korvan_simulator", arguments);
        return outcome_.exitStatus;
    }

    std::string content(const std::string& name) const
    {
        std::ifstream file(folder.path() + "/" + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string place(const std::string& name) const { return folder.path() + "/" + name; }

    test_support::ProcessOutcome outcome_;
};

TEST_F(Program, AnnouncesItsControllersAndStopsAtTheEndOfItsInput)
{
    folder.write("password", "Secret-1\n");
    ASSERT_EQ(run({"--serve", place(""), "--listen", "127.0.0.9:0", "--count", "2", "--password-file",
                   place("password"), "--stop-on-eof", "--ready-file", place("ready.json"), "--cert-out",
                   place("ca.pem"), "--stats", place("stats.json")}),
              0)
        << outcome_.err;
    EXPECT_THAT(outcome_.out, test_support::HasPattern("-1 https://127.0.0.9:[0-9]+\n[^]*-2 https://127.0.0.10:"));
    EXPECT_THAT(outcome_.out, testing::EndsWith("\nready\n"));
    const auto ready = parsed(content("ready.json"));
    ASSERT_EQ(ready.at("controllers").size(), 2U);
    EXPECT_EQ(ready.at("controllers").at(1).at("address"), "127.0.0.10");
    EXPECT_NE(ready.at("controllers").at(1).at("port"), 0);
    EXPECT_THAT(content("ca.pem"), testing::StartsWith("-----BEGIN CERTIFICATE-----"));
    EXPECT_EQ(parsed(content("stats.json")).at("requests"), 0);
}

TEST_F(Program, ExplainsWhatItCannotDo)
{
    EXPECT_NE(run({}), 0);
    EXPECT_THAT(outcome_.err, testing::HasSubstr("--config"));
    EXPECT_NE(run({"--serve", place("")}), 0);
    EXPECT_THAT(outcome_.err, testing::HasSubstr("--password-file"));
    EXPECT_NE(run({"--serve", place(""), "--listen", "0.0.0.0:0"}), 0);
    EXPECT_THAT(outcome_.err, testing::HasSubstr("loopback"));
    EXPECT_NE(run({"--config", place("missing.json")}), 0);
    EXPECT_THAT(outcome_.err, testing::HasSubstr("missing.json"));
}
} // namespace
} // namespace simulator_tests
