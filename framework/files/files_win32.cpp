#include "files/files.h"

#include "files/handle_win32.h"
#include "files/moves_win32.h"
#include "files/owner_only_win32.h"
#include "text/wide_text_win32.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <string>

namespace
{
using files::FileHandle;

constexpr int kMostNames = 100;

bool writeAll(HANDLE file, const std::string& content)
{
    constexpr std::size_t kLargestStep = 1U << 20U;
    std::size_t done = 0;
    while (done < content.size())
    {
        DWORD written = 0;
        const auto step = static_cast<DWORD>(std::min(content.size() - done, kLargestStep));
        if (::WriteFile(file, content.data() + done, step, &written, nullptr) == 0 || written == 0)
        {
            return false;
        }
        done += written;
    }
    return true;
}

// A name that no other call of this or another process has.
std::wstring temporaryName(const std::wstring& path)
{
    static std::atomic<unsigned> number{0};
    return path + L"." + std::to_wstring(::GetCurrentProcessId()) + L"-" +
           std::to_wstring(::GetTickCount64() % 1000000) + L"-" + std::to_wstring(number++);
}

HANDLE createTemporary(const std::wstring& path, std::wstring& name)
{
    HANDLE file = INVALID_HANDLE_VALUE;
    for (int tries = 0; tries < kMostNames; ++tries)
    {
        name = temporaryName(path);
        file = ::CreateFileW(name.c_str(), GENERIC_WRITE, 0, owner_only::access(), CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                             nullptr);
        if (file != INVALID_HANDLE_VALUE || ::GetLastError() != ERROR_FILE_EXISTS)
        {
            break;
        }
    }
    return file;
}
} // namespace

namespace files
{
ReadOutcome read(const std::string& path, std::size_t limit, std::string& content)
{
    const FileHandle file(::CreateFileW(wide_text::path(path).c_str(), GENERIC_READ,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file.valid())
    {
        return isMissing(::GetLastError()) ? ReadOutcome::Missing : ReadOutcome::Unreadable;
    }
    // A device or a named pipe would wait for somebody at its other end.
    if (::GetFileType(file.get()) != FILE_TYPE_DISK)
    {
        return ReadOutcome::Unreadable;
    }
    std::string bytes;
    char buffer[65536];
    for (;;)
    {
        DWORD got = 0;
        if (::ReadFile(file.get(), buffer, sizeof buffer, &got, nullptr) == 0)
        {
            return ReadOutcome::Unreadable;
        }
        if (got == 0)
        {
            break;
        }
        bytes.append(buffer, got);
        if (bytes.size() > limit)
        {
            return ReadOutcome::TooLarge;
        }
    }
    content.swap(bytes);
    return ReadOutcome::Ok;
}

bool replace(const std::string& path, const std::string& content, std::string& error)
{
    const std::wstring target = wide_text::path(path);
    std::wstring temporary;
    FileHandle file(createTemporary(target, temporary));
    if (!file.valid())
    {
        error = wide_text::systemReason(::GetLastError());
        return false;
    }
    const bool stored = writeAll(file.get(), content) && ::FlushFileBuffers(file.get()) != 0 && file.close() &&
                        moveOver(temporary, target);
    if (!stored)
    {
        error = wide_text::systemReason(::GetLastError());
        file.close();
        ::DeleteFileW(temporary.c_str());
    }
    return stored;
}

bool createPrivate(const std::string& path, std::string& error)
{
    // With FILE_FLAG_OPEN_REPARSE_POINT a symbolic link is opened itself instead of what it leads to.
    const FileHandle file(::CreateFileW(wide_text::path(path).c_str(), FILE_APPEND_DATA | FILE_READ_ATTRIBUTES,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, owner_only::access(), OPEN_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!file.valid())
    {
        error = wide_text::systemReason(::GetLastError());
        return false;
    }
    BY_HANDLE_FILE_INFORMATION information = {};
    const bool regular = ::GetFileType(file.get()) == FILE_TYPE_DISK &&
                         ::GetFileInformationByHandle(file.get(), &information) != 0 &&
                         (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
    if (!regular)
    {
        error = "not a regular file";
    }
    return regular;
}
} // namespace files
