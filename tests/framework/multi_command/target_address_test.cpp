#include "multi_command/target_address.h"

#include <gmock/gmock.h>

using multi_command::parseTargetAddress;
using multi_command::TargetAddress;

namespace
{
// "scheme|user|password|host|port", or "error".
std::string parsed(const std::string& value)
{
    TargetAddress address;
    std::string error;
    if (!parseTargetAddress(value, address, error))
    {
        return error.empty() ? "an error without a reason" : "error";
    }
    return address.scheme + "|" + address.user + "|" + address.password + "|" + address.host + "|" +
           std::to_string(address.port);
}

std::string reason(const std::string& value)
{
    TargetAddress address;
    std::string error;
    return parseTargetAddress(value, address, error) ? "no error" : error;
}
} // namespace

TEST(TargetAddress, TakesEveryForm)
{
    EXPECT_EQ(parsed("10.0.0.1"), "|||10.0.0.1|0");
    EXPECT_EQ(parsed("https://bmc-1.example:8443"), "https||"
                                                    "|bmc-1.example|8443");
    EXPECT_EQ(parsed("HTTP://u@h"), "http|u||h|0");
    EXPECT_EQ(parsed("u:p@h:1"), "|u|p|h|1");
    EXPECT_EQ(parsed("u:p@h:65535"), "|u|p|h|65535");
    EXPECT_EQ(parsed("u:p@[fe80::1%eth0]:443"), "|u|p|fe80::1%eth0|443");
    EXPECT_EQ(parsed("[::ffff:10.0.0.1]"), "|||::ffff:10.0.0.1|0");
    EXPECT_EQ(parsed("[1:2:3:4:5:6:7:8]"), "|||1:2:3:4:5:6:7:8|0");
}

TEST(TargetAddress, SplitsAtTheLastAtSign)
{
    EXPECT_EQ(parsed("u:p@q:r@h"), "|u|p@q:r|h|0");
    EXPECT_EQ(parsed("u:x://y@h"), "|u|x://y|h|0");
    EXPECT_EQ(parsed("u:@h"), "|u||h|0");
    EXPECT_EQ(parsed("u:p w@h"), "|u|p w|h|0");
}

TEST(TargetAddress, RefusesWhatIsNone)
{
    for (const char* value : {"",
                              "@",
                              "u@",
                              "@h",
                              ":p@h",
                              "ftp://h",
                              "://h",
                              "h:",
                              "h:0",
                              "h:65536",
                              "h:1x",
                              "h:-1",
                              "h:+1",
                              "h: 1",
                              "h:000001",
                              "127.0.0.013",
                              "0x7f000001",
                              "h.0x7F",
                              "127.1",
                              "h/",
                              "https://h/path",
                              "h?x",
                              "h h",
                              " h",
                              "u u@h",
                              "h\n",
                              "u:p\x01@h",
                              "fe80::1",
                              "[fe80::1",
                              "fe80::1]",
                              "[]",
                              "[h]",
                              "[10.0.0.1]",
                              "[::1]x",
                              "[::1]:",
                              "[::1::2]",
                              "[:::]",
                              "[1:2:3:4:5:6:7]",
                              "[1:2:3:4:5:6:7:8:9]",
                              "[12345::]",
                              "[::1%]",
                              "[::1.2.3]",
                              "[1.2.3.4::]",
                              "10.0.0",
                              "10.0.0.256",
                              "1234",
                              "-h",
                              "h-",
                              "a..b",
                              ".a",
                              "a.",
                              "h\xC3\xA9",
                              "\xFF"})
    {
        EXPECT_EQ(parsed(value), "error") << value;
    }
    EXPECT_EQ(parsed(std::string(64, 'a')), "error");
    EXPECT_EQ(parsed(std::string("h\0x", 3)), "error");
    EXPECT_EQ(parsed("u:" + std::string(5000, 'p') + "@h"), "error");
}

TEST(TargetAddress, NeverQuotesWhatCouldBeAPassword)
{
    for (const char* value : {"admin:s3cret", "admin:s3cret@", "admin:s3cret@h:x", "admin:s3cret@h h", "s3cret!",
                              "ftp://u:s3cret@h", "u:s3cret@[x]", "a:s3cret:c", "u:s3cret\n@h", " u:s3cret@h:"})
    {
        EXPECT_THAT(reason(value), testing::Not(testing::HasSubstr("s3cret"))) << value;
        EXPECT_NE(reason(value), "no error") << value;
    }
}

TEST(TargetAddress, LeavesTheRecordAloneOnAnError)
{
    TargetAddress address;
    address.host = "before";
    std::string error;
    EXPECT_FALSE(parseTargetAddress("u:p@h:0", address, error));
    EXPECT_EQ(address.host, "before");
    EXPECT_EQ(address.user, "");
}
