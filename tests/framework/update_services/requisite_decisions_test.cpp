#include "reports.h"

#include "log/log_control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using reports::compare;
using reports::decisions;
using reports::item;
using reports::package;
using reports::query;
using reports::scan;
using service::CompareOptions;
using service::CompareReport;
using testing::ElementsAre;

service::PackageInfo needing(service::PackageInfo info, const std::string& prerequisite)
{
    info.prerequisite = prerequisite;
    return info;
}

const service::UpdateScanReport kOldDevices = scan({item("A", "1.0"), item("B", "1.0"), item("C", "1.0")});

TEST(Requisites, PrerequisitesAreFlashedFirst)
{
    const CompareReport report =
        compare(kOldDevices, query({needing(package("a", "A", "2.0"), "c"), package("b", "B", "1.0"),
                                    needing(package("c", "C", "2.0"), "")}));
    EXPECT_THAT(decisions(report), ElementsAre("selected", "1", "selected"));
    EXPECT_EQ(report.packages[0].flashOrder, 2);
    EXPECT_EQ(report.packages[1].flashOrder, 0);
    EXPECT_EQ(report.packages[2].flashOrder, 1);
    EXPECT_EQ(report.packages[0].alsoSelect, "c");
    EXPECT_EQ(report.packages[2].alsoDeselect, "a");
}

TEST(Requisites, AMissingPrerequisiteTakesTheSelectionFromAllThatNeedIt)
{
    const auto queried = query({needing(package("a", "A", "2.0"), "b"), needing(package("b", "B", "2.0"), "nowhere")});
    CompareReport report = compare(kOldDevices, queried);
    EXPECT_THAT(decisions(report), ElementsAre("13", "12"));
    EXPECT_EQ(report.packages[1].alsoDeselect, "a");
    CompareOptions options;
    options.noReq = true;
    EXPECT_THAT(decisions(compare(kOldDevices, queried, options)), ElementsAre("selected", "selected"));
}

TEST(Requisites, InstalledOrAbsentDevicesMeetARequisite)
{
    EXPECT_THAT(
        decisions(compare(kOldDevices, query({needing(package("a", "A", "2.0"), "b,c,d"), package("b", "B", "1.0"),
                                              package("c", "C", "0.5"), package("d", "D", "1.0")}))),
        ElementsAre("selected", "1", "2", "3"));
}

TEST(Requisites, CorequisitesGoTogether)
{
    auto info = package("a", "A", "2.0");
    info.corequisite = "b";
    auto bound = package("b", "B", "2.0");
    bound.agentlessSupport = "false";
    EXPECT_THAT(decisions(compare(kOldDevices, query({info, package("b", "B", "2.0")}))),
                ElementsAre("selected", "selected"));
    EXPECT_THAT(decisions(compare(kOldDevices, query({info, bound}))), ElementsAre("15", "9"));
    EXPECT_THAT(decisions(compare(kOldDevices, query({info}))), ElementsAre("14"));
}

TEST(Requisites, ASupersedingPackageMeetsThem)
{
    auto newer = package("b2", "B", "3.0");
    newer.supersede = "b1";
    const CompareReport report =
        compare(kOldDevices, query({needing(package("a", "A", "2.0"), "b1"), package("b1", "B", "2.0"), newer}));
    EXPECT_THAT(decisions(report), ElementsAre("selected", "6", "selected"));
    EXPECT_EQ(report.packages[0].flashOrder, 2);
    EXPECT_THAT(decisions(compare(kOldDevices, query({needing(package("a", "A", "2.0"), "b1"), newer}))),
                ElementsAre("selected", "selected"));
}

TEST(Requisites, CirclesAreReportedAndStaySelected)
{
    std::string logged;
    log_control::observe(1, [&logged](int, const std::string&, int, const std::string& text) { logged += text; });
    const CompareReport report =
        compare(kOldDevices, query({needing(package("a", "A", "2.0"), "b"), needing(package("b", "B", "2.0"), "a"),
                                    needing(package("c", "C", "2.0"), "c")}));
    log_control::observe(0, log_control::Observer());
    EXPECT_THAT(decisions(report), ElementsAre("selected", "selected", "selected"));
    EXPECT_EQ(report.packages[0].flashOrder, 1);
    EXPECT_EQ(report.packages[1].flashOrder, 2);
    EXPECT_THAT(logged, testing::HasSubstr("a, b"));
}

TEST(Requisites, PulledInPackagesAreSelectedOnlyWhenNeeded)
{
    auto pulled = package("b", "B", "2.0");
    auto queried = query({needing(package("a", "A", "2.0"), "b"), pulled});
    queried.options.scope = "individual";
    queried.options.includeIds = {"a"};
    EXPECT_THAT(decisions(compare(kOldDevices, queried)), ElementsAre("selected", "selected"));
    EXPECT_THAT(decisions(compare(scan({item("A", "2.0"), item("B", "1.0")}), queried)), ElementsAre("1", "8"));
    queried.options.scope = "velpak";
    queried.options.includeIds.clear();
    queried.packages[0].velpakXml = "pack.xml";
    EXPECT_THAT(decisions(compare(scan({item("A", "2.0"), item("B", "1.0")}), queried)), ElementsAre("1", "7"));
}
} // namespace
