#pragma once

#include <string>

// What the program says beside its answers.
namespace console
{
// One line on standard error, "korvan: " in front; control characters made visible.
void complain(const std::string& text);

bool inputIsTerminal();

// Lets the console take what the program writes as UTF-8, and gives it back as it was: it belongs to the shell that stays.
// Both from any thread; nothing where consoles speak UTF-8 anyway.
void speakUtf8();
void speakAsBefore();
} // namespace console
