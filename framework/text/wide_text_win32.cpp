#include "text/wide_text_win32.h"

#include "text/text.h"

#include <windows.h>

#include <algorithm>

namespace
{
constexpr wchar_t kLongPrefix[] = L"\\\\?\\";
constexpr wchar_t kLongNetworkPrefix[] = L"\\\\?\\UNC\\";

bool startsWith(const std::wstring& text, const wchar_t* beginning)
{
    return text.rfind(beginning, 0) == 0;
}

bool isPrefixed(const std::wstring& path)
{
    return startsWith(path, L"\\\\?\\") || startsWith(path, L"\\\\.\\");
}

std::wstring absolute(const std::wstring& path)
{
    const DWORD needed = ::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
    std::wstring result(needed, L'\0');
    const DWORD length = ::GetFullPathNameW(path.c_str(), needed, result.data(), nullptr);
    if (length == 0 || length >= needed)
    {
        return path;
    }
    result.resize(length);
    return result;
}
} // namespace

namespace wide_text
{
std::wstring fromUtf8(const std::string& text)
{
    const int size = static_cast<int>(text.size());
    const int length = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
    std::wstring result(static_cast<std::size_t>(std::max(length, 0)), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, result.data(), length);
    return result;
}

std::string toUtf8(const wchar_t* text, std::size_t length)
{
    const int units = static_cast<int>(length);
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text, units, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(std::max(size, 0)), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text, units, result.data(), size, nullptr, nullptr);
    return result;
}

std::string toUtf8(const std::wstring& text)
{
    return toUtf8(text.data(), text.size());
}

std::wstring plainPath(const std::string& path)
{
    std::wstring result = fromUtf8(path);
    std::replace(result.begin(), result.end(), L'/', L'\\');
    return result;
}

std::wstring path(const std::string& path)
{
    const std::wstring plain = plainPath(path);
    if (plain.empty() || isPrefixed(plain))
    {
        return plain;
    }
    const std::wstring whole = absolute(plain);
    if (isPrefixed(whole))
    {
        return whole; // of a device, such as NUL
    }
    return startsWith(whole, L"\\\\") ? kLongNetworkPrefix + whole.substr(2) : kLongPrefix + whole;
}

std::string systemReason(unsigned long number)
{
    wchar_t* words = nullptr;
    const DWORD length =
        ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                         nullptr, number, 0, reinterpret_cast<wchar_t*>(&words), 0, nullptr);
    if (length == 0)
    {
        return "error " + std::to_string(number);
    }
    const std::string text = toUtf8(words, length);
    ::LocalFree(words);
    return text::trim(text);
}
} // namespace wide_text
