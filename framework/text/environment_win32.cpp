#include "text/environment.h"

#include "text/wide_text_win32.h"

#include <windows.h>

namespace environment
{
std::string variable(const char* name)
{
    const std::wstring wide = wide_text::fromUtf8(name);
    const DWORD needed = ::GetEnvironmentVariableW(wide.c_str(), nullptr, 0);
    std::wstring value(needed, L'\0');
    const DWORD length = ::GetEnvironmentVariableW(wide.c_str(), value.data(), needed);
    value.resize(length < needed ? length : 0);
    return wide_text::toUtf8(value);
}
} // namespace environment
