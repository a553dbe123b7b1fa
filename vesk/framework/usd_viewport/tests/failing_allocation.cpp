// Replaces the program's operator new by one that can be told to fail once.
#include "failing_allocation.h"

#include <cstdlib>
#include <new>

namespace {
thread_local bool t_nextFails = false;
}

[[gnu::noinline]] void* operator new(std::size_t size)
{
    void* memory = t_nextFails ? nullptr : std::malloc(size ? size : 1);
    t_nextFails = false;
    if (!memory) throw std::bad_alloc();
    return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace vesk::framework::usd_viewport::tests {

void failNextAllocation() { t_nextFails = true; }

} // namespace vesk::framework::usd_viewport::tests
