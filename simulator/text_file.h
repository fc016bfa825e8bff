#pragma once

#include <cstddef>
#include <string>

namespace simulator
{
// A whole regular file. SimulatorError, naming `what` and the path, when it is missing, unreadable or larger than
// `limit` bytes.
std::string readTextFile(const std::string& path, std::size_t limit, const std::string& what);

// Writes beside `path` and renames, so that a reader sees the whole text or none. SimulatorError on failure.
void replaceTextFile(const std::string& path, const std::string& content);
} // namespace simulator
