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
    const std::filesystem::path folder = std::filesystem::current_path();
    const std::string here = folder.string();
    const std::string root = folder.root_path().string();
    EXPECT_EQ(KorvanDirectory::GetFullPath("a/./b/../c/"), (folder / "a" / "c").string());
    EXPECT_EQ(KorvanDirectory::GetFullPath("/x/../../y"), root + "y");
    EXPECT_EQ(KorvanDirectory::GetFullPath("."), here);
    EXPECT_EQ(KorvanDirectory::GetFullPath(""), here);
    EXPECT_EQ(KorvanDirectory::GetFullPath("/"), root);
}

TEST(ProgramDirectory, HoldsTheRunningProgram)
{
    EXPECT_TRUE(std::filesystem::exists(programDirectory() + "/directory_test" + KORVAN_PROGRAM_ENDING));
}
