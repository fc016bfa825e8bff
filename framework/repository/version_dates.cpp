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
constexpr int kFirstLikelyYear = 1990;
constexpr int kLastLikelyYear = 2039;

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

// Any number for a day keeps the order of the calendar when months have this many.
constexpr int kDaysOfMonth = 32;
constexpr int kMonthsOfYear = 13;

DateReading readingOf(int year, int month, int firstDay, int lastDay)
{
    const int start = (year * kMonthsOfYear + month) * kDaysOfMonth;
    return {start + firstDay, start + lastDay};
}

bool take(int year, int month, int day, VersionDate& date)
{
    if (year == kNoNumber || month == kNoNumber || day == kNoNumber)
    {
        return false;
    }
    const DateReading reading = readingOf(year, month, day, day);
    date = VersionDate{DateCertainty::Date, reading, reading};
    return true;
}

// Two numbers of which one is the month, the other the day. With one above 12, or two equal ones, it is clear which.
bool takeEitherWay(int year, const std::string& first, const std::string& second, VersionDate& date)
{
    VersionDate monthFirst;
    VersionDate dayFirst;
    const bool mayBeMonthFirst = take(year, dayOrMonth(first, 12), dayOrMonth(second, 31), monthFirst);
    const bool mayBeDayFirst = take(year, dayOrMonth(second, 12), dayOrMonth(first, 31), dayFirst);
    if (!mayBeMonthFirst && !mayBeDayFirst)
    {
        return false;
    }
    date.certainty = DateCertainty::Date;
    date.monthFirst = mayBeMonthFirst ? monthFirst.monthFirst : dayFirst.dayFirst;
    date.dayFirst = mayBeDayFirst ? dayFirst.dayFirst : monthFirst.monthFirst;
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

// A number in a place where version numbers have their third part, so only what is likely counts as a year.
int likelyYear(const std::string& piece)
{
    const int year = yearOf(piece);
    return year >= kFirstLikelyYear && year <= kLastLikelyYear ? year : kNoNumber;
}

bool parseYearFirst(const std::string& version, char separator, VersionDate& date)
{
    const std::vector<std::string> piece = text::split(version, separator);
    return piece.size() == 3 && take(yearOf(piece[0]), dayOrMonth(piece[1], 12), dayOrMonth(piece[2], 31), date);
}

bool parseSlashed(const std::string& version, VersionDate& date)
{
    const std::vector<std::string> piece = text::split(version, '/');
    if (piece.size() == 3)
    {
        return takeEitherWay(yearOf(piece[2]), piece[0], piece[1], date);
    }
    if (piece.size() != 2 || likelyYear(piece[1]) == kNoNumber || dayOrMonth(piece[0], 12) == kNoNumber)
    {
        return false;
    }
    const DateReading reading = readingOf(likelyYear(piece[1]), dayOrMonth(piece[0], 12), 1, kDaysOfMonth - 1);
    date = VersionDate{DateCertainty::Date, reading, reading};
    return true;
}

bool parseDotted(const std::string& version, VersionDate& date)
{
    const std::vector<std::string> piece = text::split(version, '.');
    if (piece.size() != 3 || !takeEitherWay(likelyYear(piece[2]), piece[0], piece[1], date))
    {
        return false;
    }
    if (piece[0].size() != 2 || piece[1].size() != 2)
    {
        date.certainty = DateCertainty::DateOrNumbers;
    }
    return true;
}

VersionOrder compareReadings(const DateReading& left, const DateReading& right)
{
    if (left.firstDay > right.lastDay)
    {
        return VersionOrder::Newer;
    }
    if (left.lastDay < right.firstDay)
    {
        return VersionOrder::Older;
    }
    const bool same = left.firstDay == right.firstDay && left.lastDay == right.lastDay;
    return same ? VersionOrder::Same : VersionOrder::NotComparable;
}
} // namespace

VersionDate readVersionDate(const std::string& version)
{
    VersionDate date;
    static_cast<void>(parseYearFirst(version, '-', date) || parseYearFirst(version, '/', date) ||
                      parseSlashed(version, date) || parseDotted(version, date) || parseNamedMonth(version, date));
    return date;
}

VersionOrder compareVersionDates(const VersionDate& left, const VersionDate& right)
{
    const VersionOrder byMonthFirst = compareReadings(left.monthFirst, right.monthFirst);
    const VersionOrder byDayFirst = compareReadings(left.dayFirst, right.dayFirst);
    return byMonthFirst == byDayFirst ? byMonthFirst : VersionOrder::NotComparable;
}

bool isCalendarDay(const std::string& text)
{
    static const std::array<int, 12> kDays{31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const std::vector<std::string> piece = text::split(text, '-');
    if (piece.size() != 3 || yearOf(piece[0]) == kNoNumber || !isNumber(piece[1], 2, 2) || !isNumber(piece[2], 2, 2))
    {
        return false;
    }
    const int year = yearOf(piece[0]);
    const int month = dayOrMonth(piece[1], 12);
    const int day = dayOrMonth(piece[2], 31);
    const bool leapYear = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month != kNoNumber && day != kNoNumber && day <= kDays[static_cast<std::size_t>(month) - 1] &&
           !(month == 2 && day == 29 && !leapYear);
}
} // namespace repository
