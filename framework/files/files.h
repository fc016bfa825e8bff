#pragma once

#include <cstddef>
#include <string>

// Whole files, read with a limit and written so that a crash leaves the old file or the new one.
namespace files
{
enum class ReadOutcome
{
    Ok,
    Missing,
    Unreadable,
    TooLarge,
};

// Reads a regular file of at most `limit` bytes. `content` changes only on Ok.
ReadOutcome read(const std::string& path, std::size_t limit, std::string& content);

// Writes to a temporary name in the same folder (mode 0600), flushes it to the disk and renames it over `path`. On a
// failure `path` stays as it was, no temporary file is left, and `error` says why.
bool replace(const std::string& path, const std::string& content, std::string& error);

// Makes an empty file with mode 0600 where there is none; an existing regular file stays as it is. False, with the reason, when the
// path cannot be opened for writing, is a symbolic link or no regular file.
bool createPrivate(const std::string& path, std::string& error);

// A path as users and descriptors write it, without trailing separators: "pkgs\" and "pkgs/" both give "pkgs". A root
// ("/", "C:\") stays.
std::string withoutTrailingSeparator(const std::string& path);
} // namespace files
