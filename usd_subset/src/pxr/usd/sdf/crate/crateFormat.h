#pragma once

/// The elements of the binary crate format.

#include <pxr/base/gf/half.h>
#include <pxr/base/gf/matrix2d.h>
#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/quath.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec2h.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/base/gf/vec3i.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4h.h>
#include <pxr/base/gf/vec4i.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/sdf/reference.h>
#include <pxr/usd/sdf/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A version of the format; files of one major version can be read up to the newest known minor one.
struct Sdf_CrateVersion
{
    uint8_t numbers[3] = {0, 0, 0};

    constexpr uint32_t AsInt() const
    {
        return uint32_t(numbers[0]) << 16 | uint32_t(numbers[1]) << 8 | numbers[2];
    }
    constexpr bool operator<(Sdf_CrateVersion o) const { return AsInt() < o.AsInt(); }
    constexpr bool operator==(Sdf_CrateVersion o) const { return AsInt() == o.AsInt(); }
    std::string AsString() const
    {
        return std::to_string(numbers[0]) + "." + std::to_string(numbers[1]) + "." +
               std::to_string(numbers[2]);
    }
};

constexpr char kSdf_CrateMagic[] = "PXR-USDC";
constexpr size_t kSdf_CrateMagicSize = 8;
/// Magic, version, offset of the table of contents, reserved room.
constexpr size_t kSdf_CrateHeaderSize = 88;
constexpr size_t kSdf_CrateSectionNameSize = 16;
constexpr Sdf_CrateVersion kSdf_CrateNewestVersion{{0, 12, 0}};
/// Ends a run of field indices.
constexpr uint32_t kSdf_CrateNoIndex = ~uint32_t(0);
/// Shorter arrays are never compressed.
constexpr size_t kSdf_CrateMinCompressedCount = 16;

// clang-format off
/// \name The types of values: each calls X(Name, number in the file, C++ type)
/// @{
#define SDF_CRATE_ARRAY_TYPES(X) \
    X(Bool, 1, bool) X(UChar, 2, unsigned char) X(Int, 3, int) X(UInt, 4, unsigned int) \
    X(Int64, 5, int64_t) X(UInt64, 6, uint64_t) X(Half, 7, GfHalf) X(Float, 8, float) X(Double, 9, double) \
    X(String, 10, std::string) X(Token, 11, TfToken) X(AssetPath, 12, SdfAssetPath) \
    X(Matrix2d, 13, GfMatrix2d) X(Matrix3d, 14, GfMatrix3d) X(Matrix4d, 15, GfMatrix4d) \
    X(Quatd, 16, GfQuatd) X(Quatf, 17, GfQuatf) X(Quath, 18, GfQuath) \
    X(Vec2d, 19, GfVec2d) X(Vec2f, 20, GfVec2f) X(Vec2h, 21, GfVec2h) X(Vec2i, 22, GfVec2i) \
    X(Vec3d, 23, GfVec3d) X(Vec3f, 24, GfVec3f) X(Vec3h, 25, GfVec3h) X(Vec3i, 26, GfVec3i) \
    X(Vec4d, 27, GfVec4d) X(Vec4f, 28, GfVec4f) X(Vec4h, 29, GfVec4h) X(Vec4i, 30, GfVec4i) \
    X(TimeCode, 56, SdfTimeCode)
#define SDF_CRATE_SINGLE_TYPES(X) \
    X(Dictionary, 31, VtDictionary) \
    X(TokenListOp, 32, SdfTokenListOp) X(StringListOp, 33, SdfStringListOp) X(PathListOp, 34, SdfPathListOp) \
    X(ReferenceListOp, 35, SdfReferenceListOp) X(IntListOp, 36, SdfIntListOp) \
    X(Int64ListOp, 37, SdfInt64ListOp) X(UIntListOp, 38, SdfUIntListOp) X(UInt64ListOp, 39, SdfUInt64ListOp) \
    X(PathVector, 40, SdfPathVector) X(TokenVector, 41, TfTokenVector) \
    X(Specifier, 42, SdfSpecifier) X(Permission, 43, SdfPermission) X(Variability, 44, SdfVariability) \
    X(VariantSelectionMap, 45, SdfVariantSelectionMap) X(Payload, 47, SdfPayload) \
    X(DoubleVector, 48, std::vector<double>) X(LayerOffsetVector, 49, SdfLayerOffsetVector) \
    X(StringVector, 50, std::vector<std::string>) X(ValueBlock, 51, SdfValueBlock) X(Value, 52, VtValue) \
    X(UnregisteredValue, 53, SdfUnregisteredValue) \
    X(UnregisteredValueListOp, 54, SdfUnregisteredValueListOp) X(PayloadListOp, 55, SdfPayloadListOp) \
    X(Relocates, 58, SdfRelocates)
/// @}
// clang-format on

/// The numbers of the value types in the file.
enum class Sdf_CrateType : uint8_t
{
    Invalid = 0,
#define SDF_CRATE_ENUM(Name, number, type) Name = number,
    SDF_CRATE_ARRAY_TYPES(SDF_CRATE_ENUM) SDF_CRATE_SINGLE_TYPES(SDF_CRATE_ENUM)
#undef SDF_CRATE_ENUM
        TimeSamples = 46,
    PathExpression = 57,
    Spline = 59
};

/// A value as fields and samples refer to it: its type, and either the value itself or where it lies.
class Sdf_CrateRep
{
public:
    constexpr Sdf_CrateRep() = default;
    constexpr explicit Sdf_CrateRep(uint64_t bits) : _bits(bits) {}
    constexpr Sdf_CrateRep(Sdf_CrateType type, uint64_t flags, uint64_t payload)
        : _bits(flags | uint64_t(type) << 48 | (payload & kPayloadMask))
    {}

    static constexpr uint64_t kArray = uint64_t(1) << 63;
    static constexpr uint64_t kInlined = uint64_t(1) << 62;
    static constexpr uint64_t kCompressed = uint64_t(1) << 61;
    static constexpr uint64_t kPayloadMask = (uint64_t(1) << 48) - 1;

    uint64_t GetBits() const { return _bits; }
    bool IsArray() const { return (_bits & kArray) != 0; }
    bool IsInlined() const { return (_bits & kInlined) != 0; }
    bool IsCompressed() const { return (_bits & kCompressed) != 0; }
    Sdf_CrateType GetType() const { return static_cast<Sdf_CrateType>(_bits >> 48 & 0xff); }
    uint64_t GetPayload() const { return _bits & kPayloadMask; }
    uint32_t GetInlinedBits() const { return static_cast<uint32_t>(_bits); }

    bool operator==(Sdf_CrateRep o) const { return _bits == o._bits; }
    bool operator!=(Sdf_CrateRep o) const { return _bits != o._bits; }
    friend size_t hash_value(Sdf_CrateRep rep) { return std::hash<uint64_t>()(rep._bits); }

private:
    uint64_t _bits = 0;
};

/// Says whether a T lies in the file as it lies in memory.
template <class T>
constexpr bool Sdf_CrateIsPlain = (std::is_arithmetic_v<T> || std::is_same_v<T, GfHalf> ||
                                   GfIsGfVec<T>::value || GfIsGfMatrix<T>::value || GfIsGfQuat<T>::value ||
                                   std::is_enum_v<T>)&&!std::is_same_v<T, bool>;

/// Says whether a T always lies in the reference to it: as its bytes, or as an index.
template <class T>
constexpr bool Sdf_CrateIsAlwaysInlined =
    (Sdf_CrateIsPlain<T> && sizeof(T) <= 4) || std::is_same_v<T, bool> || std::is_same_v<T, std::string> ||
    std::is_same_v<T, TfToken> || std::is_same_v<T, SdfAssetPath> || std::is_same_v<T, SdfValueBlock>;

/// The type number of a C++ type.
template <class T>
constexpr Sdf_CrateType Sdf_CrateTypeOf = Sdf_CrateType::Invalid;
#define SDF_CRATE_TYPE_OF(Name, number, type)                                                                \
    template <>                                                                                              \
    inline constexpr Sdf_CrateType Sdf_CrateTypeOf<type> = Sdf_CrateType::Name;
SDF_CRATE_ARRAY_TYPES(SDF_CRATE_TYPE_OF)
SDF_CRATE_SINGLE_TYPES(SDF_CRATE_TYPE_OF)
#undef SDF_CRATE_TYPE_OF

/// What the first byte of a list op says about the lists that follow.
enum Sdf_CrateListOpBits : uint8_t
{
    Sdf_CrateListOpIsExplicit = 1,
    Sdf_CrateListOpHasExplicit = 2,
    Sdf_CrateListOpHasAdded = 4,
    Sdf_CrateListOpHasDeleted = 8,
    Sdf_CrateListOpHasOrdered = 16,
    Sdf_CrateListOpHasPrepended = 32,
    Sdf_CrateListOpHasAppended = 64
};

PXR_NAMESPACE_CLOSE_SCOPE
