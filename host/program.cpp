#include "program.h"

#include "command_line.h"
#include "console.h"
#include "exit_status.h"
#include "explain_command.h"
#include "list_command.h"
#include "module_run.h"
#include "option_warnings.h"
#include "repository_command.h"
#include "signals.h"
#include "text/text.h"

#include <exception>
#include <iostream>

namespace
{
using Words = std::vector<std::string>;

constexpr char kUpdate[] = "update";
constexpr char kCompare[] = "compare";
constexpr char kCompareModule[] = "korvan_update_multicompare";

constexpr char kHelp[] = R"(Korvan works out which firmware and driver updates apply to many servers at once.

Usage:
  korvan update compare [options]   compare what the targets have with an update repository
  korvan repository check DIR       find what is wrong with an update repository
  korvan repository list DIR        list its packages: id, type, machine types, systems, new versions
  korvan explain CODE               tell what a result code means (decimal, or hexadecimal as 0x1006D)
  korvan list os|arch               list operating systems or architectures: code, name, key
  korvan --version                  print the version
  korvan --help                     print this text

'korvan update compare --help' lists the options.
)";

constexpr char kUpdateHelp[] = R"(Usage:
  korvan update compare [options]   compare what the targets have with an update repository

'korvan update compare --help' lists the options.
)";

bool isHelp(const std::string& word)
{
    return word == "--help" || word == "-h";
}

int unknownCommand(const std::string& complaint, const std::string& advice)
{
    console::complain(complaint + "; " + advice);
    return exit_status::kInvalidCommand;
}

int runCompare(const Words& words)
{
    const CommandLine line = parseCompare(words);
    switch (line.outcome)
    {
    case CommandLine::Outcome::Help:
        std::cout << line.text;
        return exit_status::kSuccess;
    case CommandLine::Outcome::Wrong:
        console::complain(line.text);
        return exit_status::kInvalidParameter;
    case CommandLine::Outcome::Run:
        break;
    }
    for (const std::string& warning : optionWarnings(line.context))
    {
        console::complain("warning: " + warning);
    }
    return runModule(kCompareModule, line.context);
}

int runUpdate(const Words& words)
{
    if (words.size() > 2 && isHelp(words[2]))
    {
        std::cout << kUpdateHelp;
        return exit_status::kSuccess;
    }
    const std::string advice = "the only one is 'compare', see 'korvan update compare --help'";
    if (words.size() < 3)
    {
        return unknownCommand("'update' needs a sub-command", advice);
    }
    if (words[2] != kCompare)
    {
        return unknownCommand("unknown sub-command of 'update'" + text::quotedIfHarmless(words[2]), advice);
    }
    return runCompare(words);
}

int dispatch(const Words& words)
{
    if (words.size() < 2)
    {
        return unknownCommand("a command is missing", "see 'korvan --help'");
    }
    const std::string& command = words[1];
    if (isHelp(command))
    {
        std::cout << kHelp;
        return exit_status::kSuccess;
    }
    if (command == "--version")
    {
        std::cout << "korvan " << KORVAN_VERSION << '\n';
        return exit_status::kSuccess;
    }
    const Words arguments(words.begin() + 2, words.end());
    if (command == kUpdate)
    {
        return runUpdate(words);
    }
    if (command == "repository")
    {
        return repositoryCommand(arguments);
    }
    if (command == "explain")
    {
        return explainCommand(arguments);
    }
    if (command == "list")
    {
        return listCommand(arguments);
    }
    return unknownCommand("unknown command" + text::quotedIfHarmless(command),
                          "see 'korvan --help' for the known ones");
}
} // namespace

int runProgram(const std::vector<std::string>& words)
{
    console::speakUtf8();
    signals::install();
    int status = exit_status::kInternalError;
    try
    {
        status = dispatch(words);
    }
    catch (const std::exception& failure)
    {
        console::complain(failure.what());
    }
    std::cout << std::flush;
    console::speakAsBefore();
    if (!std::cout && status == exit_status::kSuccess)
    {
        console::complain("standard output cannot be written to");
        return exit_status::kWriteFailure;
    }
    return status;
}
