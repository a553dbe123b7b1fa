#include "light_extraction.h"

#include "stage_reading.h"

#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/usdLux/blackbody.h>

#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

std::optional<StageLightKind> lightKind(const TfToken& type)
{
    if (type == "DistantLight") return StageLightKind::Distant;
    if (type == "SphereLight") return StageLightKind::Sphere;
    if (type == "CylinderLight") return StageLightKind::Cylinder;
    if (type == "RectLight") return StageLightKind::Rectangle;
    if (type == "DiskLight") return StageLightKind::Disk;
    if (type == "DomeLight" || type == "DomeLight_1") return StageLightKind::Dome;
    return std::nullopt;
}

Vec3 readColor(const UsdPrim& prim, UsdTimeCode time, StageLightKind kind)
{
    const float intensity =
        readAttribute(prim, "inputs:intensity", time, kind == StageLightKind::Distant ? 50000.0f : 1.0f);
    const float exposure = readAttribute(prim, "inputs:exposure", time, 0.0f);
    Vec3 color(readAttribute(prim, "inputs:color", time, GfVec3f(1.0f)));
    if (readAttribute(prim, "inputs:enableColorTemperature", time, false)) {
        const float kelvin = readAttribute(prim, "inputs:colorTemperature", time, 6500.0f);
        color = color * Vec3(UsdLuxBlackbodyTemperatureAsRgb(kelvin));
    }
    return color * (intensity * std::exp2(exposure));
}

void readShaping(const UsdPrim& prim, UsdTimeCode time, StageLight& light)
{
    light.coneDegrees = readAttribute(prim, "inputs:shaping:cone:angle", time, 90.0f);
    light.coneSoftness = readAttribute(prim, "inputs:shaping:cone:softness", time, 0.0f);
    light.focus = readAttribute(prim, "inputs:shaping:focus", time, 0.0f);
}

bool isUsable(const StageLight& light)
{
    const auto isLength = [](float v) { return std::isfinite(v) && v >= 0.0f; };
    return isFinite(light.color) && isLength(light.radius) && isLength(light.width) &&
           isLength(light.height) && isLength(light.length) && std::isfinite(light.coneDegrees) &&
           std::isfinite(light.coneSoftness) && std::isfinite(light.focus) &&
           std::isfinite(light.angleDegrees);
}

} // namespace

std::optional<StageLight> readStageLight(const UsdPrim& prim, const GfMatrix4d& toWorld, UsdTimeCode time,
                                         TextureStore& textures)
{
    const std::optional<StageLightKind> kind = lightKind(prim.GetTypeName());
    if (!kind) return std::nullopt;
    StageLight light;
    light.kind = *kind;
    light.localToWorld = toWorld;
    light.color = readColor(prim, time, *kind);
    light.diffuse = readAttribute(prim, "inputs:diffuse", time, 1.0f);
    light.specular = readAttribute(prim, "inputs:specular", time, 1.0f);
    light.radius = readAttribute(prim, "inputs:radius", time, 0.5f);
    light.width = readAttribute(prim, "inputs:width", time, 1.0f);
    light.height = readAttribute(prim, "inputs:height", time, 1.0f);
    light.length = readAttribute(prim, "inputs:length", time, 1.0f);
    light.angleDegrees = readAttribute(prim, "inputs:angle", time, 0.53f);
    light.normalize = readAttribute(prim, "inputs:normalize", time, false);
    light.treatAsPoint = readAttribute(prim, "treatAsPoint", time, false);
    light.castsShadows = readAttribute(prim, "inputs:shadow:enable", time, true);
    readShaping(prim, time, light);
    const SdfAssetPath file = readAttribute(prim, "inputs:texture:file", time, SdfAssetPath());
    const std::string& path = file.GetResolvedPath().empty() ? file.GetAssetPath() : file.GetResolvedPath();
    if (!path.empty()) light.texture = textures.at(path);
    return isUsable(light) ? std::optional<StageLight>(light) : std::nullopt;
}

} // namespace vesk::renderers::embree
