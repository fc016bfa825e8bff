#include "framework/trust/known_file.h"

#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using known_file::addFromThreads;
using known_file::addMany;
using known_file::kOne;
using known_file::linesOf;
using test_support::readFile;
using test_support::ScratchFolder;
using trust::Knowledge;
using trust::KnownControllers;

TEST(KnownControllers, LosesNoLineOfThreadsAndProcesses)
{
    constexpr int kWriters = 4;
    constexpr int kEach = 12;
    const ScratchFolder folder;
    const std::string path = folder.file("known");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0)
    {
        ::_exit(addMany(path, "process", kEach) ? 0 : 1);
    }
    const std::vector<int> added = addFromThreads(path, kWriters, kEach);
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(added, std::vector<int>(kWriters, 1));
    EXPECT_EQ(linesOf(readFile(path)), 1 + (kWriters + 1) * kEach);
    EXPECT_EQ(KnownControllers(path).find("process-11:443", kOne).knowledge, Knowledge::Known);
}
