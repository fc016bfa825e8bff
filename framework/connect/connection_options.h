#pragma once

#include "user_context.h"

#include <string>

namespace connect
{
// The option that names this context's target: "local" before "bmc", "pmx", "esxi", "cmm", "smm"; empty when the
// context has none of them.
std::string connectionOption(const UserContext& context);
} // namespace connect
