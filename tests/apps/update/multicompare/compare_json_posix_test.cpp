#include "compare_json.h"

#include "support/scratch_folder.h"

#include <boost/filesystem/operations.hpp>
#include <boost/property_tree/json_parser.hpp>
#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>
#include <iterator>

namespace
{
// Files of this process may grow no further while it lives; a write beyond fails as on a full disk.
class FileSizeLimit
{
  public:
    explicit FileSizeLimit(rlim_t bytes) : oldHandler_(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &old_);
        rlimit limit = old_;
        limit.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, oldHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit old_ = {};
    void (*oldHandler_)(int);
};

// What is written to a disk that takes so many bytes more.
std::string commitError(const std::string& path, rlim_t bytes, int hosts)
{
    const FileSizeLimit limit(bytes);
    CompareJsonFile file(path);
    for (int i = 0; i < hosts; ++i)
    {
        file.AddHost(BuildHostJson("h", CompareHeader()));
    }
    try
    {
        file.Commit();
    }
    catch (const boost::property_tree::json_parser_error& error)
    {
        return error.what();
    }
    return "no error";
}

TEST(CompareJsonFile, SaysWhenTheDiskIsFull)
{
    const test_support::ScratchFolder folder;
    const std::string path = folder.path() + "/out.json";
    EXPECT_EQ(commitError(path, 64, 1), path + ": write error");   // met when the file is closed
    EXPECT_EQ(commitError(path, 64, 100), path + ": write error"); // met among the hosts
    EXPECT_EQ(commitError(path, 1 << 20, 1), "no error");
    EXPECT_EQ(
        std::distance(boost::filesystem::directory_iterator(folder.path()), boost::filesystem::directory_iterator()),
        1);
}
} // namespace
