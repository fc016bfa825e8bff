#include "trust/fingerprint.h"

#include "text/text.h"

#include <algorithm>

namespace trust
{
namespace
{
constexpr std::size_t kDigits = 64;

bool isDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}
} // namespace

std::string readFingerprint(const std::string& value)
{
    constexpr std::size_t kWithColons = kDigits + kDigits / 2 - 1;
    std::string digits = text::toLower(value);
    if (digits.size() == kWithColons)
    {
        for (std::size_t at = kWithColons - 3; at < kWithColons; at -= 3)
        {
            if (digits[at] != ':')
            {
                return std::string();
            }
            digits.erase(at, 1);
        }
    }
    const bool whole = digits.size() == kDigits && std::all_of(digits.begin(), digits.end(), isDigit);
    return whole ? digits : std::string();
}
} // namespace trust
