#pragma once

#include "repository/version.h"

#include <string>

namespace repository
{
// A version that is a calendar date. "03/10/2026" does not say which of its first numbers is the month.
struct VersionDate
{
    int year = 0;
    int first = 0; // the month, unless dayOrMonthFirst
    int second = 0;
    bool dayOrMonthFirst = false;
};

// Knows 2026-03-10, 2026/03/10, 03/10/2026, 10 Mar 2026 and Mar 10, 2026. False for any other text.
bool parseVersionDate(const std::string& version, VersionDate& date);

VersionOrder compareVersionDates(const VersionDate& left, const VersionDate& right);
} // namespace repository
