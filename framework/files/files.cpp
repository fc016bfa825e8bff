#include "files/files.h"

namespace
{
bool isSeparator(char c)
{
    return c == '/' || c == '\\';
}

// Bytes at the path's begin that must stay: "/", "\", or a drive as "C:\".
std::size_t rootLength(const std::string& path)
{
    if (!path.empty() && isSeparator(path[0]))
    {
        return 1;
    }
    const bool letter = !path.empty() && ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'));
    return letter && path.size() >= 3 && path[1] == ':' && isSeparator(path[2]) ? 3 : 0;
}
} // namespace

namespace files
{
std::string withoutTrailingSeparator(const std::string& path)
{
    const std::size_t root = rootLength(path);
    std::size_t length = path.size();
    while (length > root && isSeparator(path[length - 1]))
    {
        --length;
    }
    return path.substr(0, length);
}
} // namespace files
