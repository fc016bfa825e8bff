#include "system_check.h"

#include "directory/program_directory.h"
#include "framework/ipmi/simulated_ipmi.h"
#include "framework/redfish/simulated_controller.h"
#include "interrupt.h"
#include "support/loopback_port.h"
#include "support/scratch_folder.h"
#include "system_check/system_list.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using XModule::SystemCheck;
using XModule::XModuleConnection::ConnectionInfo;

namespace
{
UserContext contextWithMt(const std::string& value)
{
    UserContext context;
    context.options["mt"] = value;
    return context;
}
} // namespace

TEST(SystemList, HoldsOneMachineTypeALine)
{
    const test_support::ScratchFolder folder;
    folder.write("list.txt", "# heading 7A01\n\n  7t01 # comment\r\n7T12\n");
    EXPECT_EQ((std::set<std::string>{"7T01", "7T12"}), system_check::readSystemList(folder.path() + "/list.txt"));
    EXPECT_TRUE(system_check::listHolds(folder.path() + "/list.txt", " 7t12"));
    EXPECT_FALSE(system_check::listHolds(folder.path() + "/list.txt", "7A01"));
    EXPECT_FALSE(system_check::listHolds(folder.path() + "/list.txt", ""));
}

TEST(SystemList, ThatCannotBeReadCountsAsEmpty)
{
    const test_support::ScratchFolder folder;
    EXPECT_TRUE(system_check::readSystemList(folder.path() + "/none.txt").empty());
    EXPECT_TRUE(system_check::readSystemList(folder.path()).empty());
    folder.write("large.txt", std::string(std::size_t{2} * 1024 * 1024, '\n') + "7T01\n");
    EXPECT_TRUE(system_check::readSystemList(folder.path() + "/large.txt").empty());
}

TEST(SystemCheck, ClassifiesByTheListThatNamesTheMachineType)
{
    const std::string lists = std::string(KORVAN_SOURCE_DIR) + "/samples/system_lists/";
    const SystemCheck check(lists + "Tolmar_systems_list.txt", lists + "AMD_systems_list.txt",
                            lists + "CFC_systems_list.txt", lists + "Grantly_systems_list.txt");
    EXPECT_EQ(1, check.IsBlueSystem("7T12"));
    EXPECT_EQ(1, check.IsBlueSystem("7t25"));
    EXPECT_EQ(0, check.IsBlueSystem("7Z90"));
    EXPECT_EQ(1, check.IsAmdSystem("7Z90"));
    EXPECT_EQ(1, check.IsCfcSystem("7C10"));
    EXPECT_EQ(0, check.IsCfcSystem("7T12"));
}

TEST(SystemCheck, AsksTheConnectionsFirstToLast)
{
    interrupt::reset();
    SimulatedController controller("node-d", R"("tls": false)");
    ConnectionInfo dead;
    dead.option.host = "127.0.0.1";
    dead.option.port = test_support::freePort();
    ConnectionInfo working;
    working.option = controller.option();
    std::pair<std::string, std::string> machineType;
    EXPECT_EQ(SystemCheck::kSuccess, SystemCheck({dead, working}, "", "", "", "").GetMachineType(machineType));
    EXPECT_EQ("7Z90", machineType.first);
    EXPECT_EQ("Node Z90", machineType.second);
    EXPECT_EQ(SystemCheck::kNoMachineType, SystemCheck({dead}, "", "", "", "").GetMachineType(machineType));
    EXPECT_EQ(SystemCheck::kNoConnection, SystemCheck("", "", "", "").GetMachineType(machineType));
}

TEST(SystemCheck, FindsTheMachineTypeOverCimAfterRestFailed)
{
    interrupt::reset();
    SimulatedController controller("rack-a", R"("tls": false, "behaviour": {"no_redfish": true, "cim": "works"})");
    const std::string port = std::to_string(controller.option().port);
    UserContext context;
    context.options["bmc"] = std::string("http://") + SimulatedController::kUser + ":" +
                             SimulatedController::kPassword + "@127.0.0.1:" + port;
    context.options["bmc-cim-port"] = port;
    std::vector<ConnectionInfo> connections;
    EXPECT_EQ(52U, GetRESTConnectionList(context, connections).number());
    ASSERT_TRUE(FetchCIMConnectionList(context, connections).succeeded());
    std::pair<std::string, std::string> machineType;
    EXPECT_EQ(SystemCheck::kSuccess, SystemCheck(connections, "", "", "", "").GetMachineType(machineType));
    EXPECT_EQ("7X20", machineType.first);
    EXPECT_EQ("Node X20", machineType.second);
}

TEST(SystemCheck, FindsNoMachineTypeOverCimInBlankFields)
{
    interrupt::reset();
    SimulatedController controller(
        "rack-a", R"("tls": false, "behaviour": {"cim": "works", "cim_chassis": {"Model": "", "SKU": "...."}})");
    ConnectionInfo info;
    info.protocol = XModule::XModuleConnection::Protocol::Cim;
    info.option = controller.option();
    info.option.cimPort = info.option.port;
    std::pair<std::string, std::string> machineType;
    EXPECT_EQ(SystemCheck::kNoMachineType, SystemCheck({info}, "", "", "", "").GetMachineType(machineType));
    EXPECT_EQ("", machineType.first);
}

TEST(SystemCheck, FindsTheMachineTypeOverIpmiAfterRestAndCimFailed)
{
    interrupt::reset();
    const SimulatedIpmi controller("Node X20", "7X20CTO1WW");
    UserContext context;
    context.connectTimeout = 2;
    context.options["bmc"] = std::string(SimulatedIpmi::kUser) + ":" + SimulatedIpmi::kPassword +
                             "@127.0.0.1:" + std::to_string(test_support::freePort());
    context.options["bmc-cim-port"] = std::to_string(test_support::freePort());
    context.options["ipmi-port"] = std::to_string(controller.port());
    std::vector<ConnectionInfo> connections;
    ASSERT_FALSE(GetRESTConnectionList(context, connections).succeeded());
    ASSERT_FALSE(FetchCIMConnectionList(context, connections).succeeded());
    ASSERT_TRUE(connections.empty());
    ASSERT_TRUE(FetchIPMIConnectionList(context, connections).succeeded());
    std::pair<std::string, std::string> machineType;
    EXPECT_EQ(SystemCheck::kSuccess, SystemCheck(connections, "", "", "", "").GetMachineType(machineType));
    EXPECT_EQ("7X20", machineType.first);
    EXPECT_EQ("Node X20", machineType.second);
}

TEST(SystemCheck, FindsNoMachineTypeOverIpmiWithoutAFru)
{
    interrupt::reset();
    const SimulatedIpmi controller;
    ConnectionInfo info;
    info.protocol = XModule::XModuleConnection::Protocol::Ipmi;
    info.option.host = "127.0.0.1";
    info.option.ipmiPort = controller.port();
    info.option.user = SimulatedIpmi::kUser;
    info.option.password = SimulatedIpmi::kPassword;
    std::pair<std::string, std::string> machineType;
    EXPECT_EQ(SystemCheck::kNoMachineType, SystemCheck({info}, "", "", "", "").GetMachineType(machineType));
    EXPECT_EQ("", machineType.first);
}

TEST(CfcSystem, IsOneWhoseStatedMachineTypeStandsInTheListBesideTheProgram)
{
    EXPECT_EQ("7C10", CheckMachineType::machineType(contextWithMt(" 7C10,7X20")));
    EXPECT_EQ("", CheckMachineType::machineType(contextWithMt(",7C10")));
    EXPECT_EQ("", CheckMachineType::machineType(UserContext()));
    EXPECT_FALSE(IsCFCSystem().check(UserContext()));

    const std::string list = programDirectory() + "/CFC_systems_list.txt";
    std::ofstream(list) << "7C10\n";
    EXPECT_TRUE(IsCFCSystem().check(contextWithMt("7c10,7X20")));
    EXPECT_FALSE(IsCFCSystem().check(contextWithMt("7X20,7C10")));
    std::filesystem::remove(list);
    EXPECT_FALSE(IsCFCSystem().check(contextWithMt("7C10")));
}
