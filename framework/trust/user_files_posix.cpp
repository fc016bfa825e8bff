#include "trust/user_files.h"

#include "text/environment.h"

#include <cerrno>
#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace trust
{
namespace
{
constexpr std::chrono::milliseconds kLockStep{10};
constexpr std::size_t kPasswdBuffer = 16384;

std::string systemReason(int number)
{
    return std::generic_category().message(number);
}

std::string accountsHome()
{
    passwd entry = {};
    passwd* found = nullptr;
    std::vector<char> buffer(kPasswdBuffer);
    const int failure = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
    return failure == 0 && found != nullptr && found->pw_dir != nullptr ? found->pw_dir : "";
}
} // namespace

std::string homeFolder()
{
    const std::string named = environment::variable("HOME");
    const std::string home = named.empty() ? accountsHome() : named;
    // A relative one would name another file in every working folder.
    return !home.empty() && home.front() == '/' ? home : std::string();
}

bool makePrivateFolder(const std::string& path, std::string& error)
{
    if (::mkdir(path.c_str(), S_IRWXU) == 0)
    {
        return true;
    }
    const int number = errno;
    struct stat status
    {
    };
    if (number == EEXIST && ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
    {
        return true;
    }
    error = systemReason(number == EEXIST ? ENOTDIR : number);
    return false;
}

FileLock::~FileLock()
{
    if (handle_ >= 0)
    {
        ::close(handle_);
    }
}

bool FileLock::acquire(const std::string& path, std::chrono::milliseconds limit, std::string& error)
{
    handle_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (handle_ < 0)
    {
        error = systemReason(errno);
        return false;
    }
    const auto end = std::chrono::steady_clock::now() + limit;
    while (::flock(handle_, LOCK_EX | LOCK_NB) != 0)
    {
        const int number = errno;
        if (number != EWOULDBLOCK && number != EINTR)
        {
            error = systemReason(number);
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
