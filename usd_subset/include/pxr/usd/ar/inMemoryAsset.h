#pragma once

/// Bytes in memory as an asset.

#include <pxr/pxr.h>
#include <pxr/usd/ar/asset.h>

PXR_NAMESPACE_OPEN_SCOPE

/// An asset whose bytes lie in a buffer that it shares. Thread: any.
class AR_API ArInMemoryAsset : public ArAsset
{
public:
    /// Copies another asset's bytes; null where they cannot be read.
    static std::shared_ptr<ArInMemoryAsset> FromAsset(const ArAsset& srcAsset);
    /// Shares a buffer.
    static std::shared_ptr<ArInMemoryAsset> FromBuffer(const std::shared_ptr<const char>& buffer,
                                                       size_t bufferSize);
    ~ArInMemoryAsset() override;

    size_t GetSize() const override;
    std::shared_ptr<const char> GetBuffer() const override;
    size_t Read(void* buffer, size_t count, size_t offset) const override;
    std::pair<FILE*, size_t> GetFileUnsafe() const override;

private:
    ArInMemoryAsset(const std::shared_ptr<const char>& buffer, size_t bufferSize);

    std::shared_ptr<const char> _buffer;
    size_t _size;
};

PXR_NAMESPACE_CLOSE_SCOPE
