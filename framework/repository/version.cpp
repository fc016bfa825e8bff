#include "repository/version.h"

#include "repository/version_dates.h"
#include "repository/version_parts.h"
#include "text/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace repository
{
namespace
{
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
    if (result.size() > 1 && (result[0] == 'v' || result[0] == 'V') &&
        ((result[1] >= '0' && result[1] <= '9') || result[1] == '.'))
    {
        result.erase(0, 1);
    }
    return isPlaceholder(result) ? std::string() : result;
}

// An id such as EPK9CH5Q: its letters are no revision that grows, so its order holds only among ids of one build.
bool isId(const VersionParts& parts)
{
    return parts.front().kind == PartKind::Letters;
}

bool sameShape(const VersionParts& left, const VersionParts& right)
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

// Numbers, then stage, then what follows. Stages are told apart only for equally many numbers: were 1.2-rc1 older than
// 1.2.0, it would have to be older than 1.2.1 too, which cannot be ordered with 1.2.
VersionOrder compareStaged(const StagedVersion& left, const StagedVersion& right)
{
    const VersionOrder byNumbers = compareVersionParts(left.numbers, right.numbers);
    if (byNumbers != VersionOrder::Same)
    {
        return byNumbers;
    }
    const bool equallyLong = left.numbers.size() == right.numbers.size();
    if (left.stage != right.stage)
    {
        if (!equallyLong)
        {
            return VersionOrder::NotComparable;
        }
        return left.stage > right.stage ? VersionOrder::Newer : VersionOrder::Older;
    }
    const VersionOrder byRest = compareVersionParts(left.rest, right.rest);
    return equallyLong || byRest == VersionOrder::Same ? byRest : VersionOrder::NotComparable;
}

VersionOrder compareNumbers(const std::string& leftText, const std::string& rightText, VersionStyle style)
{
    VersionParts left = splitVersion(leftText, style);
    VersionParts right = splitVersion(rightText, style);
    if (left.empty() || right.empty())
    {
        return VersionOrder::NotComparable;
    }
    if (isId(left) || isId(right))
    {
        return sameShape(left, right) ? compareVersionParts(left, right) : VersionOrder::NotComparable;
    }
    return compareStaged(splitAtStage(std::move(left)), splitAtStage(std::move(right)));
}
} // namespace

VersionOrder compareVersions(const std::string& left, const std::string& right, VersionStyle style)
{
    const std::string leftText = normalised(left);
    const std::string rightText = normalised(right);
    if (style == VersionStyle::Hexadecimal)
    {
        return compareNumbers(leftText, rightText, style);
    }
    const VersionDate leftDate = readVersionDate(leftText);
    const VersionDate rightDate = readVersionDate(rightText);
    if (leftDate.certainty != rightDate.certainty)
    {
        return VersionOrder::NotComparable;
    }
    if (leftDate.certainty == DateCertainty::NoDate)
    {
        return compareNumbers(leftText, rightText, style);
    }
    const VersionOrder byDate = compareVersionDates(leftDate, rightDate);
    if (leftDate.certainty == DateCertainty::Date || byDate == compareNumbers(leftText, rightText, style))
    {
        return byDate;
    }
    return VersionOrder::NotComparable;
}
} // namespace repository
