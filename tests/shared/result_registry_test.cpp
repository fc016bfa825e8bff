#include "result_registry.h"

#include "result_codes.h"
#include "support/golden.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>

namespace
{
// CTest starts each test in a process of its own, so no earlier look-up has filled the table.
TEST(GetErrorMessage, FillsTheFlashTableOnceForSeveralThreads)
{
    std::vector<std::thread> threads;
    std::vector<std::string> texts(8);
    for (std::string& text : texts)
    {
        threads.emplace_back([&text] { text = GetErrorMessage(1779); });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    for (const std::string& text : texts)
    {
        EXPECT_EQ(text, "VELPAKI does not run successfully, to trace error, see log relate to VELPAKI.");
    }
}

TEST(GetErrorMessage, GivesTheTextOfEveryRegisteredCode)
{
    const auto rows = golden::rows("result_codes.tsv");
    ASSERT_EQ(rows.size(), 205U);
    for (const auto& row : rows)
    {
        ASSERT_EQ(row.size(), 4U);
        const auto code = static_cast<std::uint32_t>(std::stoul(row[2], nullptr, 16));
        EXPECT_EQ(code, result_code::composite(static_cast<std::uint32_t>(std::stoul(row[0])),
                                               static_cast<std::uint32_t>(std::stoul(row[1]))));
        EXPECT_EQ(GetErrorMessage(code), row[3]) << row[2];
    }
}

TEST(GetErrorMessage, GivesTheTextOfEveryFlashLayerCode)
{
    const auto rows = golden::rows("flash_codes.tsv");
    ASSERT_EQ(rows.size(), 207U);
    for (const auto& row : rows)
    {
        ASSERT_EQ(row.size(), 3U);
        EXPECT_EQ(std::stoul(row[0]), std::stoul(row[1], nullptr, 16));
        EXPECT_EQ(GetErrorMessage(static_cast<std::uint32_t>(std::stoul(row[0]))), row[2]) << row[0];
    }
}

// Codes that stand in no golden row have no text of their own, so the tables hold those rows and nothing else.
TEST(GetErrorMessage, KnowsNoCodeBeyondTheTables)
{
    std::set<std::uint32_t> known;
    for (const auto& row : golden::rows("result_codes.tsv"))
    {
        known.insert(static_cast<std::uint32_t>(std::stoul(row[2], nullptr, 16)));
    }
    for (const auto& row : golden::rows("flash_codes.tsv"))
    {
        known.insert(static_cast<std::uint32_t>(std::stoul(row[0])));
    }
    for (std::uint32_t category = 0; category < 70; ++category)
    {
        for (std::uint32_t number = 0; number < 256; ++number)
        {
            const std::uint32_t code = result_code::composite(category, number);
            EXPECT_EQ(GetErrorMessage(code) != "Unknow error", known.count(code) == 1) << std::hex << code;
        }
    }
    for (std::uint32_t code = 0x100; code < 0x10000; ++code)
    {
        if ((code & 0xFF00U) != 0)
        {
            EXPECT_EQ(GetErrorMessage(code) != "Unknown error", known.count(code) == 1) << std::hex << code;
        }
    }
}

TEST(GetErrorMessage, OfZeroIsSucceed)
{
    EXPECT_EQ(GetErrorMessage(0), "Succeed.");
}

TEST(GetErrorMessage, OfAnUnregisteredNumberInACategoryIsUnknowError)
{
    EXPECT_EQ(GetErrorMessage(0x10000), "Unknow error");
}

TEST(GetErrorMessage, OfAnAbsentFlashLayerCodeIsUnknownError)
{
    EXPECT_EQ(GetErrorMessage(0x7FF), "Unknown error");
}

TEST(GetErrorMessage, LooksUpTheWholeFlashLayerCode)
{
    EXPECT_EQ(GetErrorMessage(0x106F3), "Unknown error");
}

TEST(FindErrorMessage, DoesNotFallBackToAnotherCategory)
{
    EXPECT_EQ(FindErrorMessage(0x1006D, 4), "Unknow error");
    EXPECT_EQ(FindErrorMessage(0x4006D, 4), "No privilege to complete this operation.");
}

TEST(FindErrorMessage, LooksAtTheGeneralCodesFirstWhateverTheCategory)
{
    EXPECT_EQ(FindErrorMessage(12, 4), "Authentication failed.");
}

TEST(RegisterErrorCode, ComposesCategoryAndNumber)
{
    EXPECT_EQ(RegisterErrorCode(77, 9, "A text."), 0x4D0009U);
    EXPECT_EQ(GetErrorMessage(0x4D0009), "A text.");
}

TEST(RegisterErrorCode, ReplacesAnEarlierText)
{
    RegisterErrorCode(78, 1, "First.");
    RegisterErrorCode(78, 1, "Second.");
    EXPECT_EQ(GetErrorMessage(0x4E0001), "Second.");
}

TEST(RegisterErrorCode, StoresCategoriesBelowOneAsGeneral)
{
    const std::uint32_t code = RegisterErrorCode(-1, 5, "Negative.");
    EXPECT_EQ(code, 0xFFFF0005U);
    EXPECT_EQ(FindErrorMessage(code, 3), "Negative.");
}
} // namespace
