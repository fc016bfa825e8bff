#include "framework/repository/descriptor_text.h"
#include "interrupt.h"
#include "repository_tools.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <filesystem>

using repository_tools::CheckReport;
using repository_tools::CheckRepository;
using repository_tools::Listing;
using repository_tools::ListRepository;
using repository_tools::Problem;
using repository_tools::Severity;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{
constexpr char kDigestOfHello[] = "2cf24dba5fb0a30e26e83b2ac5b9e29e1b161e5c1fa7425e73043362938b9824"; // "hello"

class RepositoryToolsTest : public testing::Test
{
  protected:
    RepositoryToolsTest() { interrupt::reset(); }
    ~RepositoryToolsTest() override { interrupt::reset(); }

    void package(const std::string& id, const std::string& extra = "") const
    {
        descriptor_text::Package made;
        made.id = id;
        made.extra = extra;
        folder_.write(id + ".xml", descriptor_text::text(made));
    }

    CheckReport check() const
    {
        CheckReport report;
        const KorvanResult result = CheckRepository(folder_.path(), report);
        EXPECT_TRUE(result.succeeded()) << result;
        return report;
    }

    // The one problem of the repository.
    Problem problem() const
    {
        const CheckReport report = check();
        EXPECT_EQ(report.problems.size(), 1U);
        return report.problems.empty() ? Problem() : report.problems.front();
    }

    const test_support::ScratchFolder folder_;
};

TEST_F(RepositoryToolsTest, AGoodRepositoryHasNoProblems)
{
    package("krv_fw_a", "<SUPERSEDE>krv_fw_b</SUPERSEDE>");
    package("krv_fw_b");
    folder_.write("v.xml", descriptor_text::velpak("V", "7Y41", "platform", "<UPDATEID>krv_fw_a</UPDATEID>"));
    const CheckReport report = check();
    EXPECT_EQ(report.packages, 2U);
    EXPECT_EQ(report.velpaks, 1U);
    EXPECT_TRUE(report.problems.empty());
}

TEST_F(RepositoryToolsTest, AllBrokenRulesOfADescriptorAreTold)
{
    folder_.write("bad.xml", "<PACKAGE>\n<UPDATEID>a b</UPDATEID>\n<NAME/>\n<TYPE>xx</TYPE>\n"
                             "<AGENTLESSSUPPORT>maybe</AGENTLESSSUPPORT>\n<PKGVERSION>1</PKGVERSION>\n"
                             "<PAYLOADSIZE>-1</PAYLOADSIZE>\n<PAYLOADSHA256>00</PAYLOADSHA256>\n"
                             "<APPLIESTO><OS>platform</OS>\n<OS>orbit9</OS></APPLIESTO>\n"
                             "<CHILDREN><CHILD>\n</CHILD></CHILDREN></PACKAGE>");
    package("good");
    const CheckReport report = check();
    std::vector<std::string> seen;
    for (const Problem& problem : report.problems)
    {
        EXPECT_EQ(problem.file, "bad.xml");
        seen.push_back(std::to_string(problem.line) + (problem.severity == Severity::Error ? " E " : " W ") +
                       problem.text);
    }
    EXPECT_THAT(seen, ElementsAre(HasSubstr("2 E <UPDATEID>"), HasSubstr("3 E <NAME>"), HasSubstr("4 E <TYPE>"),
                                  HasSubstr("5 E <AGENTLESSSUPPORT>"), HasSubstr("7 E <PAYLOADSIZE>"),
                                  HasSubstr("8 E <PAYLOADSHA256>"), HasSubstr("9 E <APPLIESTO>: the element MACHINE"),
                                  HasSubstr("9 E <APPLIESTO>: the element ARCH"), HasSubstr("10 W unknown operating"),
                                  HasSubstr("11 E <CHILD>: the element SOFTWAREID"),
                                  HasSubstr("11 E <CHILD>: the element NEWVERSION")));
    EXPECT_EQ(report.errors, 10U);
    EXPECT_EQ(report.warnings, 1U);
    EXPECT_EQ(report.packages, 1U);
}

TEST_F(RepositoryToolsTest, AFileFullOfProblemsIsGivenUp)
{
    std::string children;
    for (int child = 0; child < 900; ++child)
    {
        children += "<CHILD/>\n";
    }
    folder_.write("bad.xml", "<PACKAGE><CHILDREN>" + children + "</CHILDREN></PACKAGE>");
    package("good");
    const CheckReport report = check();
    EXPECT_GE(report.errors, 99U);
    EXPECT_LE(report.errors, 101U);
}

TEST_F(RepositoryToolsTest, WhatIsNoXmlIsToldWithItsLine)
{
    package("good");
    folder_.write("x.xml", "<PACKAGE>\n\n<UPDATEID></NAME></PACKAGE>");
    EXPECT_EQ(problem().line, 3U);
    folder_.write("x.xml", "<PACKAGE>\n<UPDATEID>\xFF</UPDATEID></PACKAGE>");
    EXPECT_EQ(problem().line, 2U);
    EXPECT_THAT(problem().text, HasSubstr("UTF-8"));
    folder_.write("x.xml", "<?xml version='1.0'?>\n<!DOCTYPE P [<!ENTITY a 'b'>]>\n<PACKAGE/>");
    EXPECT_EQ(problem().line, 2U);
    folder_.write("x.xml", "");
    EXPECT_EQ(problem().severity, Severity::Error);
}

TEST_F(RepositoryToolsTest, AnUpdateIdMayStandOnce)
{
    package("krv_fw_a");
    std::filesystem::copy_file(folder_.file("krv_fw_a.xml"), folder_.file("z.xml"));
    const Problem found = problem();
    EXPECT_EQ(found.file, "z.xml");
    EXPECT_EQ(found.line, 1U);
    EXPECT_EQ(found.severity, Severity::Error);
    EXPECT_THAT(found.text, HasSubstr("krv_fw_a.xml"));
}

TEST_F(RepositoryToolsTest, APayloadMustBeWhatTheDescriptorSays)
{
    const std::string digest = std::string("\n<PAYLOADSHA256>") + kDigestOfHello + "</PAYLOADSHA256>";
    package("a", "\n<PAYLOADFILE>a.upd</PAYLOADFILE>\n<PAYLOADSIZE>5</PAYLOADSIZE>" + digest);
    EXPECT_THAT(problem().text, HasSubstr("a.upd is missing"));
    EXPECT_EQ(problem().line, 2U);
    folder_.write("a.upd", "hell");
    EXPECT_THAT(problem().text, HasSubstr("4 bytes instead of 5"));
    EXPECT_EQ(problem().line, 3U);
    folder_.write("a.upd", "hallo");
    EXPECT_THAT(problem().text, HasSubstr(std::string("instead of ") + kDigestOfHello));
    EXPECT_EQ(problem().line, 4U);
    EXPECT_EQ(problem().severity, Severity::Error);
    folder_.write("a.upd", "hello");
    EXPECT_THAT(check().problems, IsEmpty());
}

TEST_F(RepositoryToolsTest, ADigestCountsWithoutASizeToo)
{
    package("a", std::string("<PAYLOADFILE>a.upd</PAYLOADFILE><PAYLOADSHA256>") + kDigestOfHello + "</PAYLOADSHA256>");
    folder_.write("a.upd", "hello");
    EXPECT_THAT(check().problems, IsEmpty());
    folder_.write("a.upd", std::string(1000000, 'x'));
    EXPECT_THAT(problem().text, HasSubstr("SHA-256"));
}

TEST_F(RepositoryToolsTest, APayloadIsARegularFile)
{
    package("a", "<PAYLOADFILE>sub</PAYLOADFILE>");
    std::filesystem::create_directory(folder_.file("sub"));
    EXPECT_THAT(problem().text, HasSubstr("no regular file"));
}

TEST_F(RepositoryToolsTest, IdsThatDoNotExistAreWarnings)
{
    package("a", "\n<SUPERSEDE>gone1, b</SUPERSEDE>\n<PREREQUISITE>gone2</PREREQUISITE>\n"
                 "<COREQUISITE>gone3</COREQUISITE>\n<REQUISITE>a</REQUISITE>");
    package("b");
    folder_.write("v.xml", descriptor_text::velpak("V", "7Y41", "platform",
                                                   "\n<UPDATEID>a</UPDATEID>\n<UPDATEID>gone4</UPDATEID>"));
    std::vector<std::string> seen;
    const CheckReport report = check();
    for (const Problem& problem : report.problems)
    {
        EXPECT_EQ(problem.severity, Severity::Warning);
        seen.push_back(problem.file + ":" + std::to_string(problem.line) + " " + problem.text);
    }
    EXPECT_THAT(seen, ElementsAre(HasSubstr("a.xml:2 the update id gone1"), HasSubstr("a.xml:3 the update id gone2"),
                                  HasSubstr("a.xml:4 the update id gone3"), HasSubstr("a.xml:5 the update id a, which"),
                                  HasSubstr("v.xml:3 the update id gone4")));
    EXPECT_EQ(report.errors, 0U);
}

TEST_F(RepositoryToolsTest, ACircleOfPrerequisitesIsOneErrorThatNamesItsMembers)
{
    package("a", "<PREREQUISITE>b</PREREQUISITE>");
    package("b", "<NOTE/>\n<PREREQUISITE>x, c</PREREQUISITE>");
    package("c", "<PREREQUISITE>d</PREREQUISITE>");
    package("d", "<PREREQUISITE>b</PREREQUISITE><COREQUISITE>c</COREQUISITE>");
    package("x");
    EXPECT_EQ(problem().file, "b.xml");
    EXPECT_EQ(problem().line, 2U);
    EXPECT_EQ(problem().severity, Severity::Error);
    EXPECT_THAT(problem().text, EndsWith("prerequisites of one another in a circle: b, c, d"));
}

TEST_F(RepositoryToolsTest, EachCircleOfSupersededPackagesIsAnError)
{
    package("a", "<SUPERSEDE>b</SUPERSEDE>");
    package("b", "<SUPERSEDE>a</SUPERSEDE>");
    package("c", "<SUPERSEDE>d, a</SUPERSEDE>");
    package("d", "<SUPERSEDE>c</SUPERSEDE>");
    const CheckReport report = check();
    ASSERT_EQ(report.problems.size(), 2U);
    EXPECT_EQ(report.errors, 2U);
    EXPECT_EQ(report.problems[0].file, "a.xml");
    EXPECT_THAT(report.problems[0].text, EndsWith("supersede one another in a circle: a, b"));
    EXPECT_EQ(report.problems[1].file, "c.xml");
    EXPECT_THAT(report.problems[1].text, EndsWith("supersede one another in a circle: c, d"));
}

TEST_F(RepositoryToolsTest, PackagesThatAreToBeAppliedTogetherMayNameOneAnother)
{
    package("a", "<COREQUISITE>b</COREQUISITE>");
    package("b", "<REQUISITE>a</REQUISITE>");
    EXPECT_THAT(check().problems, IsEmpty());
    package("b", "\n<PREREQUISITE>a</PREREQUISITE>");
    EXPECT_EQ(problem().file, "a.xml");
    EXPECT_EQ(problem().line, 1U);
    EXPECT_EQ(problem().severity, Severity::Warning);
    EXPECT_THAT(problem().text, EndsWith("can only be applied together: a, b"));
}

TEST_F(RepositoryToolsTest, NoCircleIsTooLong)
{
    constexpr int kPackages = 250;
    for (int number = 0; number < kPackages; ++number)
    {
        package("p" + std::to_string(number),
                "<PREREQUISITE>p" + std::to_string((number + 1) % kPackages) + "</PREREQUISITE>");
    }
    EXPECT_THAT(problem().text, EndsWith(" and 150 more"));
}

TEST_F(RepositoryToolsTest, AReleaseDateIsADayOfTheCalendar)
{
    for (const char* date : {"2026-02-28", "2024-02-29", "2000-02-29", "2026-12-31", ""})
    {
        package("a", std::string("<RELEASEDATE>") + date + "</RELEASEDATE>");
        EXPECT_THAT(check().problems, IsEmpty()) << date;
    }
    for (const char* date : {"2026-02-29", "2100-02-29", "2026-04-31", "2026-13-01", "2026-00-10", "2026-1-02",
                             "2026/01/02", "10 Mar 2026", "soon", "2026-01-02T00:00:00Z"})
    {
        package("a", std::string("\n<RELEASEDATE>") + date + "</RELEASEDATE>");
        EXPECT_EQ(problem().line, 2U) << date;
        EXPECT_EQ(problem().severity, Severity::Error) << date;
        EXPECT_THAT(problem().text, HasSubstr(date));
    }
}

TEST_F(RepositoryToolsTest, APacksReleaseDateIsCheckedToo)
{
    package("a");
    folder_.write("v.xml", descriptor_text::velpak("V", "7Y41", "platform", "<UPDATEID>a</UPDATEID>", "spring 2026"));
    EXPECT_EQ(problem().file, "v.xml");
    EXPECT_THAT(problem().text, HasSubstr("spring 2026"));
}

TEST_F(RepositoryToolsTest, AFolderWithoutPackagesIsAWarning)
{
    EXPECT_EQ(problem().severity, Severity::Warning);
    folder_.write("other.xml", "<OTHER/>");
    EXPECT_EQ(check().warnings, 2U);
    EXPECT_EQ(check().errors, 0U);
}

TEST_F(RepositoryToolsTest, AFolderThatCannotBeReadIsAFailure)
{
    CheckReport report;
    Listing listing;
    const KorvanResult checked = CheckRepository(folder_.file("none"), report);
    EXPECT_EQ(checked.number(), 38U);
    EXPECT_THAT(checked.message, HasSubstr("none"));
    EXPECT_EQ(ListRepository(folder_.file("none"), listing).number(), 38U);
}

TEST_F(RepositoryToolsTest, TheUserCanStopIt)
{
    package("a");
    interrupt::request();
    CheckReport report;
    EXPECT_EQ(CheckRepository(folder_.path(), report).number(), 47U);
}

TEST_F(RepositoryToolsTest, ListsWhatAPackageIsFor)
{
    descriptor_text::Package made;
    made.id = "a";
    made.machineTypes = "<MACHINETYPE>7y41</MACHINETYPE><MACHINETYPE>7Y41</MACHINETYPE><MACHINETYPE>7X20</MACHINETYPE>";
    made.systems = "<OS minor=\"4\">rhel8</OS><OS>platform</OS>";
    folder_.write("a.xml", descriptor_text::text(made));
    made.id = "b";
    made.type = "dd";
    made.machineTypes = "<MACHINETYPE>*</MACHINETYPE>";
    made.systems = "<OS>*</OS>";
    folder_.write("b.xml", descriptor_text::text(made));
    folder_.write("c.xml", descriptor_text::text(made));
    folder_.write("d.xml", "<PACKAGE/>");
    Listing listing;
    ASSERT_TRUE(ListRepository(folder_.path() + "/", listing).succeeded());
    ASSERT_EQ(listing.packages.size(), 2U);
    EXPECT_EQ(listing.packages[0].updateId, "a");
    EXPECT_EQ(listing.packages[0].type, "fw");
    EXPECT_THAT(listing.packages[0].machineTypes, ElementsAre("7Y41", "7X20"));
    EXPECT_THAT(listing.packages[0].systems, ElementsAre("rhel8.4", "platform"));
    EXPECT_THAT(listing.packages[0].newVersions, ElementsAre("2.42"));
    EXPECT_EQ(listing.packages[1].type, "dd");
    EXPECT_THAT(listing.packages[1].machineTypes, ElementsAre("*"));
    EXPECT_THAT(listing.packages[1].systems, ElementsAre("*"));
    EXPECT_THAT(listing.skippedFiles, ElementsAre("c.xml", "d.xml"));
}
} // namespace
