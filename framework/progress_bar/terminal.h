#pragma once

#include <cstddef>

// What the process knows of its terminal.
namespace terminal
{
// True when standard error is a terminal that understands the control sequences of ECMA-48.
bool errorIsTerminal();

// Columns of the terminal at standard error; 80 when it does not tell.
std::size_t errorColumns();
} // namespace terminal
