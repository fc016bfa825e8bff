#pragma once

#include "multi_command/address_sources.h"
#include "nova/server_info.h"

#include <string>
#include <vector>

namespace multi_command
{
// Takes out the servers that the entries name, whatever kind and user either of them has: an entry with a port takes that
// one, an entry without takes every port of the host. Returns a sentence for each entry that took nothing.
std::vector<std::string> exclude(const std::vector<AddressEntry>& entries, std::vector<nova::ServerInfo>& servers);
} // namespace multi_command
