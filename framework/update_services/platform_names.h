#pragma once

#include "os_names.h"

#include <cstdint>
#include <string>

// Names of systems and architectures in reports: the keys that users give on the command line.
namespace update_services
{
// The key of a system's code. Where several systems share the code, the one that `hint` names (a key or display name)
// goes first. Empty for a code that stands for none.
inline std::string osKey(std::uint32_t code, const std::string& hint)
{
    std::string key;
    for (const PlatformName& name : OsNames())
    {
        const bool hinted = hint == name.key || hint == name.displayName;
        if (name.code == code && (key.empty() || hinted))
        {
            key = name.key;
        }
    }
    return key;
}

inline std::string archKey(std::uint32_t code)
{
    for (const PlatformName& name : OsArchNames())
    {
        if (name.code == code)
        {
            return name.key;
        }
    }
    return std::string();
}
} // namespace update_services
