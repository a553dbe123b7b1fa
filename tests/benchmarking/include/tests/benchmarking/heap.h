#pragma once

#include <cstdint>

namespace vesk::tests {

/// How many times this thread has called operator new so far.
std::uint64_t heapAllocations() noexcept;

} // namespace vesk::tests
