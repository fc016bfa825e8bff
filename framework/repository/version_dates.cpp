#include "repository/version_dates.h"

#include "text/text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace repository
{
namespace
{
constexpr int kNoNumber = -1;

bool isNumber(const std::string& piece, std::size_t minDigits, std::size_t maxDigits)
{
    return piece.size() >= minDigits && piece.size() <= maxDigits &&
           piece.find_first_not_of("0123456789") == std::string::npos;
}

int dayOrMonth(const std::string& piece, int highest)
{
    if (!isNumber(piece, 1, 2))
    {
        return kNoNumber;
    }
    const int value = std::stoi(piece);
    return value >= 1 && value <= highest ? value : kNoNumber;
}

int yearOf(const std::string& piece)
{
    return isNumber(piece, 4, 4) ? std::stoi(piece) : kNoNumber;
}

int monthByName(const std::string& piece)
{
    static const std::array<const char*, 12> kMonths{"january",   "february", "march",    "april",
                                                     "may",       "june",     "july",     "august",
                                                     "september", "october",  "november", "december"};
    const std::string name = text::toLower(piece);
    for (std::size_t index = 0; index < kMonths.size(); ++index)
    {
        if (name.size() >= 3 && text::startsWith(kMonths[index], name))
        {
            return static_cast<int>(index) + 1;
        }
    }
    return kNoNumber;
}

bool take(int year, int month, int day, VersionDate& date)
{
    if (year == kNoNumber || month == kNoNumber || day == kNoNumber)
    {
        return false;
    }
    date = VersionDate{year, month, day, false};
    return true;
}

std::vector<std::string> words(const std::string& version)
{
    std::string spaced = version;
    std::replace_if(
        spaced.begin(), spaced.end(), [](char character) { return character == ',' || character == '-'; }, ' ');
    std::vector<std::string> result;
    for (const std::string& piece : text::split(spaced, ' '))
    {
        if (!piece.empty())
        {
            result.push_back(piece);
        }
    }
    return result;
}

bool parseNamedMonth(const std::string& version, VersionDate& date)
{
    const std::vector<std::string> piece = words(version);
    if (piece.size() != 3)
    {
        return false;
    }
    return take(yearOf(piece[2]), monthByName(piece[1]), dayOrMonth(piece[0], 31), date) ||
           take(yearOf(piece[2]), monthByName(piece[0]), dayOrMonth(piece[1], 31), date) ||
           take(yearOf(piece[0]), monthByName(piece[1]), dayOrMonth(piece[2], 31), date);
}

bool parseNumeric(const std::string& version, char separator, VersionDate& date)
{
    const std::vector<std::string> piece = text::split(version, separator);
    if (piece.size() != 3)
    {
        return false;
    }
    if (take(yearOf(piece[0]), dayOrMonth(piece[1], 12), dayOrMonth(piece[2], 31), date))
    {
        return true;
    }
    if (separator != '/' || !take(yearOf(piece[2]), dayOrMonth(piece[0], 31), dayOrMonth(piece[1], 31), date))
    {
        return false;
    }
    date.dayOrMonthFirst = true;
    return true;
}

VersionOrder orderOf(int left, int right)
{
    if (left == right)
    {
        return VersionOrder::Same;
    }
    return left > right ? VersionOrder::Newer : VersionOrder::Older;
}
} // namespace

bool parseVersionDate(const std::string& version, VersionDate& date)
{
    return parseNumeric(version, '-', date) || parseNumeric(version, '/', date) || parseNamedMonth(version, date);
}

VersionOrder compareVersionDates(const VersionDate& left, const VersionDate& right)
{
    const VersionOrder byYear = orderOf(left.year, right.year);
    if (byYear != VersionOrder::Same)
    {
        return byYear;
    }
    if (left.dayOrMonthFirst != right.dayOrMonthFirst)
    {
        return VersionOrder::NotComparable;
    }
    const VersionOrder byFirst = orderOf(left.first, right.first);
    const VersionOrder bySecond = orderOf(left.second, right.second);
    if (!left.dayOrMonthFirst)
    {
        return byFirst != VersionOrder::Same ? byFirst : bySecond;
    }
    // Whichever of the two is the month, the order must be the same.
    if (byFirst == VersionOrder::Same || byFirst == bySecond)
    {
        return bySecond;
    }
    return bySecond == VersionOrder::Same ? byFirst : VersionOrder::NotComparable;
}
} // namespace repository
