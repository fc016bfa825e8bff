#include "service/update_query.h"

#include "../repository/descriptor_text.h"
#include "log/log_control.h"
#include "repository/repository.h"
#include "support/scratch_folder.h"
#include "target_run/target_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

namespace
{
using service::QueryOptions;
using service::QueryReport;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class UpdateQuery : public testing::Test
{
  protected:
    UpdateQuery()
    {
        options_.machineType = "7Y41";
        options_.osType = 402;
        options_.osArch = 2;
        options_.scope = "latest";
        options_.typeCodes = {99};
        options_.typeText = "all";
        options_.queryDir = folder_.path() + "\\";
    }

    ~UpdateQuery() override { repository::Repository::forget(); }

    descriptor_text::Package& add(const std::string& id)
    {
        packages_.emplace_back();
        packages_.back().id = id;
        packages_.back().softwareId = id;
        packages_.back().component = id;
        return packages_.back();
    }

    KorvanResult run()
    {
        repository::Repository::forget();
        for (const descriptor_text::Package& package : packages_)
        {
            folder_.write(package.id + ".xml", descriptor_text::text(package));
        }
        result_ = service::ServiceUpdateQuery(options_).RunQuery(report_);
        return result_;
    }

    std::vector<std::string> ids()
    {
        run();
        std::vector<std::string> result;
        for (const service::PackageInfo& package : report_.packages)
        {
            result.push_back(package.updateId);
        }
        return result;
    }

    test_support::ScratchFolder folder_;
    QueryOptions options_;
    QueryReport report_;
    KorvanResult result_;
    std::deque<descriptor_text::Package> packages_;
};

TEST_F(UpdateQuery, TakesWhatFitsTheMachineTypeSystemAndArchitecture)
{
    add("any").machineTypes = "<MACHINETYPE>*</MACHINETYPE>";
    add("mine");
    add("other_mt").machineTypes = "<MACHINETYPE>7X20</MACHINETYPE>";
    add("other_os").systems = "<OS>rhel8</OS>";
    add("other_arch").archs = "<ARCH>x32</ARCH>";
    add("star_os").systems = "<OS>*</OS>";
    EXPECT_THAT(ids(), ElementsAre("any", "mine", "star_os"));
    EXPECT_EQ(report_.options.machineType, "7Y41");
    options_.ignoreMtOsCheck = true;
    EXPECT_THAT(ids(), ElementsAre("any", "mine", "other_mt", "other_os", "star_os"));
}

TEST_F(UpdateQuery, IdsThatNoPackageHasAreToldForTheRun)
{
    target_run::takeRunRemarks();
    add("a");
    add("b").machineTypes = "<MACHINETYPE>7X20</MACHINETYPE>";
    options_.excludeIds = {"a", "", " nope1", "b"};
    options_.forceIds = {"b", "nope2", "nope3"};
    EXPECT_THAT(ids(), ElementsAre("a"));
    EXPECT_THAT(target_run::takeRunRemarks(),
                ElementsAre(AllOf(HasSubstr("--excludeid"), HasSubstr(folder_.path() + " has"), HasSubstr(": nope1;")),
                            AllOf(HasSubstr("--forceid"), HasSubstr(": nope2, nope3;"))));
    options_.forceAll = true;
    options_.excludeIds.clear();
    options_.includeIds = {"nope4"};
    EXPECT_THAT(ids(), ElementsAre("a"));
    EXPECT_THAT(target_run::takeRunRemarks(), ElementsAre(AllOf(HasSubstr("--includeid"), HasSubstr(": nope4;"))));
}

TEST_F(UpdateQuery, TypesNarrowIt)
{
    add("a");
    add("b").type = "dd";
    add("c").type = "mm";
    add("d").type = "sw";
    options_.typeCodes = {1, 5};
    EXPECT_THAT(ids(), ElementsAre("a", "c"));
    options_.typeCodes = {12};
    EXPECT_THAT(ids(), ElementsAre("d"));
    options_.includeIds = {"b", ""};
    EXPECT_THAT(ids(), ElementsAre("b", "d"));
}

TEST_F(UpdateQuery, LatestKeepsTheNewestOfEachComponent)
{
    for (const char* version : {"1.9", "1.10", "1.2"})
    {
        descriptor_text::Package& package = add(std::string("uefi") + version);
        package.softwareId = "UEFI";
        package.component = "UEFI";
        package.version = version;
    }
    add("other");
    EXPECT_THAT(ids(), ElementsAre("other", "uefi1.10"));
    options_.includeIds = {"uefi1.2"};
    EXPECT_THAT(ids(), ElementsAre("other", "uefi1.10", "uefi1.2"));
    options_.includeIds.clear();
    options_.excludeIds = {"uefi1.10"};
    EXPECT_THAT(ids(), ElementsAre("other", "uefi1.10", "uefi1.9"));
}

TEST_F(UpdateQuery, LatestKeepsAPackageThatSupersedesANewerOne)
{
    for (const char* version : {"8.5", "8.40", "8.3"})
    {
        descriptor_text::Package& package = add(std::string("nic") + version);
        package.softwareId = "NIC";
        package.component = "NIC";
        package.version = version;
        package.extra = std::string(version) == "8.5" ? "<SUPERSEDE>nic8.40</SUPERSEDE>" : "";
    }
    EXPECT_THAT(ids(), ElementsAre("nic8.40", "nic8.5"));
}

TEST_F(UpdateQuery, LatestKeepsWhatItCannotOrder)
{
    for (const char* version : {"1.9", "EPK9"})
    {
        descriptor_text::Package& package = add(std::string("uefi") + version);
        package.softwareId = "UEFI";
        package.component = "UEFI";
        package.version = version;
    }
    EXPECT_THAT(ids(), ElementsAre("uefi1.9", "uefiEPK9"));
}

TEST_F(UpdateQuery, VelpakTakesThePackAndTheIncludedIds)
{
    add("a");
    add("b");
    add("c");
    options_.scope = "velpak";
    options_.includeIds = {"c"};
    EXPECT_THAT(ids(), ElementsAre("c"));
    folder_.write("pack.xml", descriptor_text::velpak("p", "7Y41", "platform", "<UPDATEID>b</UPDATEID>"));
    EXPECT_THAT(ids(), ElementsAre("b", "c"));
    EXPECT_EQ(report_.packages[0].velpakXml, "pack.xml");
    EXPECT_EQ(report_.packages[1].velpakXml, "");
}

TEST_F(UpdateQuery, VelpakOfThePlatformOfThatControllerMayBeMadeForRhel6)
{
    add("a").systems = "<OS>rhel6</OS>";
    folder_.write("pack.xml", descriptor_text::velpak("p", "7Y41", "rhel6", "<UPDATEID>a</UPDATEID>"));
    options_.scope = "velpak";
    EXPECT_THAT(ids(), ElementsAre());
    options_.bmcType = "pmx2";
    EXPECT_THAT(ids(), ElementsAre("a"));
}

TEST_F(UpdateQuery, IndividualTakesTheIncludedIdsAndWhatTheyNeed)
{
    add("a").extra = "<PREREQUISITE>b</PREREQUISITE>";
    add("b").extra = "<COREQUISITE>c</COREQUISITE>";
    add("c").extra = "<REQUISITE>a</REQUISITE>";
    add("d");
    options_.scope = "individual";
    options_.includeIds = {"a"};
    EXPECT_THAT(ids(), ElementsAre("a", "b", "c"));
    options_.noReq = true;
    EXPECT_THAT(ids(), ElementsAre("a"));
}

TEST_F(UpdateQuery, FailuresNameWhatIsWrong)
{
    add("a");
    options_.scope = "weekly";
    EXPECT_EQ(run().code, 5U);
    EXPECT_THAT(result_.message, HasSubstr("weekly"));
    options_.scope = "latest";
    options_.machineType = "0000";
    EXPECT_EQ(run().code, 0x10068U);
    EXPECT_THAT(result_.message, AllOf(HasSubstr("No applicable update"), HasSubstr("0000"), HasSubstr("platform"),
                                       HasSubstr(folder_.path())));
    options_.queryDir = folder_.path() + "/none\\";
    EXPECT_EQ(run().code, 38U);
    EXPECT_THAT(result_.message, HasSubstr(options_.queryDir));
}

TEST_F(UpdateQuery, AnUnknownIncludedIdFailsOnlyWhenNothingElseApplies)
{
    add("a");
    options_.includeIds = {"nowhere"};
    std::string logged;
    log_control::observe(2, [&logged](int level, const std::string&, int, const std::string& text)
                         { logged += std::to_string(level) + text; });
    EXPECT_TRUE(run().succeeded());
    log_control::observe(0, log_control::Observer());
    EXPECT_THAT(logged, HasSubstr("2Update package not found: nowhere"));
    options_.scope = "individual";
    EXPECT_EQ(run().code, 0x10069U);
    EXPECT_THAT(result_.message, HasSubstr("nowhere"));
}
} // namespace
