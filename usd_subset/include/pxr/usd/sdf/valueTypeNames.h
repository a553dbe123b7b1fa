#pragma once

/// The standard type names and roles. Included by types.h.

#include <pxr/base/tf/staticData.h>
#include <pxr/base/tf/staticTokens.h>
#include <pxr/base/tf/token.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/valueTypeName.h>

PXR_NAMESPACE_OPEN_SCOPE

class VtValue;

// clang-format off
#define SDF_VALUE_ROLE_NAME_TOKENS \
    (Point) (Normal) (Vector) (Color) (Frame) (Transform) \
    (PointIndex) (EdgeIndex) (FaceIndex) (Group) (TextureCoordinate)
// clang-format on

TF_DECLARE_PUBLIC_TOKENS(SdfValueRoleNames, VESK_USD_API, SDF_VALUE_ROLE_NAME_TOKENS);

/// The standard type names: SdfValueTypeNames->Point3f, ->Float3Array, ...
class Sdf_ValueTypeNamesType
{
public:
    SdfValueTypeName Bool;
    SdfValueTypeName UChar, Int, UInt, Int64, UInt64;
    SdfValueTypeName Half, Float, Double, TimeCode;
    SdfValueTypeName String, Token, Asset;
    SdfValueTypeName Int2, Int3, Int4;
    SdfValueTypeName Half2, Half3, Half4;
    SdfValueTypeName Float2, Float3, Float4;
    SdfValueTypeName Double2, Double3, Double4;
    SdfValueTypeName Point3h, Point3f, Point3d;
    SdfValueTypeName Vector3h, Vector3f, Vector3d;
    SdfValueTypeName Normal3h, Normal3f, Normal3d;
    SdfValueTypeName Color3h, Color3f, Color3d;
    SdfValueTypeName Color4h, Color4f, Color4d;
    SdfValueTypeName Quath, Quatf, Quatd;
    SdfValueTypeName Matrix2d, Matrix3d, Matrix4d;
    SdfValueTypeName Frame4d;
    SdfValueTypeName TexCoord2h, TexCoord2f, TexCoord2d;
    SdfValueTypeName TexCoord3h, TexCoord3f, TexCoord3d;
    SdfValueTypeName Opaque;
    SdfValueTypeName Group;

    SdfValueTypeName BoolArray;
    SdfValueTypeName UCharArray, IntArray, UIntArray, Int64Array, UInt64Array;
    SdfValueTypeName HalfArray, FloatArray, DoubleArray, TimeCodeArray;
    SdfValueTypeName StringArray, TokenArray, AssetArray;
    SdfValueTypeName Int2Array, Int3Array, Int4Array;
    SdfValueTypeName Half2Array, Half3Array, Half4Array;
    SdfValueTypeName Float2Array, Float3Array, Float4Array;
    SdfValueTypeName Double2Array, Double3Array, Double4Array;
    SdfValueTypeName Point3hArray, Point3fArray, Point3dArray;
    SdfValueTypeName Vector3hArray, Vector3fArray, Vector3dArray;
    SdfValueTypeName Normal3hArray, Normal3fArray, Normal3dArray;
    SdfValueTypeName Color3hArray, Color3fArray, Color3dArray;
    SdfValueTypeName Color4hArray, Color4fArray, Color4dArray;
    SdfValueTypeName QuathArray, QuatfArray, QuatdArray;
    SdfValueTypeName Matrix2dArray, Matrix3dArray, Matrix4dArray;
    SdfValueTypeName Frame4dArray;
    SdfValueTypeName TexCoord2hArray, TexCoord2fArray, TexCoord2dArray;
    SdfValueTypeName TexCoord3hArray, TexCoord3fArray, TexCoord3dArray;

    Sdf_ValueTypeNamesType(const Sdf_ValueTypeNamesType&) = delete;
    Sdf_ValueTypeNamesType& operator=(const Sdf_ValueTypeNamesType&) = delete;

    /// Returns the name under which files keep the type.
    VESK_USD_API TfToken GetSerializationName(const SdfValueTypeName& typeName) const;
    VESK_USD_API TfToken GetSerializationName(const VtValue& value) const;
    VESK_USD_API TfToken GetSerializationName(const TfToken& typeName) const;

    struct _Init
    {
        VESK_USD_API static const Sdf_ValueTypeNamesType* New();
    };

private:
    Sdf_ValueTypeNamesType() = default;
};

extern VESK_USD_API TfStaticData<const Sdf_ValueTypeNamesType, Sdf_ValueTypeNamesType::_Init>
    SdfValueTypeNames;

PXR_NAMESPACE_CLOSE_SCOPE
