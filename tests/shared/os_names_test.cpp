#include "os_names.h"

#include "support/golden.h"

#include <gtest/gtest.h>

namespace
{
constexpr std::uint32_t kUnknown = 0xFFFFFFFFU;

void expectRows(const std::vector<PlatformName>& actual, const std::vector<std::vector<std::string>>& expected)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t row = 0; row < expected.size(); ++row)
    {
        ASSERT_EQ(expected[row].size(), 3U);
        EXPECT_EQ(std::to_string(actual[row].code), expected[row][0]) << "row " << row + 1;
        EXPECT_EQ(actual[row].displayName, expected[row][1]) << "row " << row + 1;
        EXPECT_EQ(actual[row].key, expected[row][2]) << "row " << row + 1;
    }
}

TEST(OsNames, AreTheGoldenRowsInOrder)
{
    const auto rows = golden::rows("os_names.tsv");
    ASSERT_EQ(rows.size(), 51U);
    expectRows(OsNames(), rows);
}

TEST(OsArchNames, AreTheGoldenRowsInOrder)
{
    expectRows(OsArchNames(), golden::rows("os_arch_names.tsv"));
}

TEST(GetOsTypeCode, FindsEveryRowByBothNames)
{
    for (const auto& row : golden::rows("os_names.tsv"))
    {
        EXPECT_EQ(std::to_string(GetOsTypeCode(row[1])), row[0]);
        EXPECT_EQ(std::to_string(GetOsTypeCode(row[2])), row[0]);
    }
}

TEST(GetOsTypeCode, GivesOneCodeToTwoEsxiVersions)
{
    EXPECT_EQ(GetOsTypeCode("VMware ESXi 5.0"), 311U);
    EXPECT_EQ(GetOsTypeCode("esxi5.0"), 311U);
    EXPECT_EQ(GetOsTypeCode("VMware ESXi 5.1"), 311U);
    EXPECT_EQ(GetOsTypeCode("esxi5.1"), 311U);
}

TEST(GetOsTypeCode, TakesPlatformInCapitalsOrSmallLettersOnly)
{
    EXPECT_EQ(GetOsTypeCode("PLATFORM"), 402U);
    EXPECT_EQ(GetOsTypeCode("platform"), 402U);
    EXPECT_EQ(GetOsTypeCode("Platform"), kUnknown);
}

TEST(GetOsTypeCode, NeitherFoldsLettersNorRemovesBlanks)
{
    EXPECT_EQ(GetOsTypeCode("Windows 7"), 110U);
    EXPECT_EQ(GetOsTypeCode("win7"), 110U);
    EXPECT_EQ(GetOsTypeCode("WIN7"), kUnknown);
    EXPECT_EQ(GetOsTypeCode("rhel 7"), kUnknown);
    EXPECT_EQ(GetOsTypeCode(""), kUnknown);
    EXPECT_EQ(GetOsTypeCode(std::string("win7\0x", 6)), kUnknown);
}

TEST(GetOsArchCode, TakesNoneInBothSpellings)
{
    EXPECT_EQ(GetOsArchCode("None"), 0U);
    EXPECT_EQ(GetOsArchCode("none"), 0U);
    EXPECT_EQ(GetOsArchCode(""), kUnknown);
}

TEST(GetOsArchCode, TakesSixtyFourBitInBothSpellings)
{
    EXPECT_EQ(GetOsArchCode("64 bit"), 2U);
    EXPECT_EQ(GetOsArchCode("x64"), 2U);
    EXPECT_EQ(GetOsArchCode("X64"), kUnknown);
    EXPECT_EQ(GetOsArchCode("32 bit"), 1U);
    EXPECT_EQ(GetOsArchCode("x32"), 1U);
}
} // namespace
