#pragma once

#include <cstddef>
#include <string>

// Text at the edge to Windows, whose calls take UTF-16; inside everything is UTF-8. Any thread.
namespace wide_text
{
// Bytes that are no UTF-8 become U+FFFD, so that a wrong name names no file instead of another one.
std::wstring fromUtf8(const std::string& text);

std::string toUtf8(const wchar_t* text, std::size_t length);
std::string toUtf8(const std::wstring& text);

// A path for a file call. One that is too long for the old limit of 260 units gets the prefix that lifts it.
std::wstring path(const std::string& path);

// The system's words for an error number (GetLastError), without the line end.
std::string systemReason(unsigned long number);
} // namespace wide_text
