#pragma once

#include <cstdint>
#include <string>

// Why a package is not selected: the numbers of UNSELECTEDREASON (docs/compare.md). They are stable; readers show the
// numbers 1 to 19 as footnotes, each with one text.
namespace update_services
{
enum class UnselectedReason : std::int32_t
{
    None = 0, // selected
    UpToDate = 1,
    InstalledNewer = 2,
    NotDetected = 3,
    NotComparable = 4,
    Excluded = 5,
    Superseded = 6,
    NotInPack = 7,
    NotAskedFor = 8,
    NotAgentless = 9,
    PsuNotNamed = 10,
    DeviceTaken = 11,
    PrerequisiteMissing = 12,
    PrerequisiteNotSelected = 13,
    RequisiteMissing = 14,
    RequisiteNotSelected = 15,
    NotUpdateable = 16,
    NoChildren = 17,
};

// "1-..."; empty for None.
inline std::string reasonText(UnselectedReason reason)
{
    const char* text = "";
    switch (reason)
    {
    case UnselectedReason::None:
        return std::string();
    case UnselectedReason::UpToDate:
        text = "The installed version is up to date.";
        break;
    case UnselectedReason::InstalledNewer:
        text = "The installed version is newer than the package; --forceid selects it nevertheless.";
        break;
    case UnselectedReason::NotDetected:
        text = "The target has no device that the package is for.";
        break;
    case UnselectedReason::NotComparable:
        text = "The installed version cannot be compared with the package's; --forceid selects it nevertheless.";
        break;
    case UnselectedReason::Excluded:
        text = "Excluded by --excludeid.";
        break;
    case UnselectedReason::Superseded:
        text = "Superseded by another package; --nosupersede ignores that.";
        break;
    case UnselectedReason::NotInPack:
        text = "Not part of the update pack, and no selected package needs it.";
        break;
    case UnselectedReason::NotAskedFor:
        text = "Not asked for, and no selected package needs it.";
        break;
    case UnselectedReason::NotAgentless:
        text = "Cannot be applied over the management controller.";
        break;
    case UnselectedReason::PsuNotNamed:
        text = "The power supply is not named by --psu.";
        break;
    case UnselectedReason::DeviceTaken:
        text = "Another selected package updates the same device.";
        break;
    case UnselectedReason::PrerequisiteMissing:
        text = "A prerequisite is not in the repository; --noreq ignores that.";
        break;
    case UnselectedReason::PrerequisiteNotSelected:
        text = "A prerequisite is neither installed nor selected; --noreq ignores that.";
        break;
    case UnselectedReason::RequisiteMissing:
        text = "A package that must be applied together with it is not in the repository; --noreq ignores that.";
        break;
    case UnselectedReason::RequisiteNotSelected:
        text =
            "A package that must be applied together with it is neither installed nor selected; --noreq ignores that.";
        break;
    case UnselectedReason::NotUpdateable:
        text = "The device says that it cannot be updated.";
        break;
    case UnselectedReason::NoChildren:
        text = "The package holds no child update.";
        break;
    }
    return std::to_string(static_cast<std::int32_t>(reason)) + "-" + text;
}
} // namespace update_services
