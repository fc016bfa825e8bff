#include "support/environment.h"

#include <cstdlib>
#include <windows.h>

namespace test_support
{
// The C library keeps a copy, which getenv reads; it takes an empty value for none, the system's own call does not.
void setVariable(const std::string& name, const std::string& value)
{
    ::_putenv_s(name.c_str(), value.c_str());
    ::SetEnvironmentVariableA(name.c_str(), value.c_str());
}

void clearVariable(const std::string& name)
{
    ::_putenv_s(name.c_str(), "");
    ::SetEnvironmentVariableA(name.c_str(), nullptr);
}

std::string homeVariable()
{
    return "USERPROFILE";
}
} // namespace test_support
