#include "nova/server_info.h"

#include "multi_command/target_address.h"

#include <gtest/gtest.h>

namespace
{
nova::ServerInfo server(const std::string& scheme, const std::string& user, const std::string& password,
                        const std::string& host, std::uint32_t port)
{
    nova::ServerInfo info;
    info.option = "bmc";
    info.scheme = scheme;
    info.user = user;
    info.password = password;
    info.host = host;
    info.port = port;
    return info;
}
} // namespace

TEST(MakeUrl, HoldsWhatIsKnown)
{
    EXPECT_EQ(nova::make_url(server("", "", "", "10.0.0.1", 0)), "https://10.0.0.1");
    EXPECT_EQ(nova::make_url(server("http", "u", "", "h", 80)), "http://u@h:80");
    EXPECT_EQ(nova::make_url(server("https", "u", "p", "fe80::1", 8443)), "https://u:p@[fe80::1]:8443");
    EXPECT_EQ(nova::make_url(server("", "", "", "fe80::1", 0)), "https://[fe80::1]");
}

TEST(MakeUrl, IsReadBackWhateverThePasswordHolds)
{
    const std::string password = "a@b:c/d://e%40 [x]";
    multi_command::TargetAddress address;
    std::string error;
    ASSERT_TRUE(
        multi_command::parseTargetAddress(nova::make_url(server("", "u", password, "::1", 443)), address, error))
        << error;
    EXPECT_EQ(address.user, "u");
    EXPECT_EQ(address.password, password);
    EXPECT_EQ(address.host, "::1");
    EXPECT_EQ(address.port, 443U);
}
