#pragma once

#include <string>

namespace connect
{
// An operating system as reports name it: a key of os_names.h (empty: not among them) and what follows the major
// version.
struct OsRelease
{
    std::string key;
    std::string minorVersion;
};

// Reads the content of /etc/os-release (os-release(5) of systemd: ID, ID_LIKE, VERSION_ID). A distribution that says
// it is like RHEL counts as that version of RHEL.
OsRelease readOsRelease(const std::string& content);
} // namespace connect
