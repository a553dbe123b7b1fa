#include "pxr/usd/sdf/crate/valueReader.h"

#include "pxr/usd/sdf/crate/arrayReader.h"
#include "pxr/usd/sdf/values/assetPathText.h"

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr Sdf_CrateVersion kPayloadOffsets{{0, 8, 0}};

} // namespace

Sdf_CrateValueReader::Sdf_CrateValueReader(const Sdf_CrateFile& file)
    : _file(file),
      _cursor(file.GetSource(), "value", 0, file.GetSource().GetSize()),
      _budget(file.GetLimits().memory),
      // A value may refer to the same nested value often, but not so often that it grows without bounds.
      _nestedLeft(1000000 + file.GetSource().GetSize() / 16)
{}

VtValue Sdf_CrateValueReader::Read(Sdf_CrateRep rep)
{
    switch (rep.GetType()) {
#define SDF_CRATE_CASE(Name, number, type)                                                                   \
    case Sdf_CrateType::Name:                                                                                \
        return _ReadSingleOrArray<type>(rep);
        SDF_CRATE_ARRAY_TYPES(SDF_CRATE_CASE)
#undef SDF_CRATE_CASE
#define SDF_CRATE_CASE(Name, number, type)                                                                   \
    case Sdf_CrateType::Name:                                                                                \
        return _ReadSingle<type>(rep);
        SDF_CRATE_SINGLE_TYPES(SDF_CRATE_CASE)
#undef SDF_CRATE_CASE
    default:
        break;
    }
    _cursor.Fail("values of type " + std::to_string(static_cast<int>(rep.GetType())) + " cannot be read");
}

template <class T>
VtValue Sdf_CrateValueReader::_ReadSingleOrArray(Sdf_CrateRep rep)
{
    if (rep.IsArray()) {
        VtArray<T> array = _ReadArray<T>(rep);
        return VtValue::Take(array);
    }
    return _ReadSingle<T>(rep);
}

template <class T>
VtValue Sdf_CrateValueReader::_ReadSingle(Sdf_CrateRep rep)
{
    if (Sdf_CrateIsAlwaysInlined<T> || rep.IsInlined()) {
        return VtValue(_FromInlined<T>(rep.GetInlinedBits()));
    }
    _cursor.Seek(rep.GetPayload());
    if constexpr (std::is_same_v<T, VtValue>) {
        return _Get<VtValue>();
    } else if constexpr (!Sdf_CrateIsAlwaysInlined<T>) {
        T value = _Get<T>();
        return VtValue::Take(value);
    }
    return VtValue();
}

template <class T>
T Sdf_CrateValueReader::_Checked(T value, int count, const char* what)
{
    if (static_cast<uint32_t>(value) >= static_cast<uint32_t>(count)) {
        _cursor.Fail("there is no " + std::string(what) + " " + std::to_string(static_cast<uint32_t>(value)));
    }
    return value;
}

template <class T>
T Sdf_CrateValueReader::_FromInlined(uint32_t bits)
{
    if constexpr (std::is_same_v<T, std::string>) {
        return _file.StringAt(bits, _cursor);
    } else if constexpr (std::is_same_v<T, TfToken>) {
        return _file.TokenAt(bits, _cursor);
    } else if constexpr (std::is_same_v<T, SdfAssetPath>) {
        return _AssetPath(_file.TokenAt(bits, _cursor).GetString());
    } else if constexpr (std::is_same_v<T, SdfSpecifier>) {
        return static_cast<T>(_Checked(bits, SdfNumSpecifiers, "specifier"));
    } else if constexpr (std::is_same_v<T, SdfPermission>) {
        return static_cast<T>(_Checked(bits, SdfNumPermissions, "permission"));
    } else if constexpr (std::is_same_v<T, SdfVariability>) {
        // Early files may hold a third variability, which meant the same as uniform.
        return _Checked(bits, SdfNumVariabilities + 1, "variability") == 0 ? SdfVariabilityVarying
                                                                           : SdfVariabilityUniform;
    } else if constexpr (std::is_same_v<T, bool>) {
        return (bits & 0xff) != 0;
    } else if constexpr (Sdf_CrateIsAlwaysInlined<T> && Sdf_CrateIsPlain<T>) {
        T value;
        std::memcpy(static_cast<void*>(&value), &bits, sizeof value);
        return value;
    } else {
        return Sdf_CrateFromInlinedBits<T>(bits);
    }
}

// An offset that leads over the nested values in front of what follows.
uint64_t Sdf_CrateValueReader::_FollowOffset()
{
    const uint64_t start = _cursor.Tell();
    const uint64_t offset = _cursor.Read<uint64_t>();
    _cursor.Seek(start + offset);
    return start;
}

void Sdf_CrateValueReader::_Get(VtValue* value)
{
    _FollowOffset();
    const Sdf_CrateRep rep(_cursor.Read<uint64_t>());
    const uint64_t behind = _cursor.Tell();
    if (_depth >= _file.GetLimits().valueDepth) {
        _cursor.Fail("a value holds values more than " + std::to_string(_depth) + " levels deep");
    }
    if (_nestedLeft-- == 0) {
        _cursor.Fail("a value holds more values than the file has room for");
    }
    ++_depth;
    *value = Read(rep);
    --_depth;
    _cursor.Seek(behind);
}

void Sdf_CrateValueReader::_Get(std::string* value)
{
    *value = _file.StringAt(_cursor.Read<uint32_t>(), _cursor);
}

void Sdf_CrateValueReader::_Get(TfToken* value) { *value = _file.TokenAt(_cursor.Read<uint32_t>(), _cursor); }

void Sdf_CrateValueReader::_Get(SdfPath* value) { *value = _file.PathAt(_cursor.Read<uint32_t>(), _cursor); }

void Sdf_CrateValueReader::_Get(SdfAssetPath* value) { *value = _AssetPath(_Get<std::string>()); }

SdfAssetPath Sdf_CrateValueReader::_AssetPath(const std::string& path) const
{
    std::string whyNot;
    if (!Sdf_IsAssetPathText(path, &whyNot)) {
        _cursor.Fail("an asset path is expected, but " + whyNot);
    }
    return SdfAssetPath(path);
}

void Sdf_CrateValueReader::_Get(SdfTimeCode* value) { *value = SdfTimeCode(_cursor.Read<double>()); }

void Sdf_CrateValueReader::_Get(SdfLayerOffset* value)
{
    const double offset = _cursor.Read<double>();
    *value = SdfLayerOffset(offset, _cursor.Read<double>());
}

void Sdf_CrateValueReader::_Get(SdfReference* value)
{
    const std::string asset = _AssetPath(_Get<std::string>()).GetAssetPath();
    const SdfPath prim = _Get<SdfPath>();
    const SdfLayerOffset offset = _Get<SdfLayerOffset>();
    *value = SdfReference(asset, prim, offset, _Get<VtDictionary>());
}

void Sdf_CrateValueReader::_Get(SdfPayload* value)
{
    const std::string asset = _AssetPath(_Get<std::string>()).GetAssetPath();
    const SdfPath prim = _Get<SdfPath>();
    *value = SdfPayload(asset, prim,
                        _file.GetVersion() < kPayloadOffsets ? SdfLayerOffset() : _Get<SdfLayerOffset>());
}

void Sdf_CrateValueReader::_Get(SdfRelocate* value)
{
    value->first = _Get<SdfPath>();
    value->second = _Get<SdfPath>();
}

void Sdf_CrateValueReader::_Get(SdfUnregisteredValue* value)
{
    const VtValue held = _Get<VtValue>();
    if (held.IsHolding<std::string>()) {
        *value = SdfUnregisteredValue(held.UncheckedGet<std::string>());
    } else if (held.IsHolding<VtDictionary>()) {
        *value = SdfUnregisteredValue(held.UncheckedGet<VtDictionary>());
    } else if (held.IsHolding<SdfUnregisteredValueListOp>()) {
        *value = SdfUnregisteredValue(held.UncheckedGet<SdfUnregisteredValueListOp>());
    } else {
        _cursor.Fail("a value of a field that no schema knows is a " + held.GetTypeName() +
                     "; a string, a dictionary or a list op is expected");
    }
}

void Sdf_CrateValueReader::_Get(VtDictionary* value)
{
    for (uint64_t left = _cursor.ReadCount(12, "entries"); left > 0; --left) {
        const std::string key = _Get<std::string>();
        _cursor.Charge(&_budget, key.size() + 128);
        _Get(&(*value)[key]);
    }
}

void Sdf_CrateValueReader::_Get(SdfVariantSelectionMap* value)
{
    for (uint64_t left = _cursor.ReadCount(8, "selections"); left > 0; --left) {
        const std::string key = _Get<std::string>();
        (*value)[key] = _Get<std::string>();
    }
}

template <class T>
constexpr uint64_t Sdf_CrateValueReader::_LeastSize()
{
    if constexpr (Sdf_CrateIsPlain<T>) {
        return sizeof(T);
    } else if constexpr (std::is_same_v<T, SdfLayerOffset>) {
        return 16;
    } else if constexpr (std::is_same_v<T, SdfReference>) {
        return 32;
    } else {
        return std::is_same_v<T, SdfPayload> || std::is_same_v<T, SdfRelocate> ||
                       std::is_same_v<T, SdfTimeCode> || std::is_same_v<T, SdfUnregisteredValue>
                   ? 8
               : std::is_same_v<T, bool> ? 1
                                         : 4;
    }
}

template <class T>
void Sdf_CrateValueReader::_Get(std::vector<T>* values)
{
    const uint64_t count = _cursor.ReadCount(_LeastSize<T>(), "items");
    _cursor.Charge(&_budget, count * sizeof(T));
    values->reserve(static_cast<size_t>(count));
    for (uint64_t i = 0; i < count; ++i) {
        values->push_back(_Get<T>());
    }
}

template <class T>
void Sdf_CrateValueReader::_Get(SdfListOp<T>* op)
{
    const uint8_t bits = _cursor.Read<uint8_t>();
    if ((bits & Sdf_CrateListOpIsExplicit) != 0) {
        op->ClearAndMakeExplicit();
    }
    const std::pair<Sdf_CrateListOpBits, SdfListOpType> lists[] = {
        {Sdf_CrateListOpHasExplicit, SdfListOpTypeExplicit},
        {Sdf_CrateListOpHasAdded, SdfListOpTypeAdded},
        {Sdf_CrateListOpHasPrepended, SdfListOpTypePrepended},
        {Sdf_CrateListOpHasAppended, SdfListOpTypeAppended},
        {Sdf_CrateListOpHasDeleted, SdfListOpTypeDeleted},
        {Sdf_CrateListOpHasOrdered, SdfListOpTypeOrdered}};
    for (const auto& list : lists) {
        if ((bits & list.first) != 0) {
            op->SetItems(_Get<std::vector<T>>(), list.second);
        }
    }
}

Sdf_CrateRep Sdf_CrateValueReader::ReadSampleTimes(Sdf_CrateRep rep)
{
    _cursor.Seek(rep.GetPayload());
    _FollowOffset();
    return Sdf_CrateRep(_cursor.Read<uint64_t>());
}

uint64_t Sdf_CrateValueReader::ReadSampleReps(uint64_t count)
{
    _FollowOffset();
    const uint64_t values = _cursor.ReadCount(sizeof(uint64_t), "samples");
    if (values != count) {
        _cursor.Fail("there are " + std::to_string(values) + " samples at " + std::to_string(count) +
                     " times");
    }
    return _cursor.Tell();
}

PXR_NAMESPACE_CLOSE_SCOPE
