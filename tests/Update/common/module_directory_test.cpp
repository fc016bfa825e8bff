#include "common/module_directory.h"

#include <gtest/gtest.h>

namespace
{
TEST(ModuleDirectory, OfTheProgramEndsInASeparator)
{
    const std::string directory = GetModuleDirectory(nullptr);
    ASSERT_FALSE(directory.empty());
    EXPECT_EQ(directory.back(), '/');
    EXPECT_EQ(directory.front(), '/');
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
