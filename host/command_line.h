#pragma once

#include "user_context.h"

#include <string>
#include <vector>

// What the words of "update compare" ask for.
struct CommandLine
{
    enum class Outcome
    {
        Run,
        Help,
        Wrong,
    };

    Outcome outcome = Outcome::Wrong;
    std::string text;    // the help, or one line that names the wrong option; never an option's value
    UserContext context; // for Run
};

// `words`: the program's name, "update", "compare", then the options.
CommandLine parseCompare(const std::vector<std::string>& words);
