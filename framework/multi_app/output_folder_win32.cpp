#include "multi_app/output_folder.h"

#include "files/owner_only_win32.h"
#include "text/wide_text_win32.h"

#include <windows.h>

namespace
{
// Junctions and symbolic links are entries of their own: removed, never entered.
bool isRealFolder(DWORD attributes)
{
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

bool removeEntry(const std::wstring& path, DWORD attributes)
{
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
    {
        ::SetFileAttributesW(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? ::RemoveDirectoryW(path.c_str()) != 0
                                                        : ::DeleteFileW(path.c_str()) != 0;
}

bool removeAll(const std::wstring& path, DWORD attributes)
{
    if (isRealFolder(attributes))
    {
        WIN32_FIND_DATAW entry = {};
        const HANDLE search = ::FindFirstFileW((path + L"\\*").c_str(), &entry);
        if (search == INVALID_HANDLE_VALUE)
        {
            return false;
        }
        bool removed = true;
        do
        {
            const std::wstring name = entry.cFileName;
            removed = name == L"." || name == L".." || removeAll(path + L"\\" + name, entry.dwFileAttributes);
        } while (removed && ::FindNextFileW(search, &entry) != 0);
        const DWORD reason = ::GetLastError();
        ::FindClose(search);
        if (!removed)
        {
            ::SetLastError(reason);
            return false;
        }
    }
    return removeEntry(path, attributes);
}
} // namespace

namespace output_folder
{
Creation makeOne(const std::string& path, std::string& error)
{
    if (::CreateDirectoryW(wide_text::path(path).c_str(), owner_only::access()) != 0)
    {
        return Creation::Made;
    }
    const DWORD reason = ::GetLastError();
    error = wide_text::systemReason(reason);
    return reason == ERROR_ALREADY_EXISTS ? Creation::AlreadyThere : Creation::Failed;
}

bool removeTree(const std::string& path, std::string& error)
{
    const std::wstring name = wide_text::path(path);
    const DWORD attributes = ::GetFileAttributesW(name.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && removeAll(name, attributes))
    {
        return true;
    }
    const DWORD reason = ::GetLastError();
    if (attributes == INVALID_FILE_ATTRIBUTES && (reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PATH_NOT_FOUND))
    {
        return true;
    }
    error = wide_text::systemReason(reason);
    return false;
}
} // namespace output_folder
