#include "common/module_directory.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <memory>

namespace
{
// An address inside this module.
const char kAnchor = 0;

std::string absolutePath(const char* path)
{
    const std::unique_ptr<char, void (*)(void*)> resolved(::realpath(path, nullptr), &std::free);
    return resolved == nullptr ? std::string(path) : std::string(resolved.get());
}

std::string programPath()
{
    char buffer[PATH_MAX] = {};
    const ssize_t length = ::readlink("/proc/self/exe", buffer, sizeof(buffer));
    return length <= 0 ? std::string() : std::string(buffer, static_cast<std::size_t>(length));
}

std::string modulePath(ModuleHandle module)
{
    if (module == nullptr)
    {
        return programPath();
    }
    Dl_info info = {};
    if (::dladdr(module, &info) == 0 || info.dli_fname == nullptr)
    {
        return std::string();
    }
    return absolutePath(info.dli_fname);
}
} // namespace

ModuleHandle GetSelfModuleHandle()
{
    Dl_info info = {};
    return ::dladdr(&kAnchor, &info) == 0 ? nullptr : info.dli_fbase;
}

std::string GetModuleDirectory(ModuleHandle module)
{
    const std::string path = modulePath(module);
    const std::string::size_type separator = path.rfind('/');
    return separator == std::string::npos ? path : path.substr(0, separator + 1);
}
