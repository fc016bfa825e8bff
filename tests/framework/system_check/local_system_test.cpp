#include "connect/local_inventory.h"
#include "system_check.h"

#include <gtest/gtest.h>

using XModule::SystemCheck;
using XModule::XModuleConnection::ConnectionInfo;

TEST(SystemCheck, AsksTheLocalSystemItself)
{
    service::UpdateScanReport report;
    ASSERT_TRUE(connect::readLocalInventory("", report).succeeded());
    UserContext context;
    context.options["local"] = "";
    std::vector<ConnectionInfo> connections;
    ASSERT_TRUE(GetRESTConnectionList(context, connections).succeeded());
    std::pair<std::string, std::string> machineType;
    const SystemCheck::ErrorCode code = SystemCheck(connections, "", "", "", "").GetMachineType(machineType);
    EXPECT_EQ(report.GetMT().empty() ? SystemCheck::kNoMachineType : SystemCheck::kSuccess, code);
    EXPECT_EQ(report.GetMT(), machineType.first);
}
