#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

// The machine type: four characters, digits and capital letters, the first one a digit ("7X20").
//
// Services keep it in different places, and fill those places with other things too. Candidates in order:
//   1. vendor fields of the system (Oem.*, one or two levels down) whose name says sub-model or machine type,
//   2. SKU, Model and PartNumber of the system,
//   3. SKU, Model and PartNumber of the chassis.
// An SKU that is neither a machine type by itself nor holds one in square brackets comes behind Model: some services put a
// service tag there, which can begin like a model code or hold a word like a machine type.
// The first candidate that yields one counts. A candidate yields one when, after trimming, it
//   - is a machine type by itself; letter case is folded; a run of four digits counts unless it is a filler,
//   - is a model code of ten characters that begins with one and holds letters ("7Y41CTO1WW"),
//   - holds one in square brackets ("Node X [7X20]-"),
//   - holds one as a word of its own, with at least one letter and not a measure such as "10GB" or "2U4N".
// Fillers never count: only dots, one repeated character, "To be filled...", "N/A", "Not Specified", "Default string",
// runs of digits other than four, and the runs 1234, 0123 and their like.
namespace redfish
{
// The machine type that the text carries, or empty.
std::string machineTypeOf(const std::string& candidate);

// The first machine type in a list of candidates, or empty.
std::string firstMachineType(const std::vector<std::string>& candidates);

// What protocols of all kinds say of a system or chassis, in the order above.
std::vector<std::string> standardCandidates(const std::string& sku, const std::string& model,
                                            const std::string& partNumber);

// Texts of a ComputerSystem resource that may carry the machine type, the most telling first.
std::vector<std::string> systemCandidates(const nlohmann::json& system);

// The same of a Chassis resource.
std::vector<std::string> chassisCandidates(const nlohmann::json& chassis);

// The controller type of a Manager resource: a known one (PMX, PMX2, PMX3, AMI, AMD, CMM, CMM2, SMM, SMM2) that is
// its Model or stands as a word in its Model or FirmwareVersion, else its Model.
std::string bmcTypeOf(const nlohmann::json& manager);

// Whether the text only fills a field that has no value ("N/A", "To be filled by O.E.M.", "....").
bool isPlaceholder(const std::string& value);
} // namespace redfish
