#pragma once

#include "korvan_result.h"
#include "nova/server_info.h"
#include "user_context.h"

#include <string>
#include <vector>

namespace multi_command
{
struct Target
{
    nova::ServerInfo server;
    std::string name; // target_name.h; no two of a set have the same
};

// Collects the targets of a command line: the options "bmc", "pmx", "esxi", "cmm" and "smm" (address_sources.h), then the
// target list named by "config", without what "exclude" takes out; an exclusion that takes nothing is a warning on
// standard error. Users and passwords that these do not give
// are filled in (credentials.h). Code 5 for a wrong option or a target named twice, 6 and 7 for a file, 47 when the user
// breaks off; then `targets` is left alone.
KorvanResult buildTargetSet(const UserContext& context, std::vector<Target>& targets);
} // namespace multi_command
