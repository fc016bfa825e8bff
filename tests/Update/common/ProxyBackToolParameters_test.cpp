#include "common/ProxyBackToolParameters.h"

#include "support/module_test.h"

namespace
{
using Words = std::vector<std::string>;

constexpr char kTwoValues[] = "The command parameters are not vaild!\nA paramter can not carry two values! \n";
constexpr char kNoDashes[] = "The command parameters are not vaild!\nThe korvan paramater should start with  --.\n";

class ParametersTest : public ModuleTest
{
};

Parameters parameters(const Words& words)
{
    Words all = {"korvan", "update", "compare"};
    all.insert(all.end(), words.begin(), words.end());
    return Parameters(static_cast<int>(all.size()), all);
}

TEST_F(ParametersTest, TakesNothingFromFewerThanThreeWords)
{
    const Parameters taken(2, {"korvan", "update"});
    EXPECT_EQ(taken.command, "");
    EXPECT_EQ(taken.subCommand, "");
}

TEST_F(ParametersTest, TakesCommandAndSubCommandFromThreeWords)
{
    const Parameters taken(3, {"korvan", "update", "compare"});
    EXPECT_EQ(taken.command, "update");
    EXPECT_EQ(taken.subCommand, "compare");
    EXPECT_TRUE(taken.CheckShape());
}

TEST_F(ParametersTest, TakesNoMoreWordsThanItsCount)
{
    const Parameters taken(4, {"korvan", "update", "compare", "--mt", "--noscan", "--xml"});
    EXPECT_TRUE(taken.Has("--mt"));
    EXPECT_FALSE(taken.Has("--noscan"));
}

TEST_F(ParametersTest, TakesAllFurtherWordsAsArguments)
{
    EXPECT_TRUE(parameters({"--mt", "7T01"}).Has("--mt"));
}

TEST_F(ParametersTest, GivesTheSameValueWithAnEqualsSignAndAsTheNextWord)
{
    EXPECT_EQ(parameters({"--scope=latest"}).GetValue("--scope"), "latest");
    EXPECT_EQ(parameters({"--scope", "latest"}).GetValue("--scope"), "latest");
}

TEST_F(ParametersTest, KeepsAnEqualsSignInsideAValue)
{
    EXPECT_EQ(parameters({"--dir=a=b=c"}).GetValue("--dir"), "a=b=c");
    EXPECT_EQ(parameters({"--dir", "a=b"}).GetValue("--dir"), "a=b");
}

TEST_F(ParametersTest, TakesNoValueThatBeginsWithADash)
{
    EXPECT_EQ(parameters({"--noscan", "--mt", "7T01"}).GetValue("--noscan"), "");
    EXPECT_EQ(parameters({"--dir", "-x"}).GetValue("--dir"), "");
    EXPECT_EQ(parameters({"--noscan"}).GetValue("--noscan"), "");
    EXPECT_EQ(parameters({}).GetValue("--mt"), "");
}

TEST_F(ParametersTest, TakesTheFirstOfTwoValues)
{
    EXPECT_EQ(parameters({"--mt=1", "--mt=2"}).GetValue("--mt"), "1");
}

TEST_F(ParametersTest, RefusesTwoValueWords)
{
    EXPECT_FALSE(parameters({"--mt", "7T01", "7T02"}).CheckShape());
    EXPECT_EQ(out(), kTwoValues);
}

TEST_F(ParametersTest, RefusesTwoValueWordsFurtherOn)
{
    EXPECT_FALSE(parameters({"--noscan", "--mt", "7T01", "7T02", "--xml"}).CheckShape());
    EXPECT_EQ(out(), kTwoValues);
}

TEST_F(ParametersTest, RefusesAFirstWordWithoutDashes)
{
    EXPECT_FALSE(parameters({"latest"}).CheckShape());
    EXPECT_EQ(out(), kNoDashes);
}

TEST_F(ParametersTest, RefusesAFirstWordWithOneDash)
{
    EXPECT_FALSE(parameters({"-"}).CheckShape());
    EXPECT_FALSE(parameters({"-x"}).CheckShape());
    EXPECT_EQ(out(), std::string(kNoDashes) + kNoDashes);
}

TEST_F(ParametersTest, PassesGoodShapes)
{
    EXPECT_TRUE(parameters({}).CheckShape());
    EXPECT_TRUE(parameters({"--mt"}).CheckShape());
    EXPECT_TRUE(parameters({"--mt", "7T01"}).CheckShape());
    EXPECT_TRUE(parameters({"--mt", "7T01", "--noscan"}).CheckShape());
    EXPECT_TRUE(parameters({"--noscan", "--mt", "7T01"}).CheckShape());
    EXPECT_EQ(out(), "");
}

TEST_F(ParametersTest, RefusesAnOptionOutsideTheTable)
{
    EXPECT_FALSE(parameters({"--mt=7T01", "--pattern=bmc"}).CheckTable({{"--mt", ""}}));
    EXPECT_EQ(out(), "The parameter: --pattern is not supported!\n");
}

TEST_F(ParametersTest, RefusesASingleDashOption)
{
    EXPECT_FALSE(parameters({"--mt", "-m"}).CheckTable({{"--mt", ""}}));
    EXPECT_EQ(out(), "The parameter: -m is not supported!\n");
}

TEST_F(ParametersTest, PassesOptionsOfTheTable)
{
    EXPECT_TRUE(parameters({"--mt", "7T01", "--dir=x"}).CheckTable({{"--mt", ""}, {"--dir", ""}}));
    EXPECT_EQ(out(), "");
}

TEST_F(ParametersTest, RefusesBothNamesOfAPair)
{
    const Parameters::OptionTable table = {{"--a", "--b"}, {"--b", ""}};
    EXPECT_FALSE(parameters({"--a=1", "--b=2"}).CheckTable(table));
    EXPECT_EQ(out(), "Can not set \"--a\" and \"--b\" at the same time.\n");
    EXPECT_TRUE(parameters({"--a=1"}).CheckTable(table));
    EXPECT_TRUE(parameters({"--b=1"}).CheckTable(table));
}

TEST_F(ParametersTest, AnswersForWordsWithThatNameOnly)
{
    const Parameters given = parameters({"--mt=7T01", "--noscanning"});
    EXPECT_TRUE(given.Has("--mt"));
    EXPECT_FALSE(given.Has("--noscan"));
    EXPECT_FALSE(given.Has("--m"));
}

TEST_F(ParametersTest, RefusesToAnswerForNamesThatAreNone)
{
    EXPECT_FALSE(parameters({"--mt"}).Has(""));
    EXPECT_FALSE(parameters({"--mt"}).Has("-"));
    EXPECT_FALSE(parameters({"--mt"}).Has("mt"));
    EXPECT_EQ(out(), " The parameter should not be empty!\n The parameter should start with --!\n"
                     " The parameter should start with --!\n");
}

TEST_F(ParametersTest, RefusesToGiveValuesForNamesThatAreNone)
{
    EXPECT_EQ(parameters({"--mt=1"}).GetValue(""), "");
    EXPECT_EQ(parameters({"--mt=1"}).GetValue("mt"), "");
    EXPECT_EQ(out(), " The parameter should not be empty!\n The parameter should start with dash!\n");
}
} // namespace
