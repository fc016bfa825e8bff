#pragma once

#include "user_context.h"

#include <string>
#include <vector>

// What a user should hear of options that are right each for itself, but of which one leaves another without effect.
std::vector<std::string> optionWarnings(const UserContext& context);
