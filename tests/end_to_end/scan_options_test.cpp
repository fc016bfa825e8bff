#include "end_to_end/fleet_fixture.h"
#include "end_to_end/names.h"

namespace
{
using namespace end_to_end;

class ScanOptions : public FleetFixture
{
  protected:
    std::size_t scannedItems(const std::string& name) const
    {
        const std::string report = readFile(tree_.file("out/SUCCESS-" + folder(name) + "/Korvan-update-scan.xml"));
        std::size_t found = 0;
        for (std::size_t at = report.find("<ITEM>"); at != std::string::npos; at = report.find("<ITEM>", at + 1))
        {
            ++found;
        }
        return found;
    }

    std::string log() const { return readFile(tree_.file("out/korvan.log")); }
};
} // namespace

TEST_F(ScanOptions, IoBayNarrowsTheScanOfAChassis)
{
    serve({"rack-a"});
    const ProcessOutcome bay = compare({"--cmm", login("rack-a"), "--iobay", "4"});
    EXPECT_EQ(bay.exitStatus, 0) << bay.out << bay.err;
    EXPECT_EQ(scannedItems("rack-a"), 1U);
    const ProcessOutcome wrong = compare({"--cmm", login("rack-a"), "--iobay", "x7"});
    EXPECT_EQ(wrong.exitStatus, 5);
    EXPECT_THAT(wrong.err, HasSubstr("--iobay"));
}

TEST_F(ScanOptions, CheckdeviceNamesTheDevicesThatItRefuses)
{
    serve({"blade-c"});
    compare({"--bmc", login("blade-c")});
    EXPECT_THAT(log(), Not(HasSubstr("says that it cannot be updated")));
    compare({"--bmc", login("blade-c"), "--checkdevice"});
    EXPECT_THAT(log(), HasSubstr("says that it cannot be updated"));
}

TEST_F(ScanOptions, TarnTakesALegacySystemForACurrentOne)
{
    serve({"rack-a"});
    tree_.write("../bin/Tolmar_systems_list.txt", "7Y41\n");
    const ProcessOutcome current = compare({"--bmc", login("rack-a"), "--tarn"});
    EXPECT_EQ(current.exitStatus, 0) << current.out << current.err;
    EXPECT_THAT(log(), AllOf(Not(HasSubstr("is a legacy system")), Not(HasSubstr("GetRESTConnectionList"))));
    // Of such a target the machine type is not asked for before the scan.
    const ProcessOutcome host = compare({"--esxi", login("rack-a")});
    EXPECT_EQ(host.exitStatus, 0) << host.out;
    EXPECT_THAT(log(), HasSubstr("machine type 7Y41 is a legacy system"));
    const ProcessOutcome legacy = compare({"--bmc", login("rack-a")});
    EXPECT_EQ(legacy.exitStatus, 58);
    EXPECT_THAT(legacy.out, HasSubstr("out-of-band update against an older system"));
}
