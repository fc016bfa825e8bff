#include "repository/version.h"

#include "repository/version_dates.h"
#include "text/text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace repository
{
namespace
{
enum class PartKind
{
    Number,
    Letters,
};

struct Part
{
    PartKind kind = PartKind::Number;
    std::string value; // a number without leading zeros (zero is empty), letters in lower case
};

using Parts = std::vector<Part>;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

// Bytes beyond ASCII count as letters: they name something and order nothing.
bool isLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           static_cast<unsigned char>(character) >= 0x80;
}

bool isPlaceholder(const std::string& version)
{
    static const std::array<const char*, 10> kPlaceholders{"n/a",       "na",          "none",    "null",          "ff",
                                                           "undefined", "unspecified", "unknown", "not available", "-"};
    const std::string folded = text::toLower(version);
    return std::any_of(kPlaceholders.begin(), kPlaceholders.end(),
                       [&folded](const char* placeholder) { return folded == placeholder; });
}

// "2.42-[UF2420]" and "1.2 (build 5)" without their suffix.
std::string withoutBuildSuffix(const std::string& version)
{
    const bool closed = !version.empty() && (version.back() == ']' || version.back() == ')');
    const std::size_t open = closed ? version.find(version.back() == ']' ? '[' : '(') : std::string::npos;
    if (open == std::string::npos)
    {
        return version;
    }
    std::string result = text::trim(version.substr(0, open));
    while (!result.empty() && (result.back() == '-' || result.back() == ' '))
    {
        result.pop_back();
    }
    return result;
}

std::string normalised(const std::string& version)
{
    std::string result = withoutBuildSuffix(text::trim(version));
    if (result.size() > 1 && (result[0] == 'v' || result[0] == 'V') && (isDigit(result[1]) || result[1] == '.'))
    {
        result.erase(0, 1);
    }
    return isPlaceholder(result) ? std::string() : result;
}

Part makePart(PartKind kind, const std::string& value)
{
    if (kind == PartKind::Letters)
    {
        return {kind, text::toLower(value)};
    }
    const std::size_t start = value.find_first_not_of('0');
    return {kind, start == std::string::npos ? std::string() : text::toLower(value.substr(start))};
}

Parts splitDecimal(const std::string& version)
{
    Parts parts;
    std::size_t index = 0;
    while (index < version.size())
    {
        const std::size_t start = index;
        const auto belongs = isDigit(version[start]) ? isDigit : isLetter;
        while (index < version.size() && belongs(version[index]))
        {
            ++index;
        }
        if (index > start)
        {
            const PartKind kind = isDigit(version[start]) ? PartKind::Number : PartKind::Letters;
            parts.push_back(makePart(kind, version.substr(start, index - start)));
        }
        else
        {
            ++index;
        }
    }
    return parts;
}

Parts splitHexadecimal(const std::string& version)
{
    Parts parts;
    std::size_t index = 0;
    while (index < version.size())
    {
        const std::size_t start = index;
        while (index < version.size() && (isDigit(version[index]) || isLetter(version[index])))
        {
            ++index;
        }
        std::string piece = version.substr(start, index - start);
        if (text::startsWith(text::toLower(piece), "0x"))
        {
            piece.erase(0, 2);
        }
        if (!piece.empty())
        {
            const bool number = piece.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
            parts.push_back(makePart(number ? PartKind::Number : PartKind::Letters, piece));
        }
        index = std::max(index, start + 1);
    }
    return parts;
}

VersionOrder compareParts(const Part& left, const Part& right)
{
    if (left.kind != right.kind)
    {
        return VersionOrder::NotComparable;
    }
    if (left.value == right.value)
    {
        return VersionOrder::Same;
    }
    // Without leading zeros the longer number is the greater one; hexadecimal digits order like their characters.
    const bool byLength = left.kind == PartKind::Number && left.value.size() != right.value.size();
    const bool newer = byLength ? left.value.size() > right.value.size() : left.value > right.value;
    return newer ? VersionOrder::Newer : VersionOrder::Older;
}

// An id such as EPK9CH5Q: its letters are no revision that grows, so its order holds only among ids of one build.
bool isId(const Parts& parts)
{
    return parts.front().kind == PartKind::Letters;
}

bool sameShape(const Parts& left, const Parts& right)
{
    if (left.size() != right.size())
    {
        return false;
    }
    for (std::size_t index = 0; index < left.size(); ++index)
    {
        const bool letters = left[index].kind == PartKind::Letters;
        if (left[index].kind != right[index].kind || (letters && left[index].value.size() != right[index].value.size()))
        {
            return false;
        }
    }
    const std::string& family = left.front().value;
    return family.size() < 2 || family == right.front().value;
}

bool allZero(const Parts& parts, std::size_t from)
{
    return std::all_of(parts.begin() + static_cast<std::ptrdiff_t>(from), parts.end(),
                       [](const Part& part) { return part.kind == PartKind::Number && part.value.empty(); });
}

VersionOrder compareAll(const Parts& left, const Parts& right)
{
    if (left.empty() || right.empty())
    {
        return VersionOrder::NotComparable;
    }
    if ((isId(left) || isId(right)) && !sameShape(left, right))
    {
        return VersionOrder::NotComparable;
    }
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t index = 0; index < common; ++index)
    {
        const VersionOrder order = compareParts(left[index], right[index]);
        if (order != VersionOrder::Same)
        {
            return order;
        }
    }
    // The same firmware read twice may show more parts the second time; only zeros certainly add nothing.
    return allZero(left, common) && allZero(right, common) ? VersionOrder::Same : VersionOrder::NotComparable;
}
} // namespace

VersionOrder compareVersions(const std::string& left, const std::string& right, VersionStyle style)
{
    const std::string leftText = normalised(left);
    const std::string rightText = normalised(right);
    if (style == VersionStyle::Hexadecimal)
    {
        return compareAll(splitHexadecimal(leftText), splitHexadecimal(rightText));
    }
    VersionDate leftDate;
    VersionDate rightDate;
    const bool leftIsDate = parseVersionDate(leftText, leftDate);
    const bool rightIsDate = parseVersionDate(rightText, rightDate);
    if (leftIsDate != rightIsDate)
    {
        return VersionOrder::NotComparable;
    }
    return leftIsDate ? compareVersionDates(leftDate, rightDate)
                      : compareAll(splitDecimal(leftText), splitDecimal(rightText));
}
} // namespace repository
