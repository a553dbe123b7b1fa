#include "pxr/usd/ar/package.h"

#include <pxr/usd/ar/filesystemAsset.h>
#include <pxr/usd/ar/packageUtils.h>
#include <pxr/usd/ar/resolver.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <list>
#include <mutex>
#include <new>
#include <sys/stat.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// A package may hold packages, but no useful one does so deeply.
constexpr int kMaxNesting = 16;

// A range of another asset.
class PackagedAsset : public ArAsset
{
public:
    PackagedAsset(std::shared_ptr<ArAsset> package, const Ar_ZipEntry& entry)
        : _package(std::move(package)), _offset(entry.dataOffset), _size(entry.size)
    {}

    size_t GetSize() const override { return _size; }
    std::shared_ptr<const char> GetBuffer() const override
    {
        std::shared_ptr<char> buffer(new (std::nothrow) char[std::max<size_t>(_size, 1)],
                                     std::default_delete<char[]>());
        return buffer && Read(buffer.get(), _size, 0) == _size ? buffer : nullptr;
    }
    size_t Read(void* buffer, size_t count, size_t offset) const override
    {
        const size_t left = offset < _size ? _size - offset : 0;
        return _package->Read(buffer, std::min(count, left), _offset + offset);
    }
    std::pair<FILE*, size_t> GetFileUnsafe() const override
    {
        std::pair<FILE*, size_t> file = _package->GetFileUnsafe();
        file.second += file.first ? _offset : 0;
        return file;
    }

private:
    std::shared_ptr<ArAsset> _package;
    size_t _offset;
    size_t _size;
};

// What tells whether a file is still the one that was read.
struct Stamp
{
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    time_t seconds = 0;
    long nanoseconds = 0;

    bool operator==(const Stamp& o) const
    {
        return device == o.device && inode == o.inode && size == o.size && seconds == o.seconds &&
               nanoseconds == o.nanoseconds;
    }
};

Stamp stampOf(const ArAsset& asset)
{
    struct stat status;
    FILE* file = asset.GetFileUnsafe().first;
    if (!file || fstat(fileno(file), &status) != 0) {
        return Stamp();
    }
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

typedef std::shared_ptr<const std::vector<Ar_ZipEntry>> Entries;

// The lists of the packages that were opened last.
class RecentPackages
{
public:
    static RecentPackages& Get()
    {
        static RecentPackages* const recent = new RecentPackages;
        return *recent;
    }
    Entries Find(const std::string& path, const Stamp& stamp)
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        for (auto it = _known.begin(); it != _known.end(); ++it) {
            if (it->path == path && it->stamp == stamp) {
                _known.splice(_known.begin(), _known, it);
                return it->entries;
            }
        }
        return nullptr;
    }
    void Add(const std::string& path, const Stamp& stamp, const Entries& entries)
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _known.remove_if([&path](const Known& known) { return known.path == path; });
        _known.push_front({path, stamp, entries});
        _known.resize(std::min<size_t>(_known.size(), 32));
    }

private:
    struct Known
    {
        std::string path;
        Stamp stamp;
        Entries entries;
    };
    std::mutex _mutex;
    std::list<Known> _known;
};

} // namespace

bool Ar_IsPackagePath(const std::string& path)
{
    std::string extension = ArGetResolver().GetExtension(path);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return extension == "usdz";
}

Ar_Package Ar_OpenPackage(const std::string& packagePath, std::string* whyNot)
{
    Ar_Package package;
    if (std::count(packagePath.begin(), packagePath.end(), '[') > kMaxNesting) {
        *whyNot = "packages that lie in more than " + std::to_string(kMaxNesting) + " others are not read";
        return package;
    }
    const std::shared_ptr<ArAsset> asset = Ar_OpenAsset(packagePath, whyNot);
    if (!asset) {
        return package;
    }
    const Stamp stamp = stampOf(*asset);
    Entries entries = stamp == Stamp() ? nullptr : RecentPackages::Get().Find(packagePath, stamp);
    if (!entries) {
        auto read = std::make_shared<std::vector<Ar_ZipEntry>>();
        std::string fault;
        if (!Ar_ReadZipDirectory(*asset, read.get(), &fault)) {
            *whyNot = "the package is damaged: " + fault;
            return package;
        }
        entries = std::move(read);
        RecentPackages::Get().Add(packagePath, stamp, entries);
    }
    package.asset = asset;
    package.entries = entries;
    return package;
}

std::shared_ptr<ArAsset> Ar_OpenAsset(const std::string& resolvedPath, std::string* whyNot)
{
    if (!ArIsPackageRelativePath(resolvedPath)) {
        errno = 0;
        std::shared_ptr<ArAsset> asset = ArFilesystemAsset::Open(ArResolvedPath(resolvedPath));
        *whyNot = asset ? "" : errno != 0 ? std::strerror(errno) : "it is not a regular file";
        return asset;
    }
    const std::pair<std::string, std::string> parts = ArSplitPackageRelativePathInner(resolvedPath);
    *whyNot = "its package is no usdz file";
    const Ar_Package package =
        Ar_IsPackagePath(parts.first) ? Ar_OpenPackage(parts.first, whyNot) : Ar_Package();
    if (!package.asset) {
        return nullptr;
    }
    const Ar_ZipEntry* entry = Ar_FindZipEntry(*package.entries, parts.second);
    if (!entry || entry->method != 0 || entry->isEncrypted) {
        *whyNot = !entry ? "there is no such file in the package"
                  : entry->isEncrypted
                      ? "it is encrypted, and only files that are stored as they are can be read"
                      : "it is compressed, and only files that are stored as they are can be read";
        return nullptr;
    }
    return std::make_shared<PackagedAsset>(package.asset, *entry);
}

PXR_NAMESPACE_CLOSE_SCOPE
