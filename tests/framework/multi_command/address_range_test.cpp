#include "multi_command/address_range.h"

#include <gmock/gmock.h>

using multi_command::expandAddress;
using multi_command::kMostTargets;
using multi_command::splitAddresses;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Texts = std::vector<std::string>;

namespace
{
Texts expanded(const std::string& address)
{
    Texts result;
    std::string error;
    EXPECT_TRUE(expandAddress(address, kMostTargets, result, error)) << address << ": " << error;
    return result;
}

std::string reason(const std::string& address, std::size_t most = kMostTargets)
{
    Texts result;
    std::string error;
    EXPECT_FALSE(expandAddress(address, most, result, error)) << address;
    EXPECT_THAT(result, IsEmpty());
    EXPECT_THAT(error, Not(HasSubstr("s3cret")));
    return error;
}
} // namespace

TEST(AddressRange, NamesEveryNumberOfRangesAndLists)
{
    EXPECT_THAT(expanded("10.0.0.[1-3,40]"), ElementsAre("10.0.0.1", "10.0.0.2", "10.0.0.3", "10.0.0.40"));
    EXPECT_THAT(expanded("h[ 5 , 7 - 8 ]"), ElementsAre("h5", "h7", "h8"));
    EXPECT_THAT(expanded("h[7]x:[1-2]"), ElementsAre("h7x:1", "h7x:2"));
    EXPECT_THAT(expanded("plain"), ElementsAre("plain"));
    EXPECT_THAT(expanded(""), ElementsAre(""));
}

TEST(AddressRange, KeepsLeadingZeros)
{
    EXPECT_THAT(expanded("node[08-10]"), ElementsAre("node08", "node09", "node10"));
    EXPECT_THAT(expanded("node[8-10]"), ElementsAre("node8", "node9", "node10"));
    EXPECT_THAT(expanded("node[000,1]"), ElementsAre("node000", "node1"));
    EXPECT_THAT(expanded("node[99-101]"), ElementsAre("node99", "node100", "node101"));
    EXPECT_THAT(expanded("node[0-1]"), ElementsAre("node0", "node1"));
    EXPECT_THAT(reason("node[1-03]"), HasSubstr("digits"));
}

TEST(AddressRange, MultipliesSeveralRanges)
{
    EXPECT_THAT(expanded("a[1-2]b[3-4]"), ElementsAre("a1b3", "a1b4", "a2b3", "a2b4"));
    EXPECT_EQ(expanded("10.[0-3].[0-9].[1-100]").size(), 4000U);
}

TEST(AddressRange, LeavesIpv6AddressesAlone)
{
    EXPECT_THAT(expanded("[fe80::1]"), ElementsAre("[fe80::1]"));
    EXPECT_THAT(expanded("u:p@[::1]:[80-81]"), ElementsAre("u:p@[::1]:80", "u:p@[::1]:81"));
    EXPECT_THAT(expanded("http://[1:2:3:4:5:6:7:8%eth0]"), ElementsAre("http://[1:2:3:4:5:6:7:8%eth0]"));
}

TEST(AddressRange, LeavesUserAndPasswordAlone)
{
    EXPECT_THAT(expanded("u[1]:p[1-2@h[1-2]"), ElementsAre("u[1]:p[1-2@h1", "u[1]:p[1-2@h2"));
}

TEST(AddressRange, RefusesWhatIsNoRange)
{
    for (const char* address : {"h[]", "h[s3cret]", "h[1-]", "h[-1]", "h[1,,2]", "h[1-2-3]", "h[0x1]", "h[1234567890]"})
    {
        EXPECT_THAT(reason(address), HasSubstr("[1-32,40]")) << address;
    }
    EXPECT_THAT(reason("h[3-1]"), HasSubstr("lower"));
    EXPECT_THAT(reason("u:s3cret[1"), HasSubstr("']'"));
    EXPECT_THAT(reason(std::string(3000, 'h')), HasSubstr("longer"));
}

TEST(AddressRange, RefusesMoreTargetsThanAreAllowed)
{
    for (const char* address : {"h[1-100001]", "[0-999999999].[0-999999999].[0-999999999].[0-999999999]",
                                "[0-999].[0-999]", "h[1-50000,60000-999999999]"})
    {
        EXPECT_THAT(reason(address), HasSubstr("more than 100000 targets")) << address;
    }
    EXPECT_EQ(expanded("h[1-100000]").size(), kMostTargets);
    EXPECT_THAT(reason("h[1-3]", 2), HasSubstr("more than"));
    EXPECT_THAT(reason("h", 0), HasSubstr("more than"));
}

TEST(AddressRange, SplitsAtCommasOutsideOfRanges)
{
    EXPECT_THAT(splitAddresses("a,b[1,2],c"), ElementsAre("a", "b[1,2]", "c"));
    EXPECT_THAT(splitAddresses("[::1],[fe80::2]:1"), ElementsAre("[::1]", "[fe80::2]:1"));
    EXPECT_THAT(splitAddresses(""), ElementsAre(""));
    EXPECT_THAT(splitAddresses(",a,"), ElementsAre("", "a", ""));
    EXPECT_THAT(splitAddresses("u:p[1@a,u:q]@b"), ElementsAre("u:p[1@a", "u:q]@b"))
        << "a bracket in a password opens no range";
    EXPECT_THAT(splitAddresses("a[1,2"), ElementsAre("a[1", "2"));
}
