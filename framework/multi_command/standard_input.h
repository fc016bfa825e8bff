#pragma once

#include <cstddef>
#include <string>

// What users give through the program's standard input.
namespace standard_input
{
enum class Outcome
{
    Ok,
    TooLarge,
    Unreadable,
    Interrupted,
};

enum class Echo
{
    Shown,
    Hidden,
};

// True when there is somebody to ask: standard input and standard error are terminals.
bool isDialogue();

// What is there next, at most `size` bytes, from a file, a pipe or a terminal; no byte at the end. Waits for it.
Outcome readSome(char* buffer, std::size_t size, std::size_t& got);

// Everything up to its end, at most `limit` bytes. `content` changes only on Ok. An interrupt ends the wait.
Outcome readAll(std::size_t limit, std::string& content);

// Puts the question on standard error and reads a line, without its end; what the user types is not shown with
// Echo::Hidden. The terminal is as before when this returns. Only for a dialogue.
Outcome ask(const std::string& question, Echo echo, std::string& answer);
} // namespace standard_input
