#include "common/BlueHelper.h"

#include "common/module_directory.h"
#include "support/module_test.h"

namespace
{
using Texts = std::vector<std::string>;

class BlueHelperTest : public ModuleTest
{
  protected:
    BlueHelperTest() { fake::framework().systems.blue = 1; }
};

TEST_F(BlueHelperTest, SaysNoWithTarnWhateverElseIsGiven)
{
    EXPECT_FALSE(BlueHelper::IsBLUE(contextWith({{"tarn", ""}, {"bmc", "x"}})));
    EXPECT_TRUE(fake::framework().connections.tried.empty());
    ASSERT_EQ(log_.size(), 1U);
    EXPECT_EQ(log_[0], (LogRecord{4, "", 0, "Entering  BlueHelper::IsBLUE"}));
    EXPECT_EQ(log_[0].source, "Update/common/BlueHelper");
}

TEST_F(BlueHelperTest, DoesNotCheckOtherOutOfBandTargets)
{
    EXPECT_FALSE(BlueHelper::IsBLUE(contextWith({{"esxi", "x"}, {"mt", "7T01"}})));
    EXPECT_EQ(logged(3, "current case does not need check blue"), 1U);
    EXPECT_EQ(log_.back(), (LogRecord{4, "", 0, "Exiting  BlueHelper::IsBLUE"}));
    EXPECT_TRUE(fake::framework().systems.asked.empty());
}

TEST_F(BlueHelperTest, ChecksATargetWithBmcOrPmx)
{
    EXPECT_TRUE(BlueHelper::IsBLUE(contextWith({{"bmc", "x"}, {"mt", "7T01"}})));
    EXPECT_TRUE(BlueHelper::IsBLUE(contextWith({{"pmx", "x"}, {"mt", "7T01"}})));
    EXPECT_EQ(logged(3, "sc.IsBlueSystem(mt) = 1"), 2U);
}

TEST_F(BlueHelperTest, ChecksAnInBandTarget)
{
    fake::framework().connections.mode = kConnectInBand;
    EXPECT_TRUE(BlueHelper::IsBLUE(contextWith({{"mt", "7T01"}})));
    EXPECT_EQ(fake::framework().systems.asked, (Texts{"7T01"}));
}

TEST_F(BlueHelperTest, CountsAnyAnswerButOneAsNotLegacy)
{
    for (const int answer : {0, 2, -1})
    {
        fake::framework().systems.blue = answer;
        EXPECT_FALSE(BlueHelper::IsBLUE(contextWith({{"bmc", "x"}, {"mt", "7T01"}}))) << answer;
    }
    EXPECT_EQ(logged(3, "sc.IsBlueSystem(mt) = -1"), 1U);
    EXPECT_EQ(logged(4, "Exiting  BlueHelper::IsBLUE"), 3U);
}

TEST_F(BlueHelperTest, GivesTheFourListsBesideTheModule)
{
    BlueHelper::IsBLUE(contextWith({{"bmc", "x"}, {"mt", "7T01"}}));
    const std::string directory = GetModuleDirectory(GetSelfModuleHandle());
    ASSERT_FALSE(directory.empty());
    ASSERT_EQ(fake::framework().systems.lists.size(), 1U);
    EXPECT_EQ(fake::framework().systems.lists[0],
              (Texts{directory + "Tolmar_systems_list.txt", directory + "AMD_systems_list.txt",
                     directory + "CFC_systems_list.txt", directory + "Grantly_systems_list.txt"}));
}

TEST_F(BlueHelperTest, TakesTheScannedMachineTypeBeforeTheOption)
{
    fake::framework().scan.loaded.SetMT("7Y41");
    EXPECT_EQ(BlueHelper::GetMt(contextWith({{"scanxml", "a.xml"}, {"mt", "7T01"}})), "7Y41");
    EXPECT_EQ(fake::framework().scan.loadedPaths, (Texts{"a.xml"}));
    EXPECT_EQ(logged(3, "Get mt from scan xml:7Y41"), 1U);
    EXPECT_EQ(logged(3, "--mt:7T01"), 0U);
}

TEST_F(BlueHelperTest, TakesAnEmptyMachineTypeFromAScanThatCannotBeRead)
{
    fake::framework().scan.loadCode = 6;
    EXPECT_EQ(BlueHelper::GetMt(contextWith({{"scanxml", "gone.xml"}, {"mt", "7T01"}})), "");
    EXPECT_EQ(logged(3, "Get mt from scan xml:"), 1U);
}

TEST_F(BlueHelperTest, TakesTheFirstOfSeveralMachineTypes)
{
    EXPECT_EQ(BlueHelper::GetMt(contextWith({{"mt", "7T01,7X20"}})), "7T01");
    EXPECT_EQ(logged(3, "--mt:7T01,7X20"), 1U);
}

TEST_F(BlueHelperTest, SaysNoForAMachineTypeThatBeginsWithAComma)
{
    EXPECT_EQ(BlueHelper::GetMt(contextWith({{"mt", ",7T01"}})), "");
    EXPECT_FALSE(BlueHelper::IsBLUE(contextWith({{"bmc", "x"}, {"mt", ",7T01"}})));
    EXPECT_TRUE(fake::framework().systems.asked.empty());
}

TEST_F(BlueHelperTest, UsesCimAfterRestFailedAndLeavesIpmiAlone)
{
    fake::framework().connections.restCount = 3; // left behind by the failure
    fake::framework().connections.cim = KorvanResult();
    fake::framework().connections.cimCount = 2;
    fake::framework().systems.machineType = "7Z90";
    EXPECT_EQ(BlueHelper::GetMt(contextWith({{"bmc", "x"}})), "7Z90");
    EXPECT_EQ(fake::framework().connections.tried, (Texts{"rest", "cim"}));
    EXPECT_EQ(fake::framework().systems.connections, 2U);
    EXPECT_EQ(logged(3, "try get mt via rest cim or ipmi."), 1U);
    EXPECT_EQ(logged(3, "GetRESTConnectionList:13 Connection failed."), 1U);
    EXPECT_EQ(logged(3, "FetchCIMConnectionList:0 Succeed."), 1U);
    EXPECT_EQ(log_.back(), (LogRecord{4, "", 0, "Exiting  BlueHelper::GetMt"}));
}

TEST_F(BlueHelperTest, UsesIpmiLast)
{
    fake::framework().connections.cimCount = 1;
    fake::framework().connections.ipmi = KorvanResult();
    fake::framework().connections.ipmiCount = 1;
    fake::framework().systems.machineType = "7Z90";
    EXPECT_EQ(BlueHelper::GetMt(contextWith({{"bmc", "x"}})), "7Z90");
    EXPECT_EQ(fake::framework().connections.tried, (Texts{"rest", "cim", "ipmi"}));
    EXPECT_EQ(fake::framework().systems.connections, 1U);
}

TEST_F(BlueHelperTest, SaysNoWhenAllConnectionsFail)
{
    fake::framework().connections.ipmiCount = 1;
    EXPECT_FALSE(BlueHelper::IsBLUE(contextWith({{"bmc", "x"}})));
    EXPECT_EQ(logged(2, "All connection failed."), 1U);
    EXPECT_EQ(logged(4, "Exiting  BlueHelper::GetMt"), 1U);
    EXPECT_TRUE(fake::framework().systems.asked.empty());
}

TEST_F(BlueHelperTest, DoesNotFollowAnEmptyRestListWithCim)
{
    fake::framework().connections.rest = KorvanResult();
    EXPECT_EQ(BlueHelper::GetMt(contextWith({{"bmc", "x"}})), "");
    EXPECT_EQ(fake::framework().connections.tried, (Texts{"rest"}));
    EXPECT_EQ(logged(2, "All connection failed."), 1U);
}

TEST_F(BlueHelperTest, GivesTheFourListsInOrderAlsoToACheckOverConnections)
{
    fake::framework().connections.rest = KorvanResult();
    fake::framework().connections.restCount = 1;
    fake::framework().systems.machineType = "7T01";
    EXPECT_TRUE(BlueHelper::IsBLUE(contextWith({{"bmc", "x"}})));
    ASSERT_EQ(fake::framework().systems.lists.size(), 2U);
    EXPECT_EQ(fake::framework().systems.lists[0], fake::framework().systems.lists[1]);
}

TEST_F(BlueHelperTest, SaysWhenTheTargetGivesNoMachineType)
{
    fake::framework().connections.rest = KorvanResult();
    fake::framework().connections.restCount = 1;
    fake::framework().systems.machineType = "7T01";
    fake::framework().systems.machineTypeError = 2;
    EXPECT_EQ(BlueHelper::GetMt(contextWith({{"bmc", "x"}})), "");
    EXPECT_EQ(logged(1, "GetMachineType Fail"), 1U);
    EXPECT_EQ(logged(4, "Exiting  BlueHelper::GetMt"), 1U);
}
} // namespace
