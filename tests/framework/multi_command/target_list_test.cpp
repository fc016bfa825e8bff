#include "multi_command/target_list.h"

#include "files/files.h"
#include "support/file_rights.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <filesystem>

using multi_command::readTargetList;
using testing::HasSubstr;
using testing::Not;

namespace
{
class TargetList : public testing::Test
{
  protected:
    KorvanResult read(const std::string& content)
    {
        servers_.clear();
        const std::string path = folder_.write("targets.json", content);
        test_support::setReaders(path, test_support::Readers::OwnerAlone);
        return readTargetList(path, servers_);
    }

    std::string reason(const std::string& content)
    {
        const KorvanResult result = read(content);
        EXPECT_EQ(result.code, 7U) << content;
        EXPECT_THAT(result.message, HasSubstr(folder_.file("targets.json")));
        EXPECT_THAT(result.message, Not(HasSubstr("s3cret"))) << content;
        EXPECT_TRUE(servers_.empty());
        return result.message;
    }

    std::string entryReason(const std::string& entry) { return reason("{\"targets\": [" + entry + "]}"); }

    const test_support::ScratchFolder folder_;
    std::vector<nova::ServerInfo> servers_;
};
} // namespace

TEST_F(TargetList, GivesItsTargetsInOrder)
{
    const KorvanResult result = read(R"({"targets": [
        {"kind": "bmc", "address": "http://10.0.0.1:8080", "user": "u", "password": "p,w@x \" y"},
        {"kind": "local"},
        {"kind": "esxi", "address": "[fe80::1]"}]})");
    ASSERT_TRUE(result.succeeded()) << result;
    ASSERT_EQ(servers_.size(), 3U);
    EXPECT_EQ(servers_[0].option, "bmc");
    EXPECT_EQ(servers_[0].scheme, "http");
    EXPECT_EQ(servers_[0].host, "10.0.0.1");
    EXPECT_EQ(servers_[0].port, 8080U);
    EXPECT_EQ(servers_[0].user, "u");
    EXPECT_EQ(servers_[0].password, "p,w@x \" y");
    EXPECT_EQ(servers_[1].option, "local");
    EXPECT_EQ(servers_[2].host, "fe80::1");
}

TEST_F(TargetList, MayBeEmpty)
{
    EXPECT_TRUE(read(R"({"targets": []})").succeeded());
}

TEST_F(TargetList, NamesTheLineOfASyntaxErrorAndQuotesNothing)
{
    EXPECT_THAT(reason("{\"targets\": [\n{\"kind\": \"bmc\",\n \"password\": \"s3cret\" s3cret}]}"),
                HasSubstr("line 3"));
    EXPECT_THAT(reason("{\"targets\": [{\"password\": \"s3cret"), HasSubstr("line 1"));
    reason("");
    reason("\xFF\xFE");
    reason("{\"targets\": [{\"password\": \"s3cret\xFF\"}]}");
    reason(std::string(200000, '['));
}

TEST_F(TargetList, RefusesWhatItDoesNotKnow)
{
    EXPECT_THAT(reason(R"({"targets": [], "target": 1})"), HasSubstr("\"target\""));
    EXPECT_THAT(entryReason(R"({"kind": "local"}, {"kind": "bmc", "adress": "h"})"), HasSubstr("target 2"));
    EXPECT_THAT(entryReason(R"({"kind": "bmc", "kind": "pmx", "address": "h"})"), HasSubstr("twice"));
    reason("[]");
    reason("{}");
    reason(R"({"targets": {}})");
    entryReason("1");
    entryReason("null");
}

TEST_F(TargetList, ChecksEveryEntry)
{
    EXPECT_THAT(entryReason(R"({"kind": "other", "address": "h"})"), HasSubstr("kind"));
    EXPECT_THAT(entryReason(R"({"address": "h"})"), HasSubstr("kind"));
    EXPECT_THAT(entryReason(R"({"kind": 1, "address": "h"})"), HasSubstr("must be a text"));
    EXPECT_THAT(entryReason(R"({"kind": "bmc"})"), HasSubstr("missing"));
    EXPECT_THAT(entryReason(R"({"kind": "local", "address": "h"})"), HasSubstr("local"));
    EXPECT_THAT(entryReason(R"({"kind": "bmc", "address": "u:s3cret@h"})"), HasSubstr("own"));
    EXPECT_THAT(entryReason(R"({"kind": "bmc", "address": "h:0", "password": "s3cret"})"), HasSubstr("port"));
    EXPECT_THAT(entryReason(R"({"kind": "bmc", "address": "h", "user": "a:b"})"), HasSubstr("user"));
    EXPECT_THAT(entryReason(R"({"kind": "bmc", "address": "h", "password": "s3cret\n"})"), HasSubstr("password"));
    EXPECT_THAT(entryReason(R"({"kind": "bmc", "address": "h", "password": 1})"), HasSubstr("password"));
}

TEST_F(TargetList, TellsAMissingFileFromOneThatCannotBeRead)
{
    EXPECT_EQ(readTargetList(folder_.file("none.json"), servers_).code, 6U);
    EXPECT_EQ(readTargetList(folder_.path(), servers_).code, 7U);
    EXPECT_THAT(reason(std::string((4U << 20U) + 1U, ' ')), HasSubstr("larger"));
}

TEST_F(TargetList, SampleIsRead)
{
    const KorvanResult result =
        readTargetList(KORVAN_SOURCE_DIR "/samples/targets.json", servers_, multi_command::OpenFiles::Allow);
    ASSERT_TRUE(result.succeeded()) << result;
    ASSERT_EQ(servers_.size(), 5U);
    EXPECT_EQ(servers_[4].host, "127.0.0.15");
    EXPECT_EQ(servers_[4].port, 8443U);
}

TEST_F(TargetList, IsRefusedWithPasswordsThatOthersCanRead)
{
    const std::string path = folder_.write(
        "open.json", R"({"targets": [{"kind": "bmc", "address": "h", "user": "u", "password": "s3cret"}]})");
    test_support::setReaders(path, test_support::Readers::Everybody);
    const KorvanResult result = readTargetList(path, servers_);
    EXPECT_EQ(result.code, 7U);
    EXPECT_THAT(result.message, HasSubstr(test_support::closingCommand(path)));
    EXPECT_THAT(result.message, Not(HasSubstr("s3cret")));
    EXPECT_TRUE(servers_.empty());
    EXPECT_TRUE(readTargetList(path, servers_, multi_command::OpenFiles::Allow).succeeded());
    EXPECT_EQ(servers_.size(), 1U);
}

TEST_F(TargetList, MayBeOpenWithoutPasswords)
{
    const std::string path =
        folder_.write("open.json", R"({"targets": [{"kind": "bmc", "address": "h", "user": "u"}]})");
    test_support::setReaders(path, test_support::Readers::Everybody);
    EXPECT_TRUE(readTargetList(path, servers_).succeeded());
}
