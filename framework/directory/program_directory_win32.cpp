#include "directory/program_directory.h"

#include "text/wide_text_win32.h"

#include <windows.h>

std::string programDirectory()
{
    constexpr std::size_t kLongestPath = 32768; // units, the system's own limit
    std::wstring path(kLongestPath, L'\0');
    const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0 || length >= path.size())
    {
        return std::string();
    }
    path.resize(length);
    const std::wstring::size_type separator = path.rfind(L'\\');
    return separator == std::wstring::npos ? std::string() : wide_text::toUtf8(path.substr(0, separator));
}
