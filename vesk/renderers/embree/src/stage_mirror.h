#pragma once

#include "geometry_cache.h"
#include "scene_snapshot.h"

#include <pxr/usd/usd/stage.h>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace vesk::renderers::embree {

class ChunkReader;

/// What changed on a stage since it was last looked at.
struct StageChanges
{
    std::vector<PXR_NS::SdfPath> subtrees; ///< prims that were recomposed, with all below
    std::vector<PXR_NS::SdfPath> shapes;   ///< prims with an attribute of their shape
    std::vector<PXR_NS::SdfPath> places;   ///< prims whose other properties or metadata changed

    bool empty() const { return subtrees.empty() && shapes.empty() && places.empty(); }
};

/// Keeps what is drawn of a stage and brings it up to date after edits and at new times: what an edit left
/// alone, or what does not change over time, is neither read nor copied again. Drawn are visible gprims of
/// default purpose and of render or proxy purpose, native instances and point instancers, and the stage's
/// lights. A prim that cannot be drawn is left out. Logs: warn, one record for each of those, with its path
/// and reason. Thread: one that may read the stage, one call at a time.
class StageMirror
{
public:
    /// Takes up changes and returns what the stage looks like.
    std::shared_ptr<const SceneSnapshot> update(const PXR_NS::UsdStageRefPtr& stage,
                                                const ExtractionRequest& request,
                                                const StageChanges& changes);

    /// How many prims of the stage the last update looked at.
    std::size_t visitedPrims() const { return m_visited; }

private:
    struct Entry
    {
        std::shared_ptr<const SceneChunk> chunk; ///< null: nothing of this prim is drawn
        bool isCamera = false;
        std::size_t slot = 0; ///< of the chunk in the last snapshot, where it has placements
    };

    bool _readsAll(const PXR_NS::UsdStageRefPtr& stage, const ExtractionRequest& request,
                   const StageChanges& changes) const;
    void _noteVarying(const PXR_NS::UsdPrim& prim, const ChunkReader& reader);
    void _forgetShapes(const StageChanges& changes);
    bool _reachesSharedThings(const StageChanges& changes) const;
    bool _isShared(const PXR_NS::SdfPath& path, bool withSubtree) const;
    void _readBelow(const PXR_NS::UsdPrim& start, ChunkReader& reader);
    void _readAgain(const PXR_NS::UsdStageRefPtr& stage, const StageChanges& changes, ChunkReader& reader);
    std::vector<std::pair<PXR_NS::SdfPath, Entry>> _takeSubtree(const PXR_NS::SdfPath& path);
    void _noteReplaced(const PXR_NS::SdfPath& path, std::vector<std::pair<PXR_NS::SdfPath, Entry>> before);
    bool _drawsBelow(const PXR_NS::SdfPath& camera) const;
    std::shared_ptr<const SceneSnapshot> _snapshot(const PXR_NS::UsdStageRefPtr& stage);
    bool _patchSnapshot(SceneSnapshot& snapshot) const;

    PXR_NS::UsdStageWeakPtr m_stage;
    ExtractionRequest m_request;
    GeometryCache m_cache;
    TextureStore m_textures;
    std::map<PXR_NS::SdfPath, Entry> m_entries; // SdfPath orders a prim directly before what lies below it
    std::set<PXR_NS::SdfPath> m_shared; // materials, prototypes, instances: a change there shows elsewhere
    std::size_t m_visited = 0;

    // What a new time reads again; worked out at the first change of time, as most stages never see one.
    bool m_knowsVarying = false;
    bool m_materialsVary = false;
    std::set<PXR_NS::SdfPath> m_varying;

    std::shared_ptr<const SceneSnapshot> m_snapshot;
    /// The chunks that took another's place since, with the one before. Nothing: more has changed than that.
    std::optional<std::vector<std::pair<PXR_NS::SdfPath, std::shared_ptr<const SceneChunk>>>> m_replaced;
};

/// Reads a camera of the stage in world space; nothing where the path names no camera.
/// Thread: one that may read the stage.
std::optional<PXR_NS::GfCamera> extractCamera(const PXR_NS::UsdStageRefPtr& stage,
                                              const PXR_NS::SdfPath& path, double time);

} // namespace vesk::renderers::embree
