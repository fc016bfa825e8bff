#include "files/entries.h"

#include "files/handle_win32.h"
#include "files/moves_win32.h"
#include "text/wide_text_win32.h"

#include <windows.h>

#include <algorithm>
#include <cwchar>

namespace files
{
namespace
{
constexpr int kRenameTries = 20;
constexpr DWORD kRenamePause = 50;                 // milliseconds
constexpr std::size_t kLongestPlainPath = 260 - 1; // with the null unit at the end

// Of an entry in a listing, which tells of a link itself instead of what it leads to.
bool isRegularFile(const std::string& folder, const WIN32_FIND_DATAW& found, const std::string& name)
{
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
    {
        return lookAt(folder + "\\" + name).kind == Kind::RegularFile;
    }
    return (found.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) == 0;
}
} // namespace

bool isMissing(unsigned long reason)
{
    return reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PATH_NOT_FOUND || reason == ERROR_INVALID_NAME ||
           reason == ERROR_BAD_NETPATH || reason == ERROR_BAD_NET_NAME;
}

bool moveOver(const std::wstring& from, const std::wstring& to)
{
    for (int tries = 1;; ++tries)
    {
        if (::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0)
        {
            return true;
        }
        const DWORD reason = ::GetLastError();
        const bool kept = reason == ERROR_SHARING_VIOLATION || reason == ERROR_ACCESS_DENIED;
        const DWORD attributes = ::GetFileAttributesW(to.c_str());
        const bool folder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (!kept || folder || tries == kRenameTries)
        {
            ::SetLastError(reason);
            return false;
        }
        ::Sleep(kRenamePause);
    }
}
Entry lookAt(const std::string& path)
{
    Entry entry;
    const FileHandle file(::CreateFileW(wide_text::path(path).c_str(), FILE_READ_ATTRIBUTES,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!file.valid())
    {
        entry.kind = isMissing(::GetLastError()) ? Kind::Missing : Kind::Unknown;
        return entry;
    }
    BY_HANDLE_FILE_INFORMATION information = {};
    if (::GetFileType(file.get()) != FILE_TYPE_DISK || ::GetFileInformationByHandle(file.get(), &information) == 0)
    {
        entry.kind = Kind::Other;
        return entry;
    }
    const bool folder = (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    entry.kind = folder ? Kind::Folder : Kind::RegularFile;
    entry.size = folder ? 0 : (std::uintmax_t{information.nFileSizeHigh} << 32U) | information.nFileSizeLow;
    return entry;
}

bool listRegularFiles(const std::string& folder, std::vector<std::string>& names, std::string& error)
{
    WIN32_FIND_DATAW found = {};
    const HANDLE search = ::FindFirstFileW(wide_text::path(folder + "\\*").c_str(), &found);
    DWORD reason = search == INVALID_HANDLE_VALUE ? ::GetLastError() : ERROR_SUCCESS;
    // The root of an empty disk has not even entries for itself.
    if (reason == ERROR_FILE_NOT_FOUND && lookAt(folder).kind == Kind::Folder)
    {
        return true;
    }
    if (reason == ERROR_SUCCESS)
    {
        do
        {
            const std::string name = wide_text::toUtf8(found.cFileName, std::wcslen(found.cFileName));
            if (isRegularFile(folder, found, name))
            {
                names.push_back(name);
            }
        } while (::FindNextFileW(search, &found) != 0);
        reason = ::GetLastError();
        ::FindClose(search);
    }
    if (reason != ERROR_NO_MORE_FILES)
    {
        error = wide_text::systemReason(reason);
    }
    return reason == ERROR_NO_MORE_FILES;
}

bool rename(const std::string& from, const std::string& to, std::string& error)
{
    if (moveOver(wide_text::path(from), wide_text::path(to)))
    {
        return true;
    }
    error = wide_text::systemReason(::GetLastError());
    return false;
}

// With the prefix only where it is needed: some C libraries take a question mark for a wildcard.
std::filesystem::path streamPath(const std::string& path)
{
    const std::wstring whole = wide_text::path(path);
    return whole.size() <= kLongestPlainPath ? std::filesystem::path(wide_text::plainPath(path))
                                             : std::filesystem::path(whole);
}
} // namespace files
