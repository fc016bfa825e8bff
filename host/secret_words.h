#pragma once

#include <utility>
#include <vector>

// The parts of a command line that others must not see.
namespace secret_words
{
// First and one past the last byte, in the arguments themselves: passwords, and what stands in front of an address's last
// '@'.
using Part = std::pair<char*, char*>;

std::vector<Part> parts(int argc, char** argv);
} // namespace secret_words
