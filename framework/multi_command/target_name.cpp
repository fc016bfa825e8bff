#include "multi_command/target_name.h"

#include "file_names.h"
#include "option_names.h"
#include "text/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <sstream>

namespace
{
bool isPlain(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_' ||
           c == '-';
}

// Windows keeps these names for devices, also with an extension.
bool isDeviceName(const std::string& name)
{
    static constexpr std::array<const char*, 4> kPlain = {"con", "prn", "aux", "nul"};
    const std::string stem = text::toLower(name.substr(0, name.find('.')));
    if (std::find(kPlain.begin(), kPlain.end(), stem) != kPlain.end())
    {
        return true;
    }
    const bool numbered = text::startsWith(stem, "com") || text::startsWith(stem, "lpt");
    return numbered && stem.size() == 4 && stem[3] >= '0' && stem[3] <= '9';
}

// The run's own files lie beside the targets' folders.
bool isFileOfRun(const std::string& name)
{
    return name == file_name::kLog || name == file_name::kCompareJson;
}

// What a folder's name may hold on every system is 255 bytes, "SUCCESS-" included; a host name may be nearly as long. The
// end is the FNV-1a hash of the whole, so that names that begin alike stay apart, and the same in every run.
std::string shortened(const std::string& name)
{
    constexpr std::size_t longest = 200;
    constexpr std::size_t kept = 180;
    if (name.size() <= longest)
    {
        return name;
    }
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : name)
    {
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    }
    std::ostringstream text;
    text << name.substr(0, kept) << '_' << std::hex << hash;
    return text.str();
}

bool isSchemesOwnPort(const nova::ServerInfo& server)
{
    constexpr std::uint32_t kHttps = 443;
    constexpr std::uint32_t kHttp = 80;
    return server.port == 0 || server.port == (server.scheme == "http" ? kHttp : kHttps);
}
} // namespace

namespace multi_command
{
std::string targetName(const nova::ServerInfo& server)
{
    if (server.option == option::kLocal)
    {
        return "localhost";
    }
    std::string name = text::toLower(server.host);
    if (!isSchemesOwnPort(server))
    {
        name += "_" + std::to_string(server.port);
    }
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !isPlain(c); }, '_');
    if (name.empty() || name.back() == '.')
    {
        name += "_";
    }
    return shortened(isDeviceName(name) || isFileOfRun(name) ? "_" + name : name);
}
} // namespace multi_command
