#pragma once

#include "korvan_result.h"
#include "nova/server_info.h"
#include "user_context.h"

#include <vector>

// What can be known to be wrong with a command's options before anything is contacted or made, so that it is said once
// and not for each target. The first complaint is the result; it names the option, what stands there and what may.
namespace option_check
{
// Only runs that contact something are checked. One without targets reads few of the options and tells itself what is wrong
// with them; one of this machine alone is left to its task, since the legacy installer tool, which may take it over,
// judges the options by rules of its own.
//
// Code 5: an unknown scope, type, system or architecture, or a pattern that is no regular expression. 38: the
// repository's folder cannot be read. 6 and 10: a file is missing or cannot be read. 7: a file of authorities that holds
// no certificate. 88: a report that is none.
KorvanResult check(const UserContext& context, const std::vector<nova::ServerInfo>& servers);
} // namespace option_check
