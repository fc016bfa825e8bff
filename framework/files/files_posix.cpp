#include "files/files.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace
{
class Descriptor
{
  public:
    explicit Descriptor(int value) : value_(value) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return value_; }
    bool valid() const { return value_ >= 0; }

    bool close()
    {
        const int closing = value_;
        value_ = -1;
        return closing < 0 || ::close(closing) == 0;
    }

  private:
    int value_;
};

std::string systemReason(int number)
{
    return std::generic_category().message(number);
}

bool writeAll(int descriptor, const std::string& content)
{
    std::size_t done = 0;
    while (done < content.size())
    {
        const ssize_t written = ::write(descriptor, content.data() + done, content.size() - done);
        if (written < 0 && errno == EINTR)
        {
            continue;
        }
        if (written <= 0)
        {
            return false;
        }
        done += static_cast<std::size_t>(written);
    }
    return true;
}

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
    {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

// The renamed entry reaches the disk with its folder. Some file systems cannot flush a folder; the content itself is
// safe by then.
void flushFolder(const std::string& path)
{
    const Descriptor folder(::open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.valid())
    {
        ::fsync(folder.get());
    }
}
} // namespace

namespace files
{
ReadOutcome read(const std::string& path, std::size_t limit, std::string& content)
{
    // Without O_NONBLOCK the open of a FIFO would wait for its writer.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.valid())
    {
        return errno == ENOENT || errno == ENOTDIR ? ReadOutcome::Missing : ReadOutcome::Unreadable;
    }
    struct stat status
    {
    };
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
    {
        return ReadOutcome::Unreadable;
    }
    std::string bytes;
    char buffer[65536];
    for (;;)
    {
        const ssize_t got = ::read(file.get(), buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
        {
            continue;
        }
        if (got < 0)
        {
            return ReadOutcome::Unreadable;
        }
        if (got == 0)
        {
            break;
        }
        bytes.append(buffer, static_cast<std::size_t>(got));
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
    std::string temporary = path + ".XXXXXX";
    // mkostemp makes the file with mode 0600 and a name that nobody else has.
    Descriptor file(::mkostemp(&temporary[0], O_CLOEXEC));
    if (!file.valid())
    {
        error = systemReason(errno);
        return false;
    }
    const bool stored = writeAll(file.get(), content) && ::fsync(file.get()) == 0 && file.close() &&
                        std::rename(temporary.c_str(), path.c_str()) == 0;
    if (!stored)
    {
        error = systemReason(errno);
        ::unlink(temporary.c_str());
        return false;
    }
    flushFolder(path);
    return true;
}

bool createPrivate(const std::string& path, std::string& error)
{
    const Descriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    if (!file.valid())
    {
        error = systemReason(errno);
        return false;
    }
    struct stat status
    {
    };
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
    {
        error = "not a regular file";
        return false;
    }
    return true;
}
} // namespace files
