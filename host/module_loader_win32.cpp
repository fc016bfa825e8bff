#include "module_loader.h"

#include "text/wide_text_win32.h"

#include <windows.h>

namespace
{
constexpr char kEntry[] = "create_instance";

std::string lastError()
{
    return wide_text::systemReason(::GetLastError());
}
} // namespace

std::string LoadedModule::fileName(const std::string& name)
{
    return name + ".dll";
}

std::unique_ptr<LoadedModule> LoadedModule::load(const std::string& path, std::string& error)
{
    // The search flags ask for a whole path with backslashes. What the module needs comes from its own folder or from the
    // system's; the working folder and PATH are not looked into.
    const std::wstring whole = wide_text::plainPath(path);
    const HMODULE handle =
        ::LoadLibraryExW(whole.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (handle == nullptr)
    {
        error = lastError();
        return nullptr;
    }
    const FARPROC entry = ::GetProcAddress(handle, kEntry);
    if (entry == nullptr)
    {
        error = lastError() + " (" + kEntry + ")";
        ::FreeLibrary(handle);
        return nullptr;
    }
    return std::unique_ptr<LoadedModule>(
        new LoadedModule(handle, reinterpret_cast<Create>(reinterpret_cast<void*>(entry))));
}

LoadedModule::~LoadedModule()
{
    ::FreeLibrary(static_cast<HMODULE>(handle_));
}
