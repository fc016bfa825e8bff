#pragma once

#include "connect_option.h"
#include "korvan_framework_export.h"
#include "korvan_result.h"
#include "user_context.h"

#include <vector>

// How the command reaches the target. In-band: the command runs on the target's own operating system.
enum ConnectMode
{
    kConnectUnknown = 0,
    kConnectInBand = 1,
    kConnectOutOfBand = 2,
};

namespace XModule
{
namespace XModuleConnection
{
enum class Protocol
{
    Rest,
    Cim,
    Ipmi,
    Local, // the machine that the program runs on, which is asked directly
};

// One management connection that was seen to work.
struct ConnectionInfo
{
    Protocol protocol = Protocol::Rest;
    ConnectOption option;
};
} // namespace XModuleConnection
} // namespace XModule

// In-band when the context names the local system or no target at all, out-of-band otherwise.
KORVAN_FRAMEWORK_EXPORT ConnectMode FetchConnectionMode(const UserContext& context);

// Fills the connection settings from a per-target context. Code 56 when the context's address or a port
// option cannot be read, else 0.
KORVAN_FRAMEWORK_EXPORT KorvanResult ConvertUserContextToConnectOption(const UserContext& context,
                                                                       ConnectOption& option);

// Each tries to reach the target over its protocol and appends the connection that works. The result's message names
// the target, never its password. The local system comes with the first of them, without a connection, and with no other.
KORVAN_FRAMEWORK_EXPORT KorvanResult
GetRESTConnectionList(const UserContext& context, std::vector<XModule::XModuleConnection::ConnectionInfo>& connections);
KORVAN_FRAMEWORK_EXPORT KorvanResult FetchCIMConnectionList(
    const UserContext& context, std::vector<XModule::XModuleConnection::ConnectionInfo>& connections);
KORVAN_FRAMEWORK_EXPORT KorvanResult FetchIPMIConnectionList(
    const UserContext& context, std::vector<XModule::XModuleConnection::ConnectionInfo>& connections);
