#include "text/environment.h"

#include <gtest/gtest.h>

#include <windows.h>

TEST(EnvironmentVariable, KeepsCharactersThatNoCodePageHas)
{
    ::SetEnvironmentVariableW(L"KORVAN_TEST_WORD", L"\u65E5\u672C \u20AC \u0416");
    EXPECT_EQ(environment::variable("KORVAN_TEST_WORD"), "\xE6\x97\xA5\xE6\x9C\xAC \xE2\x82\xAC \xD0\x96");
    ::SetEnvironmentVariableW(L"KORVAN_TEST_WORD", nullptr);
    EXPECT_EQ(environment::variable("KORVAN_TEST_WORD"), "");
}
