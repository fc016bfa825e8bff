#include "service_option/update_query_adapter.h"

#include "support/module_test.h"

#include <stdexcept>

namespace
{
using Codes = std::vector<std::int32_t>;
using Texts = std::vector<std::string>;

constexpr char kWrongType[] = "Update type is not valid. Valid values: fw/dd/sw/mm/all";

class QueryAdapterTest : public ModuleTest
{
  protected:
    service::QueryOptions converted(const std::map<std::string, std::string>& options)
    {
        EXPECT_EQ(service::adapter::convert_to(contextWith(options), options_).code, 0U);
        return options_;
    }

    service::QueryOptions options_;
};

TEST_F(QueryAdapterTest, KeepsWhatTheScanFoundAndSaysWhatIsMissing)
{
    options_.machineType = "7Y41";
    options_.osType = 402;
    options_.osArch = 0;
    const service::QueryOptions options = converted({});
    EXPECT_EQ(options.machineType, "7Y41");
    EXPECT_EQ(options.osType, 402U);
    EXPECT_EQ(options.osArch, 0U);
    EXPECT_EQ(logged(1, "Need parameter --mt  to specify machine type."), 1U);
    EXPECT_EQ(logged(1, "Need specify machine OS with --ostype parameter."), 1U);
    EXPECT_EQ(logged(1, "Need parameter --osarch to get os architecture, valid value: none/x64/x32."), 1U);
    EXPECT_EQ(logged(3, "--dir no specified, use ./ as query dir."), 1U);
    EXPECT_EQ(log_.front().source, "include/service_option/update_query_adapter");
}

TEST_F(QueryAdapterTest, TracesItsBeginAndEnd)
{
    converted({});
    EXPECT_EQ(log_.front(), (LogRecord{4, "", 0, "Entering  service::adapter::convert_to"}));
    EXPECT_EQ(log_.back(), (LogRecord{4, "", 0, "Exiting  service::adapter::convert_to"}));
}

TEST_F(QueryAdapterTest, LaysTheUsersPlatformOverTheScans)
{
    options_.machineType = "7Y41";
    const service::QueryOptions options = converted({{"mt", "7Z90"}, {"ostype", "RHEL 8"}, {"osarch", "x64"}});
    EXPECT_EQ(options.machineType, "7Z90");
    EXPECT_EQ(options.osType, 212U);
    EXPECT_EQ(options.osArch, 2U);
}

TEST_F(QueryAdapterTest, SetsAllBitsForAnUnknownPlatform)
{
    const service::QueryOptions options = converted({{"ostype", "nosuchos"}, {"osarch", "X64"}});
    EXPECT_EQ(options.osType, 0xFFFFFFFFU);
    EXPECT_EQ(options.osArch, 0xFFFFFFFFU);
}

TEST_F(QueryAdapterTest, TakesTheFlags)
{
    EXPECT_FALSE(converted({}).noReq);
    EXPECT_FALSE(converted({}).ignoreMtOsCheck);
    EXPECT_TRUE(converted({{"noreq", ""}}).noReq);
    EXPECT_TRUE(converted({{"ignoremtoscheck", ""}}).ignoreMtOsCheck);
}

TEST_F(QueryAdapterTest, SplitsIdsAtCommasAndKeepsEmptyPieces)
{
    options_.includeIds = {"old"};
    const service::QueryOptions options = converted({{"includeid", "a,,b"}, {"excludeid", ",c"}});
    EXPECT_EQ(options.includeIds, (Texts{"a", "", "b"}));
    EXPECT_EQ(options.excludeIds, (Texts{"", "c"}));
}

TEST_F(QueryAdapterTest, PutsABackslashBehindTheDirectory)
{
    EXPECT_EQ(converted({{"dir", "C:\\pkgs"}}).queryDir, "C:\\pkgs\\");
    EXPECT_EQ(converted({{"dir", "C:\\pkgs\\"}}).queryDir, "C:\\pkgs\\");
    EXPECT_EQ(converted({{"dir", "pkgs/"}}).queryDir, "pkgs/\\");
    EXPECT_EQ(converted({}).queryDir, ".\\");
}

TEST_F(QueryAdapterTest, ThrowsForAnEmptyDirectory)
{
    try
    {
        service::adapter::convert_to(contextWith({{"dir", ""}}), options_);
        FAIL() << "no exception";
    }
    catch (const std::out_of_range& error)
    {
        EXPECT_STREQ(error.what(), "invalid string position");
    }
}

TEST_F(QueryAdapterTest, LowersTheTypesAndTakesTheirCodes)
{
    const service::QueryOptions options = converted({{"type", "FW,Sw"}});
    EXPECT_EQ(options.typeText, "fw,sw");
    EXPECT_EQ(options.typeCodes, (Codes{1, 12}));
}

TEST_F(QueryAdapterTest, KnowsEveryType)
{
    EXPECT_EQ(converted({{"type", "mm,dd,sw,fw"}}).typeCodes, (Codes{5, 3, 12, 1}));
}

TEST_F(QueryAdapterTest, StopsAtTheTypeAll)
{
    const service::QueryOptions options = converted({{"type", "fw,all,dd,xx"}});
    EXPECT_EQ(options.typeText, "all");
    EXPECT_EQ(options.typeCodes, (Codes{99}));
    EXPECT_EQ(logged(2, kWrongType), 0U);
}

TEST_F(QueryAdapterTest, SaysEachWrongTypeAndGoesOn)
{
    const service::QueryOptions options = converted({{"type", "fw,,xx"}});
    EXPECT_EQ(options.typeCodes, (Codes{1}));
    EXPECT_EQ(logged(2, kWrongType), 2U);
}

TEST_F(QueryAdapterTest, TakesFirmwareDriversAndMmWithoutATypeOption)
{
    options_.typeCodes = {12};
    const service::QueryOptions options = converted({});
    EXPECT_EQ(options.typeText, "fw,dd,mm");
    EXPECT_EQ(options.typeCodes, (Codes{12, 1, 3, 5}));
}

TEST_F(QueryAdapterTest, QueriesEverythingAtTheLatestLevelForListedMachineTypes)
{
    for (const char* machineType : {"7893", "8721", "8724", "7X20", "7X22", "7X81", "7X85"})
    {
        options_ = service::QueryOptions();
        const service::QueryOptions options = converted({{"mt", machineType}, {"type", "fw"}});
        EXPECT_EQ(options.scope, "latest") << machineType;
        EXPECT_EQ(options.typeText, "all") << machineType;
        EXPECT_EQ(options.typeCodes, (Codes{99})) << machineType;
    }
    EXPECT_TRUE(fake::framework().velpak.directories.empty());
}

TEST_F(QueryAdapterTest, ComparesMachineTypesLetterByLetter)
{
    const service::QueryOptions options = converted({{"mt", "7x20"}, {"type", "fw"}});
    EXPECT_EQ(options.typeText, "fw");
    EXPECT_EQ(options.typeCodes, (Codes{1}));
    EXPECT_EQ(fake::framework().velpak.directories.size(), 1U);
}

TEST_F(QueryAdapterTest, MergesForcedIdsIntoTheIncludedOnesOnce)
{
    const service::QueryOptions options = converted({{"forceid", "all,ABC"}, {"includeid", "ABC"}});
    EXPECT_EQ(options.includeIds, (Texts{"ABC"}));
    EXPECT_EQ(options.forceIds, (Texts{"all", "ABC"}));
    EXPECT_TRUE(options.forceAll);
}

TEST_F(QueryAdapterTest, AddsAForcedIdOnlyOnce)
{
    const service::QueryOptions options = converted({{"forceid", "X,X,x"}});
    EXPECT_EQ(options.includeIds, (Texts{"X", "x"}));
    EXPECT_FALSE(options.forceAll);
}

TEST_F(QueryAdapterTest, TakesTheUsersScopeWhateverItIs)
{
    EXPECT_EQ(converted({{"scope", "everything"}, {"includeid", "A"}}).scope, "everything");
    EXPECT_EQ(converted({{"scope", ""}}).scope, "");
    EXPECT_EQ(converted({{"scope", "individual"}, {"mt", "7X20"}}).scope, "individual");
    EXPECT_TRUE(fake::framework().velpak.directories.empty());
}

TEST_F(QueryAdapterTest, TakesTheUpdatePackForIncludedIdsWithoutAsking)
{
    EXPECT_EQ(converted({{"includeid", "A"}}).scope, "velpak");
    EXPECT_TRUE(fake::framework().velpak.directories.empty());
}

TEST_F(QueryAdapterTest, AsksTheUpdatePackSupportOtherwise)
{
    options_.machineType = "7Y41";
    options_.osType = 402;
    options_.osArch = 0;
    options_.osMinorVersion = "3";
    fake::framework().velpak.supported = true;
    EXPECT_EQ(converted({{"dir", "pkgs"}}).scope, "velpak");
    const fake::Velpak& asked = fake::framework().velpak;
    ASSERT_EQ(asked.systems.size(), 1U);
    EXPECT_EQ(asked.systems[0].osType, 402U);
    EXPECT_EQ(asked.systems[0].osArch, 0U);
    EXPECT_EQ(asked.systems[0].minorVersion, "3");
    EXPECT_EQ(asked.machineType, "7Y41");
    EXPECT_EQ(asked.directories, (Texts{"pkgs\\"}));

    fake::framework().velpak.supported = false;
    EXPECT_EQ(converted({{"dir", "pkgs"}}).scope, "latest");
}

TEST_F(QueryAdapterTest, AsksForASecondPlatformWithAPmx2Controller)
{
    options_.osType = 402;
    options_.osArch = 2;
    options_.osMinorVersion = "3";
    options_.bmcType = "PMX2";
    converted({});
    EXPECT_EQ(fake::framework().velpak.systems.size(), 2U);
    options_.bmcType = "pmx2";
    converted({});
    const std::vector<XModule::OSInfo>& systems = fake::framework().velpak.systems;
    ASSERT_EQ(systems.size(), 2U);
    EXPECT_EQ(systems[1].osType, 208U);
    EXPECT_EQ(systems[1].osArch, 2U);
    EXPECT_EQ(systems[1].minorVersion, "");
}

TEST_F(QueryAdapterTest, AsksForOnePlatformWithAnotherControllerOrSystem)
{
    options_.osType = 402;
    options_.bmcType = "PMX3";
    converted({});
    EXPECT_EQ(fake::framework().velpak.systems.size(), 1U);
    options_.osType = 212;
    options_.bmcType = "PMX2";
    converted({});
    EXPECT_EQ(fake::framework().velpak.systems.size(), 1U);
}

TEST_F(QueryAdapterTest, TakesTheUpdatePackWhenTheCheckThrows)
{
    fake::framework().velpak.throws = true;
    EXPECT_EQ(converted({}).scope, "velpak");
    EXPECT_EQ(logged(1, "failed to check if support VELPAK"), 1U);
}

TEST_F(QueryAdapterTest, WarnsOfAnIndividualScopeWithoutIdsThatTheCallerSet)
{
    constexpr char kWarning[] =
        "The update scope is individual, it needs to specify update ids with --includeid or --forceid.";
    converted({{"scope", "individual"}}); // the option is read after the check
    EXPECT_EQ(logged(2, kWarning), 0U);
    options_.scope = "individual";
    converted({{"scope", "latest"}, {"forceid", "A"}}); // forced ids are merged after the check
    EXPECT_EQ(logged(2, kWarning), 1U);
    options_.scope = "individual";
    converted({{"scope", "latest"}, {"includeid", "A"}});
    EXPECT_EQ(logged(2, kWarning), 1U);
}
} // namespace
