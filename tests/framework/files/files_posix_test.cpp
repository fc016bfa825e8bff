#include "files/files.h"

#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

TEST(FilesRead, DoesNotWaitForTheWriterOfAFifo)
{
    const test_support::ScratchFolder folder;
    ASSERT_EQ(::mkfifo(folder.file("fifo").c_str(), 0600), 0);
    std::string content;
    EXPECT_EQ(files::read(folder.file("fifo"), 10, content), files::ReadOutcome::Unreadable);
}
