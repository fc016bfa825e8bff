#include "common/module_directory.h"

#include <windows.h>

namespace
{
// An address inside this module.
const char kAnchor = 0;

constexpr DWORD kLongestPath = 260;
} // namespace

ModuleHandle GetSelfModuleHandle()
{
    MEMORY_BASIC_INFORMATION region = {};
    return ::VirtualQuery(&kAnchor, &region, sizeof region) == 0 ? nullptr : region.AllocationBase;
}

std::string GetModuleDirectory(ModuleHandle module)
{
    char buffer[kLongestPath] = {};
    const DWORD length = ::GetModuleFileNameA(static_cast<HMODULE>(module), buffer, kLongestPath);
    if (length == 0)
    {
        return std::string();
    }
    const std::string path(buffer, length);
    const std::string::size_type separator = path.rfind('\\');
    return separator == std::string::npos ? path : path.substr(0, separator + 1);
}
