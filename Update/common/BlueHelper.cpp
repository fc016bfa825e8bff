#include "common/BlueHelper.h"

#include "common/module_directory.h"
#include "korvan_connect.h"
#include "option_names.h"
#include "service/update_scan.h"
#include "system_check.h"
#include "xmodule_log.h"

#include <utility>
#include <vector>

namespace
{
constexpr char kSource[] = "Update/common/BlueHelper";

constexpr char kTolmarList[] = "Tolmar_systems_list.txt";
constexpr char kAmdList[] = "AMD_systems_list.txt";
constexpr char kCfcList[] = "CFC_systems_list.txt";
constexpr char kGrantlyList[] = "Grantly_systems_list.txt";

constexpr int kLegacySystem = 1;

using Connections = std::vector<XModule::XModuleConnection::ConnectionInfo>;

// The list files beside this module.
struct ListPaths
{
    explicit ListPaths(const std::string& directory)
        : tolmar(directory + kTolmarList), amd(directory + kAmdList), cfc(directory + kCfcList),
          grantly(directory + kGrantlyList)
    {
    }

    std::string tolmar;
    std::string amd;
    std::string cfc;
    std::string grantly;
};

ListPaths listPaths()
{
    return ListPaths(GetModuleDirectory(GetSelfModuleHandle()));
}

// A later protocol is tried only when the earlier one failed outright; an empty list that came with a success is not
// followed by another protocol.
KorvanResult connect(const UserContext& context, Connections& connections)
{
    KorvanResult result = GetRESTConnectionList(context, connections);
    KORVAN_LOG(3, kSource) << "GetRESTConnectionList:" << result;
    if (!result.succeeded())
    {
        connections.clear();
        result = FetchCIMConnectionList(context, connections);
        KORVAN_LOG(3, kSource) << "FetchCIMConnectionList:" << result;
    }
    if (!result.succeeded())
    {
        connections.clear();
        result = FetchIPMIConnectionList(context, connections);
        KORVAN_LOG(3, kSource) << "FetchIPMIConnectionList:" << result;
    }
    return result;
}

std::string askTarget(const UserContext& context)
{
    KORVAN_LOG(3, kSource) << "try get mt via rest cim or ipmi.";
    Connections connections;
    const KorvanResult result = connect(context, connections);
    if (!result.succeeded() || connections.empty())
    {
        KORVAN_LOG(2, kSource) << "All connection failed.";
        return std::string();
    }
    const ListPaths paths = listPaths();
    const XModule::SystemCheck check(connections, paths.tolmar, paths.amd, paths.cfc, paths.grantly);
    std::pair<std::string, std::string> machineType;
    if (check.GetMachineType(machineType) != XModule::SystemCheck::kSuccess)
    {
        KORVAN_LOG(1, kSource) << "GetMachineType Fail";
        return std::string();
    }
    return machineType.first;
}

bool isLegacyTarget(const UserContext& context)
{
    const bool controllerGiven = HasOption(context, option::kBmc) || HasOption(context, option::kPmx);
    if (FetchConnectionMode(context) != kConnectInBand && !controllerGiven)
    {
        KORVAN_LOG(3, kSource) << "current case does not need check blue";
        return false;
    }
    const std::string machineType = BlueHelper::GetMt(context);
    if (machineType.empty())
    {
        return false;
    }
    const ListPaths paths = listPaths();
    const XModule::SystemCheck check(paths.tolmar, paths.amd, paths.cfc, paths.grantly);
    const int answer = check.IsBlueSystem(machineType);
    KORVAN_LOG(3, kSource) << "sc.IsBlueSystem(mt) = " << answer;
    return answer == kLegacySystem;
}
} // namespace

std::string BlueHelper::GetMt(const UserContext& context)
{
    if (HasOption(context, option::kScanXml))
    {
        service::UpdateScanReport report;
        // An unreadable file leaves the report, and so the machine type, empty.
        service::SerializeScanReport::LoadFromXml(GetOption(context, option::kScanXml, ""), report);
        std::string machineType = report.GetMT();
        KORVAN_LOG(3, kSource) << "Get mt from scan xml:" << machineType;
        return machineType;
    }
    if (HasOption(context, option::kMt))
    {
        const std::string value = GetOption(context, option::kMt, "");
        KORVAN_LOG(3, kSource) << "--mt:" << value;
        return value.substr(0, value.find(','));
    }
    std::string machineType = askTarget(context);
    KORVAN_LOG(4, kSource) << "Exiting  "
                           << "BlueHelper::GetMt";
    return machineType;
}

bool BlueHelper::IsBLUE(const UserContext& context)
{
    KORVAN_LOG(4, kSource) << "Entering  "
                           << "BlueHelper::IsBLUE";
    if (HasOption(context, option::kTarn))
    {
        return false;
    }
    const bool legacy = isLegacyTarget(context);
    KORVAN_LOG(4, kSource) << "Exiting  "
                           << "BlueHelper::IsBLUE";
    return legacy;
}
