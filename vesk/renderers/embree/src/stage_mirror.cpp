#include "stage_mirror.h"

#include "prototype_reading.h"
#include "stage_reading.h"

#include <pxr/usd/usdGeom/camera.h>
#include <pxr/usd/usdGeom/gprim.h>
#include <pxr/usd/usdGeom/metrics.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

bool sameTime(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

// Values of the default time and of samples are different opinions: one holds nothing of the other.
bool areOfOneKind(double a, double b) { return std::isnan(a) == std::isnan(b); }

bool isSimple(const SceneChunk* chunk)
{
    return chunk && chunk->lights.empty() && !chunk->placements.empty();
}

// The prim that has to be read for a path: what lies inside an instance, an instancer or a shape belongs to
// that one. None where there is nothing any more.
UsdPrim readableAt(const UsdStageRefPtr& stage, const SdfPath& path)
{
    UsdPrim start = stage->GetPrimAtPath(path);
    UsdPrim above = start;
    for (SdfPath p = path; !above && !p.IsAbsoluteRootPath() && !p.IsEmpty();) {
        p = p.GetParentPath();
        above = stage->GetPrimAtPath(p);
    }
    for (UsdPrim p = above; p && !p.IsPseudoRoot(); p = p.GetParent()) {
        if (ChunkReader::standsForAll(p) || p.IsA<UsdGeomGprim>()) start = p;
    }
    return start;
}

void eraseSubtree(std::set<SdfPath>& paths, const SdfPath& path)
{
    auto at = paths.lower_bound(path);
    while (at != paths.end() && at->HasPrefix(path))
        at = paths.erase(at);
}

bool touchesSideOf(const GfRange3d& inner, const GfRange3d& outer)
{
    for (std::size_t i = 0; i < 3; ++i) {
        if (inner.GetMin()[i] <= outer.GetMin()[i] || inner.GetMax()[i] >= outer.GetMax()[i]) return true;
    }
    return false;
}

} // namespace

std::shared_ptr<const SceneSnapshot> StageMirror::update(const UsdStageRefPtr& stage,
                                                         const ExtractionRequest& request,
                                                         const StageChanges& changes)
{
    const bool isOther = UsdStagePtr(stage) != m_stage;
    const bool isNewTime = !sameTime(request.time, m_request.time);
    if (isOther || !areOfOneKind(request.time, m_request.time)) m_cache.clear();
    m_visited = 0;
    _forgetShapes(changes);
    ChunkReader reader(stage, request, m_cache, m_textures);
    if (_readsAll(stage, request, changes)) {
        m_knowsVarying = !isOther && (m_knowsVarying || isNewTime);
        m_materialsVary = false;
        m_varying.clear();
        m_entries.clear();
        m_shared.clear();
        m_replaced.reset();
        _readBelow(stage->GetPseudoRoot(), reader);
    } else {
        StageChanges all = changes;
        if (isNewTime) all.places.insert(all.places.end(), m_varying.begin(), m_varying.end());
        m_replaced.emplace();
        _readAgain(stage, all, reader);
    }
    m_stage = stage;
    m_request = request;
    const auto& materials = reader.items().materialPaths();
    m_shared.insert(materials.begin(), materials.end());
    const auto& skeletons = reader.items().skeletonPaths();
    m_shared.insert(skeletons.begin(), skeletons.end());
    m_shared.insert(reader.sharedPaths().begin(), reader.sharedPaths().end());
    if (m_knowsVarying) m_materialsVary |= reader.items().materialsMayVary();
    m_snapshot = _snapshot(stage);
    return m_snapshot;
}

bool StageMirror::_readsAll(const UsdStageRefPtr& stage, const ExtractionRequest& request,
                            const StageChanges& changes) const
{
    if (UsdStagePtr(stage) != m_stage || request.proxyPurpose != m_request.proxyPurpose ||
        request.sceneMaterials != m_request.sceneMaterials) {
        return true;
    }
    if (!sameTime(request.time, m_request.time) &&
        (!m_knowsVarying || m_materialsVary || !areOfOneKind(request.time, m_request.time))) {
        return true;
    }
    return _reachesSharedThings(changes);
}

void StageMirror::_noteVarying(const UsdPrim& prim, const ChunkReader& reader)
{
    if (reader.lastMayVary() || anyAttributeMayVary(prim)) m_varying.insert(prim.GetPath());
}

void StageMirror::_forgetShapes(const StageChanges& changes)
{
    // A change inside a prototype shows under the paths of its instances: those are not worth telling apart.
    if (m_cache.holdsInstances() && _reachesSharedThings(changes)) {
        m_cache.clear();
        return;
    }
    for (const SdfPath& path : changes.subtrees)
        m_cache.forgetSubtree(path);
    for (const SdfPath& path : changes.shapes)
        m_cache.forget(path);
}

bool StageMirror::_isShared(const SdfPath& path, bool withSubtree) const
{
    static const std::string prototypes = "/__Prototype_";
    if (path.IsAbsoluteRootPath() || path.GetString().compare(0, prototypes.size(), prototypes) == 0)
        return true;
    for (SdfPath p = path; !p.IsEmpty() && !p.IsAbsoluteRootPath(); p = p.GetParentPath()) {
        if (m_shared.count(p)) return true;
    }
    if (!withSubtree) return false;
    const auto below = m_shared.lower_bound(path);
    return below != m_shared.end() && below->HasPrefix(path);
}

bool StageMirror::_reachesSharedThings(const StageChanges& changes) const
{
    const auto any = [this](const std::vector<SdfPath>& paths, bool withSubtree) {
        return std::any_of(paths.begin(), paths.end(),
                           [&](const SdfPath& path) { return _isShared(path, withSubtree); });
    };
    return any(changes.subtrees, true) || any(changes.shapes, false) || any(changes.places, false);
}

void StageMirror::_readAgain(const UsdStageRefPtr& stage, const StageChanges& changes, ChunkReader& reader)
{
    std::set<SdfPath> starts;
    for (const auto* paths : {&changes.subtrees, &changes.shapes, &changes.places}) {
        for (const SdfPath& path : *paths) {
            starts.insert(path);
            if (const UsdPrim prim = readableAt(stage, path)) starts.insert(prim.GetPath());
        }
    }
    SdfPath done; // what lies below one start was read with it
    for (const SdfPath& path : starts) {
        if (!done.IsEmpty() && path.HasPrefix(done)) continue;
        done = path;
        std::vector<std::pair<SdfPath, Entry>> before = _takeSubtree(path);
        if (m_knowsVarying) eraseSubtree(m_varying, path);
        if (const UsdPrim prim = stage->GetPrimAtPath(path)) _readBelow(prim, reader);
        _noteReplaced(path, std::move(before));
    }
}

// Takes a prim and all below it out of the entries, in their order.
std::vector<std::pair<SdfPath, StageMirror::Entry>> StageMirror::_takeSubtree(const SdfPath& path)
{
    std::vector<std::pair<SdfPath, Entry>> taken;
    auto at = m_entries.lower_bound(path);
    while (at != m_entries.end() && at->first.HasPrefix(path)) {
        taken.emplace_back(at->first, std::move(at->second));
        at = m_entries.erase(at);
    }
    return taken;
}

// Where the same prims bring placements as before, their chunks take the former ones' slots.
void StageMirror::_noteReplaced(const SdfPath& path, std::vector<std::pair<SdfPath, Entry>> before)
{
    if (!m_replaced) return;
    auto at = m_entries.lower_bound(path);
    for (auto& [formerPath, former] : before) {
        const bool isSame = at != m_entries.end() && at->first == formerPath &&
                            at->second.isCamera == former.isCamera &&
                            (isSimple(former.chunk.get()) ? isSimple(at->second.chunk.get())
                                                          : !former.chunk && !at->second.chunk);
        if (!isSame) {
            m_replaced.reset();
            return;
        }
        at->second.slot = former.slot;
        if (former.chunk) m_replaced->emplace_back(formerPath, std::move(former.chunk));
        ++at;
    }
    if (at != m_entries.end() && at->first.HasPrefix(path)) m_replaced.reset();
}

void StageMirror::_readBelow(const UsdPrim& start, ChunkReader& reader)
{
    // The way down is a stack of our own: a stage may be nested deeper than a thread's stack allows.
    std::vector<std::pair<UsdPrim, InheritedState>> pending;
    const auto pushChildren = [&pending](const UsdPrim& prim, const InheritedState& state) {
        for (const UsdPrim& child : prim.GetFilteredChildren(UsdPrimDefaultPredicate))
            pending.emplace_back(child, state);
    };
    if (start.IsPseudoRoot()) {
        pushChildren(start, InheritedState());
    } else if (start.IsActive() && start.IsDefined() && start.IsLoaded() && !start.IsAbstract()) {
        if (auto state = reader.states().above(start)) pending.emplace_back(start, *state);
    }
    while (!pending.empty()) {
        auto [prim, state] = std::move(pending.back());
        pending.pop_back();
        ++m_visited;
        if (!reader.states().descend(prim, state)) {
            if (m_knowsVarying && anyAttributeMayVary(prim)) m_varying.insert(prim.GetPath());
            continue;
        }
        Entry entry;
        entry.chunk = reader.read(prim, state);
        entry.isCamera = prim.IsA<UsdGeomCamera>();
        if (m_knowsVarying) _noteVarying(prim, reader);
        if (entry.chunk || entry.isCamera) m_entries[prim.GetPath()] = std::move(entry);
        if (!ChunkReader::standsForAll(prim)) pushChildren(prim, state);
    }
}

// A camera that carries lights or shapes moves them too.
bool StageMirror::_drawsBelow(const SdfPath& camera) const
{
    for (auto at = m_entries.lower_bound(camera); at != m_entries.end() && at->first.HasPrefix(camera);
         ++at) {
        if (at->second.chunk) return true;
    }
    return false;
}

std::shared_ptr<const SceneSnapshot> StageMirror::_snapshot(const UsdStageRefPtr& stage)
{
    auto snapshot = std::make_shared<SceneSnapshot>();
    if (_patchSnapshot(*snapshot)) return snapshot;
    snapshot->zUp = UsdGeomGetStageUpAxis(stage) == UsdGeomTokens->z;
    snapshot->chunks.reserve(m_entries.size());
    for (auto& [path, entry] : m_entries) {
        if (entry.isCamera && !_drawsBelow(path)) snapshot->cameraPaths.insert(path);
        if (!entry.chunk) continue;
        snapshot->lights.insert(snapshot->lights.end(), entry.chunk->lights.begin(),
                                entry.chunk->lights.end());
        if (entry.chunk->placements.empty()) continue;
        snapshot->bounds.UnionWith(entry.chunk->bounds);
        entry.slot = snapshot->chunks.size();
        snapshot->chunks.push_back(entry.chunk);
    }
    return snapshot;
}

// Where chunks only took the place of others, the last snapshot is copied with those put in.
bool StageMirror::_patchSnapshot(SceneSnapshot& snapshot) const
{
    if (!m_snapshot || !m_replaced) return false;
    snapshot = *m_snapshot;
    bool boundsShrink = false;
    for (const auto& [path, former] : *m_replaced) {
        const Entry& entry = m_entries.at(path);
        snapshot.chunks[entry.slot] = entry.chunk;
        boundsShrink |= touchesSideOf(former->bounds, m_snapshot->bounds);
        snapshot.bounds.UnionWith(entry.chunk->bounds);
    }
    if (!boundsShrink) return true;
    snapshot.bounds = GfRange3d();
    for (const auto& chunk : snapshot.chunks)
        snapshot.bounds.UnionWith(chunk->bounds);
    return true;
}

std::optional<GfCamera> extractCamera(const UsdStageRefPtr& stage, const SdfPath& path, double time)
{
    if (!path.IsAbsolutePath() || !path.IsPrimPath()) return std::nullopt;
    const UsdGeomCamera camera(stage->GetPrimAtPath(path));
    if (!camera) return std::nullopt;
    return camera.GetCamera(toTimeCode(time));
}

} // namespace vesk::renderers::embree
