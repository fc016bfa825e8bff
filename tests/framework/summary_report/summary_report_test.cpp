#include "summary_report.h"

#include "log/log_control.h"
#include "summary_report/summary_file.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <pugixml.hpp>

#include <filesystem>

using test_support::ScratchFolder;

namespace
{
std::string text(const pugi::xml_document& document, const char* path)
{
    return document.select_node(path).node().text().get();
}
} // namespace

TEST(SummaryReport, HoldsEveryServiceAndTheLastSummary)
{
    const ScratchFolder folder;
    SummaryReport report(folder.path());
    report.PushServiceResult("scan", 0, "");
    report.PushServiceResult("query", 0x10068, "nothing <applies> & \x01");
    report.PushSummaryResult(13, "first");
    report.PushSummaryResult(0x10068, "last");
    EXPECT_FALSE(std::filesystem::exists(folder.file("common_result.xml")));
    report.GenerateReportFile();

    pugi::xml_document document;
    ASSERT_TRUE(document.load_file(folder.file("common_result.xml").c_str()));
    EXPECT_EQ(document.child("COMMONRESULT").select_nodes("SERVICE").size(), 2U);
    EXPECT_EQ(text(document, "/COMMONRESULT/SERVICE[1]/ACTION"), "scan");
    EXPECT_EQ(text(document, "/COMMONRESULT/SERVICE[1]/CODE"), "0");
    EXPECT_EQ(text(document, "/COMMONRESULT/SERVICE[1]/MESSAGE"), "Succeed.");
    EXPECT_EQ(text(document, "/COMMONRESULT/SERVICE[2]/CODE"), "104");
    EXPECT_EQ(text(document, "/COMMONRESULT/SERVICE[2]/CATEGORY"), "1");
    EXPECT_EQ(text(document, "/COMMONRESULT/SERVICE[2]/MESSAGE"), "nothing <applies> & \xEF\xBF\xBD");
    EXPECT_EQ(text(document, "/COMMONRESULT/SUMMARY/CODE"), "104");
    EXPECT_EQ(text(document, "/COMMONRESULT/SUMMARY/MESSAGE"), "last");
}

TEST(SummaryReport, KeepsTheOutcomesOfOtherServicesInFront)
{
    const ScratchFolder folder;
    SummaryReport scan(folder.path());
    scan.PushServiceResult("scan", 60, "one collection was cut");
    scan.PushServiceResult("compare", 1, "");
    scan.PushSummaryResult(60, "");
    scan.GenerateReportFile();
    SummaryReport compare(folder.path());
    compare.PushServiceResult("query", 0, "");
    compare.PushServiceResult("compare", 0, "");
    compare.GenerateReportFile();
    compare.GenerateReportFile(); // writing it again adds nothing

    pugi::xml_document document;
    ASSERT_TRUE(document.load_file(folder.file("common_result.xml").c_str()));
    EXPECT_EQ(document.child("COMMONRESULT").select_nodes("SERVICE").size(), 3U);
    EXPECT_EQ(text(document, "/COMMONRESULT/SERVICE[1]/ACTION"), "scan");
    EXPECT_EQ(text(document, "/COMMONRESULT/SERVICE[1]/MESSAGE"), "one collection was cut");
    EXPECT_EQ(text(document, "/COMMONRESULT/SERVICE[2]/ACTION"), "query");
    EXPECT_EQ(text(document, "/COMMONRESULT/SERVICE[3]/ACTION"), "compare");
    EXPECT_EQ(text(document, "/COMMONRESULT/SERVICE[3]/CODE"), "0");
    EXPECT_EQ(text(document, "/COMMONRESULT/SUMMARY/CODE"), "0");
}

TEST(SummaryReport, ReplacesAnEarlierFile)
{
    const ScratchFolder folder;
    folder.write("common_result.xml", std::string(100000, 'x'));
    SummaryReport(folder.path() + "/").GenerateReportFile();
    pugi::xml_document document;
    ASSERT_TRUE(document.load_file(folder.file("common_result.xml").c_str()));
    EXPECT_EQ(text(document, "/COMMONRESULT/SUMMARY/CODE"), "0");
}

TEST(SummaryReport, LogsThePathThatItCannotWrite)
{
    std::string logged;
    log_control::observe(1, [&logged](int, const std::string&, int, const std::string& record) { logged += record; });
    SummaryReport("/nonexistent/folder").GenerateReportFile();
    log_control::observe(0, log_control::Observer());
    EXPECT_THAT(logged, testing::HasSubstr("/nonexistent/folder/common_result.xml"));
}

TEST(SummaryReport, TellsAFailedStepOfAFolder)
{
    const ScratchFolder folder;
    SummaryReport report(folder.path());
    report.PushServiceResult("scan", 60, "one collection was cut");
    report.PushServiceResult("compare", 0, "");
    report.GenerateReportFile();
    EXPECT_EQ(summary_file::serviceFailure(folder.path(), "scan"), "one collection was cut");
    EXPECT_EQ(summary_file::serviceFailure(folder.path(), "compare"), "");
    EXPECT_EQ(summary_file::serviceFailure(folder.path(), "query"), "");
    EXPECT_EQ(summary_file::serviceFailure(folder.file("gone"), "scan"), "");
}
