#include "files/entries.h"

#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using test_support::readFile;
using test_support::ScratchFolder;

TEST(FilesLookAt, TellsFilesFromFoldersAndFromNothing)
{
    const ScratchFolder folder;
    const files::Entry file = files::lookAt(folder.write("some file", "12345"));
    EXPECT_EQ(file.kind, files::Kind::RegularFile);
    EXPECT_EQ(file.size, 5U);
    EXPECT_EQ(files::lookAt(folder.path()).kind, files::Kind::Folder);
    EXPECT_EQ(files::lookAt(folder.file("none")).kind, files::Kind::Missing);
    EXPECT_EQ(files::lookAt(folder.file("none/below")).kind, files::Kind::Missing);
}

TEST(FilesListRegularFiles, LeavesOutFoldersAndSaysWhyItCannotList)
{
    const ScratchFolder folder;
    folder.write("one", "");
    folder.write("two.xml", "x");
    folder.write("below/three", "");
    std::vector<std::string> names;
    std::string error;
    EXPECT_TRUE(files::listRegularFiles(folder.path(), names, error)) << error;
    EXPECT_THAT(names, testing::UnorderedElementsAre("one", "two.xml"));
    EXPECT_FALSE(files::listRegularFiles(folder.file("none"), names, error));
    EXPECT_NE(error, "");
    error.clear();
    EXPECT_FALSE(files::listRegularFiles(folder.file("one"), names, error));
    EXPECT_NE(error, "");
    EXPECT_EQ(names.size(), 2U);
}

TEST(FilesRename, ReplacesAFileAndRefusesAFullFolder)
{
    const ScratchFolder folder;
    const std::string from = folder.write("from", "new");
    const std::string to = folder.write("to", "old");
    std::string error;
    EXPECT_TRUE(files::rename(from, to, error)) << error;
    EXPECT_EQ(readFile(to), "new");
    EXPECT_EQ(files::lookAt(from).kind, files::Kind::Missing);

    folder.write("a/x", "");
    folder.write("b/y", "");
    EXPECT_FALSE(files::rename(folder.file("a"), folder.file("b"), error));
    EXPECT_NE(error, "");
    EXPECT_TRUE(files::rename(folder.file("a"), folder.file("c"), error)) << error;
    EXPECT_EQ(files::lookAt(folder.file("c/x")).kind, files::Kind::RegularFile);
    EXPECT_FALSE(files::rename(folder.file("none"), folder.file("d"), error));
}
