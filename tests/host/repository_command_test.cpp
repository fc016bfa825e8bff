#include "host/host_fixture.h"

#include <algorithm>

using test_support::ProcessOutcome;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{
constexpr char kSamples[] = KORVAN_SOURCE_DIR "/samples/repository";

class RepositoryCommandTest : public HostTest
{
  protected:
    static std::ptrdiff_t lines(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }

    // A copy of the sample repository to spoil.
    void copySamples() const { std::filesystem::copy(kSamples, folder_.file("repo")); }
};

TEST_F(RepositoryCommandTest, TheSampleRepositoryIsGood)
{
    const ProcessOutcome outcome = run({"repository", "check", kSamples});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out;
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("16 packages, 1 update pack: 0 errors, 0 warnings"));
}

TEST_F(RepositoryCommandTest, NamesFileAndLineOfEachProblem)
{
    copySamples();
    folder_.write("repo/krv_fw_pmx3_5.10_platform.upd", "another payload");
    std::filesystem::remove(folder_.file("repo/krv_fw_uefi_7y41_2.40_platform.xml"));
    folder_.write("repo/zz.xml", "<PACKAGE>\n<UPDATEID>\x1B[2J</UPDATEID>");
    const ProcessOutcome outcome = run({"repository", "check", "repo/"});
    EXPECT_EQ(outcome.exitStatus, 7);
    EXPECT_EQ(lines(outcome.out), 3) << outcome.out;
    EXPECT_THAT(outcome.out, HasSubstr("repo/krv_fw_pmx3_5.10_platform.xml:"));
    EXPECT_THAT(outcome.out, HasSubstr(": error: the payload krv_fw_pmx3_5.10_platform.upd has 15 bytes instead of"));
    EXPECT_THAT(outcome.out, HasSubstr("repo/krv_fw_uefi_7y41_2.42_platform.xml:14: warning: the update id "
                                       "krv_fw_uefi_7y41_2.40_platform"));
    EXPECT_THAT(outcome.out, HasSubstr("repo/zz.xml:2: error: "));
    EXPECT_EQ(outcome.out.find('\x1B'), std::string::npos);
}

TEST_F(RepositoryCommandTest, WarningsAloneAreNoFailure)
{
    copySamples();
    std::filesystem::remove(folder_.file("repo/krv_fw_uefi_7y41_2.40_platform.xml"));
    const ProcessOutcome outcome = run({"repository", "check", "repo"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out;
    EXPECT_EQ(lines(outcome.out), 1) << outcome.out;
}

TEST_F(RepositoryCommandTest, SurvivesAHostileFolder)
{
    const std::string repo = folder_.file("repo");
    std::filesystem::create_directories(repo + "/folder.xml");
    std::filesystem::create_symlink("loop.xml", repo + "/loop.xml");
    folder_.write("repo/deep.xml",
                  []
                  {
                      std::string deep;
                      for (int level = 0; level < 300000; ++level)
                      {
                          deep += "<a>";
                      }
                      return deep;
                  }());
    folder_.write("repo/path.xml", "<PACKAGE><PAYLOADFILE>../../etc/passwd</PAYLOADFILE></PACKAGE>");
    folder_.write("repo/large.xml", std::string(5000000, ' '));
    folder_.write("repo/line\nfeed.xml", "<PACKAGE/>");
    folder_.write("repo/zero.xml", std::string("<PACKAGE>\0</PACKAGE>", 20));
    const ProcessOutcome outcome = run({"repository", "check", "repo"});
    EXPECT_EQ(outcome.exitStatus, 7);
    EXPECT_FALSE(outcome.timedOut);
    for (const char* piece : {"deep.xml", "path.xml:1: error: <PAYLOADFILE>", "large.xml: error: larger than",
                              "line\\x0Afeed.xml", "zero.xml"})
    {
        EXPECT_THAT(outcome.out, HasSubstr(piece));
    }
}

TEST_F(RepositoryCommandTest, ListsThePackages)
{
    const ProcessOutcome outcome = run({"repository", "list", kSamples});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(lines(outcome.out), 16);
    EXPECT_THAT(outcome.out, HasSubstr("\nkrv_fw_uefi_7y41_2.42_platform\tfw\t7Y41\tplatform\t2.42\n"));
    EXPECT_THAT(outcome.out, StartsWith("krv_dd_nic2510_23.10-1.1.9_linux_x64\tdd\t"));
}

TEST_F(RepositoryCommandTest, SaysWhatItTakes)
{
    EXPECT_EQ(run({"repository", "--help"}).exitStatus, 0);
    EXPECT_EQ(run({"repository"}).exitStatus, 4);
    EXPECT_EQ(run({"repository", "chekc", "x"}).exitStatus, 4);
    EXPECT_EQ(run({"repository", "check"}).exitStatus, 5);
    EXPECT_EQ(run({"repository", "check", ""}).exitStatus, 5);
    EXPECT_EQ(run({"repository", "check", "a", "b"}).exitStatus, 5);
    EXPECT_EQ(run({"repository", "check", "--dir"}).exitStatus, 5);
    const ProcessOutcome outcome = run({"repository", "check", "none"});
    EXPECT_EQ(outcome.exitStatus, 38);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("none"));
}
} // namespace
