#pragma once

/// A file on disk as an asset.

#include <pxr/pxr.h>
#include <pxr/usd/ar/asset.h>
#include <pxr/usd/ar/resolvedPath.h>
#include <pxr/usd/ar/timestamp.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Reads a regular file through an open descriptor; what it returns is a copy, never a mapping of the file.
class AR_API ArFilesystemAsset : public ArAsset
{
public:
    /// Opens a regular file; null where there is none or it cannot be read.
    static std::shared_ptr<ArFilesystemAsset> Open(const ArResolvedPath& resolvedPath);
    /// Returns the modification time of a file; invalid where there is none.
    static ArTimestamp GetModificationTimestamp(const ArResolvedPath& resolvedPath);

    /// Takes the open file over.
    explicit ArFilesystemAsset(FILE* file);
    ~ArFilesystemAsset() override;

    size_t GetSize() const override;
    std::shared_ptr<const char> GetBuffer() const override;
    size_t Read(void* buffer, size_t count, size_t offset) const override;
    std::pair<FILE*, size_t> GetFileUnsafe() const override;

private:
    FILE* _file;
};

PXR_NAMESPACE_CLOSE_SCOPE
