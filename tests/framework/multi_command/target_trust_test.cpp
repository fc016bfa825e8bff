#include "multi_command/target_list.h"
#include "multi_command/target_set.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

using testing::HasSubstr;

namespace
{
const std::string kDigits(64, 'a');

// The trust of single targets in a target list.
class TargetTrust : public testing::Test
{
  protected:
    KorvanResult read(const std::string& keys)
    {
        servers_.clear();
        const std::string path = folder_.write("targets.json", "{\"targets\": [{\"kind\": " + keys + "}]}");
        return multi_command::readTargetList(path, servers_);
    }

    const test_support::ScratchFolder folder_;
    std::vector<nova::ServerInfo> servers_;
};
} // namespace

TEST_F(TargetTrust, IsNothingOfItsOwnUnlessTheListSaysSo)
{
    ASSERT_TRUE(read(R"("bmc", "address": "h")").succeeded());
    EXPECT_EQ(servers_.at(0).fingerprint, "");
    EXPECT_FALSE(servers_.at(0).oldTls);
}

TEST_F(TargetTrust, TakesAFingerprintInEveryUsualForm)
{
    std::string colons = "AA";
    for (int pair = 1; pair < 32; ++pair)
    {
        colons += ":aA";
    }
    for (const std::string& value : {kDigits, std::string(64, 'A'), colons})
    {
        ASSERT_TRUE(read(R"("bmc", "address": "h", "fingerprint": ")" + value + "\"").succeeded()) << value;
        EXPECT_EQ(servers_.at(0).fingerprint, kDigits);
    }
}

TEST_F(TargetTrust, TakesLeaveForOldTls)
{
    ASSERT_TRUE(read(R"("bmc", "address": "https://h", "old_tls": true)").succeeded());
    EXPECT_TRUE(servers_.at(0).oldTls);
    ASSERT_TRUE(read(R"("bmc", "address": "https://h", "old_tls": false)").succeeded());
    EXPECT_FALSE(servers_.at(0).oldTls);
}

TEST_F(TargetTrust, RefusesWhatIsNoFingerprintOrNoAnswer)
{
    const std::string address = R"("bmc", "address": "h", )";
    for (const std::string& keys : {std::string(R"("fingerprint": "")"), std::string(R"("fingerprint": "abc")"),
                                    std::string(R"("fingerprint": 5)"), std::string(R"("fingerprint": null)"),
                                    std::string(R"("old_tls": "true")"), std::string(R"("old_tls": 1)"),
                                    "\"fingerprint\": \"sha256:" + kDigits + "\""})
    {
        const KorvanResult result = read(address + keys);
        EXPECT_EQ(result.code, 7U) << keys;
        EXPECT_THAT(result.message, HasSubstr("target 1: \"" + keys.substr(1, keys.find('"', 1))));
    }
}

TEST_F(TargetTrust, IsForEncryptedTargetsOnly)
{
    const std::string fingerprint = ", \"fingerprint\": \"" + kDigits + "\"";
    for (const std::string& keys :
         {R"("bmc", "address": "http://h")" + fingerprint, "\"local\"" + fingerprint,
          std::string(R"("bmc", "address": "http://h", "old_tls": true)"), std::string(R"("local", "old_tls": false)")})
    {
        const KorvanResult result = read(keys);
        EXPECT_EQ(result.code, 7U) << keys;
        EXPECT_THAT(result.message, HasSubstr("https"));
    }
}

TEST_F(TargetTrust, ReachesTheTargetSet)
{
    UserContext context;
    context.options["config"] = folder_.write(
        "targets.json",
        R"({"targets": [{"kind": "bmc", "address": "h", "old_tls": true, "fingerprint": ")" + kDigits + "\"}]}");
    std::vector<multi_command::Target> targets;
    ASSERT_TRUE(multi_command::buildTargetSet(context, targets).succeeded());
    EXPECT_EQ(targets.at(0).server.fingerprint, kDigits);
    EXPECT_TRUE(targets.at(0).server.oldTls);
}
