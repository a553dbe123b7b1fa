#include "pxr/usd/sdf/safeOutput.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/ar/filesystemAsset.h>
#include <pxr/usd/usd/zipFile.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <limits>
#include <vector>
#include <zlib.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr uint32_t kFileSignature = 0x04034b50;
constexpr uint32_t kDirectorySignature = 0x02014b50;
constexpr uint32_t kEndSignature = 0x06054b50;
constexpr uint16_t kVersion = 10;
constexpr size_t kHeaderSize = 30;
constexpr size_t kAlignment = 64;
// Padding is an extra field, which has a head of its own: an id that nobody else uses, and a size.
constexpr uint16_t kPaddingId = 0x1986;
constexpr size_t kExtraHeadSize = 4;
constexpr uint64_t kMaxSize = std::numeric_limits<uint32_t>::max() - 1;
constexpr size_t kMaxCount = std::numeric_limits<uint16_t>::max() - 1;

// Little endian numbers, one behind the other.
class Bytes
{
public:
    Bytes& Short(size_t value)
    {
        _bytes += static_cast<char>(value & 0xff);
        _bytes += static_cast<char>(value >> 8 & 0xff);
        return *this;
    }
    Bytes& Long(size_t value) { return Short(value & 0xffff).Short(value >> 16); }
    Bytes& Text(const std::string& text)
    {
        _bytes += text;
        return *this;
    }
    void WriteTo(Sdf_SafeOutput* output) const { output->Write(_bytes.data(), _bytes.size()); }

private:
    std::string _bytes;
};

struct Added
{
    std::string name;
    std::string padding;
    uint64_t offset;
    uint64_t size;
    uint32_t crc;
    uint16_t time;
    uint16_t date;
};

// The part that the header of a file and its entry in the directory share.
void describe(const Added& file, Bytes* bytes)
{
    bytes->Short(kVersion).Short(0).Short(0).Short(file.time).Short(file.date);
    bytes->Long(file.crc).Long(file.size).Long(file.size);
    bytes->Short(file.name.size()).Short(file.padding.size());
}

std::string paddingBefore(uint64_t dataOffset)
{
    size_t size = (kAlignment - dataOffset % kAlignment) % kAlignment;
    if (size == 0) {
        return std::string();
    }
    size += size < kExtraHeadSize ? kAlignment : 0;
    std::string padding(size, '\0');
    const uint16_t head[2] = {kPaddingId, static_cast<uint16_t>(size - kExtraHeadSize)};
    for (size_t i = 0; i < kExtraHeadSize; ++i) {
        padding[i] = static_cast<char>(head[i / 2] >> (i % 2 * 8) & 0xff);
    }
    return padding;
}

// The time of the last change in the two fields of MS-DOS, to 2 s.
void setTime(const std::string& path, Added* file)
{
    const ArTimestamp stamp = ArFilesystemAsset::GetModificationTimestamp(ArResolvedPath(path));
    const std::time_t seconds = stamp.IsValid() ? static_cast<std::time_t>(stamp.GetTime()) : 0;
    std::tm local = {};
    localtime_r(&seconds, &local);
    file->time = static_cast<uint16_t>(local.tm_hour << 11 | local.tm_min << 5 | local.tm_sec / 2);
    file->date =
        static_cast<uint16_t>(std::max(local.tm_year - 80, 0) << 9 | (local.tm_mon + 1) << 5 | local.tm_mday);
}

// The name as zip wants it: normalized, with `/`, and relative.
std::string nameInPackage(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    path = std::filesystem::path(path).lexically_normal().string();
    return path.substr(std::min(path.find_first_not_of('/'), path.size()));
}

} // namespace

class UsdZipFileWriter::_Impl
{
public:
    bool HasName(const std::string& name) const
    {
        return std::any_of(files.begin(), files.end(), [&](const Added& file) { return file.name == name; });
    }

    std::string path;
    Sdf_SafeOutput output;
    std::vector<Added> files;
};

UsdZipFileWriter::UsdZipFileWriter() = default;
UsdZipFileWriter::UsdZipFileWriter(std::unique_ptr<_Impl>&& impl) : _impl(std::move(impl)) {}
UsdZipFileWriter::UsdZipFileWriter(UsdZipFileWriter&& rhs) = default;
UsdZipFileWriter& UsdZipFileWriter::operator=(UsdZipFileWriter&& rhs) = default;

UsdZipFileWriter::~UsdZipFileWriter()
{
    if (_impl) {
        Save();
    }
}

UsdZipFileWriter UsdZipFileWriter::CreateNew(const std::string& filePath)
{
    auto impl = std::make_unique<_Impl>();
    std::string whyNot;
    impl->path = filePath;
    if (!impl->output.Open(filePath, &whyNot)) {
        TF_RUNTIME_ERROR("Cannot write package @%s@: %s", filePath.c_str(), whyNot.c_str());
        return UsdZipFileWriter();
    }
    return UsdZipFileWriter(std::move(impl));
}

std::string UsdZipFileWriter::AddFile(const std::string& filePath, const std::string& filePathInArchive)
{
    if (!_impl) {
        TF_CODING_ERROR("Cannot add @%s@: the package is not open for writing", filePath.c_str());
        return std::string();
    }
    const auto refuse = [&](const std::string& whyNot) {
        TF_RUNTIME_ERROR("Cannot add @%s@ to package @%s@: %s", filePath.c_str(), _impl->path.c_str(),
                         whyNot.c_str());
        return std::string();
    };
    Added file;
    file.name = nameInPackage(filePathInArchive.empty() ? filePath : filePathInArchive);
    if (_impl->HasName(file.name)) {
        return file.name;
    }
    errno = 0;
    const std::shared_ptr<ArAsset> asset = ArFilesystemAsset::Open(ArResolvedPath(filePath));
    const std::shared_ptr<const char> bytes = asset ? asset->GetBuffer() : nullptr;
    if (!bytes) {
        return refuse(errno != 0 ? std::strerror(errno) : "it is not a regular file");
    }
    file.size = asset->GetSize();
    file.offset = _impl->output.Tell();
    const uint64_t dataOffset = file.offset + kHeaderSize + file.name.size();
    if (file.name.empty() || file.name.size() > std::numeric_limits<uint16_t>::max() ||
        _impl->files.size() >= kMaxCount || dataOffset + 2 * kAlignment + file.size > kMaxSize) {
        return refuse("packages hold up to 65,534 files with names of up to 65,535 bytes and together less "
                      "than 4 GiB");
    }
    file.crc = static_cast<uint32_t>(
        crc32_z(0, reinterpret_cast<const unsigned char*>(bytes.get()), static_cast<size_t>(file.size)));
    file.padding = paddingBefore(dataOffset);
    setTime(filePath, &file);
    Bytes header;
    header.Long(kFileSignature);
    describe(file, &header);
    header.Text(file.name).Text(file.padding).WriteTo(&_impl->output);
    _impl->output.Write(bytes.get(), static_cast<size_t>(file.size));
    _impl->files.push_back(file);
    return file.name;
}

bool UsdZipFileWriter::Save()
{
    if (!_impl) {
        TF_CODING_ERROR("Cannot save a package that is not open for writing");
        return false;
    }
    const std::unique_ptr<_Impl> impl = std::move(_impl);
    const uint64_t start = impl->output.Tell();
    for (const Added& file : impl->files) {
        Bytes entry;
        entry.Long(kDirectorySignature).Short(0);
        describe(file, &entry);
        entry.Short(0).Short(0).Short(0).Long(0).Long(file.offset);
        entry.Text(file.name).Text(file.padding).WriteTo(&impl->output);
    }
    Bytes end;
    end.Long(kEndSignature).Short(0).Short(0).Short(impl->files.size()).Short(impl->files.size());
    end.Long(impl->output.Tell() - start).Long(start).Short(0).WriteTo(&impl->output);
    std::string whyNot = "it is larger than 4 GiB";
    if (impl->output.Tell() <= kMaxSize && impl->output.Commit(&whyNot)) {
        return true;
    }
    TF_RUNTIME_ERROR("Cannot write package @%s@: %s", impl->path.c_str(), whyNot.c_str());
    return false;
}

void UsdZipFileWriter::Discard()
{
    if (!_impl) {
        TF_CODING_ERROR("Cannot discard a package that is not open for writing");
        return;
    }
    _impl.reset();
}

PXR_NAMESPACE_CLOSE_SCOPE
