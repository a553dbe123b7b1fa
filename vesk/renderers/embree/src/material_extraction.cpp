#include "material_extraction.h"

#include "stage_reading.h"

#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/stage.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

constexpr int kMaxConnections = 32;

// Follows connections from an attribute to the one that holds the value; a chain that is too long is a cycle.
UsdAttribute sourceOf(UsdAttribute attribute)
{
    for (int i = 0; attribute && i < kMaxConnections; ++i) {
        SdfPathVector sources;
        attribute.GetConnections(&sources);
        if (sources.empty()) return attribute;
        attribute = attribute.GetStage()->GetAttributeAtPath(sources.front());
    }
    return {};
}

UsdPrim surfaceShader(const UsdPrim& material)
{
    for (const char* name : {"outputs:surface", "outputs:glslfx:surface"}) {
        const UsdAttribute output = material.GetAttribute(TfToken(name));
        if (!output) continue;
        const UsdAttribute source = sourceOf(output);
        if (source && source.GetPrim() != material) return source.GetPrim();
    }
    return {};
}

template <class T>
std::optional<T> readInput(const UsdPrim& shader, const char* name, UsdTimeCode time)
{
    const UsdAttribute source = sourceOf(shader.GetAttribute(TfToken(name)));
    T value;
    if (!source || !source.Get(&value, time)) return std::nullopt;
    return value;
}

// True where the input is the prim's display colour by way of a primvar reader.
bool readsDisplayColor(const UsdPrim& shader, const char* name)
{
    const UsdAttribute source = sourceOf(shader.GetAttribute(TfToken(name)));
    if (!source || source.GetPrim() == shader) return false;
    const UsdPrim reader = source.GetPrim();
    if (readAttribute(reader, "info:id", UsdTimeCode::Default(), TfToken()) != "UsdPrimvarReader_float3")
        return false;
    const UsdAttribute varname = sourceOf(reader.GetAttribute(TfToken("inputs:varname")));
    std::string text;
    TfToken token;
    if (varname && varname.Get(&text)) return text == "displayColor";
    return varname && varname.Get(&token) && token == "displayColor";
}

} // namespace

std::optional<Material> readMaterial(const UsdPrim& prim, UsdTimeCode time)
{
    if (!prim) return std::nullopt;
    const UsdPrim shader = surfaceShader(prim);
    if (!shader || readAttribute(shader, "info:id", time, TfToken()) != "UsdPreviewSurface")
        return std::nullopt;
    Material material;
    material.usesDisplayColor = readsDisplayColor(shader, "inputs:diffuseColor");
    material.diffuse = Vec3(0.18f);
    if (const auto color = readInput<GfVec3f>(shader, "inputs:diffuseColor", time))
        material.diffuse = Vec3(*color);
    if (const auto color = readInput<GfVec3f>(shader, "inputs:emissiveColor", time))
        material.emission = Vec3(*color);
    if (const auto v = readInput<float>(shader, "inputs:roughness", time)) material.roughness = *v;
    if (const auto v = readInput<float>(shader, "inputs:metallic", time)) material.metallic = *v;
    if (const auto v = readInput<float>(shader, "inputs:opacity", time)) material.opacity = *v;
    return material;
}

} // namespace vesk::renderers::embree
