#include "light_extraction.h"

#include "stage_reading.h"

#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

std::optional<StageLightKind> lightKind(const TfToken& type)
{
    if (type == "DistantLight") return StageLightKind::Distant;
    if (type == "SphereLight" || type == "CylinderLight") return StageLightKind::Point;
    if (type == "RectLight" || type == "DiskLight") return StageLightKind::Area;
    if (type == "DomeLight" || type == "DomeLight_1") return StageLightKind::Dome;
    return std::nullopt;
}

} // namespace

std::optional<StageLight> readStageLight(const UsdPrim& prim, const GfMatrix4d& toWorld, UsdTimeCode time)
{
    const TfToken type = prim.GetTypeName();
    const std::optional<StageLightKind> kind = lightKind(type);
    if (!kind) return std::nullopt;
    StageLight light;
    light.kind = *kind;
    light.localToWorld = toWorld;
    const float intensity =
        readAttribute(prim, "inputs:intensity", time, type == "DistantLight" ? 50000.0f : 1.0f);
    const float exposure = readAttribute(prim, "inputs:exposure", time, 0.0f);
    const GfVec3f color = readAttribute(prim, "inputs:color", time, GfVec3f(1.0f));
    light.color = Vec3(color) * (intensity * std::exp2(exposure));
    light.radius = readAttribute(prim, "inputs:radius", time, 0.5f);
    light.width = readAttribute(prim, "inputs:width", time, 1.0f);
    light.height = readAttribute(prim, "inputs:height", time, 1.0f);
    if (type == "DiskLight")
        light.width = light.height = light.radius * 1.7724539f; // a square of the disk's area
    light.angleDegrees = readAttribute(prim, "inputs:angle", time, 0.53f);
    light.normalize = readAttribute(prim, "inputs:normalize", time, false);
    light.castsShadows = readAttribute(prim, "inputs:shadow:enable", time, true);
    if (!isFinite(light.color)) return std::nullopt;
    return light;
}

} // namespace vesk::renderers::embree
