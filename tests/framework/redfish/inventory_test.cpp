#include "redfish/inventory.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using redfish::InventoryEntry;
using redfish::InventoryKind;
using redfish::readInventoryItem;

namespace
{
InventoryEntry entryOf(const std::string& json, InventoryKind kind = InventoryKind::Firmware)
{
    InventoryEntry entry;
    EXPECT_TRUE(readInventoryItem(nlohmann::json::parse(json), kind, entry)) << json;
    return entry;
}
} // namespace

TEST(Inventory, ReadsAnItem)
{
    const InventoryEntry entry = entryOf(R"({"Id": "BMC-1", "Name": " Controller ", "Version": "5.10 ",
        "SoftwareId": "PMX3-FW", "Manufacturer": "Halvorsen", "ReleaseDate": "2025-03-14T00:00:00Z",
        "Updateable": false, "Status": {"State": "StandbySpare"}, "RelatedItem": [{"@odata.id": "/redfish/v1/Managers/1"}]})");
    EXPECT_EQ("BMC-1", entry.item.id);
    EXPECT_EQ("Controller", entry.item.name);
    EXPECT_EQ("5.10", entry.item.version);
    EXPECT_EQ("PMX3-FW", entry.item.softwareId);
    EXPECT_EQ("Halvorsen", entry.item.manufacturer);
    EXPECT_EQ("2025-03-14T00:00:00Z", entry.item.releaseDate);
    EXPECT_EQ("Firmware", entry.item.category);
    EXPECT_EQ("BMC", entry.item.classification);
    EXPECT_FALSE(entry.item.updateable);
    EXPECT_TRUE(entry.item.backupBank);
}

TEST(Inventory, IdentityIsSoftwareIdElseIdElseName)
{
    EXPECT_EQ("UEFI-7X20", entryOf(R"({"Id": "UEFI-7X20", "SoftwareId": ""})").item.softwareId);
    EXPECT_EQ("UEFI", entryOf(R"({"Id": "Installed-UEFI", "SoftwareId": "0"})").item.softwareId);
    EXPECT_EQ("BIOS.Setup.1-1", entryOf(R"({"Id": "Current-159-1.6__BIOS.Setup.1-1"})").item.softwareId);
    EXPECT_EQ("Panel", entryOf(R"({"Name": "Panel"})").item.softwareId);
    EXPECT_EQ("X9", entryOf(R"({"@odata.id": "/redfish/v1/UpdateService/FirmwareInventory/X9/"})").item.softwareId);
    InventoryEntry entry;
    EXPECT_FALSE(readInventoryItem(nlohmann::json::parse("{}"), InventoryKind::Firmware, entry));
    EXPECT_FALSE(readInventoryItem(nlohmann::json::parse("[7]"), InventoryKind::Firmware, entry));
}

TEST(Inventory, FillersAreNoVersions)
{
    for (const char* version : {"null", "\"\"", "\"N/A\"", "\"ff\"", "\"FF\"", "\"undefined\"", "\"  \"", "[]"})
    {
        EXPECT_EQ(
            "",
            entryOf(std::string(R"({"Id": "a", "ReleaseDate": "00:00:00Z", "Version": )") + version + "}").item.version)
            << version;
    }
    EXPECT_EQ("v7.10", entryOf(R"({"Id": "a", "Version": " v7.10 "})").item.version);
    EXPECT_EQ("", entryOf(R"({"Id": "a", "ReleaseDate": "00:00:00Z"})").item.releaseDate);
}

TEST(Inventory, OfTheBanksOfOneComponentOnlyTheInstalledOneCounts)
{
    const auto kept = redfish::installedOnly({entryOf(R"({"Id": "Current-BIOS.1", "Version": "3"})"),
                                              entryOf(R"({"Id": "Installed-BIOS.1", "Version": "2"})"),
                                              entryOf(R"({"Id": "Previous-BIOS.1", "Version": "1"})"),
                                              entryOf(R"({"Id": "Current-NIC.1", "Version": "7"})"),
                                              entryOf(R"({"Id": "Previous-RAID.1", "Version": "9"})")});
    ASSERT_EQ(2U, kept.size());
    EXPECT_EQ("Installed-BIOS.1", kept[0].item.id);
    EXPECT_EQ("Current-NIC.1", kept[1].item.id);
}

TEST(Inventory, IdenticalItemsCountOnceAndItemsOfOtherIdsStay)
{
    const auto kept = redfish::installedOnly({entryOf(R"({"Id": "a", "Name": "Software Inventory", "Version": "1"})"),
                                              entryOf(R"({"Id": "a", "Name": "Software Inventory", "Version": "1"})"),
                                              entryOf(R"({"Id": "b", "Name": "Software Inventory", "Version": "1"})")});
    EXPECT_EQ(2U, kept.size());
}

TEST(Inventory, SoftwareIsADriverWhenItSaysSo)
{
    EXPECT_EQ("Driver", entryOf(R"({"Id": "1", "Name": "NIC Driver"})", InventoryKind::Software).item.category);
    EXPECT_EQ("Software", entryOf(R"({"Id": "1", "Name": "Agent"})", InventoryKind::Software).item.category);
}
