#include "multi_command/private_file.h"

#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

TEST(PrivateFile, IsReadableByOthersThroughItsGroupOrEverybodysRights)
{
    const test_support::ScratchFolder folder;
    const std::string path = folder.write("secret", "x");
    for (const int mode : {0640, 0604, 0644})
    {
        std::filesystem::permissions(path, std::filesystem::perms(mode));
        EXPECT_TRUE(multi_command::isReadableByOthers(path)) << mode;
    }
    std::filesystem::permissions(path, std::filesystem::perms(0600));
    EXPECT_FALSE(multi_command::isReadableByOthers(path));
}
