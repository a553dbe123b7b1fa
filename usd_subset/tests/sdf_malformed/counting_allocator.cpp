#include "counting_allocator.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SDF_TESTS_COUNTS 0
#else
#define SDF_TESTS_COUNTS 1
#endif

namespace {

std::atomic<size_t> g_bytes{0};
std::atomic<size_t> g_peak{0};
std::atomic<size_t> g_allocations{0};

} // namespace

namespace sdf_tests {

AllocationCount::AllocationCount() : m_bytesBefore(g_bytes), m_allocationsBefore(g_allocations)
{
    g_peak = m_bytesBefore;
}

bool AllocationCount::IsCounting() { return SDF_TESTS_COUNTS; }
size_t AllocationCount::PeakBytes() const { return g_peak - m_bytesBefore; }
size_t AllocationCount::Allocations() const { return g_allocations - m_allocationsBefore; }

} // namespace sdf_tests

#if SDF_TESTS_COUNTS

void* operator new(size_t size)
{
    void* const memory = std::malloc(size > 0 ? size : 1);
    if (!memory) {
        throw std::bad_alloc();
    }
    const size_t held = g_bytes += malloc_usable_size(memory);
    size_t peak = g_peak;
    while (peak < held && !g_peak.compare_exchange_weak(peak, held)) {
    }
    ++g_allocations;
    return memory;
}

void operator delete(void* memory) noexcept
{
    g_bytes -= memory ? malloc_usable_size(memory) : 0;
    std::free(memory);
}

void operator delete(void* memory, size_t) noexcept { operator delete(memory); }

#endif
