// A library with the module's look-up of its own folder in it.

#include "common/module_directory.h"

#include <cstring>

namespace
{
void give(const std::string& text, char* buffer, std::size_t size)
{
    std::strncpy(buffer, text.c_str(), size - 1);
}
} // namespace

extern "C" __declspec(dllexport) void ownDirectory(char* buffer, std::size_t size)
{
    give(GetModuleDirectory(GetSelfModuleHandle()), buffer, size);
}

extern "C" __declspec(dllexport) void programsDirectory(char* buffer, std::size_t size)
{
    give(GetModuleDirectory(nullptr), buffer, size);
}
