#pragma once

#include <string>

// A script in the place of the legacy installer tool.
namespace legacy_script
{
// Writes one into the folder that puts its words as a line into the file `record` beside it and ends with the status; its
// path.
std::string write(const std::string& folder, int status);
} // namespace legacy_script
