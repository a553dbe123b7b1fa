#pragma once

/// The small types of scene description.

#include <pxr/base/gf/declare.h>
#include <pxr/base/gf/half.h>
#include <pxr/base/gf/homogeneous.h>
#include <pxr/base/gf/limits.h>
#include <pxr/base/gf/math.h>
#include <pxr/base/gf/matrix2d.h>
#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/matrixData.h>
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
#include <pxr/base/tf/enum.h>
#include <pxr/base/tf/staticTokens.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/tf/type.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/types.h>
#include <pxr/base/vt/value.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/opaqueValue.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/timeCode.h>
#include <pxr/usd/sdf/valueTypeName.h>
#include <pxr/usd/sdf/valueTypeNames.h>

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class SdfPath;

enum SdfSpecType
{
    SdfSpecTypeUnknown = 0,
    SdfSpecTypeAttribute,
    SdfSpecTypeConnection,
    SdfSpecTypeExpression,
    SdfSpecTypeMapper,
    SdfSpecTypeMapperArg,
    SdfSpecTypePrim,
    SdfSpecTypePseudoRoot,
    SdfSpecTypeRelationship,
    SdfSpecTypeRelationshipTarget,
    SdfSpecTypeVariant,
    SdfSpecTypeVariantSet,
    SdfNumSpecTypes
};

enum SdfSpecifier
{
    SdfSpecifierDef,
    SdfSpecifierOver,
    SdfSpecifierClass,
    SdfNumSpecifiers
};

/// Returns whether prims with this specifier are defined.
inline bool SdfIsDefiningSpecifier(SdfSpecifier specifier) { return specifier != SdfSpecifierOver; }

enum SdfPermission
{
    SdfPermissionPublic,
    SdfPermissionPrivate,
    SdfNumPermissions
};

enum SdfVariability
{
    SdfVariabilityVarying,
    SdfVariabilityUniform,
    SdfNumVariabilities
};

enum SdfAuthoringError
{
    SdfAuthoringErrorUnrecognizedFields,
    SdfAuthoringErrorUnrecognizedSpecType
};

enum SdfLengthUnit
{
    SdfLengthUnitMillimeter,
    SdfLengthUnitCentimeter,
    SdfLengthUnitDecimeter,
    SdfLengthUnitMeter,
    SdfLengthUnitKilometer,
    SdfLengthUnitInch,
    SdfLengthUnitFoot,
    SdfLengthUnitYard,
    SdfLengthUnitMile
};

enum SdfAngularUnit
{
    SdfAngularUnitDegrees,
    SdfAngularUnitRadians
};

enum SdfDimensionlessUnit
{
    SdfDimensionlessUnitPercent,
    SdfDimensionlessUnitDefault
};

typedef std::map<std::string, VtValue> SdfMapperParametersMap;
typedef std::map<std::string, std::string> SdfVariantSelectionMap;
typedef std::map<std::string, std::vector<std::string>> SdfVariantsMap;
typedef std::map<SdfPath, SdfPath> SdfRelocatesMap;
typedef std::pair<SdfPath, SdfPath> SdfRelocate;
typedef std::vector<SdfRelocate> SdfRelocates;
typedef std::map<double, VtValue> SdfTimeSampleMap;

/// Returns whether the value is of a type that attributes may have.
VESK_USD_API bool SdfValueHasValidType(VtValue const& value);
/// Returns the C++ type of a type name, the unknown type for no such name.
VESK_USD_API TfType SdfGetTypeForValueTypeName(TfToken const& name);
/// Returns the type name without a role that the value's type has, the empty name for none.
VESK_USD_API SdfValueTypeName SdfGetValueTypeNameForValue(VtValue const& value);
VESK_USD_API TfToken SdfGetRoleNameForValueTypeName(TfToken const& typeName);

/// \name The types that attributes may have: each calls X(Name, text name, C++ type)
/// @{
#define SDF_FOR_EACH_SCALAR_VALUE_TYPE(X)                                                                    \
    X(Bool, bool, bool)                                                                                      \
    X(UChar, uchar, unsigned char)                                                                           \
    X(Int, int, int)                                                                                         \
    X(UInt, uint, unsigned int)                                                                              \
    X(Int64, int64, int64_t)                                                                                 \
    X(UInt64, uint64, uint64_t)                                                                              \
    X(Half, half, GfHalf)                                                                                    \
    X(Float, float, float)                                                                                   \
    X(Double, double, double)                                                                                \
    X(TimeCode, timecode, SdfTimeCode)                                                                       \
    X(String, string, std::string)                                                                           \
    X(Token, token, TfToken)                                                                                 \
    X(Asset, asset, SdfAssetPath)                                                                            \
    X(Opaque, opaque, SdfOpaqueValue)
#define SDF_FOR_EACH_DIMENSIONED_VALUE_TYPE(X)                                                               \
    X(Matrix2d, matrix2d, GfMatrix2d)                                                                        \
    X(Matrix3d, matrix3d, GfMatrix3d)                                                                        \
    X(Matrix4d, matrix4d, GfMatrix4d)                                                                        \
    X(Quath, quath, GfQuath)                                                                                 \
    X(Quatf, quatf, GfQuatf)                                                                                 \
    X(Quatd, quatd, GfQuatd)                                                                                 \
    X(Int2, int2, GfVec2i)                                                                                   \
    X(Half2, half2, GfVec2h)                                                                                 \
    X(Float2, float2, GfVec2f)                                                                               \
    X(Double2, double2, GfVec2d)                                                                             \
    X(Int3, int3, GfVec3i)                                                                                   \
    X(Half3, half3, GfVec3h)                                                                                 \
    X(Float3, float3, GfVec3f)                                                                               \
    X(Double3, double3, GfVec3d)                                                                             \
    X(Int4, int4, GfVec4i)                                                                                   \
    X(Half4, half4, GfVec4h)                                                                                 \
    X(Float4, float4, GfVec4f)                                                                               \
    X(Double4, double4, GfVec4d)
#define SDF_FOR_EACH_VALUE_TYPE(X) SDF_FOR_EACH_SCALAR_VALUE_TYPE(X) SDF_FOR_EACH_DIMENSIONED_VALUE_TYPE(X)
/// @}

/// Says of a C++ type whether attributes may have it.
template <class T>
struct SdfValueTypeTraits
{
    static constexpr bool IsValueType = false;
};
template <int N>
struct SdfValueTypeTraits<char[N]>
{
    static constexpr bool IsValueType = true;
};
#define SDF_DECLARE_VALUE_TYPE_TRAITS(Name, name, type)                                                      \
    template <>                                                                                              \
    struct SdfValueTypeTraits<type>                                                                          \
    {                                                                                                        \
        static constexpr bool IsValueType = true;                                                            \
    };                                                                                                       \
    template <>                                                                                              \
    struct SdfValueTypeTraits<VtArray<type>>                                                                 \
    {                                                                                                        \
        static constexpr bool IsValueType = true;                                                            \
    };
SDF_FOR_EACH_VALUE_TYPE(SDF_DECLARE_VALUE_TYPE_TRAITS)
#undef SDF_DECLARE_VALUE_TYPE_TRAITS

/// Makes a dictionary fit for metadata: vectors of values become arrays of the type of their first element.
/// On failure returns false, says why, and leaves out what does not fit.
VESK_USD_API bool SdfConvertToValidMetadataDictionary(VtDictionary* dictionary, std::string* errMsg);

SDF_DECLARE_HANDLES(SdfLayer);
SDF_DECLARE_HANDLES(SdfAttributeSpec);
SDF_DECLARE_HANDLES(SdfPrimSpec);
SDF_DECLARE_HANDLES(SdfPropertySpec);
SDF_DECLARE_HANDLES(SdfSpec);
SDF_DECLARE_HANDLES(SdfRelationshipSpec);
SDF_DECLARE_HANDLES(SdfVariantSetSpec);
SDF_DECLARE_HANDLES(SdfVariantSpec);
typedef std::map<std::string, SdfVariantSetSpecHandle> SdfVariantSetSpecHandleMap;

VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfSpecifier& specifier);
VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfRelocatesMap& relocates);
VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfRelocates& relocates);
VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfTimeSampleMap& samples);
VESK_USD_API std::ostream& VtStreamOut(const SdfVariantSelectionMap& selections, std::ostream& out);

/// A value of a metadata field that no schema knows, kept so that it can be written back.
class SdfUnregisteredValue
{
public:
    SdfUnregisteredValue() = default;
    VESK_USD_API explicit SdfUnregisteredValue(const std::string& text);
    VESK_USD_API explicit SdfUnregisteredValue(const VtDictionary& dictionary);
    VESK_USD_API explicit SdfUnregisteredValue(const SdfUnregisteredValueListOp& listOp);

    /// Returns a string, a VtDictionary, or an SdfUnregisteredValueListOp.
    const VtValue& GetValue() const { return _value; }

    friend size_t hash_value(const SdfUnregisteredValue& value) { return value._value.GetHash(); }
    bool operator==(const SdfUnregisteredValue& other) const { return _value == other._value; }
    bool operator!=(const SdfUnregisteredValue& other) const { return !(*this == other); }

private:
    VtValue _value;
};

VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfUnregisteredValue& value);

/// The value that says that there is none: it blocks weaker values.
struct SdfValueBlock
{
    bool operator==(const SdfValueBlock&) const { return true; }
    bool operator!=(const SdfValueBlock&) const { return false; }
    friend size_t hash_value(const SdfValueBlock&) { return 0; }
};

VESK_USD_API std::ostream& operator<<(std::ostream& out, SdfValueBlock const& block);

/// Stands, in text for people, for a value that is too long to be written.
struct SdfHumanReadableValue
{
    SdfHumanReadableValue() = default;
    explicit SdfHumanReadableValue(std::string const& text) : _text(text) {}

    bool operator==(SdfHumanReadableValue const& other) const { return _text == other._text; }
    bool operator!=(SdfHumanReadableValue const& other) const { return !(*this == other); }
    friend size_t hash_value(const SdfHumanReadableValue& value) { return TfHash()(value._text); }
    std::string const& GetText() const { return _text; }

private:
    std::string _text;
};

VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfHumanReadableValue& value);

PXR_NAMESPACE_CLOSE_SCOPE
