#pragma once

#include "scene_snapshot.h"

#include <embree3/rtcore.h>

#include <map>
#include <memory>
#include <mutex>

namespace vesk::renderers::embree {

/// Owns one Embree device. Thread: any.
class Device
{
public:
    /// Throws: `std::runtime_error` when Embree offers no device.
    Device();
    ~Device();
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    RTCDevice get() const { return m_device; }

private:
    RTCDevice m_device;
};

/// Owns one Embree scene and keeps what its buffers point to.
class ScenePtr
{
public:
    explicit ScenePtr(RTCScene scene) : m_scene(scene) {}
    ~ScenePtr() { rtcReleaseScene(m_scene); }
    ScenePtr(const ScenePtr&) = delete;
    ScenePtr& operator=(const ScenePtr&) = delete;

    RTCScene get() const { return m_scene; }

private:
    RTCScene m_scene;
};

/// Built acceleration structures by shape, so that a shape is built once however often it is placed and
/// however often the scene around it changes. Thread: any.
class ShapeScenes
{
public:
    explicit ShapeScenes(std::shared_ptr<Device> device) : m_device(std::move(device)) {}

    /// The scene of a shape, built now or before.
    std::shared_ptr<ScenePtr> sceneOf(const std::shared_ptr<const Geometry>& geometry);

    /// Forgets shapes that nobody else holds any more.
    void dropUnused();

    const std::shared_ptr<Device>& device() const { return m_device; }

private:
    struct Entry
    {
        std::weak_ptr<const Geometry> geometry;
        std::shared_ptr<ScenePtr> scene;
    };
    std::shared_ptr<Device> m_device;
    std::mutex m_mutex;
    std::map<const Geometry*, Entry> m_entries;
};

/// How one item stands in the ray tracer's space.
struct PlacedItem
{
    const SceneItem* item = nullptr;
    Mat3 toWorld;       ///< for directions
    Mat3 normalToWorld; ///< for normals
    PXR_NS::GfMatrix4d localToScene{1.0};
};

/// What a ray hit.
struct SurfaceHit
{
    std::uint32_t item = 0;
    std::uint32_t primitive = 0;
    float u = 0.0f;
    float v = 0.0f;
    float t = 0.0f;
    Vec3 geometricNormal; ///< local space, not normalised
};

/// A snapshot ready for ray tracing. Its space is the world moved by `origin`, so that single precision
/// serves scenes far from the world's origin too. It never changes after it was built. Thread: any.
class TraceScene
{
public:
    /// Builds the acceleration structures on the calling thread and Embree's own.
    TraceScene(std::shared_ptr<const SceneSnapshot> snapshot, ShapeScenes& shapes);

    const SceneSnapshot& snapshot() const { return *m_snapshot; }
    const PXR_NS::GfVec3d& origin() const { return m_origin; }
    const std::vector<PlacedItem>& items() const { return m_items; }

    /// Half the diagonal of the scene's box, 1 for an empty scene.
    float radius() const { return m_radius; }

    /// Finds the nearest hit of each ray. Rays of one call should be alike.
    void intersect(RTCRayHit* rays, unsigned count, bool coherent) const;

    /// Finds whether anything blocks each ray: `tfar` becomes negative where it does.
    void occluded(RTCRay* rays, unsigned count, bool coherent) const;

private:
    void _place(const SceneItem& item, ShapeScenes& shapes, RTCDevice device);

    std::shared_ptr<const SceneSnapshot> m_snapshot;
    std::shared_ptr<Device> m_device;
    PXR_NS::GfVec3d m_origin{0.0, 0.0, 0.0};
    float m_radius = 1.0f;
    std::vector<PlacedItem> m_items;
    std::vector<std::shared_ptr<ScenePtr>> m_shapeScenes;
    std::unique_ptr<ScenePtr> m_scene;
};

} // namespace vesk::renderers::embree
