#include "trust/user_files.h"

#include "files/owner_only_win32.h"
#include "text/environment.h"
#include "text/wide_text_win32.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <thread>

namespace trust
{
namespace
{
constexpr std::chrono::milliseconds kLockStep{10};

bool isFolder(const std::wstring& path)
{
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool isWholePath(const std::string& path)
{
    const bool drive = path.size() >= 3 && path[1] == ':' && (path[2] == '\\' || path[2] == '/');
    return drive || path.rfind("\\\\", 0) == 0;
}
} // namespace

std::string homeFolder()
{
    const std::string home = environment::variable("USERPROFILE");
    // A relative one would name another file in every working folder.
    return isWholePath(home) ? home : std::string();
}

bool makePrivateFolder(const std::string& path, std::string& error)
{
    const std::wstring name = wide_text::path(path);
    if (::CreateDirectoryW(name.c_str(), owner_only::access()) != 0)
    {
        return true;
    }
    const DWORD reason = ::GetLastError();
    if (reason == ERROR_ALREADY_EXISTS && isFolder(name))
    {
        return true;
    }
    error = wide_text::systemReason(reason == ERROR_ALREADY_EXISTS ? ERROR_DIRECTORY : reason);
    return false;
}

FileLock::~FileLock()
{
    if (handle_ >= 0)
    {
        ::_close(handle_); // which also gives the lock back
    }
}

bool FileLock::acquire(const std::string& path, std::chrono::milliseconds limit, std::string& error)
{
    const HANDLE file = ::CreateFileW(wide_text::path(path).c_str(), GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, owner_only::access(),
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE)
    {
        error = wide_text::systemReason(::GetLastError());
        return false;
    }
    BY_HANDLE_FILE_INFORMATION information = {};
    if (::GetFileInformationByHandle(file, &information) == 0 ||
        (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
    {
        ::CloseHandle(file);
        error = "not a regular file";
        return false;
    }
    handle_ = ::_open_osfhandle(reinterpret_cast<intptr_t>(file), _O_RDWR | _O_NOINHERIT);
    const auto end = std::chrono::steady_clock::now() + limit;
    OVERLAPPED place = {};
    while (::LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) == 0)
    {
        const DWORD reason = ::GetLastError();
        if (reason != ERROR_LOCK_VIOLATION && reason != ERROR_IO_PENDING)
        {
            error = wide_text::systemReason(reason);
            return false;
        }
        if (std::chrono::steady_clock::now() >= end)
        {
            error = "another program keeps it locked";
            return false;
        }
        std::this_thread::sleep_for(kLockStep);
    }
    return true;
}
} // namespace trust
