#include "pxr/usd/sdf/crate/crateFile.h"

#include "pxr/usd/sdf/crate/compression.h"
#include "pxr/usd/sdf/crate/pathTreeReader.h"
#include "pxr/usd/sdf/fileFormatRegistry.h"

#include <algorithm>
#include <cstring>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr Sdf_CrateVersion kWithoutPadding{{0, 0, 2}};
constexpr Sdf_CrateVersion kCompressedTables{{0, 4, 0}};

SdfSpecType specType(uint32_t number)
{
    return number < SdfNumSpecTypes ? static_cast<SdfSpecType>(number) : SdfSpecTypeUnknown;
}

// Says whether a path of this kind can have a spec of this type.
bool fitsPath(SdfSpecType type, const SdfPath& path)
{
    switch (type) {
    case SdfSpecTypePseudoRoot:
        return path.IsAbsoluteRootPath();
    case SdfSpecTypePrim:
        return path.IsPrimPath() && path.IsAbsolutePath();
    case SdfSpecTypeVariant:
    case SdfSpecTypeVariantSet:
        return path.IsPrimVariantSelectionPath();
    case SdfSpecTypeAttribute:
        return path.IsPropertyPath();
    case SdfSpecTypeRelationship:
        return path.IsPrimPropertyPath();
    case SdfSpecTypeConnection:
    case SdfSpecTypeRelationshipTarget:
        return path.IsTargetPath();
    case SdfSpecTypeMapper:
        return path.IsMapperPath();
    case SdfSpecTypeMapperArg:
        return path.IsMapperArgPath();
    case SdfSpecTypeExpression:
        return path.IsExpressionPath();
    default:
        return false;
    }
}

} // namespace

Sdf_CrateFile::Sdf_CrateFile(const std::string& name, const std::shared_ptr<ArAsset>& asset,
                             const Sdf_CrateLimits& limits, Tables* tables)
    : _name(name), _limits(limits), _source(asset, limits.buffer), _budget(limits.memory)
{
    _ReadHeader();
    _ReadTokens();
    _ReadStrings();
    _ReadFields(tables);
    _ReadFieldSets(tables);
    _ReadPaths();
    _ReadSpecs(tables);
}

void Sdf_CrateFile::_ReadHeader()
{
    Sdf_CrateCursor cursor(_source, "header", 0, _source.GetSize());
    char magic[kSdf_CrateMagicSize];
    cursor.CopyTo(magic, sizeof magic);
    if (std::memcmp(magic, kSdf_CrateMagic, sizeof magic) != 0) {
        cursor.Seek(0);
        cursor.Fail("\"PXR-USDC\" is expected");
    }
    cursor.Need(kSdf_CrateHeaderSize - kSdf_CrateMagicSize);
    cursor.CopyTo(_version.numbers, sizeof _version.numbers);
    if (_version.numbers[0] != kSdf_CrateNewestVersion.numbers[0] ||
        _version.numbers[1] > kSdf_CrateNewestVersion.numbers[1]) {
        cursor.Seek(kSdf_CrateMagicSize);
        cursor.Fail("version " + _version.AsString() + " is not known; the newest that is known is " +
                    kSdf_CrateNewestVersion.AsString());
    }
    cursor.Seek(2 * kSdf_CrateMagicSize);
    _ReadContents(cursor.Read<uint64_t>());
}

void Sdf_CrateFile::_ReadContents(uint64_t offset)
{
    constexpr uint64_t entrySize = kSdf_CrateSectionNameSize + 2 * sizeof(uint64_t);
    Sdf_CrateCursor cursor(_source, "table of contents", 0, _source.GetSize());
    cursor.Seek(offset);
    for (uint64_t left = cursor.ReadCount(entrySize, "sections"); left > 0; --left) {
        char name[kSdf_CrateSectionNameSize + 1] = {};
        cursor.CopyTo(name, kSdf_CrateSectionNameSize);
        const uint64_t start = cursor.Read<uint64_t>();
        const uint64_t size = cursor.Read<uint64_t>();
        if (start > _source.GetSize() || size > _source.GetSize() - start) {
            cursor.Fail("section \"" + std::string(name) + "\" of " + std::to_string(size) +
                        " bytes from byte " + std::to_string(start) + " is outside the file of " +
                        std::to_string(_source.GetSize()) + " bytes");
        }
        cursor.Charge(&_budget, sizeof(_Section));
        _sections.push_back({name, start, start + size});
    }
}

bool Sdf_CrateFile::_Open(const char* name, Sdf_CrateCursor* cursor) const
{
    for (const _Section& section : _sections) {
        if (section.name == name) {
            cursor->Restrict(section.start, section.end);
            return true;
        }
    }
    return false;
}

template <class Int>
std::vector<Int> Sdf_CrateFile::_ReadInts(Sdf_CrateCursor* cursor, uint64_t count)
{
    const uint64_t packedSize = cursor->Read<uint64_t>();
    cursor->Need(packedSize);
    if (!Sdf_CanHoldInts(packedSize, count)) {
        cursor->Fail(std::to_string(packedSize) + " bytes cannot hold " + std::to_string(count) +
                     " packed integers");
    }
    cursor->Charge(&_budget, 2 * count * sizeof(Int));
    std::vector<Int> ints(static_cast<size_t>(count));
    std::string whyNot;
    const uint64_t start = cursor->Tell();
    if (!Sdf_DecompressInts(cursor->Take(packedSize), static_cast<size_t>(packedSize), ints.data(),
                            ints.size(), &whyNot)) {
        cursor->Seek(start);
        cursor->Fail("there is " + whyNot);
    }
    return ints;
}

void Sdf_CrateFile::_ReadTokens()
{
    Sdf_CrateCursor cursor(_source, "TOKENS section", 0, 0);
    if (!_Open("TOKENS", &cursor)) {
        return;
    }
    const uint64_t count = cursor.Read<uint64_t>();
    uint64_t size = cursor.Read<uint64_t>();
    std::vector<char> unpacked;
    const char* text = nullptr;
    if (_version < kCompressedTables) {
        text = cursor.Take(size);
    } else {
        const uint64_t packedSize = cursor.Read<uint64_t>();
        cursor.Need(packedSize);
        if (size / kSdf_MaxExpansion > packedSize) {
            cursor.Fail(std::to_string(packedSize) + " bytes cannot hold " + std::to_string(size) +
                        " bytes of text");
        }
        cursor.Charge(&_budget, size);
        unpacked.resize(static_cast<size_t>(size));
        if (Sdf_Decompress(cursor.Take(packedSize), static_cast<size_t>(packedSize), unpacked.data(),
                           unpacked.size()) != unpacked.size()) {
            cursor.Fail("the packed text before it is damaged");
        }
        text = unpacked.data();
    }
    if (count > size || (size > 0 && text[size - 1] != '\0')) {
        cursor.Fail(std::to_string(count) + " texts, each ended by a NUL, are expected in " +
                    std::to_string(size) + " bytes");
    }
    cursor.Charge(&_budget, count * (sizeof(TfToken) + 64));
    _tokens.reserve(static_cast<size_t>(count));
    const char* const end = text + size;
    for (; text < end && _tokens.size() < count; text += std::strlen(text) + 1) {
        _tokens.emplace_back(text);
    }
    if (_tokens.size() != count) {
        cursor.Fail(std::to_string(count) + " texts are announced, but there are " +
                    std::to_string(_tokens.size()));
    }
}

void Sdf_CrateFile::_ReadStrings()
{
    Sdf_CrateCursor cursor(_source, "STRINGS section", 0, 0);
    if (!_Open("STRINGS", &cursor)) {
        return;
    }
    const uint64_t count = cursor.ReadCount(sizeof(uint32_t), "strings");
    cursor.Charge(&_budget, count * sizeof(uint32_t));
    _strings.resize(static_cast<size_t>(count));
    cursor.CopyTo(_strings.data(), _strings.size() * sizeof(uint32_t));
    for (uint32_t index : _strings) {
        TokenAt(index, cursor);
    }
}

void Sdf_CrateFile::_ReadFields(Tables* tables)
{
    Sdf_CrateCursor cursor(_source, "FIELDS section", 0, 0);
    if (!_Open("FIELDS", &cursor)) {
        return;
    }
    std::vector<Field>& fields = tables->fields;
    if (_version < kCompressedTables) {
        const uint64_t count = cursor.ReadCount(2 * sizeof(uint64_t), "fields");
        cursor.Charge(&_budget, count * sizeof(Field));
        fields.resize(static_cast<size_t>(count));
        for (Field& field : fields) {
            cursor.Read<uint32_t>(); // padding
            field.name = cursor.Read<uint32_t>();
            field.rep = Sdf_CrateRep(cursor.Read<uint64_t>());
            TokenAt(field.name, cursor);
        }
        return;
    }
    const uint64_t count = cursor.Read<uint64_t>();
    const std::vector<uint32_t> names = _ReadInts<uint32_t>(&cursor, count);
    const uint64_t packedSize = cursor.Read<uint64_t>();
    cursor.Need(packedSize);
    cursor.Charge(&_budget, count * (sizeof(uint64_t) + sizeof(Field)));
    std::vector<uint64_t> reps(names.size());
    const size_t size = reps.size() * sizeof(uint64_t);
    if (size > 0 && Sdf_Decompress(cursor.Take(packedSize), static_cast<size_t>(packedSize),
                                   reinterpret_cast<char*>(reps.data()), size) != size) {
        cursor.Fail("the " + std::to_string(count) + " packed values before it are damaged");
    }
    fields.resize(names.size());
    for (size_t i = 0; i < fields.size(); ++i) {
        TokenAt(names[i], cursor);
        fields[i] = {names[i], Sdf_CrateRep(reps[i])};
    }
}

void Sdf_CrateFile::_ReadFieldSets(Tables* tables)
{
    Sdf_CrateCursor cursor(_source, "FIELDSETS section", 0, 0);
    if (!_Open("FIELDSETS", &cursor)) {
        return;
    }
    std::vector<uint32_t>& sets = tables->fieldSets;
    if (_version < kCompressedTables) {
        const uint64_t count = cursor.ReadCount(sizeof(uint32_t), "field indices");
        cursor.Charge(&_budget, count * sizeof(uint32_t));
        sets.resize(static_cast<size_t>(count));
        cursor.CopyTo(sets.data(), sets.size() * sizeof(uint32_t));
    } else {
        const uint64_t count = cursor.Read<uint64_t>();
        sets = _ReadInts<uint32_t>(&cursor, count);
    }
    if (!sets.empty() && sets.back() != kSdf_CrateNoIndex) {
        cursor.Fail("the last set of fields has no end");
    }
    for (uint32_t index : sets) {
        if (index != kSdf_CrateNoIndex && index >= tables->fields.size()) {
            cursor.Fail("field " + std::to_string(index) + " is referred to, but there are " +
                        std::to_string(tables->fields.size()));
        }
    }
}

void Sdf_CrateFile::_ReadPaths()
{
    Sdf_CrateCursor cursor(_source, "PATHS section", 0, 0);
    if (!_Open("PATHS", &cursor)) {
        return;
    }
    Sdf_CratePathTreeReader reader(*this, _limits.pathDepth, &_paths);
    const bool packed = !(_version < kCompressedTables);
    const uint64_t count = cursor.Read<uint64_t>();
    if (!packed) {
        // The empty path has an index and no place in the tree.
        cursor.CheckCount(count > 0 ? count - 1 : 0, 12, "paths");
        cursor.Charge(&_budget, count * (sizeof(SdfPath) + 96));
        _paths.resize(static_cast<size_t>(count));
        reader.ReadTree(&cursor, _version < kWithoutPadding);
        return;
    }
    const uint64_t encoded = cursor.Read<uint64_t>();
    const std::vector<uint32_t> indices = _ReadInts<uint32_t>(&cursor, encoded);
    const std::vector<int32_t> elements = _ReadInts<int32_t>(&cursor, encoded);
    const std::vector<int32_t> jumps = _ReadInts<int32_t>(&cursor, encoded);
    if (count < encoded || count > encoded + 1) {
        cursor.Fail(std::to_string(count) + " paths are announced, but the tree has " +
                    std::to_string(encoded));
    }
    cursor.Charge(&_budget, count * (sizeof(SdfPath) + 96));
    _paths.resize(static_cast<size_t>(count));
    reader.ReadLists(cursor, indices, elements, jumps);
}

void Sdf_CrateFile::_ReadSpecs(Tables* tables)
{
    Sdf_CrateCursor cursor(_source, "SPECS section", 0, 0);
    if (!_Open("SPECS", &cursor)) {
        return;
    }
    std::vector<Spec>& specs = tables->specs;
    if (_version < kCompressedTables) {
        const bool padded = _version < kWithoutPadding;
        const uint64_t count = cursor.ReadCount(padded ? 16 : 12, "specs");
        cursor.Charge(&_budget, count * sizeof(Spec));
        specs.resize(static_cast<size_t>(count));
        for (Spec& spec : specs) {
            if (padded) {
                cursor.Read<uint32_t>();
            }
            spec.path = cursor.Read<uint32_t>();
            spec.fieldSet = cursor.Read<uint32_t>();
            spec.type = specType(cursor.Read<uint32_t>());
        }
        _CheckSpecs(*tables, cursor);
        return;
    }
    const uint64_t count = cursor.Read<uint64_t>();
    const std::vector<uint32_t> paths = _ReadInts<uint32_t>(&cursor, count);
    const std::vector<uint32_t> sets = _ReadInts<uint32_t>(&cursor, count);
    const std::vector<uint32_t> types = _ReadInts<uint32_t>(&cursor, count);
    cursor.Charge(&_budget, count * sizeof(Spec));
    specs.resize(paths.size());
    for (size_t i = 0; i < specs.size(); ++i) {
        specs[i] = {paths[i], sets[i], specType(types[i])};
    }
    _CheckSpecs(*tables, cursor);
}

void Sdf_CrateFile::_CheckSpecs(const Tables& tables, const Sdf_CrateCursor& at) const
{
    const std::vector<uint32_t>& sets = tables.fieldSets;
    std::vector<bool> seen(_paths.size());
    for (const Spec& spec : tables.specs) {
        const SdfPath& path = PathAt(spec.path, at);
        if (seen[spec.path]) {
            at.Fail("there are two specs at <" + path.GetAsString() + ">");
        }
        seen[spec.path] = true;
        if (!fitsPath(spec.type, path)) {
            at.Fail("a spec of type " + std::to_string(spec.type) + " cannot be at <" + path.GetAsString() +
                    ">");
        }
        if (spec.fieldSet >= sets.size() ||
            (spec.fieldSet > 0 && sets[spec.fieldSet - 1] != kSdf_CrateNoIndex)) {
            at.Fail("no set of fields begins at index " + std::to_string(spec.fieldSet) + ", which <" +
                    path.GetAsString() + "> refers to");
        }
    }
}

const TfToken& Sdf_CrateFile::TokenAt(uint32_t index, const Sdf_CrateCursor& at) const
{
    if (index >= _tokens.size()) {
        at.Fail("token " + std::to_string(index) + " is referred to, but there are " +
                std::to_string(_tokens.size()));
    }
    return _tokens[index];
}

const std::string& Sdf_CrateFile::StringAt(uint32_t index, const Sdf_CrateCursor& at) const
{
    if (index >= _strings.size()) {
        at.Fail("string " + std::to_string(index) + " is referred to, but there are " +
                std::to_string(_strings.size()));
    }
    return _tokens[_strings[index]].GetString();
}

const SdfPath& Sdf_CrateFile::PathAt(uint32_t index, const Sdf_CrateCursor& at) const
{
    if (index >= _paths.size()) {
        at.Fail("path " + std::to_string(index) + " is referred to, but there are " +
                std::to_string(_paths.size()));
    }
    return _paths[index];
}

PXR_NAMESPACE_CLOSE_SCOPE
