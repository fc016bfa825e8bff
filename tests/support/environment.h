#pragma once

#include <string>

// This process's own environment, for what is called in it and what it starts.
namespace test_support
{
void setVariable(const std::string& name, const std::string& value);
void clearVariable(const std::string& name);

// The variable that names the user's own folder.
std::string homeVariable();
} // namespace test_support
