#include "built_scenes.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

/// Turns points of an item into points of its group.
class Mover
{
public:
    explicit Mover(const SceneItem& item) : m_item(item)
    {
        if (!item.movesInGroup) return;
        // Round shapes stay round: they grow as their volume does.
        m_scale = static_cast<float>(std::cbrt(std::abs(item.toGroup.GetDeterminant3())));
    }
    Vec3 operator()(Vec3 p) const
    {
        return m_item.movesInGroup ? Vec3(m_item.toGroup.Transform(p.toGfd())) : p;
    }
    float radius(float r) const { return r * m_scale; }

private:
    const SceneItem& m_item;
    float m_scale = 1.0f;
};

float* newVertices(RTCGeometry geometry, std::size_t count, bool withRadius)
{
    const std::size_t stride = (withRadius ? 4 : 3) * sizeof(float);
    return static_cast<float*>(rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0,
                                                       withRadius ? RTC_FORMAT_FLOAT4 : RTC_FORMAT_FLOAT3,
                                                       stride, count));
}

void fillTriangles(RTCGeometry geometry, const Geometry& shape, const Mover& move)
{
    float* vertices = newVertices(geometry, shape.points.size(), false);
    auto* indices = static_cast<unsigned*>(rtcSetNewGeometryBuffer(
        geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, 3 * sizeof(unsigned), shape.triangles.size()));
    if (!vertices || !indices) throw std::bad_alloc();
    for (const Vec3& point : shape.points) {
        const Vec3 p = move(point);
        *vertices++ = p.x;
        *vertices++ = p.y;
        *vertices++ = p.z;
    }
    for (const Triangle& t : shape.triangles) {
        for (const std::uint32_t p : t.point) {
            *indices++ = p;
        }
    }
}

void fillRound(RTCGeometry geometry, const Geometry& shape, const Mover& move)
{
    float* vertices = newVertices(geometry, shape.points.size(), true);
    if (!vertices) throw std::bad_alloc();
    for (std::size_t i = 0; i < shape.points.size(); ++i) {
        const Vec3 p = move(shape.points[i]);
        *vertices++ = p.x;
        *vertices++ = p.y;
        *vertices++ = p.z;
        *vertices++ = move.radius(shape.radii[i]);
    }
    if (shape.kind != GeometryKind::Curves) return;
    auto* indices = static_cast<unsigned*>(rtcSetNewGeometryBuffer(
        geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT, sizeof(unsigned), shape.segments.size()));
    if (!indices) throw std::bad_alloc();
    std::copy(shape.segments.begin(), shape.segments.end(), indices);
}

RTCGeometryType typeOf(GeometryKind kind)
{
    switch (kind) {
    case GeometryKind::Spheres:
        return RTC_GEOMETRY_TYPE_SPHERE_POINT;
    case GeometryKind::Curves:
        return RTC_GEOMETRY_TYPE_ROUND_LINEAR_CURVE;
    default:
        return RTC_GEOMETRY_TYPE_TRIANGLE;
    }
}

std::shared_ptr<ScenePtr> buildGroup(RTCDevice device, const SceneGroup& group)
{
    auto scene = std::make_shared<ScenePtr>(rtcNewScene(device));
    // Without it rays slip through where faces meet.
    rtcSetSceneFlags(scene->get(), RTC_SCENE_FLAG_ROBUST);
    for (std::size_t i = 0; i < group.items.size(); ++i) {
        const Geometry& shape = *group.items[i].geometry;
        const Mover move(group.items[i]);
        RTCGeometry geometry = rtcNewGeometry(device, typeOf(shape.kind));
        if (shape.kind == GeometryKind::Triangles) {
            fillTriangles(geometry, shape, move);
        } else {
            fillRound(geometry, shape, move);
        }
        rtcCommitGeometry(geometry);
        rtcAttachGeometryByID(scene->get(), geometry, static_cast<unsigned>(i));
        rtcReleaseGeometry(geometry);
    }
    rtcCommitScene(scene->get());
    return scene;
}

RTCGeometry makeInstance(RTCDevice device, RTCScene scene, const Placement& placement, const GfVec3d& origin)
{
    // A place without volume (a scale of 0) shows nothing and cannot be inverted.
    const GfMatrix4d matrix = placement.matrix();
    const Mat3 linear = Mat3::of(matrix);
    if (dot(linear.row0, cross(linear.row1, linear.row2)) == 0.0f) return nullptr;
    RTCGeometry instance = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_INSTANCE);
    rtcSetGeometryInstancedScene(instance, scene);
    float columns[12];
    for (int row = 0; row < 4; ++row) {
        for (int i = 0; i < 3; ++i) {
            const double shift = row == 3 ? origin[i] : 0.0;
            columns[3 * row + i] = static_cast<float>(placement.rows[row][i] - shift);
        }
    }
    rtcSetGeometryTransform(instance, 0, RTC_FORMAT_FLOAT3X4_COLUMN_MAJOR, columns);
    rtcCommitGeometry(instance);
    return instance;
}

} // namespace

#if defined(__SANITIZE_THREAD__)
// What Embree hands to the threads of its own library is hidden from the sanitizer: it builds alone then.
constexpr const char* kDeviceSettings = "threads=1,start_threads=0";
#else
constexpr const char* kDeviceSettings = "start_threads=0";
#endif

Device::Device() : m_device(rtcNewDevice(kDeviceSettings))
{
    if (!m_device) throw std::runtime_error("Embree offers no ray tracing device on this machine");
}

Device::~Device() { rtcReleaseDevice(m_device); }

InstanceSet::InstanceSet(const SceneChunk& chunk, const GfVec3d& origin,
                         std::vector<std::shared_ptr<ScenePtr>> groupScenes, RTCDevice device)
    : m_groupScenes(std::move(groupScenes))
{
    m_geometries.reserve(chunk.placements.size());
    for (const Placement& placement : chunk.placements) {
        m_geometries.push_back(
            makeInstance(device, m_groupScenes[placement.group]->get(), placement, origin));
    }
}

InstanceSet::~InstanceSet()
{
    for (const RTCGeometry geometry : m_geometries) {
        if (geometry) rtcReleaseGeometry(geometry);
    }
}

bool BuiltScenes::PartsLess::operator()(const std::vector<Part>& a, const std::vector<Part>& b) const
{
    const auto compare = [](const Part& x, const Part& y) {
        if (x.geometry != y.geometry) return std::less<>()(x.geometry, y.geometry) ? -1 : 1;
        return std::memcmp(x.toGroup.GetArray(), y.toGroup.GetArray(), 16 * sizeof(double));
    };
    if (a.size() != b.size()) return a.size() < b.size();
    for (std::size_t i = 0; i < a.size(); ++i) {
        const int order = compare(a[i], b[i]);
        if (order != 0) return order < 0;
    }
    return false;
}

std::shared_ptr<ScenePtr> BuiltScenes::_sceneOf(const SceneGroup& group)
{
    std::vector<Part> parts;
    for (const SceneItem& item : group.items)
        parts.push_back({item.geometry.get(), item.toGroup});
    {
        const std::lock_guard lock(m_mutex);
        const auto at = m_groups.find(parts);
        // An address may have been used again by another shape since.
        if (at != m_groups.end() &&
            std::equal(group.items.begin(), group.items.end(), at->second.geometries.begin(),
                       [](const SceneItem& item, const std::weak_ptr<const Geometry>& known) {
                           return known.lock() == item.geometry;
                       })) {
            if (auto known = at->second.scene.lock()) return known;
        }
    }
    GroupEntry entry;
    std::shared_ptr<ScenePtr> scene = buildGroup(m_device->get(), group);
    entry.scene = scene;
    for (const SceneItem& item : group.items)
        entry.geometries.emplace_back(item.geometry);
    const std::lock_guard lock(m_mutex);
    m_groups[std::move(parts)] = std::move(entry);
    return scene;
}

std::shared_ptr<const InstanceSet> BuiltScenes::instancesOf(const std::shared_ptr<const SceneChunk>& chunk,
                                                            const GfVec3d& origin)
{
    {
        const std::lock_guard lock(m_mutex);
        const auto at = m_chunks.find(chunk.get());
        if (at != m_chunks.end() && at->second.origin == origin && at->second.chunk.lock() == chunk) {
            if (auto known = at->second.instances.lock()) return known;
        }
    }
    std::vector<std::shared_ptr<ScenePtr>> scenes;
    for (const auto& group : chunk->groups)
        scenes.push_back(_sceneOf(*group));
    auto instances = std::make_shared<const InstanceSet>(*chunk, origin, std::move(scenes), m_device->get());
    const std::lock_guard lock(m_mutex);
    m_chunks[chunk.get()] = {chunk, origin, instances};
    if (m_chunks.size() > 2 * m_keptChunks + 64) _dropUnused();
    return instances;
}

// Entries of what is gone are small: they are looked for only when they may be the greater part.
void BuiltScenes::_dropUnused()
{
    for (auto at = m_chunks.begin(); at != m_chunks.end();) {
        at = at->second.instances.expired() ? m_chunks.erase(at) : std::next(at);
    }
    for (auto at = m_groups.begin(); at != m_groups.end();) {
        at = at->second.scene.expired() ? m_groups.erase(at) : std::next(at);
    }
    m_keptChunks = m_chunks.size();
}

} // namespace vesk::renderers::embree
