#pragma once

#include <string>

namespace global_config
{
// Looks an item up in the text of a configuration file: one "KEY = value" a line. "#" begins a comment at the line's
// begin or after a blank, so that a path may hold one. Keys keep their letter case; of several lines with the same key
// the last counts. False, with `value` left alone, when there is none.
bool findItem(const std::string& content, const std::string& name, std::string& value);
} // namespace global_config
