#pragma once

#include <string>

namespace connect
{
enum class WindowsEdition
{
    Client,
    Server,
};

// The key of os_names.h for a version of Windows; empty when it is not among them. From 10.0 on only the build tells one
// release from the next.
std::string windowsKey(unsigned major, unsigned minor, unsigned build, WindowsEdition edition);
} // namespace connect
