#pragma once

#include "connect_option.h"
#include "redfish/client.h"

#include <memory>

namespace redfish
{
// The client of the target that this thread works on: one for all that is asked of it with the same settings, so that
// there is one connection, one login and one memory of what failed. It ends with the work on the target. Outside of such
// work each call makes a new one.
std::shared_ptr<Client> clientForTarget(const ConnectOption& option);
} // namespace redfish
