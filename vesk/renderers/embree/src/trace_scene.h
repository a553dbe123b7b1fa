#pragma once

#include "built_scenes.h"
#include "ray_packet.h"
#include "scene_snapshot.h"

namespace vesk::renderers::embree {

/// How the hit item stands in the ray tracer's space.
struct HitFrame
{
    const SceneItem* item = nullptr;
    PXR_NS::GfMatrix4d toScene{1.0};
    Mat3 toWorld;            ///< for directions
    Mat3 normalToWorld;      ///< for normals of the item
    Mat3 groupNormalToWorld; ///< for normals of the group
};

/// The hit prim's place in the namespace.
struct HitNames
{
    PXR_NS::SdfPath prim;      ///< as it is seen on the stage
    PXR_NS::SdfPath instance;  ///< the outermost instance or instancer, empty where there is none
    PXR_NS::SdfPath prototype; ///< the prim inside the prototype, empty where there is none
    int instanceIndex = -1;
};

/// The processor time that the calling thread has used.
double threadSeconds();

/// A snapshot ready for ray tracing. Its space is the world moved by `origin`, so that single precision
/// serves scenes far from the world's origin too. It never changes after it was built. Thread: any.
class TraceScene
{
public:
    /// Builds the acceleration structures on the calling thread and Embree's own.
    /// \param former the scene before, may be null: what did not change is shared with it
    TraceScene(std::shared_ptr<const SceneSnapshot> snapshot, BuiltScenes& built,
               const TraceScene* former = nullptr);

    const SceneSnapshot& snapshot() const { return *m_snapshot; }
    const PXR_NS::GfVec3d& origin() const { return m_origin; }

    /// Half the diagonal of the scene's box, 1 for an empty scene.
    float radius() const { return m_radius; }

    /// Nothing lies farther than this from the origin.
    float reach() const { return m_reach; }

    /// Whether nothing in the scene lets light through.
    bool isSolid() const { return m_isSolid; }

    const SceneItem& itemOf(std::uint32_t placement, std::uint32_t item) const;
    HitFrame frameOf(const SurfaceHit& hit) const;
    HitNames namesOf(std::uint32_t placement, std::uint32_t item) const;

    /// A number of the hit prim: copies that a point instancer made of one prim share it.
    int primIdOf(std::uint32_t placement, std::uint32_t item) const
    {
        const Chunk& chunk = _chunkOf(placement);
        const Placement& at = chunk.chunk->placements[placement - chunk.firstPlacement];
        return static_cast<int>(chunk.firstPrim + at.firstPrim + item);
    }
    int instanceIndexOf(std::uint32_t placement) const { return _placementOf(placement).instanceIndex; }

    /// The scene as Embree knows it, and how long Embree took to build it from its parts: wall time, and the
    /// processor time of the thread that asked for it.
    RTCScene handle() const { return m_scene->get(); }
    double commitSeconds() const { return m_commitSeconds; }
    double commitThreadSeconds() const { return m_commitThreadSeconds; }

    /// Finds the nearest hit of one ray.
    std::optional<SurfaceHit> intersect(const ViewRay& ray) const;

    /// Finds the nearest hit of each ray.
    void intersect(RayPacket& rays) const { rays.trace(m_scene->get()); }

    /// Finds whether anything blocks each ray: `tfar` becomes negative where it does.
    void occluded(RTCRay* rays, unsigned count, bool coherent) const;

private:
    /// A chunk's share of the scene's numbers.
    struct Chunk
    {
        const SceneChunk* chunk;
        std::uint32_t firstPlacement;
        std::uint32_t firstPrim;
    };

    void _setOrigin(const TraceScene* former);
    bool _takeOver(const TraceScene& former, BuiltScenes& built);
    void _addChunks(BuiltScenes& built);
    const Chunk& _chunkOf(std::uint32_t placement) const { return m_chunks[m_chunkOfPlacement[placement]]; }
    const Placement& _placementOf(std::uint32_t placement) const
    {
        const Chunk& at = _chunkOf(placement);
        return at.chunk->placements[placement - at.firstPlacement];
    }

    std::shared_ptr<const SceneSnapshot> m_snapshot;
    std::shared_ptr<Device> m_device;
    PXR_NS::GfVec3d m_origin{0.0, 0.0, 0.0};
    float m_radius = 1.0f;
    float m_reach = 1.0f;
    bool m_isSolid = true;
    std::vector<Chunk> m_chunks;
    std::vector<std::uint32_t> m_chunkOfPlacement;
    std::vector<std::shared_ptr<const InstanceSet>> m_instances; ///< one a chunk
    std::vector<RTCGeometry> m_geometries; ///< one a placement, null for none; they belong to `m_instances`
    std::unique_ptr<ScenePtr> m_scene;
    double m_commitSeconds = 0.0;
    double m_commitThreadSeconds = 0.0;
};

} // namespace vesk::renderers::embree
