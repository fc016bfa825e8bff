#pragma once

#include "connect/windows_drivers.h"

#include <vector>

namespace connect
{
// The drivers of all devices that are there, as SetupAPI lists them to any user; the log says at level 2 when they cannot be
// listed.
std::vector<DeviceDriver> presentDevices();
} // namespace connect
