#include "DevUri/DevUri.h"

#include "support/module_test.h"

namespace
{
class DevUriTest : public ModuleTest
{
};

TEST_F(DevUriTest, StartsAsAnEmptySftpAddress)
{
    const DevUri uri;
    EXPECT_EQ(uri.host, "");
    EXPECT_EQ(uri.user, "");
    EXPECT_EQ(uri.password, "");
    EXPECT_EQ(uri.port, 0);
    EXPECT_FALSE(uri.isIpv6);
    EXPECT_EQ(uri.path, "");
    EXPECT_EQ(uri.protocol, 3U);
    EXPECT_EQ(uri.scheme, "");
}

TEST_F(DevUriTest, TakesTheLastAtSignSoThatAPasswordMayHoldOne)
{
    DevUri uri;
    ASSERT_EQ(uri.Parse("sftp://admin:pa@ss@nas01:2222/upd/pkg"), 1);
    EXPECT_EQ(uri.user, "admin");
    EXPECT_EQ(uri.password, "pa@ss");
    EXPECT_EQ(uri.host, "nas01");
    EXPECT_EQ(uri.port, 2222);
    EXPECT_EQ(uri.path, "/upd/pkg");
    EXPECT_EQ(uri.protocol, 3U);
}

TEST_F(DevUriTest, KeepsColonsOfThePassword)
{
    DevUri uri;
    ASSERT_EQ(uri.Parse("https://admin:a:b@h"), 1);
    EXPECT_EQ(uri.user, "admin");
    EXPECT_EQ(uri.password, "a:b");
}

TEST_F(DevUriTest, LowersTheSchemeAndKnowsItsProtocol)
{
    DevUri uri;
    ASSERT_EQ(uri.Parse("HTTPS://srv"), 1);
    EXPECT_EQ(uri.scheme, "https");
    EXPECT_EQ(uri.protocol, 1U);
    EXPECT_EQ(uri.host, "srv");
    EXPECT_EQ(uri.port, 0);
    EXPECT_EQ(uri.path, "");
}

TEST_F(DevUriTest, KnowsFiveProtocols)
{
    const std::pair<const char*, std::uint32_t> expected[] = {
        {"http://h", 0}, {"https://h", 1}, {"ftp://h", 2}, {"sftp://h", 3}, {"tftp://h", 4}};
    for (const auto& row : expected)
    {
        DevUri uri;
        EXPECT_EQ(uri.Parse(row.first), 1);
        EXPECT_EQ(uri.protocol, row.second) << row.first;
    }
}

TEST_F(DevUriTest, TakesAnIpv6AddressOutOfItsBrackets)
{
    DevUri uri;
    ASSERT_EQ(uri.Parse("tftp://[fe80::1]:69/x"), 1);
    EXPECT_EQ(uri.host, "fe80::1");
    EXPECT_TRUE(uri.isIpv6);
    EXPECT_EQ(uri.port, 69);
    EXPECT_EQ(uri.path, "/x");
    EXPECT_EQ(uri.protocol, 4U);
}

TEST_F(DevUriTest, ReadsAnIpv6AddressWithoutBracketsUpToItsFirstColon)
{
    DevUri uri;
    ASSERT_EQ(uri.Parse("fe80::1"), 1);
    EXPECT_EQ(uri.host, "fe80");
    EXPECT_EQ(uri.port, 0);
    EXPECT_FALSE(uri.isIpv6);
}

TEST_F(DevUriTest, KeepsTheProtocolForAnUnknownScheme)
{
    DevUri uri;
    ASSERT_EQ(uri.Parse("smb://srv"), 1);
    EXPECT_EQ(uri.protocol, 3U);
    EXPECT_EQ(uri.scheme, "smb");
    ASSERT_EQ(uri.Parse("http://srv"), 1);
    ASSERT_EQ(uri.Parse("smb://srv"), 1);
    EXPECT_EQ(uri.protocol, 0U);
}

TEST_F(DevUriTest, TakesABareAddress)
{
    DevUri uri;
    ASSERT_EQ(uri.Parse("root@nas01"), 1);
    EXPECT_EQ(uri.scheme, "");
    EXPECT_EQ(uri.user, "root");
    EXPECT_EQ(uri.password, "");
    EXPECT_EQ(uri.host, "nas01");
}

TEST_F(DevUriTest, FailsWithoutAHost)
{
    DevUri uri;
    EXPECT_EQ(uri.Parse("sftp://user@"), 0);
    EXPECT_EQ(uri.host, "");
    EXPECT_EQ(uri.port, 0);
    EXPECT_TRUE(uri.isIpv6);
    EXPECT_EQ(uri.user, "user");
    EXPECT_EQ(logged(1, "parse uri info failed "), 1U);
}

TEST_F(DevUriTest, FailsForWantOfAClosingBracket)
{
    DevUri uri;
    EXPECT_EQ(uri.Parse("sftp://[fe80::1/x"), 0);
    EXPECT_EQ(uri.host, "");
    EXPECT_EQ(uri.path, "/x");
    EXPECT_EQ(logged(1, "parse uri info failed [fe80::1"), 1U);
    EXPECT_EQ(record("parse uri info failed [fe80::1").source, "Utility/DevUri/DevUri");
}

TEST_F(DevUriTest, EmptiesHostAndPortWhenItFails)
{
    for (const char* bad : {"sftp://user@", "sftp://[fe80::1"})
    {
        DevUri uri;
        ASSERT_EQ(uri.Parse("sftp://nas:22"), 1);
        EXPECT_EQ(uri.Parse(bad), 0) << bad;
        EXPECT_EQ(uri.host, "") << bad;
        EXPECT_EQ(uri.port, 0) << bad;
    }
}

TEST_F(DevUriTest, CarriesThePortOverToABracketedAddressWithoutOne)
{
    DevUri uri;
    ASSERT_EQ(uri.Parse("sftp://nas:22"), 1);
    ASSERT_EQ(uri.Parse("sftp://[fe80::1]"), 1);
    EXPECT_EQ(uri.port, 22);
    ASSERT_EQ(uri.Parse("sftp://nas"), 1);
    EXPECT_EQ(uri.port, 0);
}

TEST_F(DevUriTest, ReadsAPortThatIsNoNumberAsZero)
{
    DevUri uri;
    ASSERT_EQ(uri.Parse("http://srv:http"), 1);
    EXPECT_EQ(uri.port, 0);
    ASSERT_EQ(uri.Parse("http://srv: 80x"), 1);
    EXPECT_EQ(uri.port, 80);
}

TEST_F(DevUriTest, LogsNothingWhenLoggingIsOff)
{
    observeUpTo(0);
    DevUri uri;
    EXPECT_EQ(uri.Parse("sftp://"), 0);
    EXPECT_TRUE(log_.empty());
}
} // namespace
