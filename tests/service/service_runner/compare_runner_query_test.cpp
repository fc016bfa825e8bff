#include "service_runner/service_update_compare_runner.h"

#include "support/module_test.h"

namespace
{
using Texts = std::vector<std::string>;

class QueryStepTest : public ModuleTest
{
  protected:
    QueryStepTest()
    {
        service::UpdateScanReport& scanned = fake::framework().scan.report;
        scanned.SetMT("7Y41");
        scanned.SetOS("platform");
        scanned.SetArch("none");
        scanned.SetOSMinorVersion("3");
        scanned.SetBmcType("PMX3");
    }

    // Runs scan and query as the whole flow does.
    KorvanResult query(const std::map<std::string, std::string>& options)
    {
        CompareRunner runner(contextWith(options), folder_.path(), false);
        SummaryReport summary(folder_.path());
        runner.Scan(summary);
        const KorvanResult result = runner.Query(summary);
        summary.GenerateReportFile();
        return result;
    }

    static const service::QueryOptions& asked() { return fake::framework().query.options.at(0); }
};

TEST_F(QueryStepTest, AsksForWhatTheScanFound)
{
    EXPECT_TRUE(query({}).succeeded());
    EXPECT_EQ(asked().machineType, "7Y41");
    EXPECT_EQ(asked().osType, 402U);
    EXPECT_EQ(asked().osArch, 0U);
    EXPECT_EQ(asked().osMinorVersion, "3");
    EXPECT_EQ(asked().bmcType, "PMX3");
    EXPECT_FALSE(asked().remote);
    EXPECT_FALSE(asked().backup);
}

TEST_F(QueryStepTest, LetsTheUsersOptionsReplaceTheScans)
{
    query({{"mt", "7Z90"}, {"ostype", "win2022"}, {"osarch", "x64"}});
    EXPECT_EQ(asked().machineType, "7Z90");
    EXPECT_EQ(asked().osType, 116U);
    EXPECT_EQ(asked().osArch, 2U);
}

TEST_F(QueryStepTest, KeepsTheInitialPlatformWithNoScan)
{
    query({{"noscan", ""}});
    EXPECT_EQ(asked().machineType, "");
    EXPECT_EQ(asked().osType, 0xFFFFFFFFU);
    EXPECT_EQ(asked().osArch, 0xFFFFFFFFU);
    EXPECT_EQ(asked().osMinorVersion, "");
    EXPECT_EQ(asked().bmcType, "");
}

TEST_F(QueryStepTest, TakesThePlatformFromTheOptionsWithNoScan)
{
    query({{"noscan", ""}, {"mt", "7Z90"}, {"ostype", "platform"}, {"osarch", "none"}});
    EXPECT_EQ(asked().machineType, "7Z90");
    EXPECT_EQ(asked().osType, 402U);
    EXPECT_EQ(asked().osArch, 0U);
}

TEST_F(QueryStepTest, LoadsAQueryFileAndRunsNothingElse)
{
    EXPECT_TRUE(query({{"queryxml", "q.xml"}, {"noscan", ""}}).succeeded());
    EXPECT_EQ(fake::framework().query.loadedPaths, (Texts{"q.xml"}));
    EXPECT_EQ(fake::framework().query.runs, 0);
    EXPECT_EQ(fake::framework().scan.runs, 0);
    EXPECT_TRUE(fake::framework().query.savedPaths.empty());
}

TEST_F(QueryStepTest, GivesTheResultOfAQueryFileThatCannotBeLoaded)
{
    fake::framework().query.loadResult = KorvanResult(6, "q.xml is missing");
    const KorvanResult result = query({{"queryxml", "q.xml"}});
    EXPECT_EQ(result.code, 6U);
    EXPECT_EQ(result.message, "q.xml is missing");
    EXPECT_EQ(logged(1, "query failed"), 0U);
}

TEST_F(QueryStepTest, SetsTheRemoteFlagForEachConnectionOption)
{
    for (const char* name : {"pmx", "bmc", "esxi", "cmm", "smm"})
    {
        fake::framework().query.options.clear();
        query({{name, "x"}});
        EXPECT_TRUE(asked().remote) << name;
    }
    fake::framework().query.options.clear();
    query({{"local", "x"}});
    EXPECT_FALSE(asked().remote);
}

TEST_F(QueryStepTest, SetsTheRemoteFlagForTwoConnectionOptions)
{
    query({{"bmc", "x"}, {"smm", "y"}});
    EXPECT_TRUE(asked().remote);
}

TEST_F(QueryStepTest, SetsTheBackupFlag)
{
    query({{"backup", ""}});
    EXPECT_TRUE(asked().backup);
}

TEST_F(QueryStepTest, SaysWhereTheResultIsStored)
{
    query({});
    EXPECT_EQ(fake::framework().query.savedPaths, (Texts{path("Korvan-update-query.xml")}));
    EXPECT_EQ(logged(3, "Querying updates done, the result is stored to " + path("Korvan-update-query.xml")), 1U);
    EXPECT_EQ(out(), "");
}

TEST_F(QueryStepTest, SaysThatTheQueryFailed)
{
    fake::framework().query.result = KorvanResult(0x10068);
    EXPECT_EQ(query({}).code, 0x10068U);
    EXPECT_EQ(logged(1, "query failed"), 1U);
    EXPECT_EQ(record("query failed").source, "service/service_runner/service_update_compare_runner");
    EXPECT_TRUE(fake::framework().query.savedPaths.empty());
}

TEST_F(QueryStepTest, FailsWhenTheResultCannotBeSaved)
{
    fake::framework().query.saveCode = 11;
    const KorvanResult result = query({});
    EXPECT_EQ(result.code, 11U);
    EXPECT_EQ(result.message, "Failed to write file.");
    EXPECT_EQ(logged(1, "Save query result to xml failed."), 1U);
}

TEST_F(QueryStepTest, RecordsItsOutcomeUnderItsOwnName)
{
    fake::framework().query.result = KorvanResult(0x10068, "");
    query({});
    const fake::Summary& summary = fake::framework().summaries.back();
    ASSERT_EQ(summary.services.size(), 1U);
    EXPECT_EQ(summary.services[0].action, "query");
    EXPECT_EQ(summary.services[0].code, 0x10068);
    EXPECT_EQ(summary.services[0].message,
              "No applicable update available on the repository for specified machine-type/OS.");
}

TEST_F(QueryStepTest, LetsAnEmptyDirectoryLeaveAsAnException)
{
    EXPECT_THROW(query({{"dir", ""}}), std::out_of_range);
}
} // namespace
