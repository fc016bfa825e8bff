#include "korvan_result.h"

#include "result_codes.h"

#include <gtest/gtest.h>

#include <sstream>

namespace
{
std::string printed(const KorvanResult& result)
{
    std::ostringstream out;
    out << result;
    return out.str();
}

TEST(KorvanResult, TakesTheRegisteredTextAtOnce)
{
    EXPECT_EQ(KorvanResult(13).message, "Connection failed.");
}

TEST(KorvanResult, OfNothingIsASuccessWithoutAMessageOfItsOwn)
{
    const KorvanResult result;
    EXPECT_TRUE(result.succeeded());
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(result.messageText(), "Succeed.");
}

TEST(KorvanResult, PrintsZeroAndSucceed)
{
    EXPECT_EQ(printed(KorvanResult(0)), "0 Succeed.");
}

TEST(KorvanResult, PrintsTheNumberWithoutTheCategory)
{
    EXPECT_EQ(printed(KorvanResult(0x1006D)),
              "109 You are running against an Tolmar system. But the current command is not supported.");
}

TEST(KorvanResult, PrintsItsOwnMessageInsteadOfTheRegisteredOne)
{
    EXPECT_EQ(printed(KorvanResult(13, "10.0.0.1: refused")), "13 10.0.0.1: refused");
}

TEST(KorvanResult, PrintsTheRegisteredTextWhenTheMessageIsEmpty)
{
    EXPECT_EQ(printed(KorvanResult(18, "")), "18 Timeout.");
}

TEST(KorvanResult, IgnoresTheStreamsNumberFormat)
{
    std::ostringstream out;
    out << std::hex << KorvanResult(18);
    EXPECT_EQ(out.str(), "18 Timeout.");
}

TEST(KorvanResult, SucceedsWheneverTheLowSixteenBitsAreZero)
{
    EXPECT_TRUE(KorvanResult(0x10000).succeeded());
    EXPECT_TRUE(KorvanResult(0xFFFF0000U).succeeded());
    EXPECT_FALSE(KorvanResult(0x10001).succeeded());
}

TEST(KorvanResult, EqualityLooksAtTheLowSixteenBitsOnly)
{
    EXPECT_TRUE(KorvanResult(0x1006D) == KorvanResult(0x4006D));
    EXPECT_TRUE(KorvanResult(109, "a") == KorvanResult(109, "b"));
    EXPECT_TRUE(KorvanResult(109) != KorvanResult(106));
}

TEST(ResultCode, NamesHoldTheirCodes)
{
    EXPECT_EQ(result_code::kSucceed, 0U);
    EXPECT_EQ(result_code::kLegacyToolIsProxy, 20U);
    EXPECT_EQ(result_code::kUpdateLegacyToolPathWrong, 0x1006AU);
    EXPECT_EQ(result_code::kUpdateLegacyCommandUnsupported, 0x1006DU);
    EXPECT_EQ(result_code::kFlashLegacyToolFailed, 1779U);
}
} // namespace
