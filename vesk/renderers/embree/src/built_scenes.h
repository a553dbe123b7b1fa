#pragma once

#include "scene_snapshot.h"

#include <embree3/rtcore.h>

#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>

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

/// Owns one Embree scene.
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

/// The Embree instances of one chunk, ready to be attached to any number of scenes.
class InstanceSet
{
public:
    InstanceSet(const SceneChunk& chunk, const PXR_NS::GfVec3d& origin,
                std::vector<std::shared_ptr<ScenePtr>> groupScenes, RTCDevice device);
    ~InstanceSet();
    InstanceSet(const InstanceSet&) = delete;
    InstanceSet& operator=(const InstanceSet&) = delete;

    /// One a placement; null where the placement has no volume and shows nothing.
    const std::vector<RTCGeometry>& geometries() const { return m_geometries; }

private:
    std::vector<std::shared_ptr<ScenePtr>> m_groupScenes;
    std::vector<RTCGeometry> m_geometries;
};

/// Built acceleration structures, so that a shape is built once however often it is placed and however often
/// the scene around it changes. They live as long as a scene holds them. Thread: any.
class BuiltScenes
{
public:
    explicit BuiltScenes(std::shared_ptr<Device> device) : m_device(std::move(device)) {}

    /// The instances of a chunk in a space with an origin, made now or before.
    std::shared_ptr<const InstanceSet> instancesOf(const std::shared_ptr<const SceneChunk>& chunk,
                                                   const PXR_NS::GfVec3d& origin);

    const std::shared_ptr<Device>& device() const { return m_device; }

    /// Held while a scene is put together: the instances that scenes share are made ready one scene at a
    /// time.
    std::mutex& buildMutex() { return m_buildMutex; }

private:
    /// What a group's structure depends on: its shapes and their places.
    struct Part
    {
        const Geometry* geometry;
        PXR_NS::GfMatrix4d toGroup;
    };
    struct PartsLess
    {
        bool operator()(const std::vector<Part>& a, const std::vector<Part>& b) const;
    };
    struct GroupEntry
    {
        std::vector<std::weak_ptr<const Geometry>> geometries;
        std::weak_ptr<ScenePtr> scene;
    };
    struct ChunkEntry
    {
        std::weak_ptr<const SceneChunk> chunk;
        PXR_NS::GfVec3d origin;
        std::weak_ptr<const InstanceSet> instances;
    };

    void _dropUnused();
    std::shared_ptr<ScenePtr> _sceneOf(const SceneGroup& group);

    std::shared_ptr<Device> m_device;
    std::mutex m_buildMutex;
    std::mutex m_mutex; // guards what follows
    std::map<std::vector<Part>, GroupEntry, PartsLess> m_groups;
    std::unordered_map<const SceneChunk*, ChunkEntry> m_chunks;
    std::size_t m_keptChunks = 0; ///< when what nobody holds any more was last dropped
};

} // namespace vesk::renderers::embree
