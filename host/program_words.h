#pragma once

#include <string>
#include <vector>

// The words of the command line as UTF-8, the program's own name first.
std::vector<std::string> programWords(int argc, char** argv);
