#include "files/files.h"

#include "support/file_rights.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>

namespace fs = std::filesystem;
using test_support::isForOwnerAlone;
using test_support::readFile;
using test_support::ScratchFolder;

namespace
{
std::ptrdiff_t entriesOf(const std::string& folder)
{
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}
} // namespace

TEST(FilesRead, TellsWhyAFileIsNotRead)
{
    const ScratchFolder folder;
    const std::string path = folder.write("five", "12345");
    std::string content = "before";
    EXPECT_EQ(files::read(folder.file("missing"), 10, content), files::ReadOutcome::Missing);
    EXPECT_EQ(files::read(folder.path(), 10, content), files::ReadOutcome::Unreadable);
    EXPECT_EQ(files::read(path, 4, content), files::ReadOutcome::TooLarge);
    EXPECT_EQ(content, "before");
    EXPECT_EQ(files::read(path, 5, content), files::ReadOutcome::Ok);
    EXPECT_EQ(content, "12345");
}

TEST(FilesReplace, WritesAFileForTheUserAlone)
{
    const ScratchFolder folder;
    std::string error;
    ASSERT_TRUE(files::replace(folder.file("a"), "one", error)) << error;
    ASSERT_TRUE(files::replace(folder.file("a"), "two", error)) << error;
    EXPECT_EQ(readFile(folder.file("a")), "two");
    EXPECT_TRUE(isForOwnerAlone(folder.file("a")));
    EXPECT_EQ(entriesOf(folder.path()), 1);
}

TEST(FilesReplace, LeavesNothingBehindOnAFailure)
{
    const ScratchFolder folder;
    folder.write("target/inside", "x");
    std::string error;
    EXPECT_FALSE(files::replace(folder.file("target"), "content", error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(entriesOf(folder.path()), 1);
    error.clear();
    EXPECT_FALSE(files::replace(folder.file("none/target"), "content", error));
    EXPECT_FALSE(error.empty());
}

TEST(FilesCreatePrivate, KeepsAnExistingFileAndRefusesAFolder)
{
    const ScratchFolder folder;
    std::string error;
    ASSERT_TRUE(files::createPrivate(folder.file("new"), error)) << error;
    EXPECT_TRUE(isForOwnerAlone(folder.file("new")));
    const std::string kept = folder.write("kept", "content");
    ASSERT_TRUE(files::createPrivate(kept, error)) << error;
    EXPECT_EQ(readFile(kept), "content");
    EXPECT_FALSE(files::createPrivate(folder.path(), error));
}

TEST(FilesCreatePrivate, RefusesASymbolicLink)
{
    const ScratchFolder folder;
    std::string error;
    fs::create_symlink(folder.write("kept", "content"), folder.file("link"));
    EXPECT_FALSE(files::createPrivate(folder.file("link"), error));
}

TEST(FilesPath, LosesTrailingSeparatorsButNoRoot)
{
    EXPECT_EQ(files::withoutTrailingSeparator("pkgs\\"), "pkgs");
    EXPECT_EQ(files::withoutTrailingSeparator("a/pkgs//"), "a/pkgs");
    EXPECT_EQ(files::withoutTrailingSeparator("/"), "/");
    EXPECT_EQ(files::withoutTrailingSeparator("//"), "/");
    EXPECT_EQ(files::withoutTrailingSeparator("C:\\"), "C:\\");
    EXPECT_EQ(files::withoutTrailingSeparator("C:\\pkgs\\"), "C:\\pkgs");
    EXPECT_EQ(files::withoutTrailingSeparator(""), "");
}
