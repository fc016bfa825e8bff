#include "multi_command/target_name.h"

#include <gtest/gtest.h>

namespace
{
std::string name(const std::string& host, std::uint32_t port = 0, const std::string& scheme = "",
                 const std::string& option = "bmc")
{
    nova::ServerInfo server;
    server.option = option;
    server.host = host;
    server.port = port;
    server.scheme = scheme;
    return multi_command::targetName(server);
}
} // namespace

TEST(TargetName, IsTheHostAndAPortThatIsNotTheSchemesOwn)
{
    EXPECT_EQ(name("10.0.0.1"), "10.0.0.1");
    EXPECT_EQ(name("10.0.0.1", 443), "10.0.0.1");
    EXPECT_EQ(name("10.0.0.1", 443, "https"), "10.0.0.1");
    EXPECT_EQ(name("10.0.0.1", 80, "http"), "10.0.0.1");
    EXPECT_EQ(name("10.0.0.1", 443, "http"), "10.0.0.1_443");
    EXPECT_EQ(name("10.0.0.1", 8443), "10.0.0.1_8443");
    EXPECT_EQ(name("BMC-1"), "bmc-1");
    EXPECT_EQ(name("localhost", 0, "", "local"), "localhost");
}

TEST(TargetName, IsAlwaysAPlainFolderName)
{
    EXPECT_EQ(name("fe80::1%eth0"), "fe80__1_eth0");
    EXPECT_EQ(name("a/../b"), "a_.._b");
    EXPECT_EQ(name("."), "._");
    EXPECT_EQ(name(".."), ".._");
    EXPECT_EQ(name("a."), "a._");
    EXPECT_EQ(name(""), "_");
    EXPECT_EQ(name("con"), "_con");
    EXPECT_EQ(name("COM1.example"), "_com1.example");
    EXPECT_EQ(name("com10"), "com10");
    EXPECT_EQ(name("nulls"), "nulls");
}

TEST(TargetName, IsShortEnoughForAFolder)
{
    const std::string label(63, 'a');
    const std::string host = label + "." + label + "." + label + "." + std::string(60, 'b');
    const std::string first = name(host, 8443);
    EXPECT_LE(first.size(), 200U);
    EXPECT_EQ(first.substr(0, 180), host.substr(0, 180));
    EXPECT_EQ(first, name(host, 8443));
    EXPECT_NE(first, name(host, 8444));
    EXPECT_EQ(name(host.substr(0, 200)), host.substr(0, 200));
}

TEST(TargetName, IsNoFileOfTheRun)
{
    EXPECT_EQ(name("korvan.log"), "_korvan.log");
    EXPECT_EQ(name("compare_result.json"), "_compare_result.json");
}
