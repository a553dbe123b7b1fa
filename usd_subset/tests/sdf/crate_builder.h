#pragma once

#include "pxr/usd/sdf/crate/crateFile.h"
#include "pxr/usd/sdf/crate/crateFileFormat.h"

#include <pxr/usd/ar/inMemoryAsset.h>
#include <pxr/usd/sdf/abstractData.h>

#include <cstring>
#include <string>
#include <vector>

namespace sdf_tests {

PXR_NAMESPACE_USING_DIRECTIVE

/// Puts a crate file of the uncompressed version 0.2.0 together, sound or not.
struct CrateBuilder
{
    struct PathItem
    {
        uint32_t index, element, bits;
    };
    enum Bits
    {
        Child = 1,
        Sibling = 2,
        Property = 4
    };

    template <class T>
    static void Put(std::string* bytes, T value)
    {
        bytes->append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    static uint64_t Rep(int type, uint64_t payload, bool isArray = false, bool isInlined = false)
    {
        return uint64_t(isArray) << 63 | uint64_t(isInlined) << 62 | uint64_t(type) << 48 | payload;
    }
    /// Adds bytes to the values and returns where they lie.
    uint64_t Add(const std::string& bytes)
    {
        values += bytes;
        return 88 + values.size() - bytes.size();
    }

    std::string Build() const
    {
        std::string file = std::string("PXR-USDC") + std::string(80, '\0') + values;
        std::string text;
        for (const std::string& token : tokens) {
            text += token + '\0';
        }
        std::string body[6];
        Put<uint64_t>(&body[0], tokens.size());
        Put<uint64_t>(&body[0], text.size());
        body[0] += text;
        Put<uint64_t>(&body[1], strings.size());
        for (uint32_t token : strings) {
            Put(&body[1], token);
        }
        Put<uint64_t>(&body[2], fields.size());
        for (const auto& field : fields) {
            Put<uint32_t>(&body[2], 0);
            Put(&body[2], field.first);
            Put(&body[2], field.second);
        }
        Put<uint64_t>(&body[3], fieldSets.size());
        for (uint32_t index : fieldSets) {
            Put(&body[3], index);
        }
        Put<uint64_t>(&body[4], pathCount);
        body[4] += pathTree;
        Put<uint64_t>(&body[5], specs.size());
        for (const PathItem& spec : specs) {
            Put(&body[5], spec);
        }
        const char* const names[] = {"TOKENS", "STRINGS", "FIELDS", "FIELDSETS", "PATHS", "SPECS"};
        std::string contents;
        Put<uint64_t>(&contents, 6);
        for (int i = 0; i < 6; ++i) {
            char name[16] = {};
            std::strcpy(name, names[i]);
            contents.append(name, sizeof name);
            Put<uint64_t>(&contents, file.size());
            Put<uint64_t>(&contents, body[i].size());
            file += body[i];
        }
        const uint64_t start = file.size();
        file += contents;
        file[9] = 2;
        std::memcpy(&file[16], &start, sizeof start);
        return file;
    }
    void AddPath(const PathItem& item) { Put(&pathTree, item); }

    std::string values;
    std::vector<std::string> tokens = {"", "A", "B", "customData"};
    std::vector<uint32_t> strings = {1};
    std::vector<std::pair<uint32_t, uint64_t>> fields;
    std::vector<uint32_t> fieldSets = {~0u};
    uint64_t pathCount = 1;
    std::string pathTree;
    /// Path, field set, type.
    std::vector<PathItem> specs = {{0, 0, SdfSpecTypePseudoRoot}};
};

/// A file with the root alone, whose field customData has the value.
inline CrateBuilder withValue(uint64_t rep)
{
    CrateBuilder builder;
    builder.AddPath({0, 0, 0});
    builder.fields = {{3, rep}};
    builder.fieldSets = {0, ~0u};
    return builder;
}

inline Sdf_CrateLimits smallLimits()
{
    Sdf_CrateLimits limits;
    limits.memory = uint64_t(256) << 20;
    return limits;
}

/// Reads a crate file from memory; null with the error where it cannot.
inline SdfAbstractDataRefPtr readCrate(const std::string& bytes, std::string* error)
{
    // A buffer of exactly this size, so that reading past its end is noticed.
    const std::shared_ptr<char> buffer(new char[bytes.size() + (bytes.empty() ? 1 : 0)],
                                       std::default_delete<char[]>());
    std::copy(bytes.begin(), bytes.end(), buffer.get());
    return Sdf_ReadCrate("test.usdc", ArInMemoryAsset::FromBuffer(buffer, bytes.size()), smallLimits(),
                         error);
}

/// Decodes every value of every spec.
class Decoder : public SdfAbstractDataSpecVisitor
{
public:
    bool VisitSpec(const SdfAbstractData& data, const SdfPath& path) override
    {
        for (const TfToken& name : data.List(path)) {
            values += data.Get(path, name).IsEmpty() ? 0 : 1;
        }
        return true;
    }
    void Done(const SdfAbstractData&) override {}
    size_t values = 0;
};

} // namespace sdf_tests
