#pragma once

#include <string>

// Who may read a test's file.
namespace test_support
{
// True when the file or folder is there and nobody but its owner (on Windows beside administrators and the system) has a
// right on it.
bool isForOwnerAlone(const std::string& path);

enum class Readers
{
    OwnerAlone,
    Everybody,
};

void setReaders(const std::string& path, Readers readers);

// The begin of the command that the program advises against an open file.
std::string closingCommand(const std::string& path);
} // namespace test_support
