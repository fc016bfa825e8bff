#include "service_runner/service_update_compare_runner.h"

#include "support/module_test.h"

namespace
{
using Texts = std::vector<std::string>;

constexpr char kPartly[] = "Scan Faile but get some partly results so ignore it's error.";

class ScanStepTest : public ModuleTest
{
  protected:
    KorvanResult scan(const std::map<std::string, std::string>& options = {}, bool screen = false)
    {
        CompareRunner runner(contextWith(options), folder_.path(), screen);
        SummaryReport summary(folder_.path());
        return runner.Scan(summary);
    }

    static void scanFinds(int items)
    {
        for (int i = 0; i < items; ++i)
        {
            fake::framework().scan.report.AddScanResult(service::ScanItem());
        }
    }
};

TEST_F(ScanStepTest, SkipsEverythingWithNoScan)
{
    EXPECT_TRUE(scan({{"noscan", ""}}).succeeded());
    EXPECT_EQ(fake::framework().scan.runs, 0);
    EXPECT_TRUE(log_.empty());
}

TEST_F(ScanStepTest, PrefersNoScanToAScanFile)
{
    fake::framework().scan.loadCode = 6;
    EXPECT_TRUE(scan({{"noscan", ""}, {"scanxml", "a.xml"}}).succeeded());
    EXPECT_TRUE(fake::framework().scan.loadedPaths.empty());
}

TEST_F(ScanStepTest, LoadsAScanFileAndWritesNothing)
{
    fake::framework().scan.loaded.AddScanResult(service::ScanItem());
    EXPECT_TRUE(scan({{"scanxml", "a.xml"}}).succeeded());
    EXPECT_EQ(fake::framework().scan.loadedPaths, (Texts{"a.xml"}));
    EXPECT_EQ(fake::framework().scan.runs, 0);
    EXPECT_TRUE(fake::framework().summaries.empty());
    EXPECT_FALSE(exists(path("scan_result.txt")));
}

TEST_F(ScanStepTest, GivesTheCodeOfAScanFileThatCannotBeLoaded)
{
    fake::framework().scan.loadCode = 0x10058;
    const KorvanResult result = scan({{"scanxml", "a.xml"}});
    EXPECT_EQ(result.code, 0x10058U);
    EXPECT_EQ(result.message, "Incompatible compare/query/scan xml result.");
}

TEST_F(ScanStepTest, ScansAndSavesTableAndXml)
{
    scanFinds(1);
    EXPECT_TRUE(scan({{"bmc", "x"}, {"type", "fw"}}).succeeded());
    EXPECT_EQ(content(path("scan_result.txt")), "scan table\n10.0.0.1");
    EXPECT_EQ(fake::framework().scan.printedTypes, (Texts{"fw"}));
    EXPECT_EQ(fake::framework().scan.savedPaths, (Texts{path("Korvan-update-scan.xml")}));
    EXPECT_EQ(logged(3, "Scan results saved to: " + path("Korvan-update-scan.xml")), 1U);
    EXPECT_EQ(record("Scan results saved to: " + path("Korvan-update-scan.xml")).source,
              "service/service_runner/service_update_compare_runner");
    EXPECT_EQ(out(), "");
}

TEST_F(ScanStepTest, HandsTheOptionsToTheScanWithTheOutputDirectory)
{
    scan({{"dir", "pkgs"}});
    ASSERT_EQ(fake::framework().scan.options.size(), 1U);
    EXPECT_EQ(fake::framework().scan.options[0].outputDir, folder_.path());
    EXPECT_EQ(fake::framework().scan.options[0].dir, "pkgs");
    EXPECT_EQ(fake::framework().scan.options[0].type, "all");
    EXPECT_FALSE(fake::framework().scan.barGiven);
}

TEST_F(ScanStepTest, LeavesTheHostOutWhenTheAddressCannotBeRead)
{
    scanFinds(1);
    fake::framework().connections.address = "https://[::1";
    scan();
    EXPECT_EQ(content(path("scan_result.txt")), "scan table\n");
}

TEST_F(ScanStepTest, CountsAFailureWithSomeItemsAsASuccess)
{
    scanFinds(1);
    fake::framework().scan.result = KorvanResult(60);
    const KorvanResult result = scan();
    EXPECT_TRUE(result.succeeded());
    EXPECT_EQ(logged(1, kPartly), 1U);
    EXPECT_TRUE(exists(path("scan_result.txt")));
    ASSERT_EQ(fake::framework().summaries.size(), 1U);
    EXPECT_EQ(fake::framework().summaries[0].services[0].code, 60);
}

TEST_F(ScanStepTest, SaysThePartlyLineOfEveryScanThatFoundItems)
{
    scanFinds(2);
    EXPECT_TRUE(scan().succeeded());
    EXPECT_EQ(logged(1, kPartly), 1U);
}

TEST_F(ScanStepTest, WritesNoFilesForAScanWithoutItems)
{
    EXPECT_TRUE(scan().succeeded());
    EXPECT_FALSE(exists(path("scan_result.txt")));
    EXPECT_TRUE(fake::framework().scan.savedPaths.empty());
    EXPECT_EQ(logged(3, "Scan results saved to: "), 1U);
    EXPECT_EQ(logged(1, kPartly), 0U);
}

TEST_F(ScanStepTest, GivesTheResultOfAScanThatFailedWithoutItems)
{
    fake::framework().scan.result = KorvanResult(12, "10.0.0.1: wrong password");
    const KorvanResult result = scan();
    EXPECT_EQ(result.code, 12U);
    EXPECT_EQ(result.message, "10.0.0.1: wrong password");
}

TEST_F(ScanStepTest, RecordsTheScansOutcome)
{
    fake::framework().scan.result = KorvanResult(13, "");
    scan();
    ASSERT_EQ(fake::framework().summaries.size(), 1U);
    const fake::Summary& summary = fake::framework().summaries[0];
    EXPECT_EQ(summary.outputDir, folder_.path());
    ASSERT_EQ(summary.services.size(), 1U);
    EXPECT_EQ(summary.services[0].action, "scan");
    EXPECT_EQ(summary.services[0].code, 13);
    EXPECT_EQ(summary.services[0].message, "Connection failed.");
    EXPECT_EQ(summary.totals[0].code, 13);
    EXPECT_EQ(summary.totals[0].message, "Connection failed.");
}

TEST_F(ScanStepTest, GoesOnWhenTheTableCannotBePrinted)
{
    scanFinds(1);
    fake::framework().scan.printThrows = true;
    EXPECT_TRUE(scan().succeeded());
    EXPECT_EQ(logged(1, "Failed to save screen print with exception: printer on fire"), 1U);
    EXPECT_EQ(record("Failed to save screen print with exception: printer on fire").source,
              "service/service_runner/service_update_scan_runner");
    EXPECT_EQ(fake::framework().scan.savedPaths.size(), 1U);
}

TEST_F(ScanStepTest, SaysWhenTheTablesFileCannotBeWritten)
{
    scanFinds(1);
    CompareRunner runner(contextWith({}), path("gone"), false);
    SummaryReport summary(path("gone"));
    EXPECT_TRUE(runner.Scan(summary).succeeded());
    EXPECT_EQ(logged(1, "Failed to save screen print with exception: cannot open " + path("gone/scan_result.txt")), 1U);
}

TEST_F(ScanStepTest, LogsAnEmptyPathWhenTheXmlCannotBeSaved)
{
    scanFinds(1);
    fake::framework().scan.saveCode = 11;
    EXPECT_TRUE(scan().succeeded());
    EXPECT_EQ(logged(3, "Scan results saved to: "), 1U);
}

TEST_F(ScanStepTest, EchoesNoEmptyPath)
{
    scanFinds(1);
    fake::framework().scan.saveCode = 11;
    scan({}, true);
    EXPECT_EQ(out(), "scan table\n");
}

TEST_F(ScanStepTest, ReplacesTheTableOfAnEarlierScan)
{
    write("scan_result.txt", "a longer text than the table that comes now\n");
    scanFinds(1);
    scan();
    EXPECT_EQ(content(path("scan_result.txt")), "scan table\n10.0.0.1");
}

TEST_F(ScanStepTest, ShowsTableAndPathOnTheConsoleWithTheScreenFlag)
{
    scanFinds(1);
    EXPECT_TRUE(scan({{"type", "dd"}}, true).succeeded());
    EXPECT_EQ(out(), "scan table\nScan results saved to: " + path("Korvan-update-scan.xml") + "\n");
    EXPECT_FALSE(exists(path("scan_result.txt")));
    EXPECT_TRUE(fake::framework().scan.barGiven);
    EXPECT_EQ(fake::framework().scan.printedTypes, (Texts{"dd"}));
}
} // namespace
