#include "support/process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{
using Clock = std::chrono::steady_clock;

struct Pipe
{
    Pipe()
    {
        if (::pipe2(ends, O_CLOEXEC) != 0)
        {
            throw std::runtime_error("no pipe");
        }
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
};

std::vector<char*> argumentArray(std::vector<std::string>& words)
{
    std::vector<char*> array;
    array.reserve(words.size() + 1);
    for (std::string& word : words)
    {
        array.push_back(&word[0]);
    }
    array.push_back(nullptr);
    return array;
}

std::vector<std::string> environmentWords(const test_support::ProcessOptions& options)
{
    std::vector<std::string> words;
    for (char** entry = environ; *entry != nullptr; ++entry)
    {
        const std::string word = *entry;
        const bool replaced =
            std::any_of(options.environment.begin(), options.environment.end(),
                        [&word](const auto& e) { return word.compare(0, e.first.size() + 1, e.first + "=") == 0; });
        if (!replaced)
        {
            words.push_back(word);
        }
    }
    for (const auto& entry : options.environment)
    {
        words.push_back(entry.first + "=" + entry.second);
    }
    return words;
}

// Descriptors that the child gets as 0, 1 and 2; -1 keeps this process's.
struct ChildStreams
{
    int in = -1;
    int out = -1;
    int err = -1;
};

pid_t startProcess(const std::string& program, const std::vector<std::string>& arguments,
                   const test_support::ProcessOptions& options, const ChildStreams& streams)
{
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const std::vector<char*> argumentPointers = argumentArray(words);
    std::vector<std::string> environment = environmentWords(options);
    const std::vector<char*> environmentPointers = argumentArray(environment);

    const pid_t pid = ::fork();
    if (pid != 0)
    {
        return pid;
    }
    // Only calls that are safe between fork and exec from here on.
    const int wanted[] = {streams.in, streams.out, streams.err};
    for (int target = 0; target < 3; ++target)
    {
        if (wanted[target] >= 0)
        {
            ::dup2(wanted[target], target);
        }
    }
    if (!options.workingFolder.empty() && ::chdir(options.workingFolder.c_str()) != 0)
    {
        ::_exit(126);
    }
    ::execve(program.c_str(), argumentPointers.data(), environmentPointers.data());
    ::_exit(127);
}

void takeStatus(int status, test_support::ProcessOutcome& outcome)
{
    if (WIFEXITED(status))
    {
        outcome.exitStatus = WEXITSTATUS(status);
    }
    else if (WIFSIGNALED(status))
    {
        outcome.signal = WTERMSIG(status);
    }
}

// Reads what is there; closes the pipe at its end.
void drain(Pipe& pipe, std::string& text)
{
    char buffer[16384];
    const ssize_t got = ::read(pipe.ends[0], buffer, sizeof buffer);
    if (got > 0)
    {
        text.append(buffer, static_cast<std::size_t>(got));
    }
    else if (got == 0 || errno != EINTR)
    {
        pipe.closeEnd(0);
    }
}

void feed(Pipe& pipe, const std::string& input, std::size_t& given)
{
    const ssize_t written = ::write(pipe.ends[1], input.data() + given, input.size() - given);
    if (written > 0)
    {
        given += static_cast<std::size_t>(written);
    }
    if (written < 0 || given == input.size())
    {
        pipe.closeEnd(1);
    }
}

struct Streams
{
    Pipe in;
    Pipe out;
    Pipe err;
    std::size_t given = 0;
};

void pollOnce(Streams& streams, const std::string& input, test_support::ProcessOutcome& outcome)
{
    pollfd entries[] = {
        {streams.in.ends[1], POLLOUT, 0}, {streams.out.ends[0], POLLIN, 0}, {streams.err.ends[0], POLLIN, 0}};
    if (::poll(entries, 3, 10) <= 0)
    {
        return;
    }
    if (entries[0].revents != 0)
    {
        feed(streams.in, input, streams.given);
    }
    if (entries[1].revents != 0)
    {
        drain(streams.out, outcome.out);
    }
    if (entries[2].revents != 0)
    {
        drain(streams.err, outcome.err);
    }
}
} // namespace

namespace test_support
{
ProcessOutcome runProcess(const std::string& program, const std::vector<std::string>& arguments,
                          const ProcessOptions& options)
{
    std::signal(SIGPIPE, SIG_IGN); // a program may end without reading its input
    ProcessOutcome outcome;
    Streams streams;
    const pid_t pid =
        startProcess(program, arguments, options, {streams.in.ends[0], streams.out.ends[1], streams.err.ends[1]});
    if (pid < 0)
    {
        return outcome;
    }
    streams.in.closeEnd(0);
    streams.out.closeEnd(1);
    streams.err.closeEnd(1);
    if (options.input.empty())
    {
        streams.in.closeEnd(1);
    }
    const auto start = Clock::now();
    bool interrupted = options.interruptAfter.count() == 0;
    while (streams.out.ends[0] >= 0 || streams.err.ends[0] >= 0)
    {
        const auto passed = Clock::now() - start;
        if (!interrupted && passed >= options.interruptAfter)
        {
            ::kill(pid, SIGINT);
            interrupted = true;
        }
        if (passed >= options.timeout)
        {
            outcome.timedOut = true;
            ::kill(pid, SIGKILL);
            break;
        }
        pollOnce(streams, options.input, outcome);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    takeStatus(status, outcome);
    return outcome;
}

struct BackgroundProcess::System
{
    int input = -1;
    int output = -1;
};

BackgroundProcess::BackgroundProcess(const std::string& program, const std::vector<std::string>& arguments)
    : system_(std::make_unique<System>())
{
    Pipe in;
    Pipe out;
    pid_ = startProcess(program, arguments, ProcessOptions(), {in.ends[0], out.ends[1], -1});
    if (pid_ < 0)
    {
        throw std::runtime_error("cannot start " + program);
    }
    system_->output = out.ends[0];
    out.ends[0] = -1;
    std::swap(system_->input, in.ends[1]);
}

void BackgroundProcess::closeInput()
{
    if (system_->input >= 0)
    {
        ::close(system_->input);
        system_->input = -1;
    }
}

BackgroundProcess::~BackgroundProcess()
{
    if (pid_ > 0)
    {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    closeInput();
    if (system_->output >= 0)
    {
        ::close(system_->output);
    }
}

bool BackgroundProcess::readLine(std::string& line, std::chrono::milliseconds timeout)
{
    const auto end = Clock::now() + timeout;
    for (;;)
    {
        const std::size_t lineEnd = buffered_.find('\n');
        if (lineEnd != std::string::npos)
        {
            line = buffered_.substr(0, lineEnd);
            buffered_.erase(0, lineEnd + 1);
            return true;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd entry{system_->output, POLLIN, 0};
        if (left <= 0 || ::poll(&entry, 1, static_cast<int>(left)) <= 0)
        {
            return false;
        }
        char buffer[4096];
        const ssize_t got = ::read(system_->output, buffer, sizeof buffer);
        if (got <= 0)
        {
            return false;
        }
        buffered_.append(buffer, static_cast<std::size_t>(got));
    }
}

void BackgroundProcess::sendSignal(int signal) const
{
    if (pid_ > 0)
    {
        ::kill(pid_, signal);
    }
}

bool BackgroundProcess::wait(std::chrono::milliseconds timeout, ProcessOutcome& outcome)
{
    const auto end = Clock::now() + timeout;
    for (;;)
    {
        int status = 0;
        if (pid_ > 0 && ::waitpid(pid_, &status, WNOHANG) == pid_)
        {
            pid_ = -1;
            takeStatus(status, outcome);
            return true;
        }
        if (Clock::now() >= end)
        {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}
} // namespace test_support
