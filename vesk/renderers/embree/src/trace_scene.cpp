#include "trace_scene.h"

#include <algorithm>
#include <chrono>
#include <time.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {

double threadSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

TraceScene::TraceScene(std::shared_ptr<const SceneSnapshot> snapshot, BuiltScenes& built,
                       const TraceScene* former)
    : m_snapshot(std::move(snapshot)), m_device(built.device())
{
    const std::lock_guard building(built.buildMutex());
    _setOrigin(former);
    if (!former || !_takeOver(*former, built)) _addChunks(built);
    m_scene = std::make_unique<ScenePtr>(rtcNewScene(m_device->get()));
    rtcSetSceneFlags(m_scene->get(), RTC_SCENE_FLAG_ROBUST);
    for (std::size_t i = 0; i < m_geometries.size(); ++i) {
        if (m_geometries[i]) rtcAttachGeometryByID(m_scene->get(), m_geometries[i], static_cast<unsigned>(i));
    }
    const auto start = std::chrono::steady_clock::now();
    const double threadStart = threadSeconds();
    rtcCommitScene(m_scene->get());
    m_commitThreadSeconds = threadSeconds() - threadStart;
    m_commitSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Mostly a few chunks were replaced by others of the same size: every number stays what it was.
bool TraceScene::_takeOver(const TraceScene& former, BuiltScenes& built)
{
    const auto& chunks = m_snapshot->chunks;
    if (m_origin != former.m_origin || chunks.size() != former.m_chunks.size()) return false;
    std::vector<std::size_t> replaced;
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        const SceneChunk* before = former.m_chunks[i].chunk;
        if (chunks[i].get() == before) continue;
        if (chunks[i]->placements.size() != before->placements.size() ||
            chunks[i]->primCount != before->primCount) {
            return false;
        }
        replaced.push_back(i);
    }
    m_chunks = former.m_chunks;
    m_chunkOfPlacement = former.m_chunkOfPlacement;
    m_instances = former.m_instances;
    m_geometries = former.m_geometries;
    for (const std::size_t i : replaced) {
        m_chunks[i].chunk = chunks[i].get();
        m_instances[i] = built.instancesOf(chunks[i], m_origin);
        const auto& geometries = m_instances[i]->geometries();
        std::copy(geometries.begin(), geometries.end(), m_geometries.begin() + m_chunks[i].firstPlacement);
    }
    return true;
}

void TraceScene::_addChunks(BuiltScenes& built)
{
    m_chunks.reserve(m_snapshot->chunks.size());
    m_instances.reserve(m_snapshot->chunks.size());
    std::uint32_t prims = 0;
    for (const std::shared_ptr<const SceneChunk>& chunk : m_snapshot->chunks) {
        m_instances.push_back(built.instancesOf(chunk, m_origin));
        m_isSolid = m_isSolid && chunk->isSolid;
        const auto number = static_cast<std::uint32_t>(m_chunks.size());
        m_chunks.push_back({chunk.get(), static_cast<std::uint32_t>(m_geometries.size()), prims});
        m_chunkOfPlacement.insert(m_chunkOfPlacement.end(), chunk->placements.size(), number);
        const auto& geometries = m_instances.back()->geometries();
        m_geometries.insert(m_geometries.end(), geometries.begin(), geometries.end());
        prims += chunk->primCount;
    }
}

void TraceScene::_setOrigin(const TraceScene* former)
{
    const GfRange3d& bounds = m_snapshot->bounds;
    if (bounds.IsEmpty()) return;
    const GfVec3d middle = bounds.GetMidpoint();
    const double half = 0.5 * bounds.GetSize().GetLength();
    const double radius = half > 0.0 ? half : 1.0;
    m_origin = former && (former->m_origin - middle).GetLength() <= radius ? former->m_origin : middle;
    m_radius = static_cast<float>(radius);
    m_reach = static_cast<float>(radius + (m_origin - middle).GetLength());
}

const SceneItem& TraceScene::itemOf(std::uint32_t placement, std::uint32_t item) const
{
    return _chunkOf(placement).chunk->groups[_placementOf(placement).group]->items[item];
}

HitFrame TraceScene::frameOf(const SurfaceHit& hit) const
{
    const Placement& placement = _placementOf(hit.placement);
    const GfMatrix4d groupToWorld = placement.matrix();
    HitFrame frame;
    frame.item = &itemOf(hit.placement, hit.item);
    frame.toScene = frame.item->movesInGroup ? frame.item->toGroup * groupToWorld : groupToWorld;
    frame.toWorld = Mat3::of(frame.toScene);
    frame.normalToWorld = Mat3::forNormals(frame.toScene);
    frame.groupNormalToWorld =
        frame.item->movesInGroup ? Mat3::forNormals(groupToWorld) : frame.normalToWorld;
    frame.toScene.SetTranslateOnly(frame.toScene.ExtractTranslation() - m_origin);
    return frame;
}

HitNames TraceScene::namesOf(std::uint32_t number, std::uint32_t item) const
{
    const SceneChunk& chunk = *_chunkOf(number).chunk;
    const Placement& placement = _placementOf(number);
    const SdfPath& path = chunk.groups[placement.group]->items[item].path;
    const PlacementSource& source = chunk.sources[placement.source];
    HitNames names;
    names.prim = path;
    names.instanceIndex = placement.instanceIndex;
    if (source.instancePath.IsEmpty()) return names;
    names.instance = source.instancePath;
    names.prototype = path;
    if (path.HasPrefix(source.prototypePrefix))
        names.prim = path.ReplacePrefix(source.prototypePrefix, source.stagePrefix);
    return names;
}

std::optional<SurfaceHit> TraceScene::intersect(const ViewRay& ray) const
{
    if (!isTraceable(ray)) return std::nullopt;
    RTCRayHit r{};
    r.ray.org_x = ray.origin.x;
    r.ray.org_y = ray.origin.y;
    r.ray.org_z = ray.origin.z;
    r.ray.dir_x = ray.direction.x;
    r.ray.dir_y = ray.direction.y;
    r.ray.dir_z = ray.direction.z;
    r.ray.tnear = ray.tNear;
    r.ray.tfar = ray.tFar;
    r.ray.mask = 0xffffffffu;
    r.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    r.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    rtcIntersect1(m_scene->get(), &context, &r);
    if (r.hit.geomID == RTC_INVALID_GEOMETRY_ID) return std::nullopt;
    return SurfaceHit{r.hit.instID[0],
                      r.hit.geomID,
                      r.hit.primID,
                      r.hit.u,
                      r.hit.v,
                      r.ray.tfar,
                      {r.hit.Ng_x, r.hit.Ng_y, r.hit.Ng_z}};
}

void TraceScene::occluded(RTCRay* rays, unsigned count, bool coherent) const
{
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    context.flags = coherent ? RTC_INTERSECT_CONTEXT_FLAG_COHERENT : RTC_INTERSECT_CONTEXT_FLAG_INCOHERENT;
    rtcOccluded1M(m_scene->get(), &context, rays, count, sizeof(RTCRay));
}

} // namespace vesk::renderers::embree
