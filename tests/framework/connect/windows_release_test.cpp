#include "connect/windows_release.h"

#include "os_names.h"

#include <gtest/gtest.h>

using connect::WindowsEdition;
using connect::windowsKey;

TEST(WindowsRelease, IsTheKeyOfItsBuild)
{
    EXPECT_EQ(windowsKey(10, 0, 14393, WindowsEdition::Server), "win2016");
    EXPECT_EQ(windowsKey(10, 0, 17763, WindowsEdition::Server), "win2019");
    EXPECT_EQ(windowsKey(10, 0, 18363, WindowsEdition::Server), "win2019");
    EXPECT_EQ(windowsKey(10, 0, 20348, WindowsEdition::Server), "win2022");
    EXPECT_EQ(windowsKey(10, 0, 25398, WindowsEdition::Server), "win2022");
    EXPECT_EQ(windowsKey(10, 0, 26100, WindowsEdition::Server), "win2025");
    EXPECT_EQ(windowsKey(6, 3, 9600, WindowsEdition::Server), "win2012r2");
    EXPECT_EQ(windowsKey(10, 0, 19045, WindowsEdition::Client), "win10");
    EXPECT_EQ(windowsKey(10, 0, 22631, WindowsEdition::Client), "win11");
    EXPECT_EQ(windowsKey(6, 1, 7601, WindowsEdition::Client), "win7");
}

TEST(WindowsRelease, IsEmptyForAnUnknownVersion)
{
    EXPECT_EQ(windowsKey(5, 1, 2600, WindowsEdition::Client), "");
    EXPECT_EQ(windowsKey(11, 0, 40000, WindowsEdition::Client), "");
}

TEST(WindowsRelease, IsAKnownSystem)
{
    for (const unsigned build : {14393U, 17763U, 20348U, 22000U, 26100U})
    {
        for (const WindowsEdition edition : {WindowsEdition::Client, WindowsEdition::Server})
        {
            EXPECT_NE(GetOsTypeCode(windowsKey(10, 0, build, edition)), GetOsTypeCode("no system")) << build;
        }
    }
}
