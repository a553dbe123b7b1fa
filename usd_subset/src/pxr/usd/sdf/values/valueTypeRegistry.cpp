#include "pxr/usd/sdf/values/valueTypeRegistry.h"

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
#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/types.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// Points, vectors and normals are lengths in meters.
TfEnum UnitOfRole(const TfToken& role)
{
    const bool isLength = role == SdfValueRoleNames->Point || role == SdfValueRoleNames->Vector ||
                          role == SdfValueRoleNames->Normal;
    return isLength ? TfEnum(SdfLengthUnitMeter) : TfEnum(SdfDimensionlessUnitDefault);
}

} // namespace

Sdf_ValueTypeRegistry& Sdf_ValueTypeRegistry::GetInstance()
{
    static Sdf_ValueTypeRegistry* const registry = new Sdf_ValueTypeRegistry;
    return *registry;
}

Sdf_ValueTypeRegistry::Sdf_ValueTypeRegistry()
{
    _AddStandardTypes();
    _AddLegacyTypes();
}

template <class T>
void Sdf_ValueTypeRegistry::_Add(const char* name, const T& value, SdfTupleDimensions dimensions,
                                 const TfToken& role, const char* cppTypeName)
{
    VtValue array;
    if constexpr (!std::is_same_v<T, SdfOpaqueValue>) {
        array = VtArray<T>();
    }
    const std::string cppName = cppTypeName ? cppTypeName : TfType::GetCanonicalTypeName(typeid(T));
    _Add(Definition{name, VtValue(value), array, cppName, role, dimensions, UnitOfRole(role)});
}

void Sdf_ValueTypeRegistry::_Add(const Definition& definition)
{
    Sdf_ValueType* scalar = _AddName(definition.name, definition.value, definition.cppTypeName, definition);
    Sdf_ValueType* array = definition.arrayValue.IsEmpty()
                               ? nullptr
                               : _AddName(definition.name + std::string("[]"), definition.arrayValue,
                                          "VtArray<" + definition.cppTypeName + ">", definition);
    scalar->scalar = scalar;
    scalar->array = array;
    m_all.push_back(SdfValueTypeName(scalar));
    if (array) {
        array->scalar = scalar;
        array->array = array;
        m_all.push_back(SdfValueTypeName(array));
    }
}

Sdf_ValueType* Sdf_ValueTypeRegistry::_AddName(const std::string& name, const VtValue& value,
                                               const std::string& cppTypeName, const Definition& definition)
{
    const TfType type = TfType::Find(value.GetTypeid());
    Sdf_CoreType& core = m_cores[{type, definition.role}];
    if (core.aliases.empty()) {
        core.type = type;
        core.cppTypeName = cppTypeName;
        core.role = definition.role;
        core.dimensions = definition.dimensions;
        core.defaultValue = value;
        core.unit = definition.unit;
    }
    const TfToken token(name, TfToken::Immortal);
    core.aliases.push_back(token);
    Sdf_ValueType& named = m_types[token];
    named.name = token;
    named.core = &core;
    return &named;
}

void Sdf_ValueTypeRegistry::_AddStandardTypes()
{
    _Add("bool", false);
    _Add("uchar", uint8_t(0));
    _Add("int", 0);
    _Add("uint", 0u);
    _Add("int64", int64_t(0), {}, {}, "int64_t");
    _Add("uint64", uint64_t(0), {}, {}, "uint64_t");
    _Add("half", GfHalf(0.0f), {}, {}, "GfHalf");
    _Add("float", 0.0f);
    _Add("double", 0.0);
    _Add("timecode", SdfTimeCode());
    _Add("string", std::string(), {}, {}, "std::string");
    _Add("token", TfToken());
    _Add("asset", SdfAssetPath());
    _Add("opaque", SdfOpaqueValue());
    _Add("group", SdfOpaqueValue(), {}, SdfValueRoleNames->Group);

    _Add("double2", GfVec2d(0.0), 2);
    _Add("double3", GfVec3d(0.0), 3);
    _Add("double4", GfVec4d(0.0), 4);
    _Add("float2", GfVec2f(0.0f), 2);
    _Add("float3", GfVec3f(0.0f), 3);
    _Add("float4", GfVec4f(0.0f), 4);
    _Add("half2", GfVec2h(GfHalf(0.0f)), 2);
    _Add("half3", GfVec3h(GfHalf(0.0f)), 3);
    _Add("half4", GfVec4h(GfHalf(0.0f)), 4);
    _Add("int2", GfVec2i(0), 2);
    _Add("int3", GfVec3i(0), 3);
    _Add("int4", GfVec4i(0), 4);

    const std::pair<const char*, TfToken> roles[] = {{"point3", SdfValueRoleNames->Point},
                                                     {"vector3", SdfValueRoleNames->Vector},
                                                     {"normal3", SdfValueRoleNames->Normal},
                                                     {"color3", SdfValueRoleNames->Color}};
    for (const auto& [name, role] : roles) {
        _Add((std::string(name) + "h").c_str(), GfVec3h(GfHalf(0.0f)), 3, role);
        _Add((std::string(name) + "f").c_str(), GfVec3f(0.0f), 3, role);
        _Add((std::string(name) + "d").c_str(), GfVec3d(0.0), 3, role);
    }
    _Add("color4h", GfVec4h(GfHalf(0.0f)), 4, SdfValueRoleNames->Color);
    _Add("color4f", GfVec4f(0.0f), 4, SdfValueRoleNames->Color);
    _Add("color4d", GfVec4d(0.0), 4, SdfValueRoleNames->Color);
    _Add("quath", GfQuath(1.0f), 4);
    _Add("quatf", GfQuatf(1.0f), 4);
    _Add("quatd", GfQuatd(1.0), 4);
    _Add("matrix2d", GfMatrix2d(1.0), {2, 2});
    _Add("matrix3d", GfMatrix3d(1.0), {3, 3});
    _Add("matrix4d", GfMatrix4d(1.0), {4, 4});
    _Add("frame4d", GfMatrix4d(1.0), {4, 4}, SdfValueRoleNames->Frame);
    _Add("texCoord2f", GfVec2f(0.0f), 2, SdfValueRoleNames->TextureCoordinate);
    _Add("texCoord2d", GfVec2d(0.0), 2, SdfValueRoleNames->TextureCoordinate);
    _Add("texCoord2h", GfVec2h(GfHalf(0.0f)), 2, SdfValueRoleNames->TextureCoordinate);
    _Add("texCoord3f", GfVec3f(0.0f), 3, SdfValueRoleNames->TextureCoordinate);
    _Add("texCoord3d", GfVec3d(0.0), 3, SdfValueRoleNames->TextureCoordinate);
    _Add("texCoord3h", GfVec3h(GfHalf(0.0f)), 3, SdfValueRoleNames->TextureCoordinate);
}

/// Names that old files have.
void Sdf_ValueTypeRegistry::_AddLegacyTypes()
{
    _Add("Vec2i", GfVec2i(0), 2);
    _Add("Vec2h", GfVec2h(GfHalf(0.0f)), 2);
    _Add("Vec2f", GfVec2f(0.0f), 2);
    _Add("Vec2d", GfVec2d(0.0), 2);
    _Add("Vec3i", GfVec3i(0), 3);
    _Add("Vec3h", GfVec3h(GfHalf(0.0f)), 3);
    _Add("Vec3f", GfVec3f(0.0f), 3);
    _Add("Vec3d", GfVec3d(0.0), 3);
    _Add("Vec4i", GfVec4i(0), 4);
    _Add("Vec4h", GfVec4h(GfHalf(0.0f)), 4);
    _Add("Vec4f", GfVec4f(0.0f), 4);
    _Add("Vec4d", GfVec4d(0.0), 4);
    _Add("Point", GfVec3d(0.0), 3, SdfValueRoleNames->Point);
    _Add("PointFloat", GfVec3f(0.0f), 3, SdfValueRoleNames->Point);
    _Add("Normal", GfVec3d(0.0), 3, SdfValueRoleNames->Normal);
    _Add("NormalFloat", GfVec3f(0.0f), 3, SdfValueRoleNames->Normal);
    _Add("Vector", GfVec3d(0.0), 3, SdfValueRoleNames->Vector);
    _Add("VectorFloat", GfVec3f(0.0f), 3, SdfValueRoleNames->Vector);
    _Add("Color", GfVec3d(0.0), 3, SdfValueRoleNames->Color);
    _Add("ColorFloat", GfVec3f(0.0f), 3, SdfValueRoleNames->Color);
    _Add("Quath", GfQuath(1.0f), 4);
    _Add("Quatf", GfQuatf(1.0f), 4);
    _Add("Quatd", GfQuatd(1.0), 4);
    _Add("Matrix2d", GfMatrix2d(1.0), {2, 2});
    _Add("Matrix3d", GfMatrix3d(1.0), {3, 3});
    _Add("Matrix4d", GfMatrix4d(1.0), {4, 4});
    _Add("Frame", GfMatrix4d(1.0), {4, 4}, SdfValueRoleNames->Frame);
    _Add("Transform", GfMatrix4d(1.0), {4, 4}, SdfValueRoleNames->Transform);
    _Add("PointIndex", 0, {}, SdfValueRoleNames->PointIndex);
    _Add("EdgeIndex", 0, {}, SdfValueRoleNames->EdgeIndex);
    _Add("FaceIndex", 0, {}, SdfValueRoleNames->FaceIndex);
}

SdfValueTypeName Sdf_ValueTypeRegistry::Find(const TfToken& name) const
{
    const auto found = m_types.find(name);
    return found == m_types.end() ? SdfValueTypeName() : SdfValueTypeName(&found->second);
}

SdfValueTypeName Sdf_ValueTypeRegistry::Find(const TfType& type, const TfToken& role) const
{
    const auto found = m_cores.find({type, role});
    return found == m_cores.end() ? SdfValueTypeName() : Find(found->second.aliases.front());
}

SdfValueTypeName Sdf_ValueTypeRegistry::FindOrCreate(const TfToken& name)
{
    const SdfValueTypeName known = Find(name);
    if (known) {
        return known;
    }
    const std::lock_guard<std::mutex> lock(m_untypedMutex);
    auto& [core, type] = m_untyped[name];
    if (!type.core) {
        core.aliases.push_back(name);
        type = Sdf_ValueType{name, &core, &type, &type};
    }
    return SdfValueTypeName(&type);
}

PXR_NAMESPACE_CLOSE_SCOPE
