#pragma once

#include "korvan_framework_export.h"

// The user's wish to stop (Ctrl-C). Long work asks `requested` between its steps and ends with code 47.
namespace interrupt
{
// Safe in a signal handler and on any thread.
KORVAN_FRAMEWORK_EXPORT void request();
KORVAN_FRAMEWORK_EXPORT bool requested();

// For a new run in the same process.
KORVAN_FRAMEWORK_EXPORT void reset();
} // namespace interrupt
