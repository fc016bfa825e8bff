#include "directory/program_directory.h"
#include "global_config.h"
#include "global_config/config_items.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

namespace
{
std::string find(const std::string& content, const std::string& name)
{
    std::string value = "left alone";
    return global_config::findItem(content, name, value) ? value : "none: " + value;
}
} // namespace

TEST(ConfigItems, FindsAValueWithBlanksAroundIt)
{
    EXPECT_EQ(find("# head\n\nA = 1\n  PATH=\t/opt/some tool/run  \r\nB=2", "PATH"), "/opt/some tool/run");
    EXPECT_EQ(find("A=", "A"), "");
    EXPECT_EQ(find("A=b=c", "A"), "b=c");
}

TEST(ConfigItems, LeavesTheValueAloneWhenThereIsNone)
{
    EXPECT_EQ(find("A=1", "a"), "none: left alone");
    EXPECT_EQ(find("#A=1\n # A=1\nA", "A"), "none: left alone");
}

TEST(ConfigItems, CutsCommentsButNoHashInsideAWord)
{
    EXPECT_EQ(find("A = x # note", "A"), "x");
    EXPECT_EQ(find("A = /x#y", "A"), "/x#y");
}

TEST(ConfigItems, TakesTheLastOfSeveralLines)
{
    EXPECT_EQ(find("A=1\nA=2", "A"), "2");
}

TEST(ConfigItems, SkipsAByteOrderMark)
{
    EXPECT_EQ(find("\xEF\xBB\xBF"
                   "A=1",
                   "A"),
              "1");
}

TEST(GlobalConfig, ReadsTheFileBesideTheProgram)
{
    const std::string path = programDirectory() + "/global.config";
    std::remove(path.c_str());
    std::string value = "before";
    EXPECT_EQ(XModule::GlobalConfig::GetConfigItem("KORVAN_TEST_ITEM", value), 1);
    EXPECT_EQ(value, "before");
    std::ofstream(path) << "KORVAN_TEST_ITEM = here\n";
    EXPECT_EQ(XModule::GlobalConfig::GetConfigItem("KORVAN_TEST_ITEM", value), 0);
    EXPECT_EQ(value, "here");
    EXPECT_EQ(XModule::GlobalConfig::GetConfigItem("KORVAN_OTHER_ITEM", value), 1);
    std::remove(path.c_str());
}
