#pragma once

#include <string>
#include <vector>

// "korvan explain CODE": prints what a result code means. Returns the exit status; 5 for a code that is not known.
int explainCommand(const std::vector<std::string>& arguments);
