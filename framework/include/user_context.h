#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// The parsed command line of one run, copied by value.
//
// The host fills one for the whole command; every target's task works on a copy of its own. A copy may be read
// from any thread, and nobody writes to one that another thread reads.
struct UserContext
{
    std::string programPath; // as started, argv[0]
    std::string command;     // first word after the program, "update"
    std::string subCommand;  // second word, "compare"
    std::string outputDir;   // "--output" as given; empty: the framework makes a new folder

    std::int32_t argumentCount = 0;
    std::int32_t parallel = 16;        // tasks at once, 1 or more
    std::int32_t connectTimeout = 20;  // seconds until a connection must stand
    std::int32_t requestTimeout = 120; // seconds that one answer may take
    std::int32_t targetTimeout = 900;  // seconds that one target may take in all

    std::vector<std::string> argumentVector; // the program's words, program name first; may hold passwords

    std::map<std::string, std::string> options; // name without the leading "--" to value
};

// True when the option was given, whatever its value.
inline bool HasOption(const UserContext& context, const std::string& name)
{
    return context.options.find(name) != context.options.end();
}

// The option's value, or `defaultValue` when it was not given.
inline std::string GetOption(const UserContext& context, const std::string& name, const std::string& defaultValue)
{
    const auto found = context.options.find(name);
    return found == context.options.end() ? defaultValue : found->second;
}
