#pragma once

#include <string>

namespace multi_command
{
// An IPv6 address in the one form of RFC 5952, section 4 (an IPv4 tail in hexadecimal, for the comparison's sake), so that
// "::1" and "0:0::1" are the same text; the zone stays as it is. Any other text is given back unchanged.
std::string canonicalHost(const std::string& host);
} // namespace multi_command
