#include "support/failing_allocation.h"

#include <cstdlib>
#include <new>

// The replacements stand in a file of their own: inlined beside a delete expression, the compiler would take their
// malloc and free for a mistake.

namespace
{
bool failNothrowAllocations = false;
} // namespace

namespace failing_allocation
{
void failNothrow(bool fail)
{
    failNothrowAllocations = fail;
}
} // namespace failing_allocation

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return failNothrowAllocations ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size)
{
    void* storage = std::malloc(size == 0 ? 1 : size);
    if (storage == nullptr)
    {
        throw std::bad_alloc();
    }
    return storage;
}

void operator delete(void* storage) noexcept
{
    std::free(storage);
}

void operator delete(void* storage, std::size_t /*size*/) noexcept
{
    std::free(storage);
}

void operator delete(void* storage, const std::nothrow_t& /*tag*/) noexcept
{
    std::free(storage);
}
