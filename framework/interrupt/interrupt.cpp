#include "interrupt.h"

#include <atomic>

namespace
{
std::atomic<bool> stopRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may only touch lock-free atomics");
} // namespace

namespace interrupt
{
void request()
{
    stopRequested.store(true);
}

bool requested()
{
    return stopRequested.load();
}

void reset()
{
    stopRequested.store(false);
}
} // namespace interrupt
