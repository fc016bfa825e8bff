#include "reports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace
{
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::string scanTable(const std::string& type)
{
    auto driver = reports::item("D-1", "1.0");
    driver.category = "Driver";
    auto firmware = reports::item("F-1", "2.0");
    firmware.slotNumber = "3";
    firmware.slotType = "0";
    std::ostringstream out;
    service::SerializeScanReport::PrintResult(reports::scan({driver, firmware}), out, type);
    return out.str();
}

TEST(ReportTables, TheScanIsNarrowedByType)
{
    EXPECT_THAT(scanTable("all"), AllOf(HasSubstr("D-1"), HasSubstr("F-1"), HasSubstr("Onboard")));
    EXPECT_THAT(scanTable("FW, mm"), AllOf(Not(HasSubstr("D-1")), HasSubstr("F-1")));
    EXPECT_THAT(scanTable("dd"), AllOf(HasSubstr("D-1"), Not(HasSubstr("F-1"))));
    EXPECT_THAT(scanTable("sw"), AllOf(Not(HasSubstr("D-1")), Not(HasSubstr("F-1"))));
}

TEST(ReportTables, TheComparisonShowsDecisionsAndVerboseTheirGrounds)
{
    const auto report =
        reports::compare(reports::scan({reports::item("A", "1.0"), reports::item("B", "2.0")}),
                         reports::query({reports::package("pa", "A", "2.0"), reports::package("pb", "B", "2.0")}));
    std::ostringstream brief;
    service::SerializeCompareReport::PrintResult(report, brief, false);
    EXPECT_THAT(brief.str(), AllOf(HasSubstr("pa"), HasSubstr("YES"), HasSubstr("NO"), HasSubstr("1-The installed"),
                                   Not(HasSubstr("Flash Order"))));
    std::ostringstream verbose;
    service::SerializeCompareReport::PrintResult(report, verbose, true);
    EXPECT_THAT(verbose.str(), AllOf(HasSubstr("Flash Order"), HasSubstr("newer"), HasSubstr("same")));
}
} // namespace
