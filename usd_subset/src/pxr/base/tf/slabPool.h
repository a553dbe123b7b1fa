#pragma once

#include <pxr/pxr.h>

#include <cstddef>
#include <cstdint>

PXR_NAMESPACE_OPEN_SCOPE

/// Memory for many objects of one size. What is allocated one after the other lies side by side, as far as
/// there is room, so that walking over it in that order is quick. A slab of which nothing is left goes back
/// to the heap.
///
/// Thread: one at a time.
class Tf_SlabPool
{
public:
    /// @param blockSize a multiple of the alignment that the objects need, at most 64
    explicit Tf_SlabPool(std::size_t blockSize);
    ~Tf_SlabPool();
    Tf_SlabPool(const Tf_SlabPool&) = delete;
    Tf_SlabPool& operator=(const Tf_SlabPool&) = delete;

    /// Throws: std::bad_alloc
    void* Allocate();
    void Free(void* block) noexcept;

private:
    struct _Slab;

    _Slab* _AddSlab();
    void _Link(_Slab* slab) noexcept;
    void _Unlink(_Slab* slab) noexcept;

    const std::size_t _blockSize;
    const std::uint32_t _blocksPerSlab;
    _Slab* _withRoom = nullptr; // the slab that is filled, then others that have room
};

PXR_NAMESPACE_CLOSE_SCOPE
