#include <pxr/usd/sdf/valueTypeNames.h>

#include "pxr/usd/sdf/values/valueTypeRegistry.h"

PXR_NAMESPACE_OPEN_SCOPE

TfStaticData<const Sdf_ValueTypeNamesType, Sdf_ValueTypeNamesType::_Init> SdfValueTypeNames;

const Sdf_ValueTypeNamesType* Sdf_ValueTypeNamesType::_Init::New()
{
    const Sdf_ValueTypeRegistry& registry = Sdf_ValueTypeRegistry::GetInstance();
    auto* names = new Sdf_ValueTypeNamesType;
    const std::pair<SdfValueTypeName Sdf_ValueTypeNamesType::*, const char*> table[] = {
        {&Sdf_ValueTypeNamesType::Bool, "bool"},
        {&Sdf_ValueTypeNamesType::UChar, "uchar"},
        {&Sdf_ValueTypeNamesType::Int, "int"},
        {&Sdf_ValueTypeNamesType::UInt, "uint"},
        {&Sdf_ValueTypeNamesType::Int64, "int64"},
        {&Sdf_ValueTypeNamesType::UInt64, "uint64"},
        {&Sdf_ValueTypeNamesType::Half, "half"},
        {&Sdf_ValueTypeNamesType::Float, "float"},
        {&Sdf_ValueTypeNamesType::Double, "double"},
        {&Sdf_ValueTypeNamesType::TimeCode, "timecode"},
        {&Sdf_ValueTypeNamesType::String, "string"},
        {&Sdf_ValueTypeNamesType::Token, "token"},
        {&Sdf_ValueTypeNamesType::Asset, "asset"},
        {&Sdf_ValueTypeNamesType::Int2, "int2"},
        {&Sdf_ValueTypeNamesType::Int3, "int3"},
        {&Sdf_ValueTypeNamesType::Int4, "int4"},
        {&Sdf_ValueTypeNamesType::Half2, "half2"},
        {&Sdf_ValueTypeNamesType::Half3, "half3"},
        {&Sdf_ValueTypeNamesType::Half4, "half4"},
        {&Sdf_ValueTypeNamesType::Float2, "float2"},
        {&Sdf_ValueTypeNamesType::Float3, "float3"},
        {&Sdf_ValueTypeNamesType::Float4, "float4"},
        {&Sdf_ValueTypeNamesType::Double2, "double2"},
        {&Sdf_ValueTypeNamesType::Double3, "double3"},
        {&Sdf_ValueTypeNamesType::Double4, "double4"},
        {&Sdf_ValueTypeNamesType::Point3h, "point3h"},
        {&Sdf_ValueTypeNamesType::Point3f, "point3f"},
        {&Sdf_ValueTypeNamesType::Point3d, "point3d"},
        {&Sdf_ValueTypeNamesType::Vector3h, "vector3h"},
        {&Sdf_ValueTypeNamesType::Vector3f, "vector3f"},
        {&Sdf_ValueTypeNamesType::Vector3d, "vector3d"},
        {&Sdf_ValueTypeNamesType::Normal3h, "normal3h"},
        {&Sdf_ValueTypeNamesType::Normal3f, "normal3f"},
        {&Sdf_ValueTypeNamesType::Normal3d, "normal3d"},
        {&Sdf_ValueTypeNamesType::Color3h, "color3h"},
        {&Sdf_ValueTypeNamesType::Color3f, "color3f"},
        {&Sdf_ValueTypeNamesType::Color3d, "color3d"},
        {&Sdf_ValueTypeNamesType::Color4h, "color4h"},
        {&Sdf_ValueTypeNamesType::Color4f, "color4f"},
        {&Sdf_ValueTypeNamesType::Color4d, "color4d"},
        {&Sdf_ValueTypeNamesType::Quath, "quath"},
        {&Sdf_ValueTypeNamesType::Quatf, "quatf"},
        {&Sdf_ValueTypeNamesType::Quatd, "quatd"},
        {&Sdf_ValueTypeNamesType::Matrix2d, "matrix2d"},
        {&Sdf_ValueTypeNamesType::Matrix3d, "matrix3d"},
        {&Sdf_ValueTypeNamesType::Matrix4d, "matrix4d"},
        {&Sdf_ValueTypeNamesType::Frame4d, "frame4d"},
        {&Sdf_ValueTypeNamesType::TexCoord2h, "texCoord2h"},
        {&Sdf_ValueTypeNamesType::TexCoord2f, "texCoord2f"},
        {&Sdf_ValueTypeNamesType::TexCoord2d, "texCoord2d"},
        {&Sdf_ValueTypeNamesType::TexCoord3h, "texCoord3h"},
        {&Sdf_ValueTypeNamesType::TexCoord3f, "texCoord3f"},
        {&Sdf_ValueTypeNamesType::TexCoord3d, "texCoord3d"},
        {&Sdf_ValueTypeNamesType::Opaque, "opaque"},
        {&Sdf_ValueTypeNamesType::Group, "group"},
        {&Sdf_ValueTypeNamesType::BoolArray, "bool[]"},
        {&Sdf_ValueTypeNamesType::UCharArray, "uchar[]"},
        {&Sdf_ValueTypeNamesType::IntArray, "int[]"},
        {&Sdf_ValueTypeNamesType::UIntArray, "uint[]"},
        {&Sdf_ValueTypeNamesType::Int64Array, "int64[]"},
        {&Sdf_ValueTypeNamesType::UInt64Array, "uint64[]"},
        {&Sdf_ValueTypeNamesType::HalfArray, "half[]"},
        {&Sdf_ValueTypeNamesType::FloatArray, "float[]"},
        {&Sdf_ValueTypeNamesType::DoubleArray, "double[]"},
        {&Sdf_ValueTypeNamesType::TimeCodeArray, "timecode[]"},
        {&Sdf_ValueTypeNamesType::StringArray, "string[]"},
        {&Sdf_ValueTypeNamesType::TokenArray, "token[]"},
        {&Sdf_ValueTypeNamesType::AssetArray, "asset[]"},
        {&Sdf_ValueTypeNamesType::Int2Array, "int2[]"},
        {&Sdf_ValueTypeNamesType::Int3Array, "int3[]"},
        {&Sdf_ValueTypeNamesType::Int4Array, "int4[]"},
        {&Sdf_ValueTypeNamesType::Half2Array, "half2[]"},
        {&Sdf_ValueTypeNamesType::Half3Array, "half3[]"},
        {&Sdf_ValueTypeNamesType::Half4Array, "half4[]"},
        {&Sdf_ValueTypeNamesType::Float2Array, "float2[]"},
        {&Sdf_ValueTypeNamesType::Float3Array, "float3[]"},
        {&Sdf_ValueTypeNamesType::Float4Array, "float4[]"},
        {&Sdf_ValueTypeNamesType::Double2Array, "double2[]"},
        {&Sdf_ValueTypeNamesType::Double3Array, "double3[]"},
        {&Sdf_ValueTypeNamesType::Double4Array, "double4[]"},
        {&Sdf_ValueTypeNamesType::Point3hArray, "point3h[]"},
        {&Sdf_ValueTypeNamesType::Point3fArray, "point3f[]"},
        {&Sdf_ValueTypeNamesType::Point3dArray, "point3d[]"},
        {&Sdf_ValueTypeNamesType::Vector3hArray, "vector3h[]"},
        {&Sdf_ValueTypeNamesType::Vector3fArray, "vector3f[]"},
        {&Sdf_ValueTypeNamesType::Vector3dArray, "vector3d[]"},
        {&Sdf_ValueTypeNamesType::Normal3hArray, "normal3h[]"},
        {&Sdf_ValueTypeNamesType::Normal3fArray, "normal3f[]"},
        {&Sdf_ValueTypeNamesType::Normal3dArray, "normal3d[]"},
        {&Sdf_ValueTypeNamesType::Color3hArray, "color3h[]"},
        {&Sdf_ValueTypeNamesType::Color3fArray, "color3f[]"},
        {&Sdf_ValueTypeNamesType::Color3dArray, "color3d[]"},
        {&Sdf_ValueTypeNamesType::Color4hArray, "color4h[]"},
        {&Sdf_ValueTypeNamesType::Color4fArray, "color4f[]"},
        {&Sdf_ValueTypeNamesType::Color4dArray, "color4d[]"},
        {&Sdf_ValueTypeNamesType::QuathArray, "quath[]"},
        {&Sdf_ValueTypeNamesType::QuatfArray, "quatf[]"},
        {&Sdf_ValueTypeNamesType::QuatdArray, "quatd[]"},
        {&Sdf_ValueTypeNamesType::Matrix2dArray, "matrix2d[]"},
        {&Sdf_ValueTypeNamesType::Matrix3dArray, "matrix3d[]"},
        {&Sdf_ValueTypeNamesType::Matrix4dArray, "matrix4d[]"},
        {&Sdf_ValueTypeNamesType::Frame4dArray, "frame4d[]"},
        {&Sdf_ValueTypeNamesType::TexCoord2hArray, "texCoord2h[]"},
        {&Sdf_ValueTypeNamesType::TexCoord2fArray, "texCoord2f[]"},
        {&Sdf_ValueTypeNamesType::TexCoord2dArray, "texCoord2d[]"},
        {&Sdf_ValueTypeNamesType::TexCoord3hArray, "texCoord3h[]"},
        {&Sdf_ValueTypeNamesType::TexCoord3fArray, "texCoord3f[]"},
        {&Sdf_ValueTypeNamesType::TexCoord3dArray, "texCoord3d[]"},
    };
    for (const auto& [member, name] : table) {
        names->*member = registry.Find(TfToken(name));
    }
    return names;
}

TfToken Sdf_ValueTypeNamesType::GetSerializationName(const SdfValueTypeName& typeName) const
{
    const std::vector<TfToken> names = typeName.GetAliasesAsTokens();
    return names.empty() ? typeName.GetAsToken() : names.front();
}

TfToken Sdf_ValueTypeNamesType::GetSerializationName(const VtValue& value) const
{
    return GetSerializationName(Sdf_ValueTypeRegistry::GetInstance().Find(value.GetType(), TfToken()));
}

TfToken Sdf_ValueTypeNamesType::GetSerializationName(const TfToken& typeName) const
{
    const SdfValueTypeName found = Sdf_ValueTypeRegistry::GetInstance().Find(typeName);
    return found ? GetSerializationName(found) : typeName;
}

PXR_NAMESPACE_CLOSE_SCOPE
