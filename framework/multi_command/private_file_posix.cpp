#include "multi_command/private_file.h"

#include "text/text.h"

#include <sys/stat.h>

namespace multi_command
{
bool isReadableByOthers(const std::string& path)
{
    struct stat status
    {
    };
    return ::stat(path.c_str(), &status) == 0 && (status.st_mode & (S_IRGRP | S_IROTH)) != 0;
}

std::string openFileComplaint(const std::string& path)
{
    return "holds a password and other users can read it; run 'chmod 600 " + text::visible(path) +
           "', or give --allow-open-files";
}
} // namespace multi_command
