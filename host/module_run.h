#pragma once

#include "user_context.h"

#include <string>

// Loads the module from the program's own folder and runs its application once with the context. The exit status: the
// result's number, 3 when the module cannot be loaded, 17 when it makes no application or breaks off.
int runModule(const std::string& module, const UserContext& context);
