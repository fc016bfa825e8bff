#pragma once

#include <string>

namespace simulator
{
// The gzip form (RFC 1952). SimulatorError when there is no memory for it.
std::string gzip(const std::string& plain);
} // namespace simulator
