#include "system_check.h"

#include "cim/chassis.h"
#include "connect/local_inventory.h"
#include "directory/program_directory.h"
#include "ipmi/controller_product.h"
#include "option_names.h"
#include "redfish/client_for_target.h"
#include "redfish/service_reader.h"
#include "system_check/system_list.h"
#include "text/text.h"
#include "xmodule_log.h"

namespace
{
constexpr char kSource[] = "framework/system_check/system_check";

bool readOverRest(const ConnectOption& option, redfish::Identity& identity)
{
    const std::shared_ptr<redfish::Client> shared = redfish::clientForTarget(option);
    redfish::Client& client = *shared;
    redfish::ServiceRoot root;
    KorvanResult result = redfish::openService(client, root);
    if (result.succeeded())
    {
        result = redfish::readIdentity(client, root, redfish::ManagerUse::Skip, identity);
    }
    if (!result.succeeded())
    {
        KORVAN_LOG(2, kSource) << result.messageText();
    }
    return !identity.machineType.empty();
}

bool readOverIpmi(const ConnectOption& option, redfish::Identity& identity)
{
    ipmi::Product product;
    const KorvanResult result = ipmi::readProduct(option, product);
    if (!result.succeeded())
    {
        KORVAN_LOG(2, kSource) << result.messageText();
    }
    identity.machineType = ipmi::machineTypeOf(product);
    identity.model = product.name;
    return !identity.machineType.empty();
}

bool readOverCim(const ConnectOption& option, redfish::Identity& identity)
{
    const cim::ChassisReading reading = cim::readChassis(option);
    if (!reading.result.succeeded())
    {
        KORVAN_LOG(2, kSource) << reading.result.messageText();
    }
    identity.machineType = cim::machineTypeOf(reading.chassis, identity.model);
    return !identity.machineType.empty();
}

bool readLocal(redfish::Identity& identity)
{
    service::UpdateScanReport report;
    const KorvanResult result = connect::readLocalInventory(std::string(), report);
    if (!result.succeeded())
    {
        KORVAN_LOG(2, kSource) << result.messageText();
    }
    identity.machineType = report.GetMT();
    return !identity.machineType.empty();
}

bool readOver(const XModule::XModuleConnection::ConnectionInfo& connection, redfish::Identity& identity)
{
    switch (connection.protocol)
    {
    case XModule::XModuleConnection::Protocol::Rest:
        return readOverRest(connection.option, identity);
    case XModule::XModuleConnection::Protocol::Ipmi:
        return readOverIpmi(connection.option, identity);
    case XModule::XModuleConnection::Protocol::Cim:
        return readOverCim(connection.option, identity);
    case XModule::XModuleConnection::Protocol::Local:
        return readLocal(identity);
    }
    return false;
}
} // namespace

namespace XModule
{
SystemCheck::SystemCheck(const std::string& tolmarList, const std::string& amdList, const std::string& cfcList,
                         const std::string& grantlyList)
    : tolmarList_(tolmarList), amdList_(amdList), cfcList_(cfcList), grantlyList_(grantlyList)
{
}

SystemCheck::SystemCheck(const std::vector<XModuleConnection::ConnectionInfo>& connections,
                         const std::string& tolmarList, const std::string& amdList, const std::string& cfcList,
                         const std::string& grantlyList)
    : connections_(connections), tolmarList_(tolmarList), amdList_(amdList), cfcList_(cfcList),
      grantlyList_(grantlyList)
{
}

int SystemCheck::IsBlueSystem(const std::string& machineType) const
{
    return system_check::listHolds(tolmarList_, machineType) ? 1 : 0;
}

int SystemCheck::IsAmdSystem(const std::string& machineType) const
{
    return system_check::listHolds(amdList_, machineType) ? 1 : 0;
}

int SystemCheck::IsCfcSystem(const std::string& machineType) const
{
    return system_check::listHolds(cfcList_, machineType) ? 1 : 0;
}

SystemCheck::ErrorCode SystemCheck::GetMachineType(std::pair<std::string, std::string>& machineType) const
{
    for (const XModuleConnection::ConnectionInfo& connection : connections_)
    {
        redfish::Identity identity;
        if (readOver(connection, identity))
        {
            machineType = {identity.machineType, identity.model};
            return kSuccess;
        }
    }
    return connections_.empty() ? kNoConnection : kNoMachineType;
}
} // namespace XModule

std::string CheckMachineType::machineType(const UserContext& context)
{
    return text::trim(text::split(GetOption(context, option::kMt, ""), ',').front());
}

bool IsCFCSystem::check(const UserContext& context) const
{
    const std::string machineType = CheckMachineType::machineType(context);
    return !machineType.empty() &&
           system_check::listHolds(programDirectory() + "/" + system_check::kCfcList, machineType);
}
