#pragma once

#include "nova/server_info.h"

#include <string>

namespace multi_command
{
// The name of a target's folder, by which reports and messages call it: the host in lower case, and "_port" when the
// port is not the scheme's own. Letters, digits, '.', '_' and '-' only, every other character becomes '_'; never ".",
// "..", with a dot at the end, a device name of Windows or the name of one of the run's files. "localhost" for a local target.
std::string targetName(const nova::ServerInfo& server);
} // namespace multi_command
