#include "result_handler.h"

#include "apps/update/multicompare/report_fixture.h"
#include "support/module_test.h"

#include <boost/filesystem/operations.hpp>
#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>

namespace
{
using Texts = std::vector<std::string>;

constexpr char kNoMatch[] = "\n\n    The pattern you input match none package !";

class ResultHandlerTest : public ModuleTest
{
  protected:
    void writeReport(const std::string& folder, const std::string& xml) const
    {
        write(folder + "/Korvan-update-compare.xml", xml);
    }

    void handle(const std::string& pattern) const { HandleCompareResult(pattern, folder_.path()); }

    bool jsonWritten() const { return exists(path("compare_result.json")); }

    Texts jsonHosts() const
    {
        boost::property_tree::ptree root;
        boost::property_tree::read_json(path("compare_result.json"), root);
        Texts hosts;
        for (const auto& host : root.get_child("COMPARISON"))
        {
            hosts.push_back(host.second.get<std::string>("HOST"));
        }
        return hosts;
    }

    std::size_t temporaryFiles() const
    {
        std::size_t count = 0;
        for (const boost::filesystem::directory_entry& entry : boost::filesystem::directory_iterator(folder_.path()))
        {
            count += entry.path().extension() == ".tmp" ? 1 : 0;
        }
        return count;
    }

    std::size_t lines(const std::string& piece) const
    {
        std::size_t count = 0;
        std::istringstream text(out());
        for (std::string line; std::getline(text, line);)
        {
            count += line.find(piece) == std::string::npos ? 0 : 1;
        }
        return count;
    }
};

TEST_F(ResultHandlerTest, PrintsTheTableAndWritesTheJsonOfAllHosts)
{
    writeReport("SUCCESS-10.0.0.1", report::file({report::package({report::child()})}));
    writeReport("FAILURE-10.0.0.2", report::file({report::package({report::child()})}));
    handle("nic");
    EXPECT_EQ(lines("Compare Result"), 1U);
    EXPECT_EQ(lines("| 10.0.0.1 "), 1U);
    EXPECT_EQ(lines("| 10.0.0.2 "), 1U);
    EXPECT_EQ(jsonHosts(), (Texts{"10.0.0.2", "10.0.0.1"})); // FAILURE- sorts before SUCCESS-
}

TEST_F(ResultHandlerTest, MatchesTheNameAnywhereInAnyLetterCase)
{
    writeReport("h", report::file({report::package({report::child()}, {{"NAME", "The Bmc"}, {"UPDATEID", "u1"}}),
                                   report::package({report::child()}, {{"NAME", "bMCs"}, {"UPDATEID", "u2"}}),
                                   report::package({report::child()}, {{"NAME", "other"}, {"UPDATEID", "u3"}})}));
    handle("bmc");
    EXPECT_EQ(lines("| u1 "), 1U);
    EXPECT_EQ(lines("| u2 "), 1U);
    EXPECT_EQ(lines("| u3 "), 0U);
}

TEST_F(ResultHandlerTest, MatchesTheUpdateIdWhenTheNameDoesNot)
{
    writeReport("h", report::file({report::package({report::child()}, {{"NAME", "x"}, {"UPDATEID", "krv_BMC_1"}})}));
    handle("_bmc_\\d");
    EXPECT_EQ(lines("krv_BMC_1"), 1U);
}

TEST_F(ResultHandlerTest, PrintsFootnotesBelowTheTableAlsoForFilteredPackages)
{
    writeReport(
        "h", report::file({report::package({report::child()}),
                           report::package({report::child()},
                                           {{"NAME", "other"}, {"UPDATEID", "u"}, {"UNSELECTEDREASON", "3-text"}})}));
    handle("nic package");
    const std::string text = out();
    ASSERT_GE(text.size(), 12U);
    EXPECT_EQ(text.substr(text.size() - 12), "    *3-text\n");
    EXPECT_EQ(lines("| u "), 0U);
}

TEST_F(ResultHandlerTest, WritesAHostWhosePackagesAllFailThePattern)
{
    writeReport("a",
                report::file({report::package({report::child({{"CNAME", "y"}})}, {{"NAME", "x"}, {"UPDATEID", "z"}})}));
    writeReport("b", report::file({report::package({report::child()})}));
    handle("nic");
    EXPECT_EQ(jsonHosts(), (Texts{"a", "b"}));
    EXPECT_EQ(content(path("compare_result.json")).find("\"UPDATEID\": \"z\"") == std::string::npos, false);
}

TEST_F(ResultHandlerTest, SaysWhenThePatternMatchesNothing)
{
    writeReport("h", report::file({report::package({report::child()})}));
    handle("zzz");
    EXPECT_EQ(out(), kNoMatch);
    EXPECT_FALSE(jsonWritten());
    EXPECT_EQ(logged(4, "No firmware to display"), 1U);
    EXPECT_EQ(record("No firmware to display").line, 554);
    EXPECT_EQ(record("No firmware to display").source, "apps/update/multicompare/multicompare");
}

TEST_F(ResultHandlerTest, LeavesNoTemporaryFileWhenThePatternMatchesNothing)
{
    writeReport("h", report::file({report::package({report::child()})}));
    handle("zzz");
    EXPECT_EQ(temporaryFiles(), 0U);
}

TEST_F(ResultHandlerTest, KeepsAnEarlierJsonWhenThePatternMatchesNothing)
{
    write("compare_result.json", "old");
    writeReport("h", report::file({report::package({report::child()})}));
    handle("zzz");
    EXPECT_EQ(content(path("compare_result.json")), "old");
}

TEST_F(ResultHandlerTest, SaysTheSameWithoutAnyReport)
{
    handle("nic");
    EXPECT_EQ(out(), kNoMatch);
    EXPECT_FALSE(jsonWritten());
}

TEST_F(ResultHandlerTest, MakesNoRecordBelowItsLevel)
{
    observeUpTo(3);
    handle("nic");
    EXPECT_TRUE(log_.empty());
}

TEST_F(ResultHandlerTest, SkipsACorruptReportAmongThree)
{
    writeReport("a", report::file({report::package({report::child()})}));
    writeReport("b", "<COMPARISON><broken");
    writeReport("c", report::file({report::package({report::child()})}));
    handle("nic");
    EXPECT_EQ(jsonHosts(), (Texts{"a", "c"}));
    EXPECT_EQ(lines("| a "), 1U);
    EXPECT_EQ(lines("| c "), 1U);
    EXPECT_EQ(logged(1, "Failed to Read XML"), 1U);
    EXPECT_EQ(record("Failed to Read XML").line, 487);
    EXPECT_EQ(record("Failed to Read XML").source, "apps/update/multicompare/multicompare");
}

TEST_F(ResultHandlerTest, PrintsTheErrorOfABadPatternAndNothingElse)
{
    writeReport("h", report::file({report::package({report::child()})}));
    handle("[a-");
    EXPECT_FALSE(out().empty());
    EXPECT_EQ(out().back(), '\n');
    EXPECT_EQ(lines(""), 1U);
    EXPECT_EQ(lines("Compare Result"), 0U);
    EXPECT_FALSE(jsonWritten());
}

TEST_F(ResultHandlerTest, EndsTheReportAtAMissingKey)
{
    writeReport("a", report::file({report::package({report::child()})}));
    writeReport("b", report::file({report::package({report::child()}, {{"REBOOT", report::kAbsent}})}));
    handle("nic");
    EXPECT_EQ(out(), "No such node (REBOOT)\n");
    EXPECT_FALSE(jsonWritten());
    EXPECT_EQ(temporaryFiles(), 0U);
}

TEST_F(ResultHandlerTest, EndsTheReportAtAMissingKeyOfAPackageThatDoesNotMatch)
{
    writeReport("a",
                report::file({report::package({report::child()}),
                              report::package({}, {{"NAME", "x"}, {"UPDATEID", "y"}, {"FORCEID", report::kAbsent}})}));
    handle("nic");
    EXPECT_EQ(out(), "No such node (FORCEID)\n");
}

TEST_F(ResultHandlerTest, EndsTheReportWithoutTheXmlVersion)
{
    writeReport("a", report::file({report::package({report::child()})}, {{"XMLVERSION", report::kAbsent}}));
    handle("nic");
    EXPECT_EQ(out(), "No such node (COMPARISON.XMLVERSION)\n");
}

TEST_F(ResultHandlerTest, EndsTheReportAtABadNumber)
{
    writeReport("a", report::file({report::package({report::child()}, {{"SELECTED", "yes"}})}));
    handle("nic");
    EXPECT_NE(out().find("conversion of data"), std::string::npos);
    EXPECT_EQ(lines("Compare Result"), 0U);
    EXPECT_FALSE(jsonWritten());
}

TEST_F(ResultHandlerTest, EndsTheReportAtAShortPackageVersion)
{
    writeReport("a", report::file({report::package({}, {{"PKGVERSION", "1.2"}})}));
    handle("nic");
    EXPECT_NE(out(), "");
    EXPECT_EQ(lines("Compare Result"), 0U);
    EXPECT_FALSE(jsonWritten());
}

TEST_F(ResultHandlerTest, PrintsTheErrorAndNoTableWhenTheJsonCannotBeWritten)
{
    writeReport("a", report::file({report::package({report::child()})}));
    write("compare_result.json/in the way", "x");
    handle("nic");
    EXPECT_EQ(out(), folder_.path() + "//compare_result.json: cannot open file\n");
    EXPECT_EQ(temporaryFiles(), 0U);
}

TEST_F(ResultHandlerTest, SkipsAReportThatNestsTooDeeply)
{
    std::string deep;
    for (int level = 0; level < 100000; ++level)
    {
        deep += "<a>";
    }
    writeReport("a", deep);
    writeReport("b", report::file({report::package({report::child()})}));
    handle("nic");
    EXPECT_EQ(jsonHosts(), (Texts{"b"}));
    EXPECT_EQ(logged(1, "Failed to Read XML"), 1U);
}

TEST_F(ResultHandlerTest, TakesAReportWithManyPackages)
{
    writeReport("a", report::file(std::vector<std::string>(2000, report::package({report::child()}))));
    handle("nic");
    EXPECT_EQ(lines("| a "), 2000U);
}

// A full disk leaves such a file.
TEST_F(ResultHandlerTest, EndsTheReportAtAnEmptyFile)
{
    writeReport("a", "");
    handle("nic");
    EXPECT_EQ(out(), "No such node (COMPARISON.XMLVERSION)\n");
}

// Every child counts as a package, whatever it is; the framework's writer makes no comments.
TEST_F(ResultHandlerTest, TakesACommentAmongThePackagesForAPackage)
{
    writeReport("a", report::file({report::package({report::child()}), "<!-- a comment -->"}));
    handle("nic");
    EXPECT_EQ(out(), "No such node (NAME)\n");
}

TEST_F(ResultHandlerTest, IsNotStoppedByALinkThatLeadsToItself)
{
    writeReport("a", report::file({report::package({report::child()})}));
    boost::filesystem::create_symlink("loop", path("loop"));
    handle("nic");
    EXPECT_EQ(jsonHosts(), (Texts{"a"}));
}

TEST_F(ResultHandlerTest, LeavesAnotherRunsTemporaryFileAlone)
{
    write("compare_result.json.tmp", "theirs");
    writeReport("a", report::file({report::package({report::child()})}));
    handle("nic");
    EXPECT_EQ(content(path("compare_result.json.tmp")), "theirs");
    EXPECT_EQ(jsonHosts(), (Texts{"a"}));
}

TEST_F(ResultHandlerTest, TakesAReportWithoutPackages)
{
    writeReport("a", report::file({}));
    writeReport("b", report::file({report::package({report::child()})}));
    handle("nic");
    EXPECT_EQ(jsonHosts(), (Texts{"a", "b"}));
}
} // namespace
