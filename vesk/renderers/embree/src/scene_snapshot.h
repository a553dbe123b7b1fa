#pragma once

#include "geometry.h"
#include "material.h"

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/range3d.h>
#include <pxr/usd/sdf/path.h>

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace vesk::renderers::embree {

/// The materials of one item: the prim's own, and those of its subsets of faces.
struct MaterialSet
{
    std::shared_ptr<const Material> whole; ///< null: the renderer's default
    std::vector<std::shared_ptr<const Material>> subsets;
    std::shared_ptr<const std::vector<std::uint16_t>> faceSubset; ///< one a face: 0 `whole`, i `subsets[i-1]`

    const Material* of(std::uint32_t face) const
    {
        if (!faceSubset || face >= faceSubset->size()) return whole.get();
        const std::uint16_t subset = (*faceSubset)[face];
        return subset == 0 ? whole.get() : subsets[subset - 1u].get();
    }
};

/// One drawable prim: a shape with its looks, at a place of its group.
struct SceneItem
{
    PXR_NS::SdfPath path; ///< on the stage, or inside the prototype
    std::shared_ptr<const Geometry> geometry;
    PXR_NS::GfMatrix4d toGroup{1.0};
    bool movesInGroup = false; ///< false: `toGroup` is the identity
    MaterialSet materials;
    std::optional<Vec3> displayColor; ///< inherited from above, where the shape has none of its own
    float displayOpacity = 1.0f;      ///< inherited likewise

    /// Whether nothing of it lets light through, with its materials and without them.
    bool isSolid() const;
};

/// What is placed as a whole: one prim of the stage, or all of a prototype.
struct SceneGroup
{
    std::vector<SceneItem> items;
    bool isSolid = true;   ///< whether nothing of it lets light through
    PXR_NS::GfRange3d box; ///< in the group's space
};

/// Where the copies of a prototype come from, shared by many placements.
struct PlacementSource
{
    PXR_NS::SdfPath stagePrefix;     ///< takes the place of `prototypePrefix` in the items' paths
    PXR_NS::SdfPath prototypePrefix; ///< empty where the items' paths are the stage's own
    PXR_NS::SdfPath instancePath;    ///< the outermost instance or instancer, empty where there is none
};

/// A group at a place of the world. There may be millions: it holds no more than it must.
struct Placement
{
    double rows[4][3]; ///< of the matrix to the world; its last column is (0, 0, 0, 1)
    std::uint32_t group = 0;
    std::uint32_t source = 0;
    std::uint32_t firstPrim = 0; ///< number of the group's first item among the chunk's prims
    int instanceIndex = -1;      ///< inside the outermost point instancer

    void setMatrix(const PXR_NS::GfMatrix4d& m)
    {
        for (int row = 0; row < 4; ++row) {
            for (int column = 0; column < 3; ++column)
                rows[row][column] = m[row][column];
        }
    }
    PXR_NS::GfMatrix4d matrix() const
    {
        const auto& r = rows;
        return PXR_NS::GfMatrix4d(r[0][0], r[0][1], r[0][2], 0, r[1][0], r[1][1], r[1][2], 0, r[2][0],
                                  r[2][1], r[2][2], 0, r[3][0], r[3][1], r[3][2], 1);
    }
};

enum class StageLightKind : std::uint8_t
{
    Distant,
    Sphere,
    Disk,
    Rectangle,
    Cylinder,
    Dome
};

/// A light of the stage.
struct StageLight
{
    StageLightKind kind = StageLightKind::Distant;
    PXR_NS::GfMatrix4d localToWorld{1.0};
    Vec3 color{1.0f}; ///< linear; intensity, exposure and colour temperature multiplied in
    float diffuse = 1.0f;
    float specular = 1.0f;
    float radius = 0.5f;
    float width = 1.0f;
    float height = 1.0f;
    float length = 1.0f;
    float angleDegrees = 0.53f;
    bool normalize = false;
    bool treatAsPoint = false;
    bool castsShadows = true;
    float coneDegrees = 90.0f; ///< 90 or more: no cone
    float coneSoftness = 0.0f;
    float focus = 0.0f;
    std::shared_ptr<const Texture> texture; ///< of domes and rectangles, null for none
};

/// What one prim of the stage brings into the picture. It never changes after it was made, so that snapshots
/// share the chunks that an edit left alone.
struct SceneChunk
{
    std::vector<std::shared_ptr<const SceneGroup>> groups;
    std::vector<PlacementSource> sources;
    std::vector<Placement> placements;
    std::vector<StageLight> lights;
    std::uint32_t primCount = 0;
    bool isSolid = true;      ///< whether all groups are
    PXR_NS::GfRange3d bounds; ///< of all placements, world space
};

/// What the stage looks like at one time, taken from it in one go. It never changes after it was made.
struct SceneSnapshot
{
    std::vector<std::shared_ptr<const SceneChunk>> chunks;
    std::vector<StageLight> lights;
    PXR_NS::GfRange3d bounds; ///< of all placements, world space
    bool zUp = false;

    /// The cameras of the stage that carry nothing drawn: their changes leave the picture as it is.
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
