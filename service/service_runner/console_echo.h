#pragma once

#include <string>

// Writes a log record and, with `screen` set, the same text on the console: level 1 on standard error, others on standard
// output. `source` and `line` as for XModule::Log.
void LogAndEcho(int level, const char* source, int line, bool screen, const std::string& text);
