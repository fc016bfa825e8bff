#pragma once

#include <string>

// What the program says beside its answers.
namespace console
{
// One line on standard error, "korvan: " in front; control characters made visible.
void complain(const std::string& text);

// " 'word'" for a message, or nothing when the word could hold a password: an address or something long.
std::string quotedIfHarmless(const std::string& word);

bool inputIsTerminal();
} // namespace console
