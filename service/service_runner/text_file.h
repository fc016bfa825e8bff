#pragma once

#include <fstream>
#include <string>

// Opens a file of the directory for writing, emptied. Throws std::runtime_error, with the path, when it cannot be opened.
std::ofstream OpenTextFile(const std::string& directory, const std::string& name);
