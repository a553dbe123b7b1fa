#include <pxr/usd/ar/inMemoryAsset.h>

#include <algorithm>
#include <cstring>

PXR_NAMESPACE_OPEN_SCOPE

ArInMemoryAsset::ArInMemoryAsset(const std::shared_ptr<const char>& buffer, size_t bufferSize)
    : _buffer(buffer), _size(bufferSize)
{}

ArInMemoryAsset::~ArInMemoryAsset() = default;

std::shared_ptr<ArInMemoryAsset> ArInMemoryAsset::FromAsset(const ArAsset& srcAsset)
{
    const size_t size = srcAsset.GetSize();
    std::shared_ptr<char> bytes(new char[std::max<size_t>(size, 1)], std::default_delete<char[]>());
    return srcAsset.Read(bytes.get(), size, 0) == size ? FromBuffer(bytes, size) : nullptr;
}

std::shared_ptr<ArInMemoryAsset> ArInMemoryAsset::FromBuffer(const std::shared_ptr<const char>& buffer,
                                                             size_t bufferSize)
{
    return std::shared_ptr<ArInMemoryAsset>(new ArInMemoryAsset(buffer, bufferSize));
}

size_t ArInMemoryAsset::GetSize() const { return _size; }

std::shared_ptr<const char> ArInMemoryAsset::GetBuffer() const { return _buffer; }

size_t ArInMemoryAsset::Read(void* buffer, size_t count, size_t offset) const
{
    const size_t n = offset < _size ? std::min(count, _size - offset) : 0;
    if (n > 0) {
        std::memcpy(buffer, _buffer.get() + offset, n);
    }
    return n;
}

std::pair<FILE*, size_t> ArInMemoryAsset::GetFileUnsafe() const { return {nullptr, 0}; }

PXR_NAMESPACE_CLOSE_SCOPE
