#include "compare_table.h"

#include "table_serializer.h"

#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace
{
using Row = std::vector<std::string>;

CompareChildUpdate child(const std::string& name, const std::string& installed)
{
    CompareChildUpdate update;
    update.name = name;
    update.newVersion = "2.0";
    update.installedVersion = installed;
    update.adapterName = "Twoport";
    update.slotNumber = "3";
    update.slotType = "1";
    return update;
}

ComparePackage package(const std::vector<CompareChildUpdate>& children)
{
    ComparePackage made;
    made.name = "Nic package";
    made.component = "Nic";
    made.updateId = "krv_fw_nic_2.0";
    made.packageVersion = "Nic Version 2.0-[N20]";
    made.selected = 1;
    made.children = children;
    return made;
}

class CompareTable : public ::testing::Test
{
  protected:
    void add(const ComparePackage& made, bool matched, const std::string& host = "h1",
             const std::string& pattern = "nomatch")
    {
        AddPackageRows(stream_, counter_, host, made, footnotes_,
                       boost::regex(pattern, boost::regex::perl | boost::regex::icase), matched);
    }

    std::vector<Row> rows() const
    {
        std::vector<Row> result;
        const Row& cells = stream_.cells();
        EXPECT_EQ(cells.size() % 9, 0U);
        for (std::size_t begin = 0; begin + 9 <= cells.size(); begin += 9)
        {
            const auto first = cells.begin() + static_cast<std::ptrdiff_t>(begin);
            result.emplace_back(first, first + 9);
        }
        return result;
    }

    std::string cell(std::size_t row, std::size_t column) const { return rows().at(row).at(column); }

    TableStream stream_;
    std::int32_t counter_ = 0;
    Footnotes footnotes_;
};

constexpr std::size_t kUnit = 2;
constexpr std::size_t kSoftwareId = 3;
constexpr std::size_t kSlot = 4;
constexpr std::size_t kNew = 5;
constexpr std::size_t kInstalled = 6;
constexpr std::size_t kSelected = 7;

TEST_F(CompareTable, HasNineTitles)
{
    AddHeaderRow(stream_);
    EXPECT_EQ(rows(), (std::vector<Row>{{"No.", "HOST", "Updatable Unit", "Software Id", "Slot", "New Version",
                                         "Installed Version", "Selected", "Update Id"}}));
}

TEST_F(CompareTable, GivesARowForADetectedChild)
{
    add(package({child("NIC-1", "1.0")}), true);
    EXPECT_EQ(rows(), (std::vector<Row>{{"0", "h1", "Twoport", "NIC-1", "3", "2.0", "1.0", "YES", "krv_fw_nic_2.0"}}));
    EXPECT_EQ(counter_, 1);
}

TEST_F(CompareTable, GivesOneRowForAMatchedPackageWithThreeUndetectedChildren)
{
    add(package({child("a", "Undetected"), child("b", "Undetected"), child("c", "Undetected")}), true);
    EXPECT_EQ(rows(), (std::vector<Row>{
                          {"0", "h1", "Nic package", "Nic", "N/A", "2.0", "Undetected", "YES", "krv_fw_nic_2.0"}}));
}

TEST_F(CompareTable, GivesOneRowForAMatchedPackageWithoutChildren)
{
    add(package({}), true);
    EXPECT_EQ(rows().size(), 1U);
    EXPECT_EQ(cell(0, kInstalled), "Undetected");
}

TEST_F(CompareTable, GivesNoPackageRowForAPackageThatDidNotMatch)
{
    add(package({}), false);
    add(package({child("a", "Undetected")}), false, "h1", "a");
    EXPECT_TRUE(rows().empty());
    EXPECT_EQ(counter_, 0);
}

TEST_F(CompareTable, GivesOnlyTheMatchingChildOfAPackageThatDidNotMatch)
{
    add(package({child("NIC-1", "1.0"), child("RAID-7", "1.0")}), false, "h1", "raid");
    ASSERT_EQ(rows().size(), 1U);
    EXPECT_EQ(cell(0, kSoftwareId), "RAID-7");
}

TEST_F(CompareTable, GivesOnlyTheDetectedChildrenOfAMatchedPackage)
{
    add(package({child("a", "Undetected"), child("b", "1.0")}), true);
    ASSERT_EQ(rows().size(), 1U);
    EXPECT_EQ(cell(0, kSoftwareId), "b");
}

TEST_F(CompareTable, ShowsTheSlot)
{
    CompareChildUpdate onboard = child("a", "1");
    onboard.slotType = "0";
    CompareChildUpdate unknown = child("b", "1");
    unknown.slotNumber = "";
    unknown.slotType = "0";
    CompareChildUpdate digits = child("c", "1");
    digits.slotNumber = "12b";
    CompareChildUpdate letters = child("d", "1");
    letters.slotNumber = "PCIe";
    CompareChildUpdate padded = child("e", "1");
    padded.slotType = "00";
    add(package({child("x", "1"), onboard, unknown, digits, letters, padded}), true);
    EXPECT_EQ(cell(0, kSlot), "3");
    EXPECT_EQ(cell(1, kSlot), "Onboard");
    EXPECT_EQ(cell(2, kSlot), "N/A");
    EXPECT_EQ(cell(3, kSlot), "12");
    EXPECT_EQ(cell(4, kSlot), "0");
    EXPECT_EQ(cell(5, kSlot), "3");
}

TEST_F(CompareTable, FillsEmptyCells)
{
    add(package({child("", "")}), true);
    EXPECT_EQ(cell(0, kSoftwareId), "N/A");
    EXPECT_EQ(cell(0, kInstalled), "Undetected");
}

TEST_F(CompareTable, TakesTheWordUndetectedInLowerCaseAsAVersion)
{
    add(package({child("a", "undetected")}), true);
    EXPECT_EQ(cell(0, kInstalled), "undetected");
}

TEST_F(CompareTable, NamesTheDriverBesideItsDevice)
{
    ComparePackage driver = package({child("a", "1")});
    driver.updateId = "krv_dd_nic_2.0";
    add(driver, true);
    EXPECT_EQ(cell(0, kUnit), "Nic package(Twoport)");
    driver.updateId = "krv_DD_nic";
    add(driver, true);
    EXPECT_EQ(cell(1, kUnit), "Twoport");
}

TEST_F(CompareTable, ShowsThePackagesReasonForASelectedChildOfAnUnselectedPackage)
{
    ComparePackage unselected = package({child("a", "1")});
    unselected.selected = 0;
    unselected.unselectedReason = "1-text";
    add(unselected, true);
    EXPECT_EQ(cell(0, kSelected), "No (*1)");
}

TEST_F(CompareTable, ShowsThePackagesReasonForAnUnselectedChildOfASelectedPackage)
{
    ComparePackage half = package({child("a", "1"), child("b", "1")});
    half.children[0].selected = 0;
    half.unselectedReason = "19-text";
    add(half, true);
    EXPECT_EQ(cell(0, kSelected), "No (*19)");
    EXPECT_EQ(cell(1, kSelected), "YES");
}

TEST_F(CompareTable, LeavesTheCellEmptyForAReasonBeyondNineteen)
{
    ComparePackage unselected = package({child("a", "1")});
    unselected.selected = 0;
    for (const char* reason : {"20-text", "0-text", "", "-text", "1text", "x1-text", "01-text", "191-text"})
    {
        unselected.unselectedReason = reason;
        add(unselected, true);
        EXPECT_EQ(rows().back().at(kSelected), "") << reason;
    }
    EXPECT_TRUE(footnotes_.empty());
}

TEST_F(CompareTable, TellsOneFromEleven)
{
    ComparePackage unselected = package({});
    unselected.selected = 0;
    unselected.unselectedReason = "11-x";
    add(unselected, true);
    EXPECT_EQ(cell(0, kSelected), "No (*11)");
}

TEST_F(CompareTable, CollectsTheReasonOfAPackageThatGivesNoRow)
{
    ComparePackage filtered = package({child("a", "1")});
    filtered.unselectedReason = "3-text";
    add(filtered, false);
    EXPECT_TRUE(rows().empty());
    EXPECT_EQ(footnotes_, (Footnotes{"3-text"}));
}

TEST_F(CompareTable, PrintsFootnotesInByteOrderAndOnce)
{
    ComparePackage unselected = package({});
    for (const char* reason : {"2-b", "10-a", "2-b"})
    {
        unselected.unselectedReason = reason;
        add(unselected, true);
    }
    std::ostringstream out;
    PrintFootnotes(out, footnotes_);
    EXPECT_EQ(out.str(), "    *10-a\n    *2-b\n");
}

TEST_F(CompareTable, CutsTheNewVersionOutOfThePackageVersion)
{
    ComparePackage made = package({});
    made.packageVersion = "Firmware Version 1.2.3-[abc]";
    add(made, true);
    EXPECT_EQ(cell(0, kNew), "1.2.3");
    made.packageVersion = "Version 7-8 Version 9";
    add(made, true);
    EXPECT_EQ(cell(1, kNew), "7-8 Version 9");
}

TEST_F(CompareTable, TakesTheTextFromIndexSevenWithoutTheWordVersion)
{
    ComparePackage made = package({});
    made.packageVersion = "0123456789-[abc]";
    add(made, true);
    EXPECT_EQ(cell(0, kNew), "789");
    made.packageVersion = "0123456";
    add(made, true);
    EXPECT_EQ(cell(1, kNew), "");
}

TEST_F(CompareTable, ThrowsForAShortPackageVersionWithoutTheWordVersion)
{
    ComparePackage made = package({});
    made.packageVersion = "012345";
    EXPECT_THROW(add(made, true), std::out_of_range);
    EXPECT_TRUE(rows().empty());
    made.children = {child("a", "1")};
    add(made, true); // no package row, so nothing is cut
    EXPECT_EQ(rows().size(), 1U);
}

TEST_F(CompareTable, ShowsTheReasonOfAnUnselectedUndetectedPackage)
{
    ComparePackage made = package({});
    made.selected = 0;
    made.unselectedReason = "3-not there";
    add(made, true);
    EXPECT_EQ(cell(0, kSelected), "No (*3)");
}

TEST_F(CompareTable, NumbersRowsOverAllHosts)
{
    add(package({child("a", "1")}), true, "h1");
    add(package({child("a", "1")}), true, "h2");
    EXPECT_EQ(rows().at(0), (Row{"0", "h1", "Twoport", "a", "3", "2.0", "1", "YES", "krv_fw_nic_2.0"}));
    EXPECT_EQ(rows().at(1), (Row{"1", "h2", "Twoport", "a", "3", "2.0", "1", "YES", "krv_fw_nic_2.0"}));
}

TEST_F(CompareTable, NeedsASelectedValueOfExactlyOne)
{
    ComparePackage made = package({child("a", "1")});
    made.selected = 2;
    add(made, true);
    EXPECT_EQ(cell(0, kSelected), "");
}
} // namespace
