#pragma once

#include <string>
#include <vector>

// "korvan list os|arch": prints one line for each platform name, tab-separated: code, display name, key.
int listCommand(const std::vector<std::string>& arguments);
