#include "directory/program_directory.h"
#include "korvan_directory.h"

#include <gtest/gtest.h>

#include <filesystem>

TEST(KorvanDirectory, RemembersTheOutputDirectory)
{
    EXPECT_EQ(KorvanDirectory::getOutputDir(), "");
    KorvanDirectory::setOutputDir("/somewhere");
    EXPECT_EQ(KorvanDirectory::getOutputDir(), "/somewhere");
    KorvanDirectory::setOutputDir("");
}

TEST(KorvanDirectory, MakesPathsAbsoluteAndPlain)
{
    const std::string here = std::filesystem::current_path().string();
    EXPECT_EQ(KorvanDirectory::GetFullPath("a/./b/../c/"), here + "/a/c");
    EXPECT_EQ(KorvanDirectory::GetFullPath("/x/../../y"), "/y");
    EXPECT_EQ(KorvanDirectory::GetFullPath("."), here);
    EXPECT_EQ(KorvanDirectory::GetFullPath(""), here);
    EXPECT_EQ(KorvanDirectory::GetFullPath("/"), "/");
}

TEST(ProgramDirectory, HoldsTheRunningProgram)
{
    EXPECT_TRUE(std::filesystem::exists(programDirectory() + "/directory_test"));
}
