#pragma once

#include "korvan_framework_export.h"
#include "korvan_result.h"

#include <cstddef>
#include <string>
#include <vector>

// What a user is told about a package repository (docs/repository.md) as such, without any target. The folder is read anew
// each time. Nothing is printed or logged; any thread may call these functions.
namespace repository_tools
{
enum class Severity
{
    Error,   // what it concerns cannot be used as it is
    Warning, // it can, but probably not as it was meant
};

struct Problem
{
    std::string file;     // its name within the repository; empty: the repository as a whole
    std::size_t line = 0; // from 1; 0: the file as a whole
    Severity severity = Severity::Error;
    std::string text; // one line
};

struct CheckReport
{
    std::size_t packages = 0; // that count
    std::size_t velpaks = 0;
    std::size_t errors = 0;
    std::size_t warnings = 0;
    std::vector<Problem> problems; // by file, then by line
};

// Looks for everything that is wrong with the repository of a directory: descriptors, payloads with their sizes and
// SHA-256 digests, release dates, update ids that are named and do not exist or lead in a circle. Payloads are read whole.
// 0 also when there are problems; 38 when the directory cannot be read, 47 when the user interrupts.
KORVAN_FRAMEWORK_EXPORT KorvanResult CheckRepository(const std::string& directory, CheckReport& report);

struct ListedPackage
{
    std::string updateId;
    std::string type;                      // "fw", "dd", "mm", "sw"
    std::vector<std::string> machineTypes; // "*": any
    std::vector<std::string> systems;      // keys of os_names.h, with ".MINOR" where one is meant; "*": any
    std::vector<std::string> newVersions;  // of the child updates, each version once
};

struct Listing
{
    std::vector<ListedPackage> packages;   // in the order of their files
    std::vector<std::string> skippedFiles; // descriptors that do not count
};

// The packages that count. Failures as for CheckRepository.
KORVAN_FRAMEWORK_EXPORT KorvanResult ListRepository(const std::string& directory, Listing& listing);
} // namespace repository_tools
