#include "common/module_directory.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace
{
TEST(ModuleDirectory, OfTheProgramEndsInASeparator)
{
    const std::string directory = GetModuleDirectory(nullptr);
    ASSERT_FALSE(directory.empty());
    EXPECT_EQ(directory.back(), std::filesystem::path::preferred_separator);
    EXPECT_TRUE(std::filesystem::path(directory).is_absolute());
}

// This test's program carries the module's code, so module and program are one file.
TEST(ModuleDirectory, OfThisModuleIsWhereItsFileLies)
{
    ASSERT_NE(GetSelfModuleHandle(), nullptr);
    EXPECT_EQ(GetModuleDirectory(GetSelfModuleHandle()), GetModuleDirectory(nullptr));
}

TEST(ModuleDirectory, OfAnUnknownModuleIsEmpty)
{
    int onTheStack = 0;
    EXPECT_EQ(GetModuleDirectory(&onTheStack), "");
}
} // namespace
