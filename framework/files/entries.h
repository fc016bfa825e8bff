#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// What lies in the file system, under paths of any characters and any length. Links are followed. Any thread.
namespace files
{
enum class Kind
{
    Missing,
    RegularFile,
    Folder,
    Other,
    Unknown, // the system does not let this program look
};

struct Entry
{
    Kind kind = Kind::Missing;
    std::uintmax_t size = 0; // of a regular file
};

Entry lookAt(const std::string& path);

// Appends the names of the regular files in a folder, in no order. False, with the reason, when it cannot be listed to its end.
bool listRegularFiles(const std::string& folder, std::vector<std::string>& names, std::string& error);

// Gives a file or folder another name in the same file system; a file of that name is replaced.
bool rename(const std::string& from, const std::string& to, std::string& error);

// The path as a C++ stream opens it.
std::filesystem::path streamPath(const std::string& path);
} // namespace files
