#include "files/files.h"

#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <thread>

using test_support::readFile;
using test_support::ScratchFolder;

TEST(FilesRead, TakesNoDeviceForAFile)
{
    std::string content;
    for (const char* name : {"NUL", "CON", "\\\\.\\pipe\\no-such-pipe-of-a-test"})
    {
        EXPECT_NE(files::read(name, 10, content), files::ReadOutcome::Ok) << name;
    }
}

TEST(FilesPath, MayHoldAnyCharacters)
{
    const ScratchFolder folder;
    const std::string path = folder.file("\xC3\xA4 \xE2\x82\xAC \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80.txt");
    std::string error;
    std::string content;
    ASSERT_TRUE(files::replace(path, "one", error)) << error;
    EXPECT_EQ(files::read(path, 10, content), files::ReadOutcome::Ok);
    EXPECT_EQ(content, "one");
}

TEST(FilesPath, MayBeLongerThanTheOldLimit)
{
    const ScratchFolder folder;
    std::string path = folder.path();
    while (path.size() < 400)
    {
        path += "/" + std::string(60, 'a');
        std::wstring wide(L"\\\\?\\");
        for (const char letter : path)
        {
            wide += letter == '/' ? L'\\' : static_cast<wchar_t>(letter);
        }
        ASSERT_NE(::CreateDirectoryW(wide.c_str(), nullptr), 0) << path;
    }
    std::string error;
    std::string content;
    ASSERT_TRUE(files::replace(path + "/file", "one", error)) << error;
    ASSERT_TRUE(files::replace(path + "/file", "two", error)) << error;
    EXPECT_EQ(files::read(path + "/file", 10, content), files::ReadOutcome::Ok);
    EXPECT_EQ(content, "two");
    EXPECT_TRUE(files::createPrivate(path + "/other", error)) << error;
}

TEST(FilesReplace, WaitsForAScannerThatKeepsTheFileForAMoment)
{
    const ScratchFolder folder;
    const std::string path = folder.write("file", "old");
    const HANDLE kept = ::CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(kept, INVALID_HANDLE_VALUE);
    std::thread scanner(
        [kept]
        {
            ::Sleep(150);
            ::CloseHandle(kept);
        });
    std::string error;
    EXPECT_TRUE(files::replace(path, "new", error)) << error;
    scanner.join();
    EXPECT_EQ(readFile(path), "new");
}
