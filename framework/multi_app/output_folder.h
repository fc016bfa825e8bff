#pragma once

#include <string>

// Folders of a run. Everything made here is for the user alone (mode 0700). On a failure `error` says why, in the
// system's words.
namespace output_folder
{
enum class Creation
{
    Made,
    AlreadyThere, // something of that name exists
    Failed,
};

// Makes one folder, whose parent exists.
Creation makeOne(const std::string& path, std::string& error);

// Makes the folder and those above it that are missing; one that is there is taken as it is.
bool make(const std::string& path, std::string& error);

// Makes the folder logs/Korvan-<yyyymmdd>-<hhmmss>, local time, below the working directory; "-2", "-3" and so on are
// appended while the name is taken. `path` is filled in also on a failure.
bool makeDated(std::string& path, std::string& error);

// Removes what has the name, with everything in it. A symbolic link is removed, never followed. True as well when there
// was nothing.
bool removeTree(const std::string& path, std::string& error);

bool rename(const std::string& from, const std::string& to, std::string& error);
} // namespace output_folder
