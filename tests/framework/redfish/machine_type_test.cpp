#include "redfish/machine_type.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <utility>
#include <vector>

using redfish::machineTypeOf;

TEST(MachineType, IsFoundInTheFormsThatServicesUse)
{
    const std::vector<std::pair<const char*, const char*>> table = {{"7X20", "7X20"},
                                                                    {" 7X20 ", "7X20"},
                                                                    {"7x20", "7X20"},
                                                                    {"7893", "7893"},
                                                                    {"7Y41CTO1WW", "7Y41"},
                                                                    {"Node X [7X20]-", "7X20"},
                                                                    {"Node X -[7X20]-", "7X20"},
                                                                    {"Node X [7893]", "7893"},
                                                                    {"Halvorsen 7X20 rack", "7X20"},
                                                                    {"7X20-AC1", "7X20"}};
    for (const auto& row : table)
    {
        EXPECT_EQ(row.second, machineTypeOf(row.first)) << row.first;
    }
}

TEST(MachineType, IsNotFoundInFillersAndOtherTexts)
{
    for (const char* text : {"",           "    ",          "....",
                             "0000",       "1111",          "1234",
                             "0123",       "9876",          "To be filled by O.E.M.",
                             "N/A",        "Not Specified", "123456789",
                             "4711000815", "XXXX",          "X720",
                             "Model 2019", "7BJ2K23",       "Node 2U4N",
                             "Card 10GB",  "Edge A",        "7X2",
                             "7X200"})
    {
        EXPECT_EQ("", machineTypeOf(text)) << text;
    }
}

TEST(MachineType, VendorFieldsComeBeforeSkuModelAndPartNumber)
{
    const auto system = nlohmann::json::parse(
        R"({"SKU": "7A11", "Model": "7B22", "PartNumber": "7C33", "Oem": {"Maker": {"SubModel": "7X20", "Note": 3}}})");
    EXPECT_EQ((std::vector<std::string>{"7X20", "7A11", "7B22", "7C33"}), redfish::systemCandidates(system));
    EXPECT_EQ("7C33", redfish::firstMachineType({"....", "n/a", "7C33"}));
}

TEST(MachineType, ADoubtfulSkuComesBehindTheModel)
{
    const std::vector<std::pair<const char*, const char*>> table = {
        {R"({"SKU": "4K92XB07QD", "Model": "7X20"})", "7X20"},
        {R"({"SKU": "4K92XB07QD", "Model": "Node X [7X20]-"})", "7X20"},
        {R"({"SKU": "4K92XB07QD", "Model": "7X20-AC1"})", "7X20"},
        {R"({"SKU": "4K92XB07QD", "Model": "7X20CTO1WW"})", "7X20"},
        {R"({"SKU": "4K92-XB07", "Model": "Halvorsen 7X20 rack"})", "7X20"},
        {R"({"SKU": "7Y41CTO1WW", "Model": "Halvorsen rack", "PartNumber": "7C33"})", "7Y41"},
        {R"({"SKU": "7Y41CTO1WW", "Model": "To be filled by O.E.M."})", "7Y41"},
        {R"({"SKU": "7y41", "Model": "7X20"})", "7Y41"},
        {R"({"SKU": "-[7Y41]-", "Model": "7X20"})", "7Y41"},
        {R"({"SKU": "4K92XB07QD", "Model": "7X20", "Oem": {"Maker": {"SubModel": "7Y41"}}})", "7Y41"}};
    for (const auto& row : table)
    {
        const auto resource = nlohmann::json::parse(row.first);
        EXPECT_EQ(row.second, redfish::firstMachineType(redfish::systemCandidates(resource))) << row.first;
        if (!resource.contains("Oem"))
        {
            EXPECT_EQ(row.second, redfish::firstMachineType(redfish::chassisCandidates(resource))) << row.first;
        }
    }
}

TEST(MachineType, CandidatesOfOddValuesAreEmpty)
{
    const auto system = nlohmann::json::parse(R"({"SKU": null, "Model": [], "PartNumber": {}, "Oem": "none"})");
    EXPECT_EQ("", redfish::firstMachineType(redfish::systemCandidates(system)));
    EXPECT_EQ("", redfish::firstMachineType(redfish::systemCandidates(nlohmann::json::parse("[1]"))));
}

TEST(BmcType, IsAKnownOneOrTheModel)
{
    const std::vector<std::pair<const char*, const char*>> table = {
        {R"({"Model": "PMX3"})", "PMX3"},
        {R"({"Model": "Quillon pmx2 controller"})", "PMX2"},
        {R"({"Model": "Card 7", "FirmwareVersion": "SMM2-1.4"})", "SMM2"},
        {R"({"Model": " Card 7 "})", "Card 7"},
        {R"({"Model": "PMX33"})", "PMX33"},
        {R"({"Model": "N/A"})", ""},
        {R"({})", ""}};
    for (const auto& row : table)
    {
        EXPECT_EQ(row.second, redfish::bmcTypeOf(nlohmann::json::parse(row.first))) << row.first;
    }
}
