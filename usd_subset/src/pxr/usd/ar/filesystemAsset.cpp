#include <pxr/usd/ar/filesystemAsset.h>

#include <sys/stat.h>
#include <unistd.h>

PXR_NAMESPACE_OPEN_SCOPE

ArAsset::~ArAsset() = default;

std::shared_ptr<ArFilesystemAsset> ArFilesystemAsset::Open(const ArResolvedPath& resolvedPath)
{
    const std::string& path = resolvedPath.GetPathString();
    struct stat status;
    if (path.empty() || path.find('\0') != std::string::npos || stat(path.c_str(), &status) != 0 ||
        !S_ISREG(status.st_mode)) {
        return nullptr;
    }
    FILE* file = std::fopen(path.c_str(), "rb");
    return file ? std::make_shared<ArFilesystemAsset>(file) : nullptr;
}

ArTimestamp ArFilesystemAsset::GetModificationTimestamp(const ArResolvedPath& resolvedPath)
{
    struct stat status;
    if (stat(resolvedPath.GetPathString().c_str(), &status) != 0) {
        return ArTimestamp();
    }
    return ArTimestamp(static_cast<double>(status.st_mtim.tv_sec) +
                       static_cast<double>(status.st_mtim.tv_nsec) * 1e-9);
}

ArFilesystemAsset::ArFilesystemAsset(FILE* file) : _file(file) {}

ArFilesystemAsset::~ArFilesystemAsset()
{
    if (_file) {
        std::fclose(_file);
    }
}

size_t ArFilesystemAsset::GetSize() const
{
    struct stat status;
    return _file && fstat(fileno(_file), &status) == 0 ? static_cast<size_t>(status.st_size) : 0;
}

std::shared_ptr<const char> ArFilesystemAsset::GetBuffer() const
{
    const size_t size = GetSize();
    std::shared_ptr<char> buffer(new char[size > 0 ? size : 1], std::default_delete<char[]>());
    return Read(buffer.get(), size, 0) == size ? buffer : nullptr;
}

size_t ArFilesystemAsset::Read(void* buffer, size_t count, size_t offset) const
{
    size_t done = 0;
    while (_file && done < count) {
        const ssize_t n = pread(fileno(_file), static_cast<char*>(buffer) + done, count - done,
                                static_cast<off_t>(offset + done));
        if (n <= 0) {
            break;
        }
        done += static_cast<size_t>(n);
    }
    return done;
}

std::pair<FILE*, size_t> ArFilesystemAsset::GetFileUnsafe() const { return {_file, 0}; }

PXR_NAMESPACE_CLOSE_SCOPE
