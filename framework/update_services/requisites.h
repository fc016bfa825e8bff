#pragma once

#include "service/update_compare.h"
#include "update_services/unselected_reasons.h"

#include <cstddef>
#include <string>
#include <vector>

// What the packages of one report need of one another.
namespace update_services
{
constexpr std::size_t kNoPackage = static_cast<std::size_t>(-1);

// A package of the report while it is decided about; the reason is None as long as it is selected.
struct Decision
{
    UnselectedReason reason = UnselectedReason::None;
    std::size_t replacedBy = kNoPackage; // the package that does its work
    bool pulledIn = false;               // in the report only because others need it
    bool excluded = false;
    bool forcedById = false;
    bool detected = false;
    bool nothingToDo = false; // by its versions alone: as new is installed, or there is no device for it
};

enum class NeedKind
{
    Before,   // prerequisite: first
    Together, // corequisite or requisite: in the same run, in any order
};

struct Need
{
    std::size_t package = kNoPackage; // kNoPackage: the report holds none
    NeedKind kind = NeedKind::Before;
    std::string id;
};

// For each package what it names as requisites, itself left out. An id that the report does not hold stands for a
// package that supersedes it, if there is one.
std::vector<std::vector<Need>> collectNeeds(const std::vector<service::ComparedPackage>& packages);

// The package that does the work of `package` after replacements.
std::size_t effective(const std::vector<Decision>& decisions, std::size_t package);

// Takes the selection from packages whose needs cannot be met, and from pulled-in ones that no selected package needs.
void applyNeeds(const std::vector<std::vector<Need>>& needs, UnselectedReason reasonForPulledIn,
                std::vector<Decision>& decisions);

// Fills alsoSelect, alsoDeselect and flashOrder. Circles of prerequisites are logged.
void describeNeeds(const std::vector<std::vector<Need>>& needs, const std::vector<Decision>& decisions,
                   std::vector<service::ComparedPackage>& packages);
} // namespace update_services
