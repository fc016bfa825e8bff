#include "repository_command.h"

#include "console.h"
#include "exit_status.h"
#include "repository_tools.h"
#include "text/text.h"

#include <iostream>

namespace
{
using repository_tools::CheckReport;
using repository_tools::Listing;
using repository_tools::Problem;
using repository_tools::Severity;

constexpr char kHelp[] = R"(Usage:
  korvan repository check DIR   find what is wrong with an update repository: a line for each problem
  korvan repository list DIR    list its packages: id, type, machine types, systems, new versions, tab-separated

Exit status of 'check': 0 without errors, 7 with errors; warnings do not count. 38: the folder cannot be read.
)";

std::string place(const std::string& directory, const Problem& problem)
{
    const bool separated = !directory.empty() && (directory.back() == '/' || directory.back() == '\\');
    std::string result = directory;
    if (!problem.file.empty())
    {
        result += (separated ? "" : "/") + problem.file;
    }
    return text::visible(result) + (problem.line == 0 ? std::string() : ":" + std::to_string(problem.line));
}

int failed(const KorvanResult& result)
{
    console::complain(result.messageText());
    return static_cast<int>(result.number());
}

std::string counted(std::size_t count, const std::string& thing)
{
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

int check(const std::string& directory)
{
    CheckReport report;
    const KorvanResult result = repository_tools::CheckRepository(directory, report);
    if (!result.succeeded())
    {
        return failed(result);
    }
    for (const Problem& problem : report.problems)
    {
        std::cout << place(directory, problem) << (problem.severity == Severity::Error ? ": error: " : ": warning: ")
                  << text::visible(problem.text) << '\n';
    }
    // The count is no problem, so it stays out of what a script reads.
    std::cerr << counted(report.packages, "package") << ", " << counted(report.velpaks, "update pack") << ": "
              << counted(report.errors, "error") << ", " << counted(report.warnings, "warning") << '\n';
    return report.errors == 0 ? exit_status::kSuccess : exit_status::kInvalidFile;
}

int list(const std::string& directory)
{
    Listing listing;
    const KorvanResult result = repository_tools::ListRepository(directory, listing);
    if (!result.succeeded())
    {
        return failed(result);
    }
    for (const repository_tools::ListedPackage& package : listing.packages)
    {
        std::cout << text::visible(package.updateId) << '\t' << package.type << '\t'
                  << text::visible(text::join(package.machineTypes, ",")) << '\t'
                  << text::visible(text::join(package.systems, ",")) << '\t'
                  << text::visible(text::join(package.newVersions, ",")) << '\n';
    }
    if (!listing.skippedFiles.empty())
    {
        console::complain(counted(listing.skippedFiles.size(), "descriptor") +
                          " left out; see 'korvan repository check'");
    }
    return exit_status::kSuccess;
}
} // namespace

int repositoryCommand(const std::vector<std::string>& arguments)
{
    if (!arguments.empty() && (arguments[0] == "--help" || arguments[0] == "-h"))
    {
        std::cout << kHelp;
        return exit_status::kSuccess;
    }
    const bool known = !arguments.empty() && (arguments[0] == "check" || arguments[0] == "list");
    if (!known)
    {
        console::complain("'repository' needs 'check' or 'list' and a folder; see 'korvan repository --help'");
        return exit_status::kInvalidCommand;
    }
    if (arguments.size() != 2 || arguments[1].empty())
    {
        console::complain("'repository " + arguments[0] + "' takes one folder; see 'korvan repository --help'");
        return exit_status::kInvalidParameter;
    }
    if (text::startsWith(arguments[1], "--"))
    {
        console::complain("unknown option" + text::quotedIfHarmless(arguments[1]) + "; see 'korvan repository --help'");
        return exit_status::kInvalidParameter;
    }
    return arguments[0] == "check" ? check(arguments[1]) : list(arguments[1]);
}
