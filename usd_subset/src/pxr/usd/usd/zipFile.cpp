#include "pxr/usd/ar/zipDirectory.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/ar/asset.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/usd/zipFile.h>

#include <cstdio>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class UsdZipFile::_Impl
{
public:
    std::shared_ptr<const char> bytes;
    std::vector<Ar_ZipEntry> entries;
};

UsdZipFile::UsdZipFile() = default;
UsdZipFile::~UsdZipFile() = default;
UsdZipFile::UsdZipFile(std::shared_ptr<const _Impl> impl) : _impl(std::move(impl)) {}

UsdZipFile UsdZipFile::Open(const std::string& filePath)
{
    const std::shared_ptr<ArAsset> asset = ArGetResolver().OpenAsset(ArResolvedPath(filePath));
    return asset ? Open(asset) : UsdZipFile();
}

UsdZipFile UsdZipFile::Open(const std::shared_ptr<ArAsset>& asset)
{
    if (!asset) {
        TF_CODING_ERROR("Cannot open a zip package without an asset");
        return UsdZipFile();
    }
    const auto impl = std::make_shared<_Impl>();
    std::string whyNot;
    if (!Ar_ReadZipDirectory(*asset, &impl->entries, &whyNot)) {
        TF_RUNTIME_ERROR("Cannot open a zip package: %s", whyNot.c_str());
        return UsdZipFile();
    }
    impl->bytes = asset->GetBuffer();
    if (!impl->bytes) {
        TF_RUNTIME_ERROR("Cannot open a zip package: its bytes cannot be read");
        return UsdZipFile();
    }
    return UsdZipFile(impl);
}

UsdZipFile::Iterator::Iterator(const _Impl* impl, size_t index)
    : _impl(index < impl->entries.size() ? impl : nullptr), _index(_impl ? index : 0)
{}

UsdZipFile::Iterator& UsdZipFile::Iterator::operator++()
{
    if (_impl) {
        *this = Iterator(_impl, _index + 1);
    }
    return *this;
}

UsdZipFile::Iterator::reference UsdZipFile::Iterator::operator*() const
{
    return _impl ? _impl->entries[_index].name : std::string();
}

const char* UsdZipFile::Iterator::GetFile() const
{
    return _impl ? _impl->bytes.get() + _impl->entries[_index].dataOffset : nullptr;
}

UsdZipFile::FileInfo UsdZipFile::Iterator::GetFileInfo() const
{
    FileInfo info;
    if (_impl) {
        const Ar_ZipEntry& entry = _impl->entries[_index];
        info.dataOffset = entry.dataOffset;
        info.size = entry.size;
        info.uncompressedSize = entry.plainSize;
        info.crc = entry.crc;
        info.compressionMethod = entry.method;
        info.encrypted = entry.isEncrypted;
    }
    return info;
}

UsdZipFile::Iterator UsdZipFile::begin() const { return _impl ? Iterator(_impl.get(), 0) : end(); }

UsdZipFile::Iterator UsdZipFile::Find(const std::string& path) const
{
    const Ar_ZipEntry* entry = _impl ? Ar_FindZipEntry(_impl->entries, path) : nullptr;
    return entry ? Iterator(_impl.get(), static_cast<size_t>(entry - _impl->entries.data())) : end();
}

void UsdZipFile::DumpContents() const
{
    std::printf("    Offset\t      Comp\t    Uncomp\tName\n");
    std::printf("    ------\t      ----\t    ------\t----\n");
    size_t count = 0;
    for (Iterator it = begin(); it != end(); ++it, ++count) {
        const FileInfo info = it.GetFileInfo();
        std::printf("%10zu\t%10zu\t%10zu\t%s\n", info.dataOffset, info.size, info.uncompressedSize,
                    it->c_str());
    }
    std::printf("----------\n%zu files total\n", count);
}

PXR_NAMESPACE_CLOSE_SCOPE
