#pragma once

#include "korvan_result.h"
#include "nova/server_info.h"
#include "user_context.h"

#include <functional>
#include <string>
#include <vector>

namespace multi_command
{
struct Target
{
    nova::ServerInfo server;
    std::string name; // target_name.h; no two of a set have the same
};

// Whether the run may go on with these servers, whose users and passwords may still be missing.
using ServersCheck = std::function<KorvanResult(const std::vector<nova::ServerInfo>&)>;

// Collects the targets of a command line: the options "bmc", "pmx", "esxi", "cmm" and "smm" (address_sources.h), then the
// target list named by "config", without what "exclude" takes out; an exclusion that takes nothing is a warning on
// standard error. Then `check` is asked, if there is one, before users and passwords that are missing are filled in
// (credentials.h): nobody types a password for a run that cannot start. Code 5 for a wrong option or a target named twice,
// 6 and 7 for a file, 47 when the user breaks off, else what `check` says; then `targets` is left alone.
KorvanResult buildTargetSet(const UserContext& context, std::vector<Target>& targets,
                            const ServersCheck& check = ServersCheck());
} // namespace multi_command
