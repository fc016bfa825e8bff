#pragma once

#include <string>

// In a namespace of its own, since "connect" is also the name of a function of the sockets.
namespace network_driver
{
// What the driver of a network interface tells of itself; fields are empty where it does not.
struct Facts
{
    std::string version;
    std::string firmware;
};

// Asks the kernel (ETHTOOL_GDRVINFO), which everybody may. False when the interface cannot be asked.
bool ask(const std::string& interface, Facts& facts);
} // namespace network_driver
