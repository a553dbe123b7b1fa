#pragma once

/// Who owns the elements of a VtArray.

#include <pxr/export.h>
#include <pxr/pxr.h>

#include <atomic>
#include <cstddef>

PXR_NAMESPACE_OPEN_SCOPE

/// Elements that lie in somebody else's memory, for example in a file read into one buffer. Derive from it;
/// arrays count their references, and the last one calls the function, on its own thread.
class Vt_ArrayForeignDataSource
{
public:
    explicit Vt_ArrayForeignDataSource(void (*detachedFn)(Vt_ArrayForeignDataSource* self) = nullptr,
                                       size_t initRefCount = 0)
        : _refCount(initRefCount), _detachedFn(detachedFn)
    {}

private:
    template <class T>
    friend class VtArray;
    friend class Vt_ArrayBase;

    void _ArraysDetached()
    {
        if (_detachedFn) {
            _detachedFn(this);
        }
    }

    std::atomic<size_t> _refCount;
    void (*_detachedFn)(Vt_ArrayForeignDataSource* self);
};

/// The untyped part of VtArray: a block with a count in front of the elements, or a foreign source.
class Vt_ArrayBase
{
protected:
    struct _Block
    {
        explicit _Block(size_t capacity_) : capacity(capacity_) {}
        std::atomic<size_t> count{1};
        size_t capacity;
    };
    static_assert(sizeof(_Block) % alignof(std::max_align_t) == 0, "elements behind it must stay aligned");

    static _Block* _BlockOf(void* data) { return static_cast<_Block*>(data) - 1; }
    /// Returns memory for elements behind a new block with count 1.
    /// Throws std::bad_alloc when the size overflows or there is no memory.
    VESK_USD_API static void* _Allocate(size_t capacity, size_t elementSize);
    VESK_USD_API static void _Free(void* data);

    size_t _size = 0;
    Vt_ArrayForeignDataSource* _foreign = nullptr;
};

PXR_NAMESPACE_CLOSE_SCOPE
