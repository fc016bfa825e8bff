#pragma once

#include <string>

// Hands the command line to the command interpreter and waits. The exit status, 0 for success; never 0 when the command
// could not be run or was ended by a signal. A command that Ctrl-C ended requests an interrupt
// (interrupt.h), since the wish was meant for the whole run.
int RunCommandLine(const std::string& commandLine);
