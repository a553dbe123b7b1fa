#pragma once

#include <cstddef>

namespace sdf_tests {

/// Counts what the program's operator new hands out while it lives. One at a time, all threads together.
class AllocationCount
{
public:
    AllocationCount();
    /// Returns whether this build counts; the sanitizers bring allocators of their own.
    static bool IsCounting();
    /// Returns how many bytes were held at the most, beyond those held at the beginning.
    size_t PeakBytes() const;
    size_t Allocations() const;

private:
    size_t m_bytesBefore;
    size_t m_allocationsBefore;
};

} // namespace sdf_tests
