#pragma once

#include "redfish/transport.h"

#include <string>

namespace redfish
{
// Resolves a Location as it came against the request's URL (RFC 9110, section 10.2.2) into the exchange: the path on the
// same service, or that it leads elsewhere. An empty one changes nothing.
void resolveLocation(const std::string& requestUrl, const std::string& location, Exchange& exchange);
} // namespace redfish
