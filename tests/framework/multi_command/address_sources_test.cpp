#include "multi_command/address_sources.h"

#include "multi_command/address_range.h"
#include "support/file_rights.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <filesystem>

using multi_command::AddressEntry;
using multi_command::AddressSources;
using multi_command::kMostTargets;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace
{
using test_support::Readers;

class AddressSourcesTest : public testing::Test
{
  protected:
    // Writes a list file and gives the value that names it.
    std::string list(const std::string& content, Readers readers = Readers::OwnerAlone)
    {
        const std::string path = folder_.write("list.txt", content);
        test_support::setReaders(path, readers);
        return "@" + path;
    }

    std::string reason(const std::string& value, std::uint32_t code)
    {
        const KorvanResult result = AddressSources().read("bmc", value, entries_);
        EXPECT_EQ(result.code, code) << value;
        EXPECT_THAT(result.message, Not(HasSubstr("s3cret"))) << value;
        return result.message;
    }

    std::vector<std::string> hosts() const
    {
        std::vector<std::string> hosts;
        for (const AddressEntry& entry : entries_)
        {
            for (const nova::ServerInfo& server : entry.servers)
            {
                hosts.push_back(server.host);
            }
        }
        return hosts;
    }

    const test_support::ScratchFolder folder_;
    std::vector<AddressEntry> entries_;
};
} // namespace

TEST_F(AddressSourcesTest, ReadAFileLineByLine)
{
    const std::string value = list("\xEF\xBB\xBF# rack 3\r\n10.0.0.[1-2]\r\n\n  \t\n u:p,w#x@h:8443 # the old one\n"
                                   "http://[0:0::1]\n#last");
    const KorvanResult result = AddressSources().read("pmx", "a," + value + ",b", entries_);
    ASSERT_TRUE(result.succeeded()) << result;
    EXPECT_THAT(hosts(), ElementsAre("a", "10.0.0.1", "10.0.0.2", "h", "::1", "b"));
    const nova::ServerInfo& server = entries_[2].servers.at(0);
    EXPECT_EQ(server.option, "pmx");
    EXPECT_EQ(server.user, "u");
    EXPECT_EQ(server.password, "p,w#x");
    EXPECT_EQ(server.port, 8443U);
    EXPECT_EQ(entries_[3].servers.at(0).scheme, "http");
    EXPECT_THAT(entries_[2].where, HasSubstr("list.txt, line 5"));
}

TEST_F(AddressSourcesTest, NameFileLineAndReasonOfAWrongLine)
{
    EXPECT_THAT(reason(list("a\n\nu:s3cret@h:x\n"), 7), HasSubstr("list.txt, line 3: the port of h"));
    EXPECT_THAT(reason(list("u:s3cret\n"), 7), HasSubstr("line 1"));
    EXPECT_THAT(reason(list("a b\n"), 7), HasSubstr("line 1"));
    EXPECT_THAT(reason(list("a,b\n"), 7), HasSubstr("line 1"));
    EXPECT_THAT(reason(list("a\nh[1-s3cret]\n"), 7), HasSubstr("line 2: a range"));
    EXPECT_THAT(reason(list("@other\n"), 7), HasSubstr("line 1"));
    EXPECT_THAT(reason(list("u:s3cret\x01@h\n"), 7), HasSubstr("control"));
}

TEST_F(AddressSourcesTest, NameAFileThatCannotBeRead)
{
    EXPECT_THAT(reason("@" + folder_.file("none.txt"), 6), HasSubstr("none.txt"));
    EXPECT_THAT(reason("@" + folder_.path(), 7), HasSubstr("regular"));
    EXPECT_THAT(reason(list(std::string((16U << 20U) + 1U, '\n')), 7), HasSubstr("larger"));
}

TEST_F(AddressSourcesTest, ReadStandardInputOnce)
{
    EXPECT_THAT(reason("-,@-", 5), HasSubstr("once"));
}

TEST_F(AddressSourcesTest, CountTargetsOverAllOptions)
{
    AddressSources sources;
    EXPECT_TRUE(sources.read("bmc", "a[1-99999]", entries_).succeeded());
    EXPECT_TRUE(sources.read("pmx", "b", entries_).succeeded());
    const KorvanResult result = sources.read("cmm", "c", entries_);
    EXPECT_EQ(result.code, 56U);
    EXPECT_THAT(result.message, HasSubstr("option --cmm, address 1: more than 100000 targets"));
    EXPECT_EQ(hosts().size(), kMostTargets);
}

TEST_F(AddressSourcesTest, NameTheWrongAddressOfARange)
{
    EXPECT_THAT(reason("a,10.0.0.[254-256]", 56), HasSubstr("option --bmc, address 2: the host"));
}

TEST_F(AddressSourcesTest, RefuseAListWithPasswordsThatOthersCanRead)
{
    EXPECT_THAT(reason(list("a\nu:s3cret@h\n", Readers::Everybody), 7),
                HasSubstr(test_support::closingCommand(folder_.file("list.txt"))));
    entries_.clear();
    EXPECT_TRUE(AddressSources(multi_command::OpenFiles::Allow)
                    .read("bmc", list("u:p@h", Readers::Everybody), entries_)
                    .succeeded());
    EXPECT_THAT(hosts(), ElementsAre("h"));
    EXPECT_TRUE(AddressSources().read("bmc", list("u@h", Readers::Everybody), entries_).succeeded());
}
