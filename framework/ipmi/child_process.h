#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace ipmi
{
// A program to run. No command interpreter stands between, so no text needs quoting.
struct ChildRequest
{
    std::string program;                  // absolute path
    std::vector<std::string> arguments;   // after the program's name; other users of the system can see them
    std::vector<std::string> environment; // "NAME=value", all that the program gets; may hold a password
    std::chrono::milliseconds timeLimit{10000};
    std::size_t largestOutput = std::size_t{64} * 1024; // bytes, for each of the two streams
};

enum class ChildEnd
{
    Exited,
    Signalled,
    NotStarted,
    TimeLimit,   // killed at the limit
    TooLarge,    // killed because it wrote more than allowed
    Interrupted, // killed because the user wished to stop
};

struct ChildOutcome
{
    ChildEnd end = ChildEnd::NotStarted;
    int exitStatus = -1;
    std::string out;
    std::string err;
    std::string reason; // the system's words for NotStarted
};

// Runs the program to its end with nothing to read, in a session of its own, so that it can ask no terminal for a
// password and Ctrl-C reaches it only through this operation. Whatever it started is killed with it. May be called on
// several threads at once.
ChildOutcome runChild(const ChildRequest& request);

// The folders of the system's programs, in the order to look into. A list instead of PATH, so that nobody who can set
// a variable chooses the program that gets a controller's password.
std::vector<std::string> programFolders();

// The first of the folders that holds the program, as a path; empty when none does.
std::string findProgram(const std::string& name, const std::vector<std::string>& folders);
} // namespace ipmi
