#include "service/update_compare.h"

#include "os_names.h"
#include "result_codes.h"
#include "target_run/target_run.h"
#include "text/text.h"
#include "update_services/child_comparison.h"
#include "update_services/package_selection.h"
#include "update_services/platform_names.h"
#include "update_services/power_supplies.h"
#include "xmodule_log.h"

#include <algorithm>

namespace service
{
namespace
{
constexpr char kSource[] = "framework/update_services/service_update_compare";

KorvanResult failure(std::uint32_t code, const std::string& details)
{
    return KorvanResult(code, GetErrorMessage(code) + " " + details);
}

std::string firstStated(const std::string& first, const std::string& second)
{
    return first.empty() ? second : first;
}

bool differ(const std::string& scanned, const std::string& queried)
{
    const std::string left = text::toUpper(text::trim(scanned));
    const std::string right = text::toUpper(text::trim(queried));
    return !left.empty() && !right.empty() && left != right;
}

bool nothingDetected(const CompareReport& report)
{
    return std::all_of(report.packages.begin(), report.packages.end(),
                       [](const ComparedPackage& package) { return package.outcome == VersionOutcome::NotDetected; });
}

// A slip of the user that would else show only as reason 10 of each power supply.
void remarkUnknownPsus(const UpdateScanReport& scan, const QueryReport& query,
                       const update_services::InstalledItems& installed, const CompareOptions& options)
{
    const std::vector<std::string> unknown = update_services::unknownPsus(query.packages, scan, installed, options);
    if (!unknown.empty())
    {
        const std::string text =
            "--psu names power supplies that the target does not have: " + text::visible(text::join(unknown, ", "));
        KORVAN_LOG(2, kSource) << text;
        target_run::remark(text);
    }
}

void fillHead(const UpdateScanReport& scan, const QueryReport& query, CompareReport& report)
{
    const QueryOptions& options = query.options;
    report.machineType = firstStated(options.machineType, scan.GetMT());
    report.bmcType = firstStated(scan.GetBmcType(), options.bmcType);
    report.os = update_services::osKey(options.osType, scan.GetOS());
    if (report.os.empty())
    {
        report.os = firstStated(update_services::osKey(GetOsTypeCode(scan.GetOS()), scan.GetOS()), scan.GetOS());
    }
    report.arch = update_services::archKey(options.osArch);
    if (report.arch.empty())
    {
        report.arch = firstStated(update_services::archKey(GetOsArchCode(scan.GetArch())), scan.GetArch());
    }
    report.scope = options.scope;
    report.type = options.typeText;
    report.directory = options.queryDir;
    report.partition = scan.IsPartition();
}
} // namespace

ServiceUpdateCompare::ServiceUpdateCompare(const CompareOptions& options) : options_(options) {}

void ServiceUpdateCompare::SetReports(const UpdateScanReport& scan, const QueryReport& query)
{
    scan_ = &scan;
    query_ = &query;
}

KorvanResult ServiceUpdateCompare::RunCompare(CompareReport& report)
{
    if (scan_ == nullptr || query_ == nullptr)
    {
        return failure(result_code::kUpdateIncompatibleReports, "There is no scan or no query to compare.");
    }
    using Installed = update_services::InstalledItems;
    const Installed installed(*scan_, options_.backup ? Installed::Bank::Backup : Installed::Bank::Primary);
    if (options_.backup && installed.empty() && !scan_->GetScanResults().empty())
    {
        return failure(result_code::kUpdateNoBackupBank,
                       "The inventory of the target shows no backup firmware; leave out --backup.");
    }
    report = CompareReport();
    fillHead(*scan_, *query_, report);
    remarkUnknownPsus(*scan_, *query_, installed, options_);
    report.packages = update_services::selectPackages(*query_, installed, options_);
    if (differ(scan_->GetMT(), query_->options.machineType))
    {
        // A user who states a machine type knows the target better than its controller does; a saved query of another
        // machine shows in that it fits nothing.
        const std::string types = "The scan is of machine type " + text::visible(scan_->GetMT()) + ", the query of " +
                                  text::visible(query_->options.machineType) + ".";
        if (!query_->options.ignoreMtOsCheck && nothingDetected(report))
        {
            return failure(result_code::kUpdateIncompatibleReports,
                           types + " No package fits the inventory; compare a scan and a query of the same target.");
        }
        KORVAN_LOG(2, kSource) << types;
    }
    KORVAN_LOG(3, kSource) << report.packages.size() << " packages compared, "
                           << std::count_if(report.packages.begin(), report.packages.end(),
                                            [](const ComparedPackage& package) { return package.selected == 1; })
                           << " selected";
    return KorvanResult();
}

std::string ServiceUpdateCompare::ActionName()
{
    return "CompareUpdates";
}
} // namespace service
