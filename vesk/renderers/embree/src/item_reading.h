#pragma once

#include "geometry_cache.h"
#include "inherited_state.h"
#include "mesh_extraction.h"
#include "scene_snapshot.h"
#include "skeleton_reading.h"

#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/usd/stage.h>

#include <map>
#include <optional>
#include <set>
#include <utility>

namespace vesk::renderers::embree {

/// Reads drawable prims: shapes through the cache, materials once each. Lives for one extraction.
class ItemReader
{
public:
    ItemReader(const PXR_NS::UsdStageRefPtr& stage, const ExtractionRequest& request,
               PXR_NS::UsdTimeCode time, GeometryCache& cache, TextureStore& textures)
        : m_stage(stage),
          m_request(request),
          m_time(time),
          m_cache(cache),
          m_textures(textures),
          m_skeletons(time)
    {}

    /// The prim with its looks; its place in the group is left to the caller. Nothing for a prim that is not
    /// drawable. \param inPrototype whether the prim lies in a prototype
    /// Logs: warn, where a drawable prim is broken.
    std::optional<SceneItem> read(const PXR_NS::UsdPrim& prim, const InheritedState& state, bool inPrototype);

    /// The materials that were read.
    const std::set<PXR_NS::SdfPath>& materialPaths() const { return m_materialPaths; }

    /// The prims that deform others and were read.
    const std::set<PXR_NS::SdfPath>& skeletonPaths() const { return m_skeletons.usedPaths(); }

    /// Whether any of them may change over time.
    bool materialsMayVary() const;

    /// Whether any shape that was read since the last call may change over time.
    bool takeShapesMayVary() { return std::exchange(m_shapesMayVary, false); }

private:
    std::shared_ptr<const Geometry> _geometryOf(const PXR_NS::UsdPrim& prim, int kind, bool inPrototype,
                                                const std::vector<std::string>& primvars);
    ShapeReading _read(const PXR_NS::UsdPrim& prim, int kind, const std::vector<std::string>& primvars);
    std::shared_ptr<const Material> _materialAt(const PXR_NS::SdfPath& path);
    /// The faces of one subset and the number of its material.
    struct FaceSubset
    {
        PXR_NS::VtIntArray faces;
        std::uint16_t material = 0;
    };
    std::vector<FaceSubset> _readSubsets(const PXR_NS::UsdPrim& prim, const InheritedState& state,
                                         MaterialSet& set);

    PXR_NS::UsdStageRefPtr m_stage;
    ExtractionRequest m_request;
    PXR_NS::UsdTimeCode m_time;
    GeometryCache& m_cache;
    TextureStore& m_textures;
    SkeletonReader m_skeletons;
    std::map<PXR_NS::SdfPath, std::shared_ptr<const Material>> m_materials;
    std::set<PXR_NS::SdfPath> m_materialPaths;
    bool m_shapesMayVary = false;
};

} // namespace vesk::renderers::embree
