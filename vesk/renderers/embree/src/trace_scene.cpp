#include "trace_scene.h"

#include <stdexcept>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

float* newVertices(RTCGeometry geometry, std::size_t count, bool withRadius)
{
    const std::size_t stride = (withRadius ? 4 : 3) * sizeof(float);
    return static_cast<float*>(rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0,
                                                       withRadius ? RTC_FORMAT_FLOAT4 : RTC_FORMAT_FLOAT3,
                                                       stride, count));
}

void fillTriangles(RTCGeometry geometry, const Geometry& shape)
{
    float* vertices = newVertices(geometry, shape.points.size(), false);
    auto* indices = static_cast<unsigned*>(rtcSetNewGeometryBuffer(
        geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, 3 * sizeof(unsigned), shape.triangles.size()));
    if (!vertices || !indices) throw std::bad_alloc();
    for (const Vec3& p : shape.points) {
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

void fillRound(RTCGeometry geometry, const Geometry& shape)
{
    float* vertices = newVertices(geometry, shape.points.size(), true);
    if (!vertices) throw std::bad_alloc();
    for (std::size_t i = 0; i < shape.points.size(); ++i) {
        *vertices++ = shape.points[i].x;
        *vertices++ = shape.points[i].y;
        *vertices++ = shape.points[i].z;
        *vertices++ = shape.radii[i];
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

std::shared_ptr<ScenePtr> buildShape(RTCDevice device, const Geometry& shape)
{
    auto scene = std::make_shared<ScenePtr>(rtcNewScene(device));
    // Without it rays slip through where faces meet.
    rtcSetSceneFlags(scene->get(), RTC_SCENE_FLAG_ROBUST);
    RTCGeometry geometry = rtcNewGeometry(device, typeOf(shape.kind));
    if (shape.kind == GeometryKind::Triangles) {
        fillTriangles(geometry, shape);
    } else {
        fillRound(geometry, shape);
    }
    rtcCommitGeometry(geometry);
    rtcAttachGeometry(scene->get(), geometry);
    rtcReleaseGeometry(geometry);
    rtcCommitScene(scene->get());
    return scene;
}

} // namespace

Device::Device() : m_device(rtcNewDevice("start_threads=0"))
{
    if (!m_device) throw std::runtime_error("Embree offers no ray tracing device on this machine");
}

Device::~Device() { rtcReleaseDevice(m_device); }

std::shared_ptr<ScenePtr> ShapeScenes::sceneOf(const std::shared_ptr<const Geometry>& geometry)
{
    {
        const std::lock_guard lock(m_mutex);
        const auto at = m_entries.find(geometry.get());
        // An address may have been used again by another shape since.
        if (at != m_entries.end() && at->second.geometry.lock() == geometry) return at->second.scene;
    }
    std::shared_ptr<ScenePtr> scene = buildShape(m_device->get(), *geometry);
    const std::lock_guard lock(m_mutex);
    m_entries[geometry.get()] = {geometry, scene};
    return scene;
}

void ShapeScenes::dropUnused()
{
    const std::lock_guard lock(m_mutex);
    for (auto at = m_entries.begin(); at != m_entries.end();) {
        at = at->second.geometry.expired() ? m_entries.erase(at) : std::next(at);
    }
}

TraceScene::TraceScene(std::shared_ptr<const SceneSnapshot> snapshot, ShapeScenes& shapes)
    : m_snapshot(std::move(snapshot)), m_device(shapes.device())
{
    const GfRange3d& bounds = m_snapshot->bounds;
    if (!bounds.IsEmpty()) {
        m_origin = bounds.GetMidpoint();
        const double radius = 0.5 * bounds.GetSize().GetLength();
        m_radius = radius > 0.0 ? static_cast<float>(radius) : 1.0f;
    }
    RTCDevice device = m_device->get();
    m_scene = std::make_unique<ScenePtr>(rtcNewScene(device));
    rtcSetSceneFlags(m_scene->get(), RTC_SCENE_FLAG_ROBUST);
    m_items.reserve(m_snapshot->items.size());
    for (const SceneItem& item : m_snapshot->items) {
        _place(item, shapes, device);
    }
    rtcCommitScene(m_scene->get());
}

void TraceScene::_place(const SceneItem& item, ShapeScenes& shapes, RTCDevice device)
{
    PlacedItem placed;
    placed.item = &item;
    placed.toWorld = Mat3::of(item.localToWorld);
    placed.normalToWorld = Mat3::forNormals(item.localToWorld);
    placed.localToScene = item.localToWorld * GfMatrix4d(1.0).SetTranslate(-m_origin);
    const auto id = static_cast<unsigned>(m_items.size());
    m_items.push_back(placed);
    // A place without volume (a scale of 0) shows nothing and cannot be inverted.
    if (dot(placed.toWorld.row0, placed.normalToWorld.row0) == 0.0f) return;

    m_shapeScenes.push_back(shapes.sceneOf(item.geometry));
    RTCGeometry instance = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_INSTANCE);
    rtcSetGeometryInstancedScene(instance, m_shapeScenes.back()->get());
    float columns[12];
    for (int row = 0; row < 4; ++row) {
        for (int i = 0; i < 3; ++i) {
            columns[3 * row + i] = static_cast<float>(placed.localToScene[row][i]);
        }
    }
    rtcSetGeometryTransform(instance, 0, RTC_FORMAT_FLOAT3X4_COLUMN_MAJOR, columns);
    rtcCommitGeometry(instance);
    rtcAttachGeometryByID(m_scene->get(), instance, id);
    rtcReleaseGeometry(instance);
}

void TraceScene::intersect(RTCRayHit* rays, unsigned count, bool coherent) const
{
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    context.flags = coherent ? RTC_INTERSECT_CONTEXT_FLAG_COHERENT : RTC_INTERSECT_CONTEXT_FLAG_INCOHERENT;
    rtcIntersect1M(m_scene->get(), &context, rays, count, sizeof(RTCRayHit));
}

void TraceScene::occluded(RTCRay* rays, unsigned count, bool coherent) const
{
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    context.flags = coherent ? RTC_INTERSECT_CONTEXT_FLAG_COHERENT : RTC_INTERSECT_CONTEXT_FLAG_INCOHERENT;
    rtcOccluded1M(m_scene->get(), &context, rays, count, sizeof(RTCRay));
}

} // namespace vesk::renderers::embree
