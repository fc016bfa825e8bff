#pragma once

#include <string>

namespace files
{
// True for the system's error numbers that say that there is nothing of the name.
bool isMissing(unsigned long reason);

// Renames over what has the other name. Waits up to a second for a scanner for malware, which keeps a new file open for a
// moment. Paths as of wide_text::path; false leaves the reason in GetLastError.
bool moveOver(const std::wstring& from, const std::wstring& to);
} // namespace files
