#pragma once

#include "repository/applicability.h"
#include "service/update_query.h"

#include <cstddef>
#include <string>
#include <vector>

// One descriptor file of a repository (docs/repository.md). Any thread may read any file.
namespace repository
{
constexpr std::size_t kMaxDescriptorBytes = std::size_t{4} * 1024 * 1024;
constexpr std::size_t kMaxChildren = 1000;
constexpr std::size_t kMaxListEntries = 1000;
constexpr std::size_t kMaxTextBytes = 4096;
constexpr std::size_t kMaxIdBytes = 256;
constexpr std::size_t kMaxProblems = 100;

struct Package
{
    service::PackageInfo info;
    Applicability appliesTo;
};

// An update pack ("Velpak"): the packages that were tested together for a platform.
struct Velpak
{
    std::string id;
    std::string releaseDate;
    std::string file; // the descriptor's name within the repository
    Applicability appliesTo;
    std::vector<std::string> updateIds;
};

enum class DescriptorKind
{
    Package,
    Velpak,
    Foreign, // well-formed XML of another purpose
    Broken,
};

// One thing that is wrong with a descriptor.
struct Problem
{
    std::size_t line = 0; // from 1; 0: the file as a whole
    bool breaks = false;  // the descriptor does not count
    std::string text;
};

struct Descriptor
{
    DescriptorKind kind = DescriptorKind::Broken;
    Package package;
    Velpak velpak;
    std::string error;                 // for Foreign and Broken: the reason, with the line where there is one
    std::vector<std::string> warnings; // what was left out of a descriptor that counts
    std::vector<Problem> problems;     // all that is wrong with the text, at most kMaxProblems that break it; the
                                       // payload is no part of it
};

// Reads `directory`/`fileName`. Never throws on what the file holds.
Descriptor readDescriptor(const std::string& directory, const std::string& fileName);
} // namespace repository
