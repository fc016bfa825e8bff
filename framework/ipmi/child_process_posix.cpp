#include "ipmi/child_process.h"

#include "interrupt.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace ipmi
{
namespace
{
using Clock = std::chrono::steady_clock;

constexpr int kPollMilliseconds = 20;
constexpr int kFirstOtherDescriptor = 3;

struct Pipe
{
    Pipe()
    {
        // Only the reading end: a program may not expect that its output would block.
        usable = ::pipe2(ends, O_CLOEXEC) == 0 && ::fcntl(ends[0], F_SETFL, O_NONBLOCK) == 0;
    }
    ~Pipe()
    {
        closeEnd(0);
        closeEnd(1);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    void closeEnd(int which)
    {
        if (ends[which] >= 0)
        {
            ::close(ends[which]);
            ends[which] = -1;
        }
    }

    int ends[2] = {-1, -1};
    bool usable = false;
};

struct SpawnSettings
{
    SpawnSettings(const Pipe& out, const Pipe& err)
    {
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions, out.ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, err.ends[1], STDERR_FILENO);
        // Libraries open sockets without the close-on-exec flag; connections to other targets are none of its business.
        posix_spawn_file_actions_addclosefrom_np(&actions, kFirstOtherDescriptor);

        sigset_t none;
        sigset_t usual;
        sigemptyset(&none);
        sigemptyset(&usual);
        for (const int number : {SIGINT, SIGTERM, SIGPIPE, SIGHUP})
        {
            sigaddset(&usual, number);
        }
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setsigdefault(&attributes, &usual);
        posix_spawnattr_setflags(
            &attributes, static_cast<short>(POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
    }
    ~SpawnSettings()
    {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

std::vector<char*> pointers(std::vector<std::string>& words)
{
    std::vector<char*> array;
    array.reserve(words.size() + 1);
    for (std::string& word : words)
    {
        array.push_back(word.data());
    }
    array.push_back(nullptr);
    return array;
}

enum class Drained
{
    More,
    End,
    TooLarge,
};

// Takes what is there without waiting.
Drained drain(Pipe& pipe, std::size_t limit, std::string& text)
{
    char buffer[4096];
    while (pipe.ends[0] >= 0)
    {
        const ssize_t got = ::read(pipe.ends[0], buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
        {
            continue;
        }
        if (got < 0 && errno == EAGAIN)
        {
            return Drained::More;
        }
        if (got <= 0)
        {
            pipe.closeEnd(0);
            break;
        }
        if (text.size() + static_cast<std::size_t>(got) > limit)
        {
            return Drained::TooLarge;
        }
        text.append(buffer, static_cast<std::size_t>(got));
    }
    return Drained::End;
}

// Whether the child has ended; leaves it unreaped, so that its number stays its own.
bool hasEnded(pid_t pid)
{
    siginfo_t information = {};
    return ::waitid(P_PID, static_cast<id_t>(pid), &information, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           information.si_pid == pid;
}

int reap(pid_t pid)
{
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR)
    {
    }
    return status;
}

// Reads until the child has ended or must be stopped.
ChildEnd follow(pid_t pid, Pipe& out, Pipe& err, const ChildRequest& request, ChildOutcome& outcome)
{
    const Clock::time_point deadline = Clock::now() + request.timeLimit;
    while (true)
    {
        pollfd entries[] = {{out.ends[0], POLLIN, 0}, {err.ends[0], POLLIN, 0}};
        ::poll(entries, 2, kPollMilliseconds);
        const bool ended = hasEnded(pid); // before the reading, which then sees all that it wrote
        if (drain(out, request.largestOutput, outcome.out) == Drained::TooLarge ||
            drain(err, request.largestOutput, outcome.err) == Drained::TooLarge)
        {
            return ChildEnd::TooLarge;
        }
        if (ended)
        {
            return ChildEnd::Exited;
        }
        if (interrupt::requested())
        {
            return ChildEnd::Interrupted;
        }
        if (Clock::now() >= deadline)
        {
            return ChildEnd::TimeLimit;
        }
    }
}

ChildOutcome notStarted(int number)
{
    ChildOutcome outcome;
    outcome.reason = std::generic_category().message(number);
    return outcome;
}
} // namespace

ChildOutcome runChild(const ChildRequest& request)
{
    Pipe out;
    Pipe err;
    if (!out.usable || !err.usable)
    {
        return notStarted(errno);
    }
    std::vector<std::string> words{request.program};
    words.insert(words.end(), request.arguments.begin(), request.arguments.end());
    std::vector<std::string> environment = request.environment;
    const SpawnSettings settings(out, err);
    pid_t pid = -1;
    const int failure = ::posix_spawn(&pid, request.program.c_str(), &settings.actions, &settings.attributes,
                                      pointers(words).data(), pointers(environment).data());
    if (failure != 0)
    {
        return notStarted(failure);
    }
    out.closeEnd(1);
    err.closeEnd(1);
    ChildOutcome outcome;
    outcome.end = follow(pid, out, err, request, outcome);
    ::kill(-pid, SIGKILL);
    const int status = reap(pid);
    if (outcome.end == ChildEnd::Exited)
    {
        outcome.end = WIFEXITED(status) ? ChildEnd::Exited : ChildEnd::Signalled;
        outcome.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    return outcome;
}

std::vector<std::string> programFolders()
{
    return {"/usr/bin", "/usr/sbin", "/usr/local/bin"};
}

std::string findProgram(const std::string& name, const std::vector<std::string>& folders)
{
    for (const std::string& folder : folders)
    {
        std::string path = folder;
        path.append("/").append(name);
        if (::access(path.c_str(), X_OK) == 0)
        {
            return path;
        }
    }
    return std::string();
}
} // namespace ipmi
