#pragma once

// Allocation that can refuse, for programs that link failing_allocation.cpp.
namespace failing_allocation
{
// Whether allocations that may answer with a null pointer do so from now on. For one thread.
void failNothrow(bool fail);
} // namespace failing_allocation
