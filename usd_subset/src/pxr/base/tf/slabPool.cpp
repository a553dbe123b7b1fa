#include "pxr/base/tf/slabPool.h"

#include <cstdlib>
#include <new>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// A slab's size is its alignment, too: a block's address tells its slab.
constexpr std::size_t kSlabSize = std::size_t(32) << 10;
constexpr std::size_t kHeaderSize = 64;

// The address sanitizer sees the use of freed blocks only where each is allocated on its own.
constexpr bool kEachOnItsOwn =
#if defined(__SANITIZE_ADDRESS__)
    true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
    true;
#else
    false;
#endif
#else
    false;
#endif

struct FreeBlock
{
    FreeBlock* next;
};

} // namespace

struct Tf_SlabPool::_Slab
{
    _Slab* previous = nullptr;
    _Slab* next = nullptr;
    FreeBlock* freed = nullptr;
    std::uint32_t used = 0;  // blocks handed out
    std::uint32_t fresh = 0; // the first block that was never handed out

    static _Slab* Of(void* block)
    {
        return reinterpret_cast<_Slab*>(reinterpret_cast<std::uintptr_t>(block) & ~(kSlabSize - 1));
    }
    void* GetBlock(std::size_t offset) { return reinterpret_cast<char*>(this) + kHeaderSize + offset; }
};

Tf_SlabPool::Tf_SlabPool(std::size_t blockSize)
    : _blockSize(blockSize),
      _blocksPerSlab(static_cast<std::uint32_t>((kSlabSize - 2 * kHeaderSize) / blockSize))
{
    static_assert(sizeof(_Slab) <= kHeaderSize);
}

Tf_SlabPool::~Tf_SlabPool()
{
    while (_withRoom) {
        _Slab* const slab = _withRoom;
        _Unlink(slab);
        std::free(slab);
    }
}

void* Tf_SlabPool::Allocate()
{
    if (kEachOnItsOwn) {
        return ::operator new(_blockSize);
    }
    _Slab* const slab = _withRoom ? _withRoom : _AddSlab();
    void* block = nullptr;
    if (slab->freed) {
        block = slab->freed;
        slab->freed = slab->freed->next;
    } else {
        block = slab->GetBlock(_blockSize * slab->fresh++);
    }
    if (++slab->used == _blocksPerSlab) {
        _Unlink(slab);
    }
    return block;
}

void Tf_SlabPool::Free(void* block) noexcept
{
    if (kEachOnItsOwn) {
        ::operator delete(block);
        return;
    }
    _Slab* const slab = _Slab::Of(block);
    if (slab->used-- == _blocksPerSlab) {
        _Link(slab);
    }
    if (slab->used == 0 && slab != _withRoom) {
        _Unlink(slab);
        std::free(slab);
        return;
    }
    slab->freed = new (block) FreeBlock{slab->freed};
}

Tf_SlabPool::_Slab* Tf_SlabPool::_AddSlab()
{
    // So much less that the heap has room for its own note between two slabs.
    void* memory = nullptr;
    if (posix_memalign(&memory, kSlabSize, kSlabSize - kHeaderSize) != 0) {
        throw std::bad_alloc();
    }
    _Link(new (memory) _Slab);
    return _withRoom;
}

// The slab that is being filled stays the first, so that the others can empty.
void Tf_SlabPool::_Link(_Slab* slab) noexcept
{
    if (!_withRoom) {
        _withRoom = slab;
        return;
    }
    slab->previous = _withRoom;
    slab->next = _withRoom->next;
    if (slab->next) {
        slab->next->previous = slab;
    }
    _withRoom->next = slab;
}

void Tf_SlabPool::_Unlink(_Slab* slab) noexcept
{
    (slab->previous ? slab->previous->next : _withRoom) = slab->next;
    if (slab->next) {
        slab->next->previous = slab->previous;
    }
    slab->previous = slab->next = nullptr;
}

PXR_NAMESPACE_CLOSE_SCOPE
