#include "material_extraction.h"

#include "network_reader.h"

#include <pxr/usd/usd/attribute.h>

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

UsdPrim shaderOf(const UsdAttribute& output, const UsdPrim& material)
{
    const UsdAttribute source = output ? sourceOf(output) : UsdAttribute();
    return source && source.GetPrim() != material ? source.GetPrim() : UsdPrim();
}

enum class SurfaceModel : std::uint8_t
{
    Unknown,
    Preview,
    Standard
};

SurfaceModel modelOf(const TfToken& id)
{
    if (id == "UsdPreviewSurface" || id == "ND_UsdPreviewSurface_surfaceshader") return SurfaceModel::Preview;
    const std::string& name = id.GetString();
    if (name == "ND_standard_surface_surfaceshader" || name == "standard_surface")
        return SurfaceModel::Standard;
    static const std::string suffix = ":standard_surface";
    const bool ends =
        name.size() > suffix.size() && name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0;
    return ends ? SurfaceModel::Standard : SurfaceModel::Unknown;
}

// The surface for every renderer first, then those that were made for one of them.
UsdPrim surfaceShader(const UsdPrim& material, const NetworkReader& reader)
{
    const auto known = [&reader](const UsdPrim& shader) {
        return shader && modelOf(reader.idOf(shader)) != SurfaceModel::Unknown;
    };
    for (const char* name : {"outputs:surface", "outputs:glslfx:surface", "outputs:mtlx:surface"}) {
        const UsdPrim shader = shaderOf(material.GetAttribute(TfToken(name)), material);
        if (known(shader)) return shader;
    }
    for (const UsdAttribute& attribute : material.GetAuthoredAttributes()) {
        const std::string& name = attribute.GetName().GetString();
        if (name.rfind("outputs:", 0) != 0 || attribute.GetBaseName() != "surface") continue;
        const UsdPrim shader = shaderOf(attribute, material);
        if (known(shader)) return shader;
    }
    return {};
}

void gatherPrimvars(Material& material)
{
    const auto add = [&material](const std::string& name) {
        if (!name.empty()) material.primvars.push_back(name);
    };
    for (const MaterialInput* input :
         {&material.diffuse, &material.emission, &material.specular, &material.roughness, &material.metallic,
          &material.opacity, &material.clearcoat, &material.clearcoatRoughness, &material.normal}) {
        add(input->primvar);
        if (input->texture) add(input->texture->primvar);
    }
    std::sort(material.primvars.begin(), material.primvars.end());
    material.primvars.erase(std::unique(material.primvars.begin(), material.primvars.end()),
                            material.primvars.end());
}

Material readPreviewSurface(const UsdPrim& shader, NetworkReader& reader)
{
    Material material;
    material.diffuse = reader.input(shader, "diffuseColor", MaterialInput::of(Vec3(0.18f)));
    material.emission = reader.input(shader, "emissiveColor", material.emission);
    material.specular = reader.input(shader, "specularColor", material.specular);
    material.roughness = reader.input(shader, "roughness", material.roughness);
    material.metallic = reader.input(shader, "metallic", material.metallic);
    material.opacity = reader.input(shader, "opacity", material.opacity);
    material.clearcoat = reader.input(shader, "clearcoat", material.clearcoat);
    material.clearcoatRoughness = reader.input(shader, "clearcoatRoughness", material.clearcoatRoughness);
    material.normal = reader.input(shader, "normal", material.normal);
    material.ior = reader.number(shader, "ior", material.ior);
    material.opacityThreshold = reader.number(shader, "opacityThreshold", 0.0f);
    material.specularWorkflow = reader.number(shader, "useSpecularWorkflow", 0.0f) > 0.5f;
    return material;
}

// A colour with a factor of its own, both of them as far as they are values.
MaterialInput weighted(const UsdPrim& shader, NetworkReader& reader, const char* weight, float usualWeight,
                       const char* color, Vec3 usualColor)
{
    MaterialInput result = reader.input(shader, color, MaterialInput::of(usualColor));
    const float factor = reader.number(shader, weight, usualWeight);
    for (int c = 0; c < 3; ++c)
        result.value.v[c] *= factor;
    // An image keeps its own brightness unless the factor puts it out.
    if (factor <= 0.0f) result = MaterialInput::of(Vec3(0.0f));
    return result;
}

// What of the standard surface a preview surface can say: base, metalness, roughness, coat, emission,
// opacity.
Material readStandardSurface(const UsdPrim& shader, NetworkReader& reader)
{
    Material material;
    material.diffuse = weighted(shader, reader, "base", 0.8f, "base_color", Vec3(1.0f));
    material.emission = weighted(shader, reader, "emission", 0.0f, "emission_color", Vec3(1.0f));
    material.metallic = reader.input(shader, "metalness", material.metallic);
    material.roughness = reader.input(shader, "specular_roughness", MaterialInput::of(0.2f));
    material.clearcoat = reader.input(shader, "coat", material.clearcoat);
    material.clearcoatRoughness = reader.input(shader, "coat_roughness", MaterialInput::of(0.1f));
    material.opacity = reader.input(shader, "opacity", material.opacity);
    material.ior = reader.number(shader, "specular_IOR", material.ior);
    // Without any specular weight there is nothing to be mirrored: an index of 1 says so.
    if (reader.number(shader, "specular", 1.0f) <= 0.0f && !reader.isFed(shader, "specular"))
        material.ior = 1.0f;
    return material;
}

} // namespace

std::optional<Material> readMaterial(const UsdPrim& prim, UsdTimeCode time, TextureStore& textures)
{
    if (!prim) return std::nullopt;
    NetworkReader reader(time, textures);
    const UsdPrim shader = surfaceShader(prim, reader);
    if (!shader) return std::nullopt;
    Material material = modelOf(reader.idOf(shader)) == SurfaceModel::Standard
                            ? readStandardSurface(shader, reader)
                            : readPreviewSurface(shader, reader);
    // The shape keeps its display colours, inherited ones too: they need no reading by name.
    material.usesDisplayColor = material.diffuse.primvar == "displayColor";
    if (material.usesDisplayColor) material.diffuse.primvar.clear();
    gatherPrimvars(material);
    return material;
}

} // namespace vesk::renderers::embree
