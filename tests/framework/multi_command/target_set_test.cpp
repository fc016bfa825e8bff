#include "multi_command/target_set.h"

#include "support/scratch_folder.h"

#include <gmock/gmock.h>

using multi_command::buildTargetSet;
using multi_command::Target;
using testing::HasSubstr;
using testing::Not;

namespace
{
class TargetSet : public testing::Test
{
  protected:
    KorvanResult build() { return buildTargetSet(context_, targets_); }

    UserContext context_;
    std::vector<Target> targets_;
    const test_support::ScratchFolder folder_;
};
} // namespace

TEST_F(TargetSet, IsEmptyWithoutOptions)
{
    EXPECT_TRUE(build().succeeded());
    EXPECT_TRUE(targets_.empty());
}

TEST_F(TargetSet, CollectsOptionsAndList)
{
    context_.options = {{"bmc", "10.0.0.1, u:p@10.0.0.2:8443"},
                        {"esxi", "v@host"},
                        {"bmc-username", "du"},
                        {"bmc-password", "dp"},
                        {"config", folder_.write("t.json", R"({"targets": [{"kind": "smm", "address": "s"}]})")}};
    const KorvanResult result = build();
    ASSERT_TRUE(result.succeeded()) << result;
    ASSERT_EQ(targets_.size(), 4U);
    EXPECT_EQ(targets_[0].name, "10.0.0.1");
    EXPECT_EQ(targets_[0].server.user, "du");
    EXPECT_EQ(targets_[0].server.password, "dp");
    EXPECT_EQ(targets_[1].name, "10.0.0.2_8443");
    EXPECT_EQ(targets_[1].server.user, "u");
    EXPECT_EQ(targets_[1].server.password, "p");
    EXPECT_EQ(targets_[2].server.option, "esxi");
    EXPECT_EQ(targets_[2].server.user, "v");
    EXPECT_EQ(targets_[2].server.password, "dp");
    EXPECT_EQ(targets_[3].server.option, "smm");
}

TEST_F(TargetSet, NamesTheOptionAndThePlaceOfAWrongAddress)
{
    context_.options = {{"pmx", "10.0.0.1,u:s3cret@h:x"}};
    const KorvanResult result = build();
    EXPECT_EQ(result.code, 5U);
    EXPECT_THAT(result.message, HasSubstr("--pmx, address 2"));
    EXPECT_THAT(result.message, Not(HasSubstr("s3cret")));
    EXPECT_TRUE(targets_.empty());
}

TEST_F(TargetSet, RefusesEmptyAddresses)
{
    for (const char* value : {"", ",", "h,", "h,,i"})
    {
        context_.options["bmc"] = value;
        EXPECT_EQ(build().code, 5U) << value;
    }
}

TEST_F(TargetSet, RefusesTheSameTargetTwice)
{
    context_.options = {{"bmc", "Host"}, {"cmm", "https://u:p@host:443"}};
    const KorvanResult result = build();
    EXPECT_EQ(result.code, 5U);
    EXPECT_THAT(result.message, HasSubstr("target host "));
}

TEST_F(TargetSet, HandsOnTheListsFailure)
{
    context_.options = {{"config", folder_.file("none.json")}};
    EXPECT_EQ(build().code, 6U);
    context_.options = {{"config", folder_.write("bad.json", "{")}};
    EXPECT_EQ(build().code, 7U);
    context_.options = {{"config", ""}};
    EXPECT_EQ(build().code, 5U);
}

TEST_F(TargetSet, RefusesDefaultsWithControlCharacters)
{
    context_.options = {{"bmc", "h"}, {"bmc-password", "s3cret\n"}};
    const KorvanResult result = build();
    EXPECT_EQ(result.code, 5U);
    EXPECT_THAT(result.message, Not(HasSubstr("s3cret")));
    context_.options = {{"bmc", "h"}, {"bmc-username", "a:b"}};
    EXPECT_EQ(build().code, 5U);
}
