#pragma once

#include <string>
#include <vector>

// Runs the program with its words, the program's name first; returns its exit status. Answers go to standard output,
// complaints to standard error.
int runProgram(const std::vector<std::string>& words);
