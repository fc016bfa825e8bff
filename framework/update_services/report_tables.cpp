#include "compare_report_keys.h"
#include "repository/package_fields.h"
#include "service/update_compare.h"
#include "service/update_scan.h"
#include "table_serializer.h"
#include "text/text.h"

#include <algorithm>
#include <iostream>

namespace service
{
namespace
{
constexpr char kAll[] = "all";
constexpr char kNotAvailable[] = "N/A";
constexpr char kOnBoard[] = "0";
constexpr int kIndent = 4;

std::string orNotAvailable(const std::string& value)
{
    return value.empty() ? kNotAvailable : value;
}

std::string slotText(const std::string& number, const std::string& type)
{
    if (number.empty())
    {
        return kNotAvailable;
    }
    return type == kOnBoard ? "Onboard" : number;
}

// The type name of "--type" that an inventory item belongs to.
std::string typeOf(const ScanItem& item)
{
    const std::string category = text::toLower(text::trim(item.category));
    if (category == "driver")
    {
        return "dd";
    }
    if (category == "software")
    {
        return "sw";
    }
    return category == "mm" ? "mm" : "fw";
}

bool wanted(const std::vector<std::string>& types, const ScanItem& item)
{
    const auto has = [&types](const std::string& type)
    { return std::find(types.begin(), types.end(), type) != types.end(); };
    return types.empty() || has(kAll) || has(typeOf(item));
}

std::string outcomeText(VersionOutcome outcome)
{
    switch (outcome)
    {
    case VersionOutcome::Same:
        return "same";
    case VersionOutcome::Newer:
        return "newer";
    case VersionOutcome::Older:
        return "older";
    case VersionOutcome::NotDetected:
        return "not detected";
    case VersionOutcome::NotComparable:
        break;
    }
    return "not comparable";
}

class CompareTable
{
  public:
    CompareTable(bool verbose)
        : verbose_(verbose), table_(verbose ? 13 : 9, "Compare Result", kIndent), stream_(table_.sstream())
    {
        stream_ << "No."
                << "Package"
                << "Updatable Unit"
                << "Software Id"
                << "Slot"
                << "New Version"
                << "Installed Version"
                << "Selected"
                << "Reason";
        if (verbose_)
        {
            stream_ << "Outcome"
                    << "Flash Order"
                    << "Severity"
                    << "Reboot";
        }
    }

    void add(const ComparedPackage& package)
    {
        for (const ComparedChild& child : package.children)
        {
            stream_ << ++rows_ << package.package.updateId << orNotAvailable(child.update.adapterName)
                    << orNotAvailable(child.update.softwareId) << slotText(child.slotNumber, child.slotType)
                    << child.update.newVersion << child.installedVersion;
            addDecision(package, child.selected == 1, child.outcome);
        }
        if (package.children.empty())
        {
            stream_ << ++rows_ << package.package.updateId << package.package.name << kNotAvailable << kNotAvailable
                    << package.package.packageVersion << compare_key::kUndetected;
            addDecision(package, package.selected == 1, package.outcome);
        }
    }

    void print(std::ostream& out) const { table_.PrintTable(out); }

  private:
    void addDecision(const ComparedPackage& package, bool selected, VersionOutcome outcome)
    {
        stream_ << (selected && package.selected == 1 ? "YES" : "NO") << package.unselectedReason;
        if (verbose_)
        {
            stream_ << outcomeText(outcome) << package.flashOrder << package.package.severityDescription
                    << package.package.rebootDescription;
        }
    }

    bool verbose_;
    TableSerializer table_;
    TableStream& stream_;
    int rows_ = 0;
};
} // namespace

void SerializeScanReport::PrintResult(const UpdateScanReport& report, const std::string& type)
{
    PrintResult(report, std::cout, type);
}

void SerializeScanReport::PrintResult(const UpdateScanReport& report, std::ostream& out, const std::string& type)
{
    const std::vector<std::string> types = repository::idList(text::toLower(type));
    TableSerializer table(8, "Scan Result", kIndent);
    TableStream& stream = table.sstream();
    stream << "No."
           << "Name"
           << "Software Id"
           << "Version"
           << "Slot"
           << "Category"
           << "Classification"
           << "Bank";
    int rows = 0;
    for (const ScanItem& item : report.GetScanResults())
    {
        if (!wanted(types, item))
        {
            continue;
        }
        stream << ++rows << orNotAvailable(item.name) << orNotAvailable(item.softwareId) << orNotAvailable(item.version)
               << slotText(item.slotNumber, item.slotType) << orNotAvailable(item.category)
               << orNotAvailable(item.classification) << (item.backupBank ? "Backup" : "Primary");
    }
    table.PrintTable(out);
}

void SerializeCompareReport::PrintResult(const CompareReport& report, bool verbose)
{
    PrintResult(report, std::cout, verbose);
}

void SerializeCompareReport::PrintResult(const CompareReport& report, std::ostream& out, bool verbose)
{
    CompareTable table(verbose);
    for (const ComparedPackage& package : report.packages)
    {
        table.add(package);
    }
    table.print(out);
}
} // namespace service
