#include "signals.h"

#include "interrupt.h"

#include <atomic>
#include <csignal>
#include <unistd.h>

namespace
{
constexpr int kEndedByInterrupt = 130;
std::atomic<bool> interruptSeen{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may only touch lock-free atomics");

extern "C" void handleInterrupt(int /*signal*/)
{
    if (interruptSeen.exchange(true))
    {
        ::_exit(kEndedByInterrupt);
    }
    interrupt::request();
}

extern "C" void handleTermination(int /*signal*/)
{
    interrupt::request();
}

void handle(int signal, void (*handler)(int))
{
    struct sigaction action
    {
    };
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
}

// A terminal or connection that is gone ends the run in order, unless it was started to outlive it (nohup).
void handleHangUp()
{
    struct sigaction before
    {
    };
    ::sigaction(SIGHUP, nullptr, &before);
    if (before.sa_handler != SIG_IGN)
    {
        handle(SIGHUP, handleTermination);
    }
}
} // namespace

namespace signals
{
void install()
{
    handle(SIGINT, handleInterrupt);
    handle(SIGTERM, handleTermination);
    handleHangUp();
    handle(SIGPIPE, SIG_IGN);
    handle(SIGXFSZ, SIG_IGN); // a file that may not grow further is an error of that file, as a full disk is
}
} // namespace signals
