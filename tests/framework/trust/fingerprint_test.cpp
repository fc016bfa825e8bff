#include "trust/fingerprint.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
std::string withColons(const std::string& digits)
{
    std::string result;
    for (std::size_t at = 0; at < digits.size(); at += 2)
    {
        result += (at == 0 ? "" : ":") + digits.substr(at, 2);
    }
    return result;
}

const std::string kHex = "00112233445566778899aabbccddeeff0123456789abcdeffedcba9876543210";
} // namespace

TEST(Fingerprint, IsReadInEitherCaseWithAndWithoutColons)
{
    std::string upper = kHex;
    for (char& c : upper)
    {
        c = c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    EXPECT_EQ(trust::readFingerprint(kHex), kHex);
    EXPECT_EQ(trust::readFingerprint(upper), kHex);
    EXPECT_EQ(trust::readFingerprint(withColons(kHex)), kHex);
    EXPECT_EQ(trust::readFingerprint(withColons(upper)), kHex);
}

TEST(Fingerprint, IsNothingElse)
{
    std::string misplaced = withColons(kHex);
    std::swap(misplaced[2], misplaced[3]);
    std::string letter = kHex;
    letter[10] = 'g';
    const std::string wrong[] = {"",
                                 kHex.substr(1),
                                 kHex + "0",
                                 " " + kHex,
                                 "sha256:" + kHex,
                                 misplaced,
                                 letter,
                                 ":" + withColons(kHex),
                                 withColons(kHex) + ":",
                                 std::string(64, '\0')};
    for (const std::string& value : wrong)
    {
        EXPECT_EQ(trust::readFingerprint(value), "") << value;
    }
}
