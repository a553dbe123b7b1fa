#pragma once

/// The bytes of an asset.

#include <pxr/pxr.h>
#include <pxr/usd/ar/api.h>
#include <pxr/usd/ar/resolvedPath.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// Read access to an asset. Thread: any.
class AR_API ArAsset
{
public:
    virtual ~ArAsset();
    ArAsset(const ArAsset&) = delete;
    ArAsset& operator=(const ArAsset&) = delete;

    virtual size_t GetSize() const = 0;
    /// Returns all bytes, or null where they cannot be read; the pointer keeps them alive.
    virtual std::shared_ptr<const char> GetBuffer() const = 0;
    /// Copies up to `count` bytes from `offset` and returns how many there were.
    virtual size_t Read(void* buffer, size_t count, size_t offset) const = 0;
    /// Returns the file and the offset of the asset in it, or null where it is no plain file.
    virtual std::pair<FILE*, size_t> GetFileUnsafe() const = 0;

protected:
    ArAsset() = default;
};

PXR_NAMESPACE_CLOSE_SCOPE
