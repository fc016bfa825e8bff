#include "update_services/child_comparison.h"

#include "compare_report_keys.h"
#include "repository/version.h"
#include "text/text.h"
#include "update_services/power_supplies.h"

#include <algorithm>
#include <array>

namespace update_services
{
namespace
{
using service::ComparedChild;
using service::CompareOptions;
using service::PackageChild;
using service::PackageInfo;
using service::ScanItem;
using service::VersionOutcome;

constexpr std::int32_t kDriverType = 3;
constexpr char kNoVersion[] = "N/A";

// What a user should know first about a package with several children.
constexpr std::array<VersionOutcome, 5> kSignificance{VersionOutcome::Newer, VersionOutcome::NotComparable,
                                                      VersionOutcome::Older, VersionOutcome::Same,
                                                      VersionOutcome::NotDetected};

constexpr std::array<UnselectedReason, 7> kReasonSignificance{
    UnselectedReason::None,          UnselectedReason::PsuNotNamed,    UnselectedReason::NotUpdateable,
    UnselectedReason::NotComparable, UnselectedReason::InstalledNewer, UnselectedReason::UpToDate,
    UnselectedReason::NotDetected};

template <class List, class Value>
std::size_t rankOf(const List& list, Value value)
{
    return static_cast<std::size_t>(std::find(list.begin(), list.end(), value) - list.begin());
}

UnselectedReason reasonOf(VersionOutcome outcome, bool forced)
{
    switch (outcome)
    {
    case VersionOutcome::NotDetected:
        return UnselectedReason::NotDetected;
    case VersionOutcome::Newer:
        return UnselectedReason::None;
    case VersionOutcome::Same:
        return forced ? UnselectedReason::None : UnselectedReason::UpToDate;
    case VersionOutcome::Older:
        return forced ? UnselectedReason::None : UnselectedReason::InstalledNewer;
    case VersionOutcome::NotComparable:
        break;
    }
    return forced ? UnselectedReason::None : UnselectedReason::NotComparable;
}

void fillEmpty(std::string& value, const std::string& fallback)
{
    if (value.empty())
    {
        value = fallback;
    }
}

ComparedChild detectedChild(const PackageChild& update, const ScanItem& item)
{
    ComparedChild child;
    child.update = update;
    fillEmpty(child.update.category, item.category);
    fillEmpty(child.update.classification, item.classification);
    fillEmpty(child.update.adapterName, item.name);
    fillEmpty(child.update.adapterName, update.softwareId);
    const std::string version = text::trim(item.version);
    child.installedVersion = version.empty() ? kNoVersion : version;
    child.instanceId = item.id;
    child.slotNumber = item.slotNumber;
    child.slotType = item.slotType;
    child.outcome = compareWithInstalled(update, version);
    return child;
}

ComparedChild undetectedChild(const PackageChild& update)
{
    ComparedChild child;
    child.update = update;
    fillEmpty(child.update.adapterName, update.softwareId);
    child.installedVersion = compare_key::kUndetected;
    return child;
}

class Comparison
{
  public:
    Comparison(const PackageInfo& package, const CompareOptions& options, bool forced)
        : package_(package), options_(options), forced_(forced)
    {
    }

    void addDetected(const PackageChild& update, const ScanItem& item)
    {
        result_.detected = true;
        ComparedChild child = detectedChild(update, item);
        UnselectedReason reason = reasonOf(child.outcome, forced_);
        if (reason == UnselectedReason::None && isPsu(package_, update, item) && !psuNamed(options_, item))
        {
            reason = UnselectedReason::PsuNotNamed;
        }
        if (reason == UnselectedReason::None && options_.checkDevice && !item.updateable)
        {
            reason = UnselectedReason::NotUpdateable;
        }
        add(std::move(child), reason);
    }

    void addUndetected(const PackageChild& update)
    {
        const bool wanted = options_.allDriver && package_.type == kDriverType;
        add(undetectedChild(update), wanted ? UnselectedReason::None : UnselectedReason::NotDetected);
    }

    ComparedChildren take() { return std::move(result_); }

  private:
    void add(ComparedChild&& child, UnselectedReason reason)
    {
        child.selected = reason == UnselectedReason::None ? 1 : 0;
        child.unselectedReason = reasonText(reason);
        const bool first = result_.children.empty();
        if (first || rankOf(kSignificance, child.outcome) < rankOf(kSignificance, result_.outcome))
        {
            result_.outcome = child.outcome;
        }
        if (first || rankOf(kReasonSignificance, reason) < rankOf(kReasonSignificance, result_.reason))
        {
            result_.reason = reason;
        }
        result_.children.push_back(std::move(child));
    }

    const PackageInfo& package_;
    const CompareOptions& options_;
    bool forced_;
    ComparedChildren result_;
};
} // namespace

InstalledItems::InstalledItems(const service::UpdateScanReport& scan, Bank bank)
{
    for (const ScanItem& item : scan.GetScanResults())
    {
        const std::string id = text::toLower(text::trim(item.softwareId));
        if (!id.empty() && item.backupBank == (bank == Bank::Backup))
        {
            items_[id].push_back(&item);
        }
    }
}

const std::vector<const ScanItem*>& InstalledItems::find(const std::string& softwareId) const
{
    static const std::vector<const ScanItem*> kNone;
    const auto found = items_.find(text::toLower(text::trim(softwareId)));
    return found == items_.end() ? kNone : found->second;
}

VersionOutcome compareWithInstalled(const PackageChild& update, const std::string& installedVersion)
{
    const auto style = update.hexVersion ? repository::VersionStyle::Hexadecimal : repository::VersionStyle::Decimal;
    switch (repository::compareVersions(update.newVersion, installedVersion, style))
    {
    case repository::VersionOrder::Newer:
        return VersionOutcome::Newer;
    case repository::VersionOrder::Same:
        return VersionOutcome::Same;
    case repository::VersionOrder::Older:
        return VersionOutcome::Older;
    case repository::VersionOrder::NotComparable:
        break;
    }
    return VersionOutcome::NotComparable;
}

ComparedChildren compareChildren(const PackageInfo& package, const InstalledItems& installed,
                                 const CompareOptions& options, bool forced)
{
    Comparison comparison(package, options, forced);
    for (const PackageChild& update : package.children)
    {
        const std::vector<const ScanItem*>& items = installed.find(update.softwareId);
        for (const ScanItem* item : items)
        {
            comparison.addDetected(update, *item);
        }
        if (items.empty())
        {
            comparison.addUndetected(update);
        }
    }
    return comparison.take();
}
} // namespace update_services
