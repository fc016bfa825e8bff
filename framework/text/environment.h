#pragma once

#include <string>

namespace environment
{
// A variable of the process's environment as UTF-8, whatever the system's own code page; empty when there is none. Any thread
// while nobody sets variables.
std::string variable(const char* name);
} // namespace environment
