#include "service/update_scan.h"

#include "connect/local_inventory.h"
#include "option_names.h"
#include "redfish/client.h"
#include "redfish/service_reader.h"
#include "result_codes.h"
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

KorvanResult scanService(const ConnectOption& option, const redfish::Progress& progress, UpdateScanReport& report)
{
    redfish::Client client(option);
    redfish::ServiceRoot root;
    progress(5, "Connecting");
    KorvanResult opened = redfish::openService(client, root);
    if (!opened.succeeded())
    {
        return opened;
    }
    progress(10, "Reading the system");
    redfish::Identity identity;
    const KorvanResult identified = redfish::readIdentity(client, root, redfish::ManagerUse::Read, identity);
    report.SetMT(identity.machineType);
    report.SetBmcType(identity.bmcType);
    std::vector<ScanItem> items;
    const KorvanResult read = redfish::readItems(client, root, progress, items);
    for (const ScanItem& item : items)
    {
        report.AddScanResult(item);
    }
    const KorvanResult result = identified.succeeded() ? read : identified;
    return result.succeeded() && items.empty() ? nothingFound(client.target()) : result;
}

KorvanResult scanLocal(const redfish::Progress& progress, UpdateScanReport& report)
{
    progress(10, "Reading the local system");
    const KorvanResult result = connect::readLocalInventory(std::string(), report);
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
        result = scanService(connection, progress, report);
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
