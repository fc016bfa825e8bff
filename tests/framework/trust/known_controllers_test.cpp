#include "framework/trust/known_file.h"

#include "support/file_rights.h"
#include "trust/user_files.h"

#include <cstdlib>
#include <filesystem>
#include <thread>
#include <vector>

using known_file::addFromThreads;
using known_file::kOne;
using known_file::kTwo;
using known_file::linesOf;
using test_support::readFile;
using test_support::ScratchFolder;
using testing::HasSubstr;
using trust::Finding;
using trust::Knowledge;
using trust::KnownControllers;

TEST(ControllerName, IsLowerCaseWithPortAndBrackets)
{
    EXPECT_EQ(trust::controllerName("Rack-A.Example", 8443), "rack-a.example:8443");
    EXPECT_EQ(trust::controllerName("10.0.0.1", 0), "10.0.0.1:443");
    EXPECT_EQ(trust::controllerName("FE80::1", 0), "[fe80::1]:443");
}

TEST(KnownControllers, KnowsNobodyWithoutAFile)
{
    const ScratchFolder folder;
    const KnownControllers known(folder.file("missing/known"));
    EXPECT_EQ(known.find("a:443", kOne).knowledge, Knowledge::Unknown);
    EXPECT_FALSE(std::filesystem::exists(folder.file("missing"))) << "looking makes nothing";
}

TEST(KnownControllers, TellsKnownOtherAndUnknown)
{
    const ScratchFolder folder;
    const KnownControllers known(
        folder.write("known", "# comment\n\n  a.example:443\tsha256  " + kOne + " \r\n[fe80::1]:8443 sha256 " + kTwo));
    EXPECT_EQ(known.find("a.example:443", kOne).knowledge, Knowledge::Known);
    EXPECT_EQ(known.find("[fe80::1]:8443", kTwo).knowledge, Knowledge::Known) << "a last line without its end";
    EXPECT_EQ(known.find("a.example:8443", kOne).knowledge, Knowledge::Unknown);
    const Finding other = known.find("a.example:443", kTwo);
    EXPECT_EQ(other.knowledge, Knowledge::Other);
    EXPECT_EQ(other.known, kOne);
}

TEST(KnownControllers, ReadsHostsAndDigitsInEitherCase)
{
    const ScratchFolder folder;
    const std::string upper(64, 'A');
    const KnownControllers known(folder.write("known", "A.Example:443 sha256 " + upper + "\n"));
    EXPECT_EQ(known.find("a.example:443", std::string(64, 'a')).knowledge, Knowledge::Known);
}

TEST(KnownControllers, RefusesWrongLinesByTheirNumber)
{
    const ScratchFolder folder;
    const std::vector<std::string> wrong = {"a:443",
                                            "a:443 sha256",
                                            "a:443 " + kOne,
                                            "a:443 sha256 " + kOne + " more",
                                            "a:443 sha1 " + kOne,
                                            "a:443 sha256 " + kOne.substr(1),
                                            "a:443 sha256 " + kOne.substr(1) + "x",
                                            "a sha256 " + kOne,
                                            ":443 sha256 " + kOne,
                                            "a:0 sha256 " + kOne,
                                            "a:65536 sha256 " + kOne,
                                            "a:44x sha256 " + kOne,
                                            "fe80::1:443 sha256 " + kOne,
                                            "[]:443 sha256 " + kOne,
                                            std::string("a\0b:443 sha256 ", 15) + kOne,
                                            "\x1B[2Ja:443 sha256 " + kOne,
                                            std::string(2000, ' ')};
    for (const std::string& line : wrong)
    {
        const std::string content = "good:443 sha256 " + kOne + "\n" + line + "\n";
        const std::string path = folder.write("known", content);
        for (const Finding& finding :
             {KnownControllers(path).find("good:443", kOne), KnownControllers(path).addIfUnknown("new:443", kOne)})
        {
            EXPECT_EQ(finding.knowledge, Knowledge::Broken) << line;
            EXPECT_THAT(finding.reason, HasSubstr(path));
            EXPECT_THAT(finding.reason, HasSubstr("line 2 "));
            EXPECT_EQ(finding.reason.find('\x1B'), std::string::npos);
        }
        EXPECT_EQ(readFile(path), content) << "a file that is not understood is not written";
    }
}

TEST(KnownControllers, TakesTheSameLineTwiceButNotAContradiction)
{
    const ScratchFolder folder;
    const std::string line = "a:443 sha256 " + kOne + "\n";
    EXPECT_EQ(KnownControllers(folder.write("same", line + line)).find("a:443", kOne).knowledge, Knowledge::Known);
    const KnownControllers torn(folder.write("torn", line + "A:443 sha256 " + kTwo + "\n"));
    for (const std::string& fingerprint : {kOne, kTwo})
    {
        const Finding finding = torn.find("a:443", fingerprint);
        EXPECT_EQ(finding.knowledge, Knowledge::Broken);
        EXPECT_THAT(finding.reason, HasSubstr("line 1"));
        EXPECT_THAT(finding.reason, HasSubstr("line 2"));
    }
}

TEST(KnownControllers, RefusesWhatIsNoFileOrTooLarge)
{
    const ScratchFolder folder;
    EXPECT_EQ(KnownControllers(folder.path()).find("a:443", kOne).knowledge, Knowledge::Broken);
    const std::string large = folder.write("large", std::string((std::size_t{16} << 20U) + 1, '\n'));
    EXPECT_EQ(KnownControllers(large).find("a:443", kOne).knowledge, Knowledge::Broken);
    EXPECT_EQ(KnownControllers(folder.write("file", "").append("/below")).addIfUnknown("a:443", kOne).knowledge,
              Knowledge::Broken);
}

TEST(KnownControllers, AddsForTheOwnerAlone)
{
    const ScratchFolder folder;
    const KnownControllers known(folder.file(".korvan/known_controllers"));
    const Finding added = known.addIfUnknown("a:443", kOne);
    EXPECT_EQ(added.knowledge, Knowledge::Known) << added.reason;
    EXPECT_TRUE(added.added);
    EXPECT_TRUE(test_support::isForOwnerAlone(folder.file(".korvan")));
    EXPECT_TRUE(test_support::isForOwnerAlone(known.path()));
    EXPECT_THAT(readFile(known.path()), HasSubstr("\na:443 sha256 " + kOne + "\n"));
    EXPECT_EQ(known.find("a:443", kOne).knowledge, Knowledge::Known);
}

TEST(KnownControllers, AddsNothingToAKnownOrChangedOne)
{
    const ScratchFolder folder;
    const std::string content = "a:443 sha256 " + kOne + "\n";
    const KnownControllers known(folder.write("known", content));
    const Finding same = known.addIfUnknown("a:443", kOne);
    EXPECT_EQ(same.knowledge, Knowledge::Known);
    EXPECT_FALSE(same.added);
    const Finding changed = known.addIfUnknown("a:443", kTwo);
    EXPECT_EQ(changed.knowledge, Knowledge::Other);
    EXPECT_EQ(changed.known, kOne);
    EXPECT_EQ(readFile(known.path()), content);
}

TEST(KnownControllers, KeepsWhatTheUserWrote)
{
    const ScratchFolder folder;
    const std::string content = "# mine\nb:443 sha256 " + kTwo;
    const KnownControllers known(folder.write("known", content));
    EXPECT_TRUE(known.addIfUnknown("a:443", kOne).added);
    EXPECT_EQ(readFile(known.path()), content + "\na:443 sha256 " + kOne + "\n");
}

TEST(KnownControllers, LosesNoLineOfThreads)
{
    constexpr int kWriters = 4;
    constexpr int kEach = 12;
    const ScratchFolder folder;
    const std::string path = folder.file("known");
    const std::vector<int> added = addFromThreads(path, kWriters, kEach);
    EXPECT_EQ(added, std::vector<int>(kWriters, 1));
    EXPECT_EQ(linesOf(readFile(path)), 1 + kWriters * kEach);
    EXPECT_EQ(KnownControllers(path).find("thread3-11:443", kOne).knowledge, Knowledge::Known);
}

TEST(KnownControllers, GivesOneOfTwoFirstUsersTheDecision)
{
    const ScratchFolder folder;
    const std::string path = folder.file("known");
    Finding one;
    Finding two;
    std::thread first([&] { one = KnownControllers(path).addIfUnknown("a:443", kOne); });
    std::thread second([&] { two = KnownControllers(path).addIfUnknown("a:443", kTwo); });
    first.join();
    second.join();
    EXPECT_NE(one.added, two.added);
    EXPECT_EQ((one.added ? two : one).knowledge, Knowledge::Other);
    EXPECT_EQ(linesOf(readFile(path)), 2);
}

TEST(FileLock, IsGivenUpAfterItsTime)
{
    const ScratchFolder folder;
    std::string error;
    trust::FileLock held;
    ASSERT_TRUE(held.acquire(folder.file("lock"), std::chrono::milliseconds(10), error)) << error;
    trust::FileLock waiting;
    EXPECT_FALSE(waiting.acquire(folder.file("lock"), std::chrono::milliseconds(30), error));
    EXPECT_THAT(error, HasSubstr("locked"));
}
