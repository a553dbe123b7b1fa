#include "pxr/usd/ar/zipDirectory.h"

#include <pxr/usd/ar/asset.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr uint32_t kFileSignature = 0x04034b50;
constexpr uint32_t kDirectorySignature = 0x02014b50;
constexpr uint32_t kEndSignature = 0x06054b50;
constexpr size_t kFixedSize = 30;
constexpr uint16_t kEncrypted = 1;
constexpr uint16_t kSizesFollow = 8;
constexpr uint32_t kWideSize = 0xffffffff;
/// No valid package comes near it; a malformed one may be full of empty files.
constexpr size_t kMaxEntries = 1000000;

// The fixed part of the header in front of a file, whose numbers are little endian.
class FileHeader
{
public:
    uint16_t Short(size_t at) const { return static_cast<uint16_t>(_byte(at) | _byte(at + 1) << 8); }
    uint32_t Long(size_t at) const { return Short(at) | static_cast<uint32_t>(Short(at + 2)) << 16; }

    uint32_t Signature() const { return Long(0); }
    uint16_t Flags() const { return Short(6); }
    uint16_t Method() const { return Short(8); }
    uint32_t Crc() const { return Long(14); }
    uint32_t Size() const { return Long(18); }
    uint32_t PlainSize() const { return Long(22); }
    uint16_t NameSize() const { return Short(26); }
    uint16_t ExtraSize() const { return Short(28); }

    unsigned char bytes[kFixedSize] = {};

private:
    unsigned _byte(size_t at) const { return bytes[at]; }
};

bool fail(std::string* whyNot, uint64_t offset, const std::string& text)
{
    *whyNot = "byte " + std::to_string(offset) + ": " + text;
    return false;
}

bool isEnd(uint32_t signature) { return signature == kDirectorySignature || signature == kEndSignature; }

// Reads the entry behind a header; moves the offset behind its data.
bool readEntry(const ArAsset& asset, const FileHeader& header, uint64_t* offset, Ar_ZipEntry* entry,
               std::string* whyNot)
{
    const uint64_t left = asset.GetSize() - *offset - kFixedSize;
    const uint64_t names = uint64_t(header.NameSize()) + header.ExtraSize();
    if (names > left || header.Size() > left - names) {
        return fail(whyNot, *offset,
                    "a file of " + std::to_string(header.Size()) +
                        " bytes is announced, but the package ends after " + std::to_string(left) + " bytes");
    }
    if ((header.Flags() & kSizesFollow) != 0 && header.Size() == 0) {
        return fail(whyNot, *offset, "the size of a file stands behind its data; it is expected in front");
    }
    if (header.Size() == kWideSize || header.PlainSize() == kWideSize) {
        return fail(whyNot, *offset, "files of 4 GiB or more are not read");
    }
    if (header.Method() == 0 && header.Size() != header.PlainSize()) {
        return fail(whyNot, *offset, "a stored file has two sizes");
    }
    entry->name.resize(header.NameSize());
    if (asset.Read(entry->name.data(), entry->name.size(), *offset + kFixedSize) != entry->name.size()) {
        return fail(whyNot, *offset, "the name of a file cannot be read");
    }
    if (entry->name.find('\0') != std::string::npos) {
        return fail(whyNot, *offset, "the name of a file holds a NUL byte");
    }
    entry->dataOffset = *offset + kFixedSize + names;
    entry->size = header.Size();
    entry->plainSize = header.PlainSize();
    entry->crc = header.Crc();
    entry->method = header.Method();
    entry->isEncrypted = (header.Flags() & kEncrypted) != 0;
    *offset = entry->dataOffset + entry->size;
    return true;
}

} // namespace

bool Ar_ReadZipDirectory(const ArAsset& asset, std::vector<Ar_ZipEntry>* entries, std::string* whyNot)
{
    const uint64_t size = asset.GetSize();
    entries->clear();
    for (uint64_t offset = 0;;) {
        FileHeader header;
        const size_t count = asset.Read(header.bytes, std::min<uint64_t>(kFixedSize, size - offset), offset);
        if (count >= 4 && isEnd(header.Signature())) {
            return true;
        }
        if (count < 4 || header.Signature() != kFileSignature) {
            return fail(whyNot, offset, "the header of a file in a zip package is expected");
        }
        if (count < kFixedSize) {
            return fail(whyNot, offset, "the package ends within the header of a file");
        }
        if (entries->size() == kMaxEntries) {
            return fail(whyNot, offset,
                        "packages of more than " + std::to_string(kMaxEntries) + " files are not read");
        }
        Ar_ZipEntry entry;
        if (!readEntry(asset, header, &offset, &entry, whyNot)) {
            return false;
        }
        entries->push_back(std::move(entry));
    }
}

const Ar_ZipEntry* Ar_FindZipEntry(const std::vector<Ar_ZipEntry>& entries, const std::string& name)
{
    for (const Ar_ZipEntry& entry : entries) {
        if (entry.name == name) {
            return &entry;
        }
    }
    return nullptr;
}

PXR_NAMESPACE_CLOSE_SCOPE
