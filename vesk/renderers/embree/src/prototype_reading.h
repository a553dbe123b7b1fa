#pragma once

#include "chunk_building.h"
#include "inherited_state.h"
#include "item_reading.h"

#include <map>
#include <set>

namespace vesk::renderers::embree {

/// Reads prims of the stage into chunks, prototypes once each and shared by all their copies. Lives for one
/// extraction.
class ChunkReader
{
public:
    ChunkReader(const PXR_NS::UsdStageRefPtr& stage, const ExtractionRequest& request, GeometryCache& cache,
                TextureStore& textures);

    /// What one prim brings into the picture: itself, or the copies that it stands for; null for nothing.
    /// \param state what the prim hands down, itself included
    std::shared_ptr<const SceneChunk> read(const PXR_NS::UsdPrim& prim, const InheritedState& state);

    /// Whether what lies below a prim is read with it.
    static bool standsForAll(const PXR_NS::UsdPrim& prim);

    /// Whether what the last prim stands for, beyond its own attributes, may change over time.
    bool lastMayVary() const { return m_mayVary; }

    const StateReader& states() const { return m_states; }
    const ItemReader& items() const { return m_items; }

    /// The roots that point instancers took their prototypes from, and the native instances.
    const std::set<PXR_NS::SdfPath>& sharedPaths() const { return m_sharedPaths; }

private:
    struct Known
    {
        InheritedState state;
        std::shared_ptr<const SceneChunk> chunk;
        bool mayVary = false;
    };

    bool _addStandIn(const PXR_NS::UsdPrim& prim, const InheritedState& state, std::vector<SceneItem>& items);
    void _addNative(const PXR_NS::UsdPrim& prim, const InheritedState& state, SceneChunk& chunk);
    void _addInstancer(const PXR_NS::UsdPrim& prim, const InheritedState& state, SceneChunk& chunk);
    std::shared_ptr<const SceneChunk> _prototype(const PXR_NS::UsdPrim& root, const InheritedState& state,
                                                 bool rootIsDrawn);
    std::shared_ptr<const SceneChunk> _readPrototype(const PXR_NS::UsdPrim& root, InheritedState state,
                                                     bool rootIsDrawn);
    std::optional<InheritedState> _stateOfPrototype(const PXR_NS::UsdPrim& root,
                                                    const PXR_NS::UsdPrim& instancer,
                                                    const InheritedState& state);
    bool _fits(const SceneChunk& prototype, std::size_t copies, const PXR_NS::UsdPrim& instancer);

    PXR_NS::UsdStageRefPtr m_stage;
    PXR_NS::UsdTimeCode m_time;
    StateReader m_states;
    ItemReader m_items;
    TextureStore& m_textures;
    std::map<PXR_NS::SdfPath, std::vector<Known>> m_prototypes;
    std::set<PXR_NS::SdfPath> m_underWay; ///< prototypes that are being read, to find one inside itself
    std::set<PXR_NS::SdfPath> m_sharedPaths;
    bool m_mayVary = false; ///< something in the prim or prototype that is being read
};

} // namespace vesk::renderers::embree
