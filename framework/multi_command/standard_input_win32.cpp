#include "multi_command/standard_input.h"

#include "interrupt.h"
#include "text/wide_text_win32.h"

#include <windows.h>

#include <algorithm>
#include <iostream>

namespace
{
constexpr DWORD kWaitMs = 200;

HANDLE input()
{
    return ::GetStdHandle(STD_INPUT_HANDLE);
}

bool isConsole(HANDLE handle)
{
    DWORD mode = 0;
    return ::GetConsoleMode(handle, &mode) != 0;
}

// Waits until a read would not block. A pipe cannot be waited for, so it is looked at again and again.
bool waitForInput(HANDLE handle)
{
    const DWORD kind = ::GetFileType(handle);
    while (!interrupt::requested())
    {
        if (kind == FILE_TYPE_PIPE)
        {
            DWORD available = 0;
            if (::PeekNamedPipe(handle, nullptr, 0, nullptr, &available, nullptr) == 0 || available != 0)
            {
                return true;
            }
            ::Sleep(kWaitMs / 10);
        }
        else if (kind != FILE_TYPE_CHAR || ::WaitForSingleObject(handle, kWaitMs) != WAIT_TIMEOUT)
        {
            return true;
        }
    }
    return false;
}
} // namespace

standard_input::Outcome standard_input::readSome(char* buffer, std::size_t size, std::size_t& got)
{
    const HANDLE handle = input();
    if (!waitForInput(handle))
    {
        return standard_input::Outcome::Interrupted;
    }
    DWORD count = 0;
    if (::ReadFile(handle, buffer, static_cast<DWORD>(size), &count, nullptr) == 0)
    {
        const DWORD reason = ::GetLastError();
        // The writer's end of a pipe that is gone is the end of what there is to read.
        if (reason != ERROR_BROKEN_PIPE && reason != ERROR_HANDLE_EOF)
        {
            return standard_input::Outcome::Unreadable;
        }
    }
    got = count;
    return standard_input::Outcome::Ok;
}

namespace
{
// Takes keys one by one while it lives, and puts the console back to what it was.
class Typing
{
  public:
    Typing() : changed_(::GetConsoleMode(input(), &before_) != 0)
    {
        if (changed_)
        {
            // What was typed before the question was not meant for it.
            ::FlushConsoleInputBuffer(input());
            constexpr DWORD kWholeLines = ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT;
            changed_ = ::SetConsoleMode(input(), (before_ & ~kWholeLines) | ENABLE_PROCESSED_INPUT) != 0;
        }
    }
    ~Typing()
    {
        if (changed_)
        {
            ::SetConsoleMode(input(), before_);
            std::cerr << '\n' << std::flush;
        }
    }
    Typing(const Typing&) = delete;
    Typing& operator=(const Typing&) = delete;

    bool ready() const { return changed_; }

  private:
    DWORD before_ = 0;
    bool changed_;
};

bool isLowSurrogate(wchar_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void eraseLast(std::wstring& line)
{
    const bool pair = line.size() > 1 && isLowSurrogate(line.back());
    line.erase(line.size() - (line.empty() ? 0 : (pair ? 2 : 1)));
}

void show(const std::wstring& text)
{
    DWORD written = 0;
    ::WriteConsoleW(::GetStdHandle(STD_ERROR_HANDLE), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

// One key's unit of text into the line; true at the line's end.
bool take(wchar_t unit, standard_input::Echo echo, std::wstring& line)
{
    if (unit == L'\r' || unit == L'\n')
    {
        return true;
    }
    if (unit == L'\b')
    {
        const std::size_t before = line.size();
        eraseLast(line);
        if (echo == standard_input::Echo::Shown && line.size() < before)
        {
            show(L"\b \b");
        }
        return false;
    }
    line += unit;
    if (echo == standard_input::Echo::Shown)
    {
        show(std::wstring(1, unit));
    }
    return false;
}

// Key by key instead of ReadConsole, whose wait for a line an interrupt does not end everywhere.
standard_input::Outcome readLine(standard_input::Echo echo, std::string& answer)
{
    constexpr std::size_t kLongest = 4096;
    std::wstring line;
    while (line.size() <= kLongest)
    {
        if (!waitForInput(input()))
        {
            return standard_input::Outcome::Interrupted;
        }
        INPUT_RECORD record = {};
        DWORD count = 0;
        if (::ReadConsoleInputW(input(), &record, 1, &count) == 0 || count == 0)
        {
            return standard_input::Outcome::Unreadable;
        }
        const KEY_EVENT_RECORD& key = record.Event.KeyEvent;
        if (record.EventType == KEY_EVENT && key.bKeyDown != 0 && key.uChar.UnicodeChar != 0 &&
            take(key.uChar.UnicodeChar, echo, line))
        {
            answer = wide_text::toUtf8(line);
            return standard_input::Outcome::Ok;
        }
    }
    return standard_input::Outcome::TooLarge;
}
} // namespace

namespace standard_input
{
bool isDialogue()
{
    return isConsole(input()) && isConsole(::GetStdHandle(STD_ERROR_HANDLE));
}

Outcome ask(const std::string& question, Echo echo, std::string& answer)
{
    const Typing typing;
    if (!typing.ready())
    {
        return Outcome::Unreadable;
    }
    std::cerr << question << std::flush;
    return readLine(echo, answer);
}
} // namespace standard_input
