#pragma once

#include "geometry.h"

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/range3d.h>
#include <pxr/usd/sdf/path.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace vesk::renderers::embree {

/// How a surface reflects, in linear colours.
struct Material
{
    Vec3 diffuse{0.5f};
    Vec3 emission{0.0f};
    float specular = 0.04f; ///< reflectance seen straight on
    float roughness = 0.5f;
    float metallic = 0.0f;
    float opacity = 1.0f;
    bool usesDisplayColor = true; ///< display colours replace `diffuse` where the prim has any
};

/// One drawable thing of the stage: a shape at a place.
struct SceneItem
{
    PXR_NS::SdfPath path;
    std::shared_ptr<const Geometry> geometry;
    PXR_NS::GfMatrix4d localToWorld{1.0};
    std::optional<Material> material; ///< nothing: the renderer's default
    std::optional<Vec3> displayColor; ///< inherited from above, where the shape has none of its own
    float displayOpacity = 1.0f;      ///< inherited likewise
    PXR_NS::SdfPath instancePath;     ///< the outermost instance or instancer, empty where there is none
    PXR_NS::SdfPath prototypePath;    ///< the prim inside the prototype, empty where there is none
    int instanceIndex = -1;
};

enum class StageLightKind : std::uint8_t
{
    Distant,
    Point,
    Area,
    Dome
};

/// A light of the stage.
struct StageLight
{
    StageLightKind kind = StageLightKind::Distant;
    PXR_NS::GfMatrix4d localToWorld{1.0};
    Vec3 color{1.0f}; ///< linear, intensity and exposure multiplied in
    float radius = 0.5f;
    float width = 1.0f;
    float height = 1.0f;
    float angleDegrees = 0.53f;
    bool normalize = false;
    bool castsShadows = true;
};

/// What the stage looks like at one time, taken from it in one go. It never changes after it was made.
struct SceneSnapshot
{
    std::vector<SceneItem> items;
    std::vector<StageLight> lights;
    PXR_NS::GfRange3d bounds; ///< of all items, world space
    bool zUp = false;

    /// The cameras of the stage: a change of these alone does not change the picture's geometry.
    std::unordered_set<PXR_NS::SdfPath, PXR_NS::SdfPath::Hash> cameraPaths;
};

/// What an extraction takes from the stage.
struct ExtractionRequest
{
    double time = 0.0;
    bool proxyPurpose = false;
    bool sceneMaterials = true;
};

} // namespace vesk::renderers::embree
