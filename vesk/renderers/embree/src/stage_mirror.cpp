#include "stage_mirror.h"

#include "prototype_reading.h"
#include "stage_reading.h"

#include <pxr/usd/usdGeom/camera.h>
#include <pxr/usd/usdGeom/gprim.h>
#include <pxr/usd/usdGeom/metrics.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <algorithm>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

bool sameTime(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

bool sameRequest(const ExtractionRequest& a, const ExtractionRequest& b)
{
    return sameTime(a.time, b.time) && a.proxyPurpose == b.proxyPurpose &&
           a.sceneMaterials == b.sceneMaterials;
}

// The nearest prim at or above a path that is read with a chunk of its own: what lies inside an instance, an
// instancer or a shape belongs to that one.
UsdPrim readableAbove(const UsdStageRefPtr& stage, SdfPath path)
{
    UsdPrim prim = stage->GetPrimAtPath(path);
    while (!prim && !path.IsAbsoluteRootPath() && !path.IsEmpty()) {
        path = path.GetParentPath();
        prim = stage->GetPrimAtPath(path);
    }
    UsdPrim start = prim;
    for (UsdPrim p = prim; p && !p.IsPseudoRoot(); p = p.GetParent()) {
        if (ChunkReader::standsForAll(p) || p.IsA<UsdGeomGprim>()) start = p;
    }
    return start ? start : stage->GetPseudoRoot();
}

template <class Map>
void eraseSubtree(Map& map, const SdfPath& path)
{
    auto at = map.lower_bound(path);
    while (at != map.end() && at->first.HasPrefix(path))
        at = map.erase(at);
}

} // namespace

std::shared_ptr<const SceneSnapshot> StageMirror::update(const UsdStageRefPtr& stage,
                                                         const ExtractionRequest& request,
                                                         const StageChanges& changes)
{
    const bool isOther = UsdStagePtr(stage) != m_stage;
    if (isOther) m_cache.clear();
    m_visited = 0;
    _forgetShapes(changes);
    ChunkReader reader(stage, request, m_cache, m_textures);
    if (isOther || !sameRequest(request, m_request) || _reachesSharedThings(changes)) {
        m_entries.clear();
        m_shared.clear();
        _readBelow(stage->GetPseudoRoot(), reader);
    } else {
        _readAgain(stage, changes, reader);
    }
    m_stage = stage;
    m_request = request;
    const auto& materials = reader.items().materialPaths();
    m_shared.insert(materials.begin(), materials.end());
    const auto& skeletons = reader.items().skeletonPaths();
    m_shared.insert(skeletons.begin(), skeletons.end());
    m_shared.insert(reader.sharedPaths().begin(), reader.sharedPaths().end());
    return _snapshot(stage);
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
            eraseSubtree(m_entries, path);
            starts.insert(readableAbove(stage, path).GetPath());
        }
    }
    SdfPath done; // what lies below one start was read with it
    for (const SdfPath& path : starts) {
        if (!done.IsEmpty() && path.HasPrefix(done)) continue;
        done = path;
        eraseSubtree(m_entries, path);
        _readBelow(stage->GetPrimAtPath(path), reader);
    }
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
        if (!reader.states().descend(prim, state)) continue;
        Entry entry;
        entry.chunk = reader.read(prim, state);
        entry.isCamera = prim.IsA<UsdGeomCamera>();
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

std::shared_ptr<const SceneSnapshot> StageMirror::_snapshot(const UsdStageRefPtr& stage) const
{
    auto snapshot = std::make_shared<SceneSnapshot>();
    snapshot->zUp = UsdGeomGetStageUpAxis(stage) == UsdGeomTokens->z;
    snapshot->chunks.reserve(m_entries.size());
    for (const auto& [path, entry] : m_entries) {
        if (entry.isCamera && !_drawsBelow(path)) snapshot->cameraPaths.insert(path);
        if (!entry.chunk) continue;
        snapshot->lights.insert(snapshot->lights.end(), entry.chunk->lights.begin(),
                                entry.chunk->lights.end());
        if (entry.chunk->placements.empty()) continue;
        snapshot->bounds.UnionWith(entry.chunk->bounds);
        snapshot->chunks.push_back(entry.chunk);
    }
    return snapshot;
}

std::optional<GfCamera> extractCamera(const UsdStageRefPtr& stage, const SdfPath& path, double time)
{
    if (!path.IsAbsolutePath() || !path.IsPrimPath()) return std::nullopt;
    const UsdGeomCamera camera(stage->GetPrimAtPath(path));
    if (!camera) return std::nullopt;
    return camera.GetCamera(toTimeCode(time));
}

} // namespace vesk::renderers::embree
