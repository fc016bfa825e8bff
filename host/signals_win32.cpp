#include "signals.h"

#include "console.h"
#include "interrupt.h"

#include <windows.h>

#include <atomic>

namespace
{
constexpr UINT kEndedByInterrupt = 130;
constexpr DWORD kTimeToEnd = 20000; // milliseconds; the system waits less, and then ends the process itself
std::atomic<bool> interruptSeen{false};

// Runs on a thread of its own, which the system starts for each event.
BOOL WINAPI handleEvent(DWORD event)
{
    if (event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT)
    {
        if (interruptSeen.exchange(true))
        {
            console::speakAsBefore();
            ::TerminateProcess(::GetCurrentProcess(), kEndedByInterrupt);
        }
        interrupt::request();
        return TRUE;
    }
    // The console is closed or the user logs off: when this returns the process is ended, finished or not.
    interrupt::request();
    ::Sleep(kTimeToEnd);
    return TRUE;
}
} // namespace

namespace signals
{
void install()
{
    // A program that starts this one can have switched Ctrl-C off for it.
    ::SetConsoleCtrlHandler(nullptr, FALSE);
    ::SetConsoleCtrlHandler(handleEvent, TRUE);
}
} // namespace signals
