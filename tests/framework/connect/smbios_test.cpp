#include "connect/smbios.h"

#include "framework/connect/smbios_fixture.h"

#include <gtest/gtest.h>

using connect::MachineDescription;
using connect::readSmbios;
using smbios_fixture::machine;
using smbios_fixture::structure;

TEST(Smbios, GivesTheTextsOfFirmwareSystemAndBoard)
{
    const MachineDescription read = readSmbios(machine());
    EXPECT_EQ(read.biosVendor, "Halvorsen");
    EXPECT_EQ(read.biosVersion, "HVE128K");
    EXPECT_EQ(read.biosDate, "07/24/2025");
    EXPECT_EQ(read.productName, "Halvorsen H2 -[7X20]-");
    EXPECT_EQ(read.productVersion, "03");
    EXPECT_EQ(read.productSku, "To be filled by O.E.M.");
    EXPECT_EQ(read.productFamily, "H");
    EXPECT_EQ(read.boardName, "Board 7");
}

TEST(Smbios, TakesTheFirstOfSeveralAndSkipsOtherTypes)
{
    const std::string table = structure(17, 0x20, {{0x10, "a module"}}) + structure(2, 8, {{0x05, "first"}}) +
                              structure(2, 8, {{0x05, "second"}});
    EXPECT_EQ(readSmbios(table).boardName, "first");
}

TEST(Smbios, LeavesOutWhatAnOldTableDoesNotHave)
{
    // Version 2.0 of the structure ends before the product's number and family.
    const MachineDescription read = readSmbios(structure(1, 0x08, {{0x05, "Node"}}));
    EXPECT_EQ(read.productName, "Node");
    EXPECT_EQ(read.productSku, "");
}

TEST(Smbios, SurvivesAnyCut)
{
    const std::string whole = machine();
    for (std::size_t length = 0; length < whole.size(); ++length)
    {
        const MachineDescription read = readSmbios(whole.substr(0, length));
        EXPECT_TRUE(read.biosVendor.empty() || read.biosVendor == "Halvorsen") << length;
    }
}

TEST(Smbios, SurvivesWrongLengthsAndTextNumbers)
{
    std::string table = structure(0, 0x18, {{0x05, "1.0"}});
    table[0x04] = 9; // a text that is not there
    EXPECT_EQ(readSmbios(table).biosVendor, "");
    EXPECT_EQ(readSmbios(table).biosVersion, "1.0");
    for (const int length : {0, 3, 255})
    {
        table[1] = static_cast<char>(length);
        EXPECT_EQ(readSmbios(table).biosVersion, "") << length;
    }
    EXPECT_EQ(readSmbios(std::string(100000, '\0')).biosVersion, "");
}

TEST(Smbios, TellsOfAControllerByEitherOfItsStructures)
{
    EXPECT_FALSE(connect::tellsOfController(machine()));
    EXPECT_TRUE(connect::tellsOfController(structure(38, 0x12, {}) + machine()));
    EXPECT_TRUE(connect::tellsOfController(structure(42, 0x10, {}) + machine()));
    EXPECT_FALSE(connect::tellsOfController(machine() + structure(38, 0x12, {}))) << "behind the table's end";
}

TEST(BiosDate, BecomesAnIsoDate)
{
    EXPECT_EQ(connect::isoDateOfBios("07/24/2025"), "2025-07-24");
    EXPECT_EQ(connect::isoDateOfBios("07/24/25"), "");
    EXPECT_EQ(connect::isoDateOfBios(""), "");
}
