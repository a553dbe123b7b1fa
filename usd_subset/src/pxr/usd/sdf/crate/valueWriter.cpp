#include "pxr/usd/sdf/crate/valueWriter.h"

#include "pxr/usd/sdf/crate/arrayWriter.h"

PXR_NAMESPACE_OPEN_SCOPE

Sdf_CrateValueWriter::Sdf_CrateValueWriter(Sdf_SafeOutput* output, Sdf_CrateNames* names)
    : _output(output), _names(names)
{}

void Sdf_CrateValueWriter::_Require(Sdf_CrateVersion version)
{
    if (_version < version) {
        _version = version;
    }
}

Sdf_CrateRep Sdf_CrateValueWriter::Pack(const VtValue& value)
{
    typedef Sdf_CrateRep (Sdf_CrateValueWriter::*Packer)(const VtValue&);
    static const auto* const packers = new std::unordered_map<std::type_index, Packer>{
#define SDF_CRATE_PACKER(Name, number, type)                                                                 \
    {typeid(type), &Sdf_CrateValueWriter::_PackAs<type>},                                                    \
        {typeid(VtArray<type>), &Sdf_CrateValueWriter::_PackAs<VtArray<type>>},
        SDF_CRATE_ARRAY_TYPES(SDF_CRATE_PACKER)
#undef SDF_CRATE_PACKER
#define SDF_CRATE_PACKER(Name, number, type) {typeid(type), &Sdf_CrateValueWriter::_PackAs<type>},
            SDF_CRATE_SINGLE_TYPES(SDF_CRATE_PACKER)
#undef SDF_CRATE_PACKER
    };
    const auto packer = packers->find(value.GetTypeid());
    if (packer == packers->end()) {
        _fault = "crate files cannot hold values of the type " + value.GetTypeName();
        return Sdf_CrateRep();
    }
    return (this->*packer->second)(value);
}

template <class T>
Sdf_CrateRep Sdf_CrateValueWriter::_PackAs(const VtValue& value)
{
    if constexpr (VtIsArray<T>::value) {
        return _PackArray(value.UncheckedGet<T>());
    } else {
        return _PackSingle(value.UncheckedGet<T>());
    }
}

template <class T>
uint32_t Sdf_CrateValueWriter::_InlinedBits(const T& value)
{
    if constexpr (std::is_same_v<T, std::string> || std::is_same_v<T, TfToken>) {
        return _names->IndexOf(value);
    } else if constexpr (std::is_same_v<T, SdfAssetPath>) {
        return _names->IndexOf(TfToken(value.GetAssetPath()));
    } else if constexpr (std::is_same_v<T, SdfValueBlock>) {
        return 0;
    } else if constexpr (std::is_same_v<T, bool>) {
        return value ? 1 : 0;
    } else {
        uint32_t bits = 0;
        std::memcpy(&bits, static_cast<const void*>(&value), sizeof value);
        return bits;
    }
}

template <class T>
Sdf_CrateRep Sdf_CrateValueWriter::_PackSingle(const T& value)
{
    constexpr Sdf_CrateType type = Sdf_CrateTypeOf<T>;
    if constexpr (Sdf_CrateIsAlwaysInlined<T>) {
        return Sdf_CrateRep(type, Sdf_CrateRep::kInlined, _InlinedBits(value));
    } else {
        uint32_t bits = 0;
        if (Sdf_CrateToInlinedBits(value, &bits)) {
            return Sdf_CrateRep(type, Sdf_CrateRep::kInlined, bits);
        }
        _Bytes bytes;
        _Put(&bytes, value);
        return _WriteOnce(Sdf_CrateRep(type, 0, 0).GetBits(), 1, bytes);
    }
}

Sdf_CrateRep Sdf_CrateValueWriter::_WriteOnce(uint64_t bits, size_t alignment, const _Bytes& bytes)
{
    _Bytes key = bytes;
    _PutRaw(&key, bits);
    const auto added = _knownBytes.emplace(std::move(key), 0);
    if (added.second) {
        added.first->second = bits | _Write(alignment, bytes, nullptr, 0);
    }
    return Sdf_CrateRep(added.first->second);
}

uint64_t Sdf_CrateValueWriter::_Write(size_t alignment, const _Bytes& bytes, const void* more,
                                      size_t moreSize)
{
    static const char zeros[8] = {};
    _output->Write(zeros, static_cast<size_t>((alignment - _output->Tell() % alignment) % alignment));
    const uint64_t offset = _output->Tell();
    if (offset > Sdf_CrateRep::kPayloadMask) {
        _fault = "it is larger than the format allows";
    }
    _output->Write(bytes.data(), bytes.size());
    _output->Write(more, moreSize);
    return offset;
}

Sdf_CrateRep Sdf_CrateValueWriter::PackSamples(const std::vector<double>& times,
                                               const std::vector<Sdf_CrateRep>& values)
{
    const Sdf_CrateRep timesRep = _PackSingle(times);
    _Bytes bytes;
    _PutRaw(&bytes, int64_t(sizeof(int64_t)));
    _PutRaw(&bytes, timesRep.GetBits());
    _PutRaw(&bytes, int64_t(sizeof(int64_t)));
    _PutRaw(&bytes, static_cast<uint64_t>(values.size()));
    for (Sdf_CrateRep rep : values) {
        _PutRaw(&bytes, rep.GetBits());
    }
    return _WriteOnce(Sdf_CrateRep(Sdf_CrateType::TimeSamples, 0, 0).GetBits(), 1, bytes);
}

template <class T>
void Sdf_CrateValueWriter::_Put(_Bytes* bytes, const std::vector<T>& values)
{
    _PutRaw(bytes, static_cast<uint64_t>(values.size()));
    for (const T& value : values) {
        _Put(bytes, value);
    }
}

template <class T>
void Sdf_CrateValueWriter::_Put(_Bytes* bytes, const SdfListOp<T>& op)
{
    const std::pair<Sdf_CrateListOpBits, const std::vector<T>&> lists[] = {
        {Sdf_CrateListOpHasExplicit, op.GetExplicitItems()},
        {Sdf_CrateListOpHasAdded, op.GetAddedItems()},
        {Sdf_CrateListOpHasPrepended, op.GetPrependedItems()},
        {Sdf_CrateListOpHasAppended, op.GetAppendedItems()},
        {Sdf_CrateListOpHasDeleted, op.GetDeletedItems()},
        {Sdf_CrateListOpHasOrdered, op.GetOrderedItems()}};
    int bits = op.IsExplicit() ? Sdf_CrateListOpIsExplicit : 0;
    for (const auto& list : lists) {
        bits |= list.second.empty() ? 0 : list.first;
    }
    bytes->push_back(static_cast<char>(bits));
    for (const auto& list : lists) {
        if (!list.second.empty()) {
            _Put(bytes, list.second);
        }
    }
}

template <class T>
void Sdf_CrateValueWriter::_Put(_Bytes* bytes, const T& value)
{
    if constexpr (Sdf_CrateIsPlain<T>) {
        _PutRaw(bytes, value);
    } else if constexpr (std::is_same_v<T, std::string> || std::is_same_v<T, TfToken> ||
                         std::is_same_v<T, SdfPath>) {
        _PutRaw(bytes, _names->IndexOf(value));
    } else if constexpr (std::is_same_v<T, SdfAssetPath>) {
        _Put(bytes, value.GetAssetPath());
    } else if constexpr (std::is_same_v<T, SdfTimeCode>) {
        _Require({{0, 9, 0}});
        _PutRaw(bytes, value.GetValue());
    } else if constexpr (std::is_same_v<T, SdfLayerOffset>) {
        _PutRaw(bytes, value.GetOffset());
        _PutRaw(bytes, value.GetScale());
    } else if constexpr (std::is_same_v<T, SdfReference>) {
        _Put(bytes, value.GetAssetPath());
        _Put(bytes, value.GetPrimPath());
        _Put(bytes, value.GetLayerOffset());
        _Put(bytes, value.GetCustomData());
    } else if constexpr (std::is_same_v<T, SdfPayload>) {
        _Put(bytes, value.GetAssetPath());
        _Put(bytes, value.GetPrimPath());
        _Put(bytes, value.GetLayerOffset());
    } else if constexpr (std::is_same_v<T, SdfRelocate>) {
        _Require({{0, 11, 0}});
        _Put(bytes, value.first);
        _Put(bytes, value.second);
    } else if constexpr (std::is_same_v<T, SdfUnregisteredValue>) {
        _Put(bytes, value.GetValue());
    } else if constexpr (std::is_same_v<T, VtDictionary> || std::is_same_v<T, SdfVariantSelectionMap>) {
        _PutRaw(bytes, static_cast<uint64_t>(value.size()));
        for (const auto& entry : value) {
            _Put(bytes, entry.first);
            _Put(bytes, entry.second);
        }
    } else {
        static_assert(std::is_same_v<T, VtValue>);
        // The nested value is in the file already: nothing lies between the offset and the reference.
        const Sdf_CrateRep rep = Pack(value);
        _PutRaw(bytes, int64_t(sizeof(int64_t)));
        _PutRaw(bytes, rep.GetBits());
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
