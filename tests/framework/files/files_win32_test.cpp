#include "files/files.h"

#include "files/entries.h"
#include "multi_app/output_folder.h"
#include "support/scratch_folder.h"
#include "text/wide_text_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

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

namespace
{
// Makes folders below a folder until the path has that many letters.
std::string makeLong(const std::string& folder, std::size_t length)
{
    std::string path = folder;
    while (path.size() < length)
    {
        path += "/" + std::string(std::min<std::size_t>(60, std::max<std::size_t>(length - path.size(), 2) - 1), 'a');
        std::string error;
        EXPECT_EQ(output_folder::makeOne(path, error), output_folder::Creation::Made) << path << ": " << error;
    }
    return path;
}
} // namespace

TEST(FilesPath, MayBeLongerThanTheOldLimit)
{
    // At the limits for folders, for files, and for files with a temporary ending; and far behind them.
    for (const std::size_t length : {222U, 232U, 246U, 247U, 248U, 255U, 259U, 260U, 400U})
    {
        const ScratchFolder folder;
        const std::string path = makeLong(folder.path(), length);
        std::string error;
        std::string content;
        ASSERT_TRUE(files::replace(path + "/file", "one", error)) << length << error;
        ASSERT_TRUE(files::replace(path + "/file", "two", error)) << length << error;
        EXPECT_EQ(files::read(path + "/file", 10, content), files::ReadOutcome::Ok);
        EXPECT_EQ(content, "two");
        EXPECT_TRUE(files::createPrivate(path + "/other", error)) << error;
        EXPECT_EQ(files::lookAt(path + "/file").size, 3U);
        EXPECT_EQ(files::lookAt(path).kind, files::Kind::Folder);
        std::string line;
        std::ifstream(files::streamPath(path + "/file")) >> line;
        EXPECT_EQ(line, "two") << length;
        std::vector<std::string> names;
        EXPECT_TRUE(files::listRegularFiles(path, names, error)) << error;
        EXPECT_THAT(names, testing::UnorderedElementsAre("file", "other")) << length;
        EXPECT_TRUE(files::rename(path, path + "b", error)) << error;
        EXPECT_TRUE(output_folder::removeTree(path + "b", error)) << error;
        EXPECT_EQ(files::lookAt(path + "b").kind, files::Kind::Missing);
    }
}

TEST(FilesPath, IsWholeAndPrefixedForTheSystem)
{
    EXPECT_EQ(wide_text::path("C:/a/../b/x"), L"\\\\?\\C:\\b\\x");
    EXPECT_EQ(wide_text::path("\\\\server\\share\\x"), L"\\\\?\\UNC\\server\\share\\x");
    EXPECT_EQ(wide_text::path("\\\\?\\C:\\x"), L"\\\\?\\C:\\x");
    EXPECT_EQ(wide_text::path("NUL"), L"\\\\.\\NUL");
    EXPECT_EQ(wide_text::path(""), L"");
    EXPECT_EQ(wide_text::path("x").rfind(L"\\\\?\\", 0), 0U);
    EXPECT_EQ(wide_text::plainPath("C:/a/x"), L"C:\\a\\x");
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
