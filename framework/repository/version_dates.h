#pragma once

#include "repository/version.h"

#include <string>

namespace repository
{
enum class DateCertainty
{
    NoDate,
    Date,
    DateOrNumbers, // "3.10.2026": a version number may look like this too
};

// The days that a date may mean, as numbers that grow with the calendar; "03/2026" means a whole month.
struct DateReading
{
    int firstDay = 0;
    int lastDay = 0;
};

// A version that is a calendar date. "03/10/2026" does not say which of its first numbers is the month, so a date has two
// readings, which are equal where it is clear.
struct VersionDate
{
    DateCertainty certainty = DateCertainty::NoDate;
    DateReading monthFirst;
    DateReading dayFirst;
};

// The forms are those of docs/versions.md.
VersionDate readVersionDate(const std::string& version);

// Newer or older only when both readings say so. Neither is NoDate.
VersionOrder compareVersionDates(const VersionDate& left, const VersionDate& right);

// Whether the text is a day of the calendar, written YYYY-MM-DD.
bool isCalendarDay(const std::string& text);
} // namespace repository
