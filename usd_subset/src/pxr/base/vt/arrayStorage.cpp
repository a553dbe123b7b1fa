#include <pxr/base/vt/arrayStorage.h>

#include <new>

PXR_NAMESPACE_OPEN_SCOPE

void* Vt_ArrayBase::_Allocate(size_t capacity, size_t elementSize)
{
    if (capacity > (size_t(-1) / 2 - sizeof(_Block)) / elementSize) {
        throw std::bad_alloc();
    }
    auto* block = static_cast<_Block*>(::operator new(sizeof(_Block) + capacity * elementSize));
    ::new (static_cast<void*>(block)) _Block(capacity);
    return block + 1;
}

void Vt_ArrayBase::_Free(void* data)
{
    _Block* block = _BlockOf(data);
    block->~_Block();
    ::operator delete(block);
}

PXR_NAMESPACE_CLOSE_SCOPE
