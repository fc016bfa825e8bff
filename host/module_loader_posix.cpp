#include "module_loader.h"

#include <dlfcn.h>

namespace
{
constexpr char kEntry[] = "create_instance";

std::string lastError()
{
    const char* const text = ::dlerror();
    return text == nullptr ? "unknown reason" : text;
}
} // namespace

std::string LoadedModule::fileName(const std::string& name)
{
    return name + ".so";
}

std::unique_ptr<LoadedModule> LoadedModule::load(const std::string& path, std::string& error)
{
    void* const handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr)
    {
        error = lastError();
        return nullptr;
    }
    void* const entry = ::dlsym(handle, kEntry);
    if (entry == nullptr)
    {
        error = lastError();
        ::dlclose(handle);
        return nullptr;
    }
    return std::unique_ptr<LoadedModule>(new LoadedModule(handle, reinterpret_cast<Create>(entry)));
}

LoadedModule::~LoadedModule()
{
    ::dlclose(handle_);
}
