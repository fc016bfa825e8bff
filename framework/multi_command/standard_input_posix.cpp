#include "multi_command/standard_input.h"

#include "interrupt.h"

#include <cerrno>
#include <iostream>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace
{
constexpr int kWaitMs = 200;
} // namespace

// The wait is broken up because the program's signals restart a read that they come into.
standard_input::Outcome standard_input::readSome(char* buffer, std::size_t size, std::size_t& got)
{
    for (;;)
    {
        if (interrupt::requested())
        {
            return standard_input::Outcome::Interrupted;
        }
        pollfd entry{STDIN_FILENO, POLLIN, 0};
        if (::poll(&entry, 1, kWaitMs) <= 0)
        {
            continue;
        }
        const ssize_t count = ::read(STDIN_FILENO, buffer, size);
        if (count >= 0)
        {
            got = static_cast<std::size_t>(count);
            return standard_input::Outcome::Ok;
        }
        if (errno != EINTR && errno != EAGAIN)
        {
            return standard_input::Outcome::Unreadable;
        }
    }
}

namespace
{
// Switches the terminal's echo off and, when it goes, back to what it was.
class HiddenTyping
{
  public:
    HiddenTyping() : changed_(::tcgetattr(STDIN_FILENO, &before_) == 0)
    {
        if (changed_)
        {
            termios silent = before_;
            silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
            // What was typed before the question was not meant for it.
            changed_ = ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent) == 0;
        }
    }
    ~HiddenTyping()
    {
        if (changed_)
        {
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
            std::cerr << '\n' << std::flush;
        }
    }
    HiddenTyping(const HiddenTyping&) = delete;
    HiddenTyping& operator=(const HiddenTyping&) = delete;

    bool hidden() const { return changed_; }

  private:
    termios before_{};
    bool changed_;
};

standard_input::Outcome readLine(std::string& answer)
{
    constexpr std::size_t kLongest = 4096;
    std::string line;
    for (;;)
    {
        char letter = 0;
        std::size_t got = 0;
        const standard_input::Outcome outcome = standard_input::readSome(&letter, 1, got);
        if (outcome != standard_input::Outcome::Ok)
        {
            return outcome;
        }
        if (got == 0 || letter == '\n')
        {
            answer.swap(line);
            return standard_input::Outcome::Ok;
        }
        line += letter;
        if (line.size() > kLongest)
        {
            return standard_input::Outcome::TooLarge;
        }
    }
}
} // namespace

namespace standard_input
{
bool isDialogue()
{
    return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1;
}

Outcome ask(const std::string& question, Echo echo, std::string& answer)
{
    if (echo == Echo::Shown)
    {
        std::cerr << question << std::flush;
        return readLine(answer);
    }
    const HiddenTyping typing;
    if (!typing.hidden())
    {
        return Outcome::Unreadable;
    }
    std::cerr << question << std::flush;
    return readLine(answer);
}
} // namespace standard_input
