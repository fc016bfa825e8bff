#include "redfish/slots.h"

#include "framework/redfish/fake_transport.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <tuple>

using redfish::Slot;

namespace
{
std::string show(const Slot& slot)
{
    return slot.number + "/" + slot.type;
}

std::string locate(FakeTransport::Service& service, const std::string& id, const std::vector<std::string>& related)
{
    redfish::Client client(ConnectOption(), redfish::ClientLimits(), std::make_unique<FakeTransport>(service));
    redfish::SlotFinder finder(client, "/chassis");
    return show(finder.find(id, related));
}
} // namespace

TEST(Slots, PartLocationGivesNumberAndType)
{
    const std::vector<std::pair<const char*, const char*>> table = {
        {R"({"LocationType": "Slot", "LocationOrdinalValue": 5})", "5/1"},
        {R"({"LocationType": "Slot", "ServiceLabel": "PCIe Slot 12"})", "12/1"},
        {R"({"LocationType": "Embedded"})", "0/0"},
        {R"({"LocationType": "Embedded", "LocationOrdinalValue": 2})", "2/0"},
        {R"({"ServiceLabel": "Onboard"})", "0/0"},
        {R"({"ServiceLabel": "Slot 3"})", "3/1"},
        {R"({"LocationType": "Slot", "LocationOrdinalValue": -1})", "/"},
        {R"({"ServiceLabel": "99999999999999999999999"})", "/"},
        {R"({})", "/"},
        {R"(7)", "/"}};
    for (const auto& row : table)
    {
        EXPECT_EQ(row.second, show(redfish::slotOfPartLocation(nlohmann::json::parse(row.first)))) << row.first;
    }
}

TEST(Slots, AnIdMaySpellTheSlot)
{
    const std::vector<std::pair<const char*, const char*>> table = {
        {"NIC.Slot.5-1", "5/1"}, {"RAID.Integrated.1-1", "1/0"}, {"PcieSlot3.Firmware", "3/1"},
        {"Slot_07", "7/1"},      {"BMC-Primary", "/"},           {"slot", "/"}};
    for (const auto& row : table)
    {
        EXPECT_EQ(row.second, show(redfish::slotOfId(row.first))) << row.first;
    }
}

TEST(Slots, TheDevicesOwnSlotComesBeforeTheId)
{
    FakeTransport::Service service;
    service.resources["/redfish/v1/Chassis/1/PCIeDevices/4"] =
        R"({"Slot": {"Location": {"PartLocation": {"LocationType": "Slot", "LocationOrdinalValue": 4}}}})";
    EXPECT_EQ("4/1", locate(service, "NIC.Slot.9", {"/redfish/v1/Chassis/1/PCIeDevices/4"}));
    EXPECT_EQ("9/1", locate(service, "NIC.Slot.9", {"/redfish/v1/Chassis/1/PCIeDevices/5"}));
}

TEST(Slots, ThePcieSlotsOfTheChassisNameTheDevice)
{
    FakeTransport::Service service;
    service.resources["/c/PCIeDevices/4"] = R"({"Links": {"Chassis": [{"@odata.id": "/c"}]}})";
    service.resources["/c"] = R"({"PCIeSlots": {"@odata.id": "/c/PCIeSlots"}})";
    service.resources["/c/PCIeSlots"] = R"({"Slots": [
        {"Location": {"PartLocation": {"LocationOrdinalValue": 1}}, "Links": {"PCIeDevice": [{"@odata.id": "/c/PCIeDevices/1"}]}},
        {"Location": {"PartLocation": {"ServiceLabel": "Slot 6"}}, "Links": {"PCIeDevice": [{"@odata.id": "/c/PCIeDevices/4/"}]}}]})";
    EXPECT_EQ("6/1", locate(service, "a", {"/c/PCIeDevices/4"}));
}

TEST(Slots, ADeviceThatNamesNoChassisIsLookedForInTheSlotsOfAll)
{
    FakeTransport::Service service;
    service.resources["/chassis"] = R"({"Members": [{"@odata.id": "/chassis/0"}, {"@odata.id": "/chassis/1"}]})";
    service.resources["/chassis/0"] = R"({"Name": "enclosure"})";
    service.resources["/chassis/1"] = R"({"PCIeSlots": {"@odata.id": "/chassis/1/PCIeSlots"}})";
    service.resources["/chassis/1/PCIeSlots"] = R"({"Slots": [{"Location": {"PartLocation":
        {"LocationOrdinalValue": 8}}, "Links": {"PCIeDevice": [{"@odata.id": "/systems/1/PCIeDevices/4"}]}}]})";
    service.resources["/systems/1/PCIeDevices/4"] = "{}";
    EXPECT_EQ("8/1", locate(service, "a", {"/systems/1/PCIeDevices/4"}));
}

TEST(Slots, APointerNamesTheControllerOfAnAdapter)
{
    FakeTransport::Service service;
    service.resources["/c/NetworkAdapters/1"] = R"({"Controllers": [
        {"Location": {"PartLocation": {"LocationType": "Slot", "LocationOrdinalValue": 1}}},
        {"Location": {"PartLocation": {"LocationType": "Slot", "LocationOrdinalValue": 2}}}]})";
    EXPECT_EQ("2/1", locate(service, "a", {"/c/NetworkAdapters/1#/Controllers/1"}));
    EXPECT_EQ("1/1", locate(service, "a", {"/c/NetworkAdapters/1"}));
    EXPECT_EQ("1/1", locate(service, "a", {"/c/NetworkAdapters/1#/Controllers/77"}));
}

TEST(Slots, LinksThatGoInACircleEnd)
{
    FakeTransport::Service service;
    service.resources["/PCIeDevices/1"] = R"({"Links": {"PCIeFunctions": [{"@odata.id": "/PCIeFunctions/1"}]}})";
    service.resources["/PCIeFunctions/1"] = R"({"Links": {"PCIeDevice": {"@odata.id": "/PCIeDevices/1"}}})";
    EXPECT_EQ("/", locate(service, "a", {"/PCIeDevices/1"}));
    EXPECT_EQ(1U, service.count("GET", "/PCIeDevices/1"));
    EXPECT_EQ(1U, service.count("GET", "/PCIeFunctions/1"));
}
