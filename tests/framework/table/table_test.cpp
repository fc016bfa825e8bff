#include "table_serializer.h"

#include <gtest/gtest.h>

#include <sstream>

namespace
{
std::string printed(const TableSerializer& table)
{
    std::ostringstream out;
    table.PrintTable(out);
    return out.str();
}
} // namespace

TEST(TableSerializer, PrintsTitleBordersHeadAndRows)
{
    TableSerializer table(2, "Title", 2);
    table.sstream() << "NO"
                    << "NAME" << 1 << std::string("first") << 10 << "x";
    EXPECT_EQ(printed(table), "  Title\n"
                              "  +----+-------+\n"
                              "  | NO | NAME  |\n"
                              "  +----+-------+\n"
                              "  | 1  | first |\n"
                              "  | 10 | x     |\n"
                              "  +----+-------+\n");
}

TEST(TableSerializer, FillsTheLastRow)
{
    TableSerializer table(2, "", 0);
    table.sstream() << "A"
                    << "B"
                    << "1";
    EXPECT_EQ(printed(table), "+---+---+\n| A | B |\n+---+---+\n| 1 |   |\n+---+---+\n");
}

TEST(TableSerializer, PrintsTheTitleAloneWithoutRows)
{
    EXPECT_EQ(printed(TableSerializer(3, "Title", 1)), " Title\n");
}

TEST(TableSerializer, AlignsByDisplayWidth)
{
    TableSerializer table(1, "", 0);
    table.sstream() << "abc"
                    << "\xE6\xBC\xA2"
                    << "e\xCC\x81";
    EXPECT_EQ(printed(table), "+-----+\n| abc |\n+-----+\n| \xE6\xBC\xA2  |\n| e\xCC\x81   |\n+-----+\n");
}

TEST(TableSerializer, LetsNoControlCharacterThrough)
{
    TableSerializer table(1, "t\x1B", 0);
    table.sstream() << "a\x1B[2J\nb";
    EXPECT_EQ(printed(table), "t\\x1B\n+---------------+\n| a\\x1B[2J\\x0Ab |\n+---------------+\n");
}

TEST(TableSerializer, TakesNullAndImpossibleSizes)
{
    TableSerializer table(0, "", -3);
    table.sstream() << static_cast<const char*>(nullptr) << "x";
    EXPECT_EQ(printed(table), "+---+\n|   |\n+---+\n| x |\n+---+\n");
}
