#include "multi_command/target_set.h"

#include "support/file_rights.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <filesystem>

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

    std::string writePrivate(const std::string& name, const std::string& content) const
    {
        const std::string path = folder_.write(name, content);
        test_support::setReaders(path, test_support::Readers::OwnerAlone);
        return path;
    }

    std::vector<std::string> names() const
    {
        std::vector<std::string> names;
        for (const Target& target : targets_)
        {
            names.push_back(target.name);
        }
        return names;
    }

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
    EXPECT_EQ(result.code, 56U);
    EXPECT_THAT(result.message, HasSubstr("--pmx, address 2"));
    EXPECT_THAT(result.message, Not(HasSubstr("s3cret")));
    EXPECT_TRUE(targets_.empty());
}

TEST_F(TargetSet, RefusesEmptyAddresses)
{
    for (const char* value : {"", ",", "h,", "h,,i"})
    {
        context_.options["bmc"] = value;
        EXPECT_EQ(build().code, 56U) << value;
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

TEST_F(TargetSet, TakesRangesOfAListFile)
{
    context_.options = {
        {"config",
         writePrivate("t.json",
                      R"({"targets": [{"kind": "bmc", "address": "n[1-2]:8443", "user": "u", "password": "p"}]})")}};
    const KorvanResult result = build();
    ASSERT_TRUE(result.succeeded()) << result;
    EXPECT_EQ(names(), (std::vector<std::string>{"n1_8443", "n2_8443"}));
    EXPECT_EQ(targets_[1].server.password, "p");
    context_.options = {{"bmc", "a[1-99999]"},
                        {"config", folder_.write("t.json", R"({"targets": [{"kind": "bmc", "address": "n[1-2]"}]})")}};
    const KorvanResult tooMany = build();
    EXPECT_EQ(tooMany.code, 7U);
    EXPECT_THAT(tooMany.message, HasSubstr("target 1: more than 100000"));
}

TEST_F(TargetSet, KnowsAnIpv6AddressInEverySpelling)
{
    context_.options = {{"bmc", "[::1],[0:0::1]"}};
    EXPECT_THAT(build().message, HasSubstr("twice"));
    context_.options = {{"bmc", "[::1]"}, {"pmx", "[FE80:0::A]"}};
    ASSERT_TRUE(build().succeeded());
    EXPECT_EQ(names(), (std::vector<std::string>{"__1", "fe80__a"}));
}

TEST_F(TargetSet, LeavesOutWhatIsExcluded)
{
    const std::string list =
        folder_.write("t.json", R"({"targets": [{"kind": "smm", "address": "s:8443"}, {"kind": "local"}]})");
    context_.options = {
        {"bmc", "10.0.0.[1-5],h:1,h:2,g:1,g:2,[::1]"},
        {"config", list},
        {"exclude", "10.0.0.[2-4],H,g:2,s,[0::0:1],@" + folder_.write("x.txt", "localhost\n10.0.0.5:443\n")}};
    testing::internal::CaptureStderr();
    const KorvanResult result = build();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    ASSERT_TRUE(result.succeeded()) << result;
    EXPECT_EQ(names(), (std::vector<std::string>{"10.0.0.1", "g_1"}));
}

TEST_F(TargetSet, WarnsOfAnExclusionThatTakesNothing)
{
    context_.options = {{"bmc", "a[1-3]"}, {"exclude", "a2,u:s3cret@b,a1:8443,c[1-9],a[3-4]"}};
    testing::internal::CaptureStderr();
    const KorvanResult result = build();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "korvan: warning: option --exclude, address 2: no target is b\n"
                                                      "korvan: warning: option --exclude, address 3: no target is a1\n"
                                                      "korvan: warning: option --exclude, address 4: no target is one "
                                                      "of c1 to c9\n");
    ASSERT_TRUE(result.succeeded()) << result;
    EXPECT_EQ(names(), (std::vector<std::string>{"a1"}));
    context_.options["exclude"] = "a[2";
    EXPECT_EQ(build().code, 56U);
}

TEST_F(TargetSet, ReadsALongList)
{
    std::string lines;
    for (int number = 0; number < 20000; ++number)
    {
        lines += "u:p@host-" + std::to_string(number) + ".example:8443 # of many\n";
    }
    const std::string list = "@" + writePrivate("many.txt", lines);
    context_.options = {{"bmc", list}, {"exclude", "@" + writePrivate("most.txt", lines.substr(lines.find('\n') + 1))}};
    const KorvanResult result = build();
    ASSERT_TRUE(result.succeeded()) << result;
    EXPECT_EQ(names(), (std::vector<std::string>{"host-0.example_8443"}));
}

TEST_F(TargetSet, HandsOnWhetherOpenFilesAreAllowed)
{
    const std::string list = folder_.write("open.txt", "u:s3cret@h\n");
    test_support::setReaders(list, test_support::Readers::Everybody);
    context_.options = {{"bmc", "@" + list}};
    EXPECT_EQ(build().code, 7U);
    context_.options["allow-open-files"] = "";
    EXPECT_TRUE(build().succeeded());
    EXPECT_EQ(names(), (std::vector<std::string>{"h"}));
}
