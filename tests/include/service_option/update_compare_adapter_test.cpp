#include "service_option/update_compare_adapter.h"

#include "support/module_test.h"

namespace
{
service::CompareOptions converted(const std::map<std::string, std::string>& options)
{
    service::CompareOptions result;
    const KorvanResult outcome = service::adapter::convert_to(contextWith(options), result);
    EXPECT_EQ(outcome.code, 0U);
    EXPECT_EQ(outcome.message, "");
    return result;
}

TEST(CompareAdapter, GivesTheDefaultsForNoOptions)
{
    const service::CompareOptions options = converted({});
    EXPECT_FALSE(options.backup);
    EXPECT_TRUE(options.allPsu);
    EXPECT_FALSE(options.noSupersede);
    EXPECT_FALSE(options.noReq);
    EXPECT_FALSE(options.checkDevice);
    EXPECT_FALSE(options.allDriver);
    EXPECT_TRUE(options.psuList.empty());
}

TEST(CompareAdapter, TakesEachFlag)
{
    EXPECT_TRUE(converted({{"backup", ""}}).backup);
    EXPECT_TRUE(converted({{"nosupersede", ""}}).noSupersede);
    EXPECT_TRUE(converted({{"noreq", ""}}).noReq);
    EXPECT_TRUE(converted({{"checkdevice", ""}}).checkDevice);
    EXPECT_TRUE(converted({{"alldriver", ""}}).allDriver);
}

TEST(CompareAdapter, TakesAllPowerSuppliesInAnyLetterCase)
{
    const service::CompareOptions options = converted({{"psu", "ALL"}});
    EXPECT_TRUE(options.allPsu);
    EXPECT_TRUE(options.psuList.empty());
}

TEST(CompareAdapter, SplitsAListOfPowerSupplies)
{
    const service::CompareOptions options = converted({{"psu", "All,1"}});
    EXPECT_FALSE(options.allPsu);
    EXPECT_EQ(options.psuList, (std::list<std::string>{"all", "1"}));
}

TEST(CompareAdapter, KeepsEmptyPieces)
{
    EXPECT_EQ(converted({{"psu", ",2,"}}).psuList, (std::list<std::string>{"", "2", ""}));
    EXPECT_EQ(converted({{"psu", ""}}).psuList, (std::list<std::string>{""}));
}
} // namespace
