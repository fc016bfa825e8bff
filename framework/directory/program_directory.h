#pragma once

#include "korvan_framework_export.h"

#include <string>

// The absolute path of the folder that holds the running program, without a trailing separator; empty when the system
// does not tell.
KORVAN_FRAMEWORK_EXPORT std::string programDirectory();
