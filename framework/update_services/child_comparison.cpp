#include "update_services/child_comparison.h"

#include "compare_report_keys.h"
#include "repository/version.h"
#include "text/text.h"

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
constexpr char kPsu[] = "psu";

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

bool isPsu(const PackageInfo& package, const PackageChild& update, const ScanItem& item)
{
    const std::array<const std::string*, 5> names{&package.component, &update.category, &update.classification,
                                                  &item.category, &item.classification};
    return std::any_of(names.begin(), names.end(),
                       [](const std::string* name) { return text::toLower(text::trim(*name)) == kPsu; });
}

std::string withoutLeadingZeros(const std::string& number)
{
    const std::size_t start = number.find_first_not_of('0');
    return start == std::string::npos ? number.substr(0, 1) : number.substr(start);
}

// The user names power supplies by slot number or by name.
// "2" of "PSU.2"; empty when the text does not end in a number.
std::string numberAtTheEnd(const std::string& text)
{
    const std::size_t last = text.find_last_not_of("0123456789");
    return last == std::string::npos ? text : text.substr(last + 1);
}

bool psuNamed(const CompareOptions& options, const ScanItem& item)
{
    if (options.allPsu || options.psuList.empty())
    {
        return true;
    }
    const std::string slot = withoutLeadingZeros(item.slotNumber.empty() ? numberAtTheEnd(item.id) : item.slotNumber);
    const std::string name = text::toLower(item.name);
    const std::string id = text::toLower(item.id);
    return std::any_of(options.psuList.begin(), options.psuList.end(),
                       [&](const std::string& entry)
                       {
                           const std::string wanted = text::toLower(text::trim(entry));
                           return !wanted.empty() && ((!slot.empty() && withoutLeadingZeros(wanted) == slot) ||
                                                      wanted == name || wanted == id);
                       });
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
