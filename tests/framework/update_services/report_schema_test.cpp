#include "reports.h"

#include "repository/repository.h"
#include "support/process.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace
{
const std::string kSource = KORVAN_SOURCE_DIR;

test_support::ProcessOutcome validate(const std::string& schema, const std::string& file)
{
    return test_support::runProcess("/usr/bin/xmllint",
                                    {"--noout", "--nonet", "--schema", kSource + "/docs/" + schema, file});
}

// Real reports: what the samples give for one server of theirs.
class ReportSchemas : public testing::Test
{
  protected:
    void SetUp() override
    {
        ASSERT_TRUE(std::filesystem::exists("/usr/bin/xmllint")) << "xmllint (package libxml2-utils) is not installed";
        scan_ = reports::scan({reports::item("UEFI-7Y41", "2.30"), reports::item("PMX3-FW", "5.02"),
                               reports::item("NIC-2510-FW", "22.41.1000"), reports::item("NIC-10GT-FW", "N/A")});
        service::QueryOptions options = reports::query({}).options;
        options.queryDir = kSource + "/samples/repository\\";
        options.includeIds = {"krv_fw_uefi_7y41_2.40_platform"};
        const KorvanResult result = service::ServiceUpdateQuery(options).RunQuery(query_);
        ASSERT_TRUE(result.succeeded()) << result.message;
    }

    void expectValid(const std::string& schema, const std::string& file)
    {
        const test_support::ProcessOutcome outcome = validate(schema, file);
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    }

    std::string path(const std::string& name) const { return folder_.path() + "/" + name; }

    test_support::ScratchFolder folder_;
    service::UpdateScanReport scan_;
    service::QueryReport query_;
};

TEST_F(ReportSchemas, ScanQueryAndCompareReportsFit)
{
    ASSERT_EQ(service::SerializeScanReport::SaveToXml(scan_, path("scan.xml")), 0);
    expectValid("scan.xsd", path("scan.xml"));
    ASSERT_EQ(query_.SaveToXml(path("query.xml")), 0);
    expectValid("query.xsd", path("query.xml"));
    const service::CompareReport report = reports::compare(scan_, query_);
    ASSERT_TRUE(service::SerializeCompareReport::SaveToXml(report, path("compare.xml")).succeeded());
    expectValid("compare.xsd", path("compare.xml"));
    EXPECT_NE(validate("compare.xsd", path("scan.xml")).exitStatus, 0);
}

TEST_F(ReportSchemas, EmptyReportsFit)
{
    ASSERT_EQ(service::SerializeScanReport::SaveToXml(service::UpdateScanReport(), path("scan.xml")), 0);
    expectValid("scan.xsd", path("scan.xml"));
    ASSERT_EQ(service::QueryReport().SaveToXml(path("query.xml")), 0);
    expectValid("query.xsd", path("query.xml"));
    ASSERT_TRUE(service::SerializeCompareReport::SaveToXml(service::CompareReport(), path("compare.xml")).succeeded());
    expectValid("compare.xsd", path("compare.xml"));
}

TEST_F(ReportSchemas, TheSampleDescriptorsFit)
{
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kSource + "/samples/repository"))
    {
        if (entry.path().extension() == ".xml")
        {
            expectValid("package.xsd", entry.path().string());
            ++count;
        }
    }
    EXPECT_EQ(count, 17U);
}

TEST_F(ReportSchemas, TheSamplesGiveTheDecisionsThatTheyAreMadeFor)
{
    const service::CompareReport report = reports::compare(scan_, query_);
    std::string decided;
    for (const service::ComparedPackage& package : report.packages)
    {
        if (package.outcome != service::VersionOutcome::NotDetected)
        {
            decided += package.package.updateId + " " + std::to_string(package.flashOrder) + " " +
                       package.unselectedReason.substr(0, 1) + "\n";
        }
    }
    EXPECT_EQ(decided, "krv_fw_nic10gt_8.50_platform 0 4\n"
                       "krv_fw_nic2510_22.41.1000_platform 0 1\n"
                       "krv_fw_pmx3_5.10_platform 1 \n"
                       "krv_fw_uefi_7y41_2.40_platform 0 6\n"
                       "krv_fw_uefi_7y41_2.42_platform 2 \n");
}
} // namespace
