#include "end_to_end/fleet_fixture.h"
#include "end_to_end/names.h"

#include <unistd.h>

namespace
{
using namespace end_to_end;

constexpr int kCannotMakeFolder = 8;

class UnwritableOutput : public FleetFixture
{
  protected:
    // Runs the comparison behind another program's words, such as a shell that sets a limit first.
    ProcessOutcome compareBehind(Words before, const Words& more) const
    {
        const std::string program = before.front();
        before.erase(before.begin());
        before.push_back(tree_.bin("korvan"));
        const Words words = compareWords(more);
        before.insert(before.end(), words.begin(), words.end());
        return test_support::runProcess(program, before, tree_.options);
    }
};

// The system refuses what goes beyond a size, as a full disk does, so the large files of one target fail alone.
TEST_F(UnwritableOutput, ThatIsFullForOneTargetCostsThatTarget)
{
    serve({"rack-a", "rack-b"});
    const Words both = {"--config", targetList({"rack-a", "rack-b"}), "--pattern", "uefi|bmc|nic", "--log", "1"};
    ASSERT_EQ(compare(both).exitStatus, 0);
    const auto sizeOf = [this](const std::string& name)
    { return fs::file_size(tree_.file("out/SUCCESS-" + folder(name) + "/Korvan-update-compare.xml")); };
    const bool firstIsLarger = sizeOf("rack-a") > sizeOf("rack-b");
    const std::string large = firstIsLarger ? "rack-a" : "rack-b";
    const std::string small = firstIsLarger ? "rack-b" : "rack-a";
    constexpr std::uintmax_t block = 512; // POSIX, "ulimit -f"
    const std::string blocks = std::to_string(sizeOf(large) / block);
    ASSERT_LT(sizeOf(small), sizeOf(large) / block * block);

    const ProcessOutcome outcome =
        compareBehind({"/bin/sh", "-c", "ulimit -f " + blocks + "; exec \"$0\" \"$@\""}, both);
    EXPECT_EQ(outcome.exitStatus, kTargetFailed) << outcome.out << outcome.err;
    EXPECT_THAT(outcome.out, AllOf(HasSubstr(folder(large) + "  FAILED     11  Failed to write file. "),
                                   HasSubstr("Korvan-update-compare.xml: File too large"),
                                   HasSubstr(folder(small) + "  OK          0")));
    const std::string failed = "out/FAILURE-" + folder(large);
    EXPECT_THAT(readFile(tree_.file(failed + "/common_result.xml")), HasSubstr("File too large"));
    EXPECT_TRUE(exists("out/SUCCESS-" + folder(small) + "/Korvan-update-compare.xml"));
    for (const fs::directory_entry& entry : fs::directory_iterator(tree_.file(failed)))
    {
        EXPECT_THAT(entry.path().filename().string(), Not(HasSubstr("compare.xml"))) << "half of a file";
    }
}

TEST_F(UnwritableOutput, OfAScanIsSaidAndTheComparisonGoesOn)
{
    // So many items that the scan's file is the largest.
    serveEntries({controller(
        "rack-a",
        {{"faults", {{{"path", "SoftwareInventory(\\?.*)?$"}, {"action", "huge_collection"}, {"members", 400}}}}})});
    const ProcessOutcome outcome = compareBehind({"/bin/sh", "-c", "ulimit -f 100; exec \"$0\" \"$@\""},
                                                 {"--config", targetList({"rack-a"}), "--log", "1"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out << outcome.err;
    const std::string files = "out/SUCCESS-" + folder("rack-a") + "/";
    EXPECT_THAT(outcome.out, AllOf(HasSubstr(folder("rack-a") + "  OK          0  "),
                                   HasSubstr("Korvan-update-scan.xml was not written: File too large")));
    EXPECT_FALSE(exists(files + "Korvan-update-scan.xml"));
    EXPECT_TRUE(exists(files + "Korvan-update-compare.xml"));
}

TEST_F(UnwritableOutput, OfOneTargetCostsThatTarget)
{
    serve({"rack-a", "rack-b"});
    const Words both = {"--config", targetList({"rack-a", "rack-b"}), "--pattern", "uefi|bmc|nic"};
    ASSERT_EQ(compare(both).exitStatus, 0);
    // A folder of the earlier run that nobody may empty.
    const std::string locked = tree_.file("out/SUCCESS-" + folder("rack-a"));
    fs::permissions(locked, fs::owner_read | fs::owner_exe);
    Words plain = {"/bin/sh", "-c", "exec \"$0\" \"$@\""};
    if (::geteuid() == 0) // who may empty it after all
    {
        constexpr int nobody = 65534;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree_.file("")))
        {
            ASSERT_EQ(::lchown(entry.path().c_str(), nobody, nobody), 0);
        }
        for (const std::string& path : {tree_.file(""), tree_.file("../bin"), tree_.file("..")})
        {
            ASSERT_EQ(::chown(path.c_str(), nobody, nobody), 0);
        }
        plain = {"/usr/bin/setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
    }
    const ProcessOutcome outcome = compareBehind(plain, both);
    fs::permissions(locked, fs::owner_all);
    EXPECT_EQ(outcome.exitStatus, kTargetFailed) << outcome.out << outcome.err;
    EXPECT_THAT(outcome.out, AllOf(HasSubstr(folder("rack-a") + "  FAILED      8  cannot remove the earlier folder " +
                                             locked + ": Permission denied"),
                                   HasSubstr(folder("rack-b") + "  OK          0")));
    EXPECT_TRUE(exists("out/SUCCESS-" + folder("rack-b") + "/Korvan-update-compare.xml"));
}

TEST_F(UnwritableOutput, StopsTheRunBeforeAnyTargetIsAsked)
{
    serve({"rack-a"});
    const ProcessOutcome outcome =
        tree_.korvan({"update", "compare", "--output", "/proc/no-such-folder", "--config", targetList({"rack-a"})});
    EXPECT_EQ(outcome.exitStatus, kCannotMakeFolder) << outcome.out;
    EXPECT_THAT(outcome.err, HasSubstr("cannot make the output directory /proc/no-such-folder: "));
    EXPECT_EQ(statistics()["requests"], 0);
}
} // namespace
