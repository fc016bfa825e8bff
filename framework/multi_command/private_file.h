#pragma once

#include <string>

namespace multi_command
{
// What to do with a file that holds passwords and that other users can read.
enum class OpenFiles
{
    Refuse,
    Allow,
};

// True when users other than the file's owner may read it; false too when the system does not tell.
bool isReadableByOthers(const std::string& path);

// The sentence for a refused file, without its name in front: what is wrong and what helps.
std::string openFileComplaint(const std::string& path);
} // namespace multi_command
