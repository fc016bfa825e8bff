#include "update_services/scan_wishes.h"

#include "option_names.h"
#include "system_check/system_list.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <algorithm>

namespace update_services
{
namespace
{
using service::ScanItem;

constexpr char kSource[] = "framework/update_services/scan_wishes";
constexpr char kInSlot[] = "1";

bool isChassis(const ConnectOption& connection)
{
    return connection.kind == option::kCmm || connection.kind == option::kSmm;
}
} // namespace

void narrowToBay(const UpdateScanOption& option, const std::string& target, std::vector<ScanItem>& items)
{
    if (option.ioBay <= 0)
    {
        return;
    }
    if (!isChassis(option.connectOption))
    {
        KORVAN_LOG(2, kSource) << target << ": --" << option::kIoBay << " means something for a chassis only (--"
                               << option::kCmm << ", --" << option::kSmm << "); everything is scanned";
        return;
    }
    const std::string bay = std::to_string(option.ioBay);
    const auto elsewhere = [&bay](const ScanItem& item) { return item.slotType != kInSlot || item.slotNumber != bay; };
    items.erase(std::remove_if(items.begin(), items.end(), elsewhere), items.end());
}

void nameFixedDevices(const UpdateScanOption& option, const std::string& target, const std::vector<ScanItem>& items)
{
    for (const ScanItem& item : items)
    {
        if (option.checkDevice && !item.updateable)
        {
            KORVAN_LOG(2, kSource) << target << ": " << text::visible(item.name) << " (" << text::visible(item.id)
                                   << ") says that it cannot be updated";
        }
    }
}

void warnOfLegacySystem(const UpdateScanOption& option, const std::string& target, const std::string& machineType,
                        const std::string& listPath)
{
    if (!option.useTarn && system_check::listHolds(listPath, machineType))
    {
        KORVAN_LOG(2, kSource) << target << ": machine type " << text::visible(machineType) << " is a legacy system by "
                               << listPath << "; its updates may be missing here. --" << option::kTarn
                               << " says that it is none";
    }
}
} // namespace update_services
