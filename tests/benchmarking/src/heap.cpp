#include <tests/benchmarking/heap.h>

#include <cstdlib>
#include <new>

namespace {

thread_local std::uint64_t t_allocations = 0;

void* allocate(std::size_t size) noexcept
{
    ++t_allocations;
    return std::malloc(size != 0 ? size : 1);
}

void* allocateAligned(std::size_t size, std::align_val_t alignment) noexcept
{
    ++t_allocations;
    const auto align = static_cast<std::size_t>(alignment);
    return std::aligned_alloc(align, (size + align - 1) / align * align);
}

void* orThrow(void* memory)
{
    if (!memory) throw std::bad_alloc();
    return memory;
}

} // namespace

std::uint64_t vesk::tests::heapAllocations() noexcept { return t_allocations; }

void* operator new(std::size_t size) { return orThrow(allocate(size)); }
void* operator new[](std::size_t size) { return orThrow(allocate(size)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment)
{
    return orThrow(allocateAligned(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return orThrow(allocateAligned(size, alignment));
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
