#include "multi_command/ipv6_text.h"

#include <gtest/gtest.h>

using multi_command::canonicalHost;

TEST(Ipv6Text, HasOneFormForEverySpelling)
{
    for (const char* spelling : {"::1", "0:0::1", "0:0:0:0:0:0:0:1", "0000::0001", "::0:1", "::0.0.0.1"})
    {
        EXPECT_EQ(canonicalHost(spelling), "::1") << spelling;
    }
    EXPECT_EQ(canonicalHost("FE80::00aB"), "fe80::ab");
    EXPECT_EQ(canonicalHost("::ffff:10.0.0.1"), "::ffff:a00:1");
    EXPECT_EQ(canonicalHost("0:0:0:0:0:0:0:0"), "::");
    EXPECT_EQ(canonicalHost("1::"), "1::");
}

TEST(Ipv6Text, ShortensTheFirstLongestRunOfZeros)
{
    EXPECT_EQ(canonicalHost("1:0:0:2:0:0:0:3"), "1:0:0:2::3");
    EXPECT_EQ(canonicalHost("1:0:0:2:0:0:3:4"), "1::2:0:0:3:4");
    EXPECT_EQ(canonicalHost("1:0:2:3:4:5:6:7"), "1:0:2:3:4:5:6:7") << "a single zero stays";
    EXPECT_EQ(canonicalHost("1:2:3:4:5:6:7:8"), "1:2:3:4:5:6:7:8");
}

TEST(Ipv6Text, KeepsTheZone)
{
    EXPECT_EQ(canonicalHost("FE80:0::1%Eth0"), "fe80::1%Eth0");
}

TEST(Ipv6Text, LeavesOtherTextsAlone)
{
    for (const char* other : {"", "Host", "10.0.0.1", "1:2", ":::1", "1::2::3", "g::1", "::256.0.0.1", "12345::1",
                              "1:2:3:4:5:6:7:8:9", "1:2:3:4:5:6:7::8:9"})
    {
        EXPECT_EQ(canonicalHost(other), other);
    }
}
