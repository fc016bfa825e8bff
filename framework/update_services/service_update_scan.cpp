#include "service/update_scan.h"

#include "connect/local_inventory.h"
#include "connect/target_memory.h"
#include "directory/program_directory.h"
#include "option_names.h"
#include "redfish/client_for_target.h"
#include "redfish/service_reader.h"
#include "result_codes.h"
#include "system_check/system_list.h"
#include "target_run/target_run.h"
#include "update_services/scan_wishes.h"
#include "xmodule_log.h"

#include <vector>

namespace service
{
namespace
{
constexpr char kSource[] = "framework/update_services/service_update_scan";

// What an out-of-band target runs is not known; its firmware is asked for as that of the platform.
constexpr char kPlatformOs[] = "platform";
constexpr char kNoArchitecture[] = "none";

KorvanResult nothingFound(const std::string& target)
{
    return KorvanResult(result_code::kNoApplicableHardwareComponentFound,
                        target + ": the scan found no firmware, driver or software; check that the account may read "
                                 "the inventory and that the controller has finished starting.");
}

KorvanResult nothingInBay(const std::string& target, std::int32_t bay)
{
    return KorvanResult(result_code::kNoApplicableHardwareComponentFound,
                        target + ": the scan found nothing in I/O bay " + std::to_string(bay) +
                            "; check --iobay, or leave it out to scan the whole chassis.");
}

KorvanResult scanService(const UpdateScanOption& wishes, const ConnectOption& option, const redfish::Progress& progress,
                         UpdateScanReport& report)
{
    // The password that was refused when the machine type was asked for is refused again, and counts against the account.
    KorvanResult refusal = connect::restRefusalOf(option);
    if (!refusal.succeeded())
    {
        return refusal;
    }
    const std::shared_ptr<redfish::Client> shared = redfish::clientForTarget(option);
    redfish::Client& client = *shared;
    redfish::ServiceRoot root;
    progress(5, "Connecting");
    KorvanResult opened = redfish::openService(client, root);
    if (!opened.succeeded())
    {
        return opened;
    }
    progress(10, "Reading the system");
    redfish::Identity identity;
    KorvanResult identified = redfish::readIdentity(client, root, redfish::ManagerUse::Read, identity);
    report.SetMT(identity.machineType);
    report.SetBmcType(identity.bmcType);
    if (!identified.succeeded() && identity.machineType.empty() && !option.machineTypeStated)
    {
        // Nothing fits a machine of no type, and that would hide why it is not known.
        return identified;
    }
    std::vector<ScanItem> items;
    const KorvanResult read = redfish::readItems(client, root, progress, items);
    const bool found = !items.empty();
    update_services::warnOfLegacySystem(wishes, client.target(), identity.machineType,
                                        programDirectory() + "/" + system_check::kTolmarList);
    update_services::narrowToBay(wishes, client.target(), items);
    update_services::nameFixedDevices(wishes, client.target(), items);
    for (const ScanItem& item : items)
    {
        report.AddScanResult(item);
    }
    KorvanResult result = identified.succeeded() ? read : identified;
    if (!result.succeeded() && !items.empty())
    {
        target_run::remark(target_run::kGaps + result.messageText());
    }
    if (!result.succeeded() || !items.empty())
    {
        return result;
    }
    return found ? nothingInBay(client.target(), wishes.ioBay) : nothingFound(client.target());
}

KorvanResult scanLocal(const redfish::Progress& progress, UpdateScanReport& report)
{
    progress(10, "Reading the local system");
    KorvanResult result = connect::readLocalInventory(std::string(), report);
    return result.succeeded() && report.GetScanResults().empty() ? nothingFound("localhost") : result;
}
} // namespace

ServiceUpdateScan::ServiceUpdateScan(const UpdateScanOption& option) : option_(option) {}

void ServiceUpdateScan::SetProgressBar(DynamicProgressBar* bar)
{
    bar_ = bar;
}

KorvanResult ServiceUpdateScan::Run(UpdateScanReport& report)
{
    report = UpdateScanReport();
    const redfish::Progress progress = [this](int percent, const std::string& text)
    {
        if (bar_ != nullptr)
        {
            bar_->Update(percent, text);
        }
    };
    ConnectOption connection = option_.connectOption;
    connection.checkTrust = connection.checkTrust && option_.checkTrust;
    KorvanResult result;
    if (connection.kind == option::kLocal)
    {
        result = scanLocal(progress, report);
    }
    else if (connection.host.empty())
    {
        result = KorvanResult(result_code::kInvalidAddress,
                              "The scan has no target address; name the controller with --bmc user:password@host.");
    }
    else
    {
        report.SetOS(kPlatformOs);
        report.SetArch(kNoArchitecture);
        result = scanService(option_, connection, progress, report);
    }
    if (bar_ != nullptr)
    {
        bar_->Update(100, "Scan ended");
        bar_->Finish();
    }
    KORVAN_LOG(3, kSource) << "Scan: " << result << ", " << report.GetScanResults().size() << " items";
    return result;
}

std::string ServiceUpdateScan::ActionName()
{
    return "ScanUpdates";
}
} // namespace service
