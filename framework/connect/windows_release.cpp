#include "connect/windows_release.h"

#include <array>

namespace connect
{
namespace
{
struct Release
{
    unsigned major;
    unsigned minor;
    unsigned firstBuild;
    const char* client;
    const char* server;
};

// The newest first. Short-lived server releases between two of these count as the one before them.
constexpr std::array<Release, 9> kReleases = {{
    {10, 0, 26100, "win11", "win2025"},
    {10, 0, 22000, "win11", "win2022"},
    {10, 0, 20348, "win10", "win2022"},
    {10, 0, 17763, "win10", "win2019"},
    {10, 0, 0, "win10", "win2016"},
    {6, 3, 0, "win8.1", "win2012r2"},
    {6, 2, 0, "win8", "win2012"},
    {6, 1, 0, "win7", "win2008r2"},
    {6, 0, 0, "winvista", "win2008"},
}};
} // namespace

std::string windowsKey(unsigned major, unsigned minor, unsigned build, WindowsEdition edition)
{
    for (const Release& release : kReleases)
    {
        if (release.major == major && release.minor == minor && build >= release.firstBuild)
        {
            return edition == WindowsEdition::Server ? release.server : release.client;
        }
    }
    return std::string();
}
} // namespace connect
