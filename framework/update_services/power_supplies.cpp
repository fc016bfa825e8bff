#include "update_services/power_supplies.h"

#include "text/text.h"

#include <algorithm>

namespace update_services
{
namespace
{
using service::CompareOptions;
using service::PackageChild;
using service::PackageInfo;
using service::ScanItem;

bool saysPsu(const std::string& name)
{
    return text::toLower(text::trim(name)) == "psu";
}

std::string withoutLeadingZeros(const std::string& number)
{
    const std::size_t start = number.find_first_not_of('0');
    return start == std::string::npos ? number.substr(0, 1) : number.substr(start);
}

// "2" of "PSU.2"; empty when the text does not end in a number.
std::string numberAtTheEnd(const std::string& text)
{
    const std::size_t last = text.find_last_not_of("0123456789");
    return last == std::string::npos ? text : text.substr(last + 1);
}

// `entry`: one of --psu.
bool names(const std::string& entry, const ScanItem& item)
{
    const std::string wanted = text::toLower(text::trim(entry));
    const std::string slot = withoutLeadingZeros(item.slotNumber.empty() ? numberAtTheEnd(item.id) : item.slotNumber);
    return !wanted.empty() && ((!slot.empty() && withoutLeadingZeros(wanted) == slot) ||
                               wanted == text::toLower(item.name) || wanted == text::toLower(item.id));
}

bool namesAny(const std::string& entry, const std::vector<const ScanItem*>& items)
{
    return std::any_of(items.begin(), items.end(), [&entry](const ScanItem* item) { return names(entry, *item); });
}

std::vector<const ScanItem*> powerSupplies(const std::vector<PackageInfo>& packages,
                                           const service::UpdateScanReport& scan, const InstalledItems& installed)
{
    std::vector<const ScanItem*> found;
    for (const ScanItem& item : scan.GetScanResults())
    {
        if (saysPsu(item.category) || saysPsu(item.classification))
        {
            found.push_back(&item);
        }
    }
    for (const PackageInfo& package : packages)
    {
        for (const PackageChild& update : package.children)
        {
            for (const ScanItem* item : installed.find(update.softwareId))
            {
                if (isPsu(package, update, *item))
                {
                    found.push_back(item);
                }
            }
        }
    }
    return found;
}
} // namespace

bool isPsu(const PackageInfo& package, const PackageChild& update, const ScanItem& item)
{
    return saysPsu(package.component) || saysPsu(update.category) || saysPsu(update.classification) ||
           saysPsu(item.category) || saysPsu(item.classification);
}

bool psuNamed(const CompareOptions& options, const ScanItem& item)
{
    return options.allPsu || options.psuList.empty() ||
           std::any_of(options.psuList.begin(), options.psuList.end(),
                       [&item](const std::string& entry) { return names(entry, item); });
}

std::vector<std::string> unknownPsus(const std::vector<PackageInfo>& packages, const service::UpdateScanReport& scan,
                                     const InstalledItems& installed, const CompareOptions& options)
{
    std::vector<std::string> unknown;
    if (options.allPsu || scan.GetScanResults().empty())
    {
        return unknown;
    }
    const std::vector<const ScanItem*> supplies = powerSupplies(packages, scan, installed);
    for (const std::string& entry : options.psuList)
    {
        if (!text::trim(entry).empty() && !namesAny(entry, supplies))
        {
            unknown.push_back(text::trim(entry));
        }
    }
    return unknown;
}
} // namespace update_services
