#include "repository/version.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace
{
using repository::compareVersions;
using repository::VersionOrder;
using repository::VersionStyle;

VersionOrder decimal(const std::string& left, const std::string& right)
{
    return compareVersions(left, right, VersionStyle::Decimal);
}

VersionOrder hexadecimal(const std::string& left, const std::string& right)
{
    return compareVersions(left, right, VersionStyle::Hexadecimal);
}

VersionOrder reversed(VersionOrder order)
{
    if (order == VersionOrder::Newer)
    {
        return VersionOrder::Older;
    }
    return order == VersionOrder::Older ? VersionOrder::Newer : order;
}

TEST(Version, ComparesNumericPartsAsNumbers)
{
    EXPECT_EQ(decimal("1.10", "1.9"), VersionOrder::Newer);
    EXPECT_EQ(decimal("50.0.1-0639", "50.0.1-0700"), VersionOrder::Older);
    EXPECT_EQ(decimal("51.19.0-4532", "51.16.0-4076"), VersionOrder::Newer);
    EXPECT_EQ(decimal("1.05", "1.5"), VersionOrder::Same);
    EXPECT_EQ(decimal("99999999999999999999999999", "99999999999999999999999998"), VersionOrder::Newer);
}

TEST(Version, IgnoresBlanksLeadingVAndBuildSuffix)
{
    EXPECT_EQ(decimal(" v2.42 ", "2.42-[UF2420]"), VersionOrder::Same);
    EXPECT_EQ(decimal("V3.1.4", "3.0.9 (build 7)"), VersionOrder::Newer);
}

TEST(Version, MorePartsAreNotNewerUnlessTheyAreZeros)
{
    EXPECT_EQ(decimal("6.10", "6.10.30.00"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("6.10", "6.10.0.00"), VersionOrder::Same);
    EXPECT_EQ(decimal("1.10a", "1.10"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("1.11", "1.10.5"), VersionOrder::Newer);
}

TEST(Version, WithoutAVersionNothingIsComparable)
{
    for (const char* version : {"", "  ", "N/A", "n/a", "ff", "undefined", "null", "...", "-", "[B1]"})
    {
        EXPECT_EQ(decimal("1.0", version), VersionOrder::NotComparable) << version;
        EXPECT_EQ(decimal(version, version), VersionOrder::NotComparable) << version;
    }
}

TEST(Version, IdsAreOrderedWithinOneShapeAndFamilyOnly)
{
    EXPECT_EQ(decimal("EPK9CH5Q", "EPK9CB5Q"), VersionOrder::Newer);
    EXPECT_EQ(decimal("EPK9CH5Q ", "epk9ch5q"), VersionOrder::Same);
    EXPECT_EQ(decimal("EPK9CH5Q", "EPK9CHX5Q"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("EPK9CH5Q", "GXA9CB5Q"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("EPK9CH5Q", "1.0"), VersionOrder::NotComparable);
}

TEST(Version, HexadecimalPartsCountAsNumbersWhenToldSo)
{
    EXPECT_EQ(hexadecimal("0x1A.0x04", "0x9.0xFF"), VersionOrder::Newer);
    EXPECT_EQ(hexadecimal("1A.4", "1a.04"), VersionOrder::Same);
    EXPECT_EQ(hexadecimal("1A.4", "1A.XY"), VersionOrder::NotComparable);
}

TEST(Version, DatesAreOrderedByTheCalendar)
{
    EXPECT_EQ(decimal("2026-03-10", "2025-11-30"), VersionOrder::Newer);
    EXPECT_EQ(decimal("10 Mar 2026", "09 Apr 2026"), VersionOrder::Older);
    EXPECT_EQ(decimal("Mar 10, 2026", "2026-03-10"), VersionOrder::Same);
    EXPECT_EQ(decimal("03/10/2026", "03/12/2026"), VersionOrder::Older);
    EXPECT_EQ(decimal("03/10/2026", "10/03/2026"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("2026-03-10", "1.10"), VersionOrder::NotComparable);
}

TEST(Version, PreReleasesAreOlderThanTheirRelease)
{
    const std::vector<std::string> stages{"1.0-alpha", "1.0-beta1", "1.0 Beta2", "1.0-RC1", "1.0-rc2", "1.0-rc10"};
    for (std::size_t older = 0; older < stages.size(); ++older)
    {
        for (std::size_t newer = older + 1; newer < stages.size(); ++newer)
        {
            EXPECT_EQ(decimal(stages[older], stages[newer]), VersionOrder::Older) << stages[older] << stages[newer];
        }
        for (const char* release : {"1.0", "1.0-GA", "v1.0", "1.0 Release", "1.0.FINAL", "1.1-alpha"})
        {
            EXPECT_EQ(decimal(stages[older], release), VersionOrder::Older) << stages[older] << release;
            EXPECT_EQ(hexadecimal(stages[older], release), VersionOrder::Older) << stages[older] << release;
        }
    }
    EXPECT_EQ(decimal("1.0rc2", "1.0"), VersionOrder::Older);
    EXPECT_EQ(decimal("1.0-GA", "1.0"), VersionOrder::Same);
    EXPECT_EQ(decimal("1.1-RC1", "1.0-GA"), VersionOrder::Newer);
    EXPECT_EQ(hexadecimal("1A-RC10", "1A-RC9"), VersionOrder::Newer);
}

TEST(Version, PreReleasesAreNotOrderedByAGuess)
{
    EXPECT_EQ(decimal("1.0-rc", "1.0-rc1"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("1.0-rc1", "1.0.0"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("1.0-GA2", "1.0"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("1.0-rc1", "1.0.1"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("1.0-b1", "1.0-rc1"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("RC1", "GA"), VersionOrder::NotComparable);
}

TEST(Version, DottedDatesAreOrderedByTheCalendar)
{
    EXPECT_EQ(decimal("13.02.2026", "25.12.2025"), VersionOrder::Newer);
    EXPECT_EQ(decimal("13.02.2026", "01.02.2026"), VersionOrder::Newer);
    EXPECT_EQ(decimal("13.02.2026", "2026-02-13"), VersionOrder::Same);
    EXPECT_EQ(decimal("05.03.2026", "13.02.2025"), VersionOrder::Newer);
    EXPECT_EQ(decimal("05.05.2026", "05/05/2026"), VersionOrder::Same);
    EXPECT_EQ(decimal("05.03.2026", "03.05.2026"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("10.03.2026", "2026-05-01"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("13.02.2026", "13.2"), VersionOrder::NotComparable);
}

TEST(Version, ASlashedDateWithoutADayIsAWholeMonth)
{
    EXPECT_EQ(decimal("11/2025", "03/2026"), VersionOrder::Older);
    EXPECT_EQ(decimal("3/2026", "03/2026"), VersionOrder::Same);
    EXPECT_EQ(decimal("03/2026", "2026-04-01"), VersionOrder::Older);
    EXPECT_EQ(decimal("03/2026", "2026-03-10"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("03/2026", "3.2026"), VersionOrder::NotComparable);
}

TEST(Version, NumbersThatMayBeADateAreOrderedWhereBothReadingsAgree)
{
    EXPECT_EQ(decimal("1.2.2024", "1.3.2024"), VersionOrder::Older);
    EXPECT_EQ(decimal("1.2.2024", "1.2.2023"), VersionOrder::Newer);
    EXPECT_EQ(decimal("9.3.2026", "8.2.2027"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("13.2.2026", "1.3.2026"), VersionOrder::NotComparable);
    EXPECT_EQ(decimal("1.2.2024", "1.2.3"), VersionOrder::NotComparable);
}

TEST(Version, NumbersThatAreNoDayOrLikelyYearAreNoDate)
{
    EXPECT_EQ(decimal("22.41.1000", "20.30.1004"), VersionOrder::Newer);
    EXPECT_EQ(decimal("12.10.1000", "11.12.1004"), VersionOrder::Newer);
    EXPECT_EQ(decimal("14.00.2026", "13.01.2027"), VersionOrder::NotComparable) << "one of them is a date";
    EXPECT_EQ(decimal("15.00.2026", "14.00.2027"), VersionOrder::Newer);
    EXPECT_EQ(decimal("13.13.2026", "12.40.2027"), VersionOrder::Newer);
    EXPECT_EQ(decimal("10.12.2026.1", "9.12.2027.1"), VersionOrder::Newer);
    EXPECT_EQ(decimal("10/1000", "9/2000.1"), VersionOrder::Newer);
}

// Dates and stages of all forms, close to each other.
std::string shapedVersion(std::mt19937& random)
{
    const auto pick = [&random](const std::vector<std::string>& choices) { return choices[random() % choices.size()]; };
    const std::string day = pick({"1", "2", "02", "11", "12", "13", "14", "31"});
    const std::string month = pick({"1", "01", "2", "02", "11", "12", "13"});
    const std::string year = pick({"2025", "2026", "1000"});
    switch (random() % 6)
    {
    case 0:
        return day + "." + month + "." + year;
    case 1:
        return day + "/" + month + "/" + year;
    case 2:
        return year + "-" + month + "-" + day;
    case 3:
        return month + "/" + year;
    case 4:
        return day + pick({" Jan ", " feb ", " Dec "}) + year;
    default:
        return pick({"1", "1.0", "1.0.0", "1.2", "1.2.1"}) + pick({"-", " ", "."}) +
               pick({"alpha", "beta", "rc", "RC1", "rc2", "rc.0", "GA", "GA1", "final", "b", "0", "RC1.a"});
    }
}

// Short versions from few symbols, so that equal beginnings and all kinds of differences come up often.
std::vector<std::string> randomVersions(unsigned seed, std::size_t count)
{
    static const std::vector<std::string> kPieces{"0",    "1",  "2", "10",       "00", "a", "b",  "Ab",
                                                  "v",    ".",  ".", "-",        "/",  " ", "[",  "]",
                                                  "2026", "03", "x", "\xC3\xA9", "FF", "(", "rc", "GA"};
    std::mt19937 random(seed);
    std::vector<std::string> versions{"2026-03-10", "03/10/2026", "10/03/2026", "1.2", "1.2.0", "1.2.1", "EPK9CH5Q"};
    while (versions.size() < count)
    {
        if (random() % 2 == 0)
        {
            versions.push_back(shapedVersion(random));
            continue;
        }
        std::string version;
        const std::size_t pieces = random() % 7;
        for (std::size_t index = 0; index < pieces; ++index)
        {
            version += kPieces[random() % kPieces.size()];
        }
        versions.push_back(version);
    }
    return versions;
}

bool contradicts(VersionOrder first, VersionOrder second, VersionOrder both)
{
    if (first == VersionOrder::NotComparable || second == VersionOrder::NotComparable)
    {
        return false;
    }
    if (first == second)
    {
        return both != first;
    }
    // One says Same: the other's order may become unknown, but never turn.
    const VersionOrder strict = first == VersionOrder::Same ? second : first;
    return (first == VersionOrder::Same || second == VersionOrder::Same) && both != strict &&
           both != VersionOrder::NotComparable;
}

class VersionProperties : public testing::TestWithParam<VersionStyle>
{
};

TEST_P(VersionProperties, OrderIsAntisymmetric)
{
    const std::vector<std::string> versions = randomVersions(1, 400);
    for (const std::string& left : versions)
    {
        for (const std::string& right : versions)
        {
            ASSERT_EQ(compareVersions(left, right, GetParam()), reversed(compareVersions(right, left, GetParam())))
                << left << " and " << right;
        }
    }
}

TEST_P(VersionProperties, OrderIsTransitive)
{
    const std::vector<std::string> versions = randomVersions(2, 220);
    std::vector<std::vector<VersionOrder>> order(versions.size());
    for (std::size_t left = 0; left < versions.size(); ++left)
    {
        for (const std::string& right : versions)
        {
            order[left].push_back(compareVersions(versions[left], right, GetParam()));
        }
    }
    for (std::size_t a = 0; a < versions.size(); ++a)
    {
        for (std::size_t b = 0; b < versions.size(); ++b)
        {
            for (std::size_t c = 0; c < versions.size(); ++c)
            {
                ASSERT_FALSE(contradicts(order[a][b], order[b][c], order[a][c]))
                    << versions[a] << " | " << versions[b] << " | " << versions[c];
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Styles, VersionProperties, testing::Values(VersionStyle::Decimal, VersionStyle::Hexadecimal));

TEST(Version, HugeTextsTakeLinearTime)
{
    const std::string left(1000000, '1');
    std::string dots;
    for (int index = 0; index < 200000; ++index)
    {
        dots += "1.";
    }
    EXPECT_EQ(decimal(left, left + "1"), VersionOrder::Older);
    EXPECT_EQ(decimal(dots + "2", dots + "1"), VersionOrder::Newer);
}
} // namespace
