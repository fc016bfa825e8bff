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

// A path for a file call: a whole one, with the prefix that lifts the old limit of 260 units. Names that follow behind a
// backslash are taken as they stand. Empty for an empty one.
std::wstring path(const std::string& path);

// The same path in Windows' own spelling, for calls that do not take the prefix and for what others are told.
std::wstring plainPath(const std::string& path);

// The system's words for an error number (GetLastError), without the line end.
std::string systemReason(unsigned long number);
} // namespace wide_text
