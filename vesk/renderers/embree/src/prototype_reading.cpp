#include "prototype_reading.h"

#include "draw_mode_reading.h"
#include "instancer_reading.h"
#include "light_extraction.h"
#include "stage_reading.h"

#include <vesk/base/logging.h>

#include <algorithm>
#include <utility>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

// A stage that names more copies than memory holds is a mistake, not a scene.
constexpr std::size_t kMostPlacements = 20'000'000;

bool isInstancer(const UsdPrim& prim)
{
    static const TfToken type("PointInstancer");
    return prim.GetTypeName() == type;
}

// The prims of a prototype: active ones, those without a definer included, in the order of the stage.
std::vector<UsdPrim> childrenOf(const UsdPrim& prim)
{
    std::vector<UsdPrim> children;
    for (const UsdPrim& child : prim.GetFilteredChildren(
             UsdTraverseInstanceProxies(UsdPrimIsActive && UsdPrimIsLoaded && !UsdPrimIsAbstract))) {
        children.push_back(child);
    }
    return children;
}

} // namespace

ChunkReader::ChunkReader(const UsdStageRefPtr& stage, const ExtractionRequest& request, GeometryCache& cache,
                         TextureStore& textures)
    : m_stage(stage),
      m_time(toTimeCode(request.time)),
      m_states(request, m_time),
      m_items(stage, request, m_time, cache, textures),
      m_textures(textures)
{}

bool ChunkReader::standsForAll(const UsdPrim& prim)
{
    return prim.IsInstance() || isInstancer(prim) || !appliedDrawMode(prim).IsEmpty();
}

// Returns whether something else is drawn in the place of a model, with all below it.
bool ChunkReader::_addStandIn(const UsdPrim& prim, const InheritedState& state, std::vector<SceneItem>& items)
{
    const TfToken mode = appliedDrawMode(prim);
    if (mode.IsEmpty()) return false;
    if (!m_states.shows(state.purpose)) return true;
    if (auto item = readStandIn(prim, mode, m_time, m_textures)) items.push_back(std::move(*item));
    return true;
}

std::shared_ptr<const SceneChunk> ChunkReader::read(const UsdPrim& prim, const InheritedState& state)
{
    auto chunk = std::make_shared<SceneChunk>();
    m_mayVary = false;
    std::vector<SceneItem> standIns;
    if (_addStandIn(prim, state, standIns)) {
        m_mayVary = true; // with the extents and pictures of all that it stands for
        if (standIns.empty() || !addGroup(*chunk, makeGroup(std::move(standIns)), state.toRoot))
            return nullptr;
        return chunk;
    }
    if (prim.IsInstance()) {
        m_sharedPaths.insert(prim.GetPath());
        _addNative(prim, state, *chunk);
    } else if (isInstancer(prim)) {
        _addInstancer(prim, state, *chunk);
    } else if (m_states.shows(state.purpose)) {
        if (auto item = m_items.read(prim, state, false)) {
            const SdfPath path = item->path;
            std::vector<SceneItem> items;
            items.push_back(std::move(*item));
            if (!addGroup(*chunk, makeGroup(std::move(items)), state.toRoot)) {
                VESK_LOG_WARN("Prim {} lies at a place that is not finite and is not drawn",
                              path.GetString());
            }
        }
    }
    if (auto light = readStageLight(prim, state.toRoot, m_time, m_textures)) chunk->lights.push_back(*light);
    m_mayVary = m_items.takeShapesMayVary() || m_mayVary;
    if (chunk->placements.empty() && chunk->lights.empty()) return nullptr;
    return chunk;
}

void ChunkReader::_addNative(const UsdPrim& prim, const InheritedState& state, SceneChunk& chunk)
{
    const UsdPrim root = prim.GetPrototype();
    const auto prototype = root ? _prototype(root, state, false) : nullptr;
    if (!prototype || !_fits(*prototype, 1, prim)) return;
    const SdfPath path = prim.GetPath();
    if (addCopies(chunk, *prototype, root.GetPath(), path, path, {{state.toRoot, -1}}) > 0) {
        VESK_LOG_WARN("Instance {} lies at a place that is not finite and is not drawn", path.GetString());
    }
}

void ChunkReader::_addInstancer(const UsdPrim& prim, const InheritedState& state, SceneChunk& chunk)
{
    InstancerReading reading = readInstancer(prim, m_time);
    const SdfPath path = prim.GetPath();
    if (!reading.problem.empty()) {
        VESK_LOG_WARN("Instancer {} {} and is not drawn", path.GetString(), reading.problem);
        return;
    }
    std::size_t dropped = 0;
    for (InstancerReading::Prototype& prototype : reading.prototypes) {
        const UsdPrim root = m_stage->GetPrimAtPath(prototype.path);
        if (!root || prototype.copies.empty()) continue;
        m_sharedPaths.insert(prototype.path);
        const auto own = _stateOfPrototype(root, prim, state);
        const auto chunkOfRoot = own ? _prototype(root, *own, true) : nullptr;
        if (!chunkOfRoot || !_fits(*chunkOfRoot, prototype.copies.size(), prim)) continue;
        for (Copy& copy : prototype.copies)
            copy.place = copy.place * state.toRoot;
        dropped += addCopies(chunk, *chunkOfRoot, prototype.path, prototype.path, path, prototype.copies);
    }
    if (dropped > 0) {
        VESK_LOG_WARN("Instancer {} has {} copies at places that are not finite; they are not drawn",
                      path.GetString(), dropped);
    }
}

// A prototype looks as the instancer says; bindings on its own way down the stage count too.
std::optional<InheritedState> ChunkReader::_stateOfPrototype(const UsdPrim& root, const UsdPrim& instancer,
                                                             const InheritedState& state)
{
    InheritedState own = state;
    own.toRoot = GfMatrix4d(1.0);
    std::vector<UsdPrim> between;
    for (UsdPrim p = root.GetParent(); p && !p.IsPseudoRoot() && p != instancer; p = p.GetParent())
        between.push_back(p);
    const bool isBelow = root.GetPath().HasPrefix(instancer.GetPath());
    for (auto p = between.rbegin(); p != between.rend(); ++p) {
        InheritedState above = own;
        m_mayVary = m_mayVary || anyAttributeMayVary(*p);
        // What hides prototypes beside the instancer hides them there alone.
        if (!m_states.descend(*p, above)) {
            if (isBelow) return std::nullopt;
            continue;
        }
        own.material = above.material;
        own.materialIsStronger = above.materialIsStronger;
        own.hasCollections = above.hasCollections;
        if (isBelow) {
            own.color = above.color;
            own.opacity = above.opacity;
            own.purpose = above.purpose;
        }
    }
    return own;
}

bool ChunkReader::_fits(const SceneChunk& prototype, std::size_t copies, const UsdPrim& prim)
{
    if (prototype.placements.size() * copies <= kMostPlacements) return true;
    VESK_LOG_WARN("Prim {} stands for more than {} copies and is not drawn", prim.GetPath().GetString(),
                  kMostPlacements);
    return false;
}

std::shared_ptr<const SceneChunk> ChunkReader::_prototype(const UsdPrim& root, const InheritedState& state,
                                                          bool rootIsDrawn)
{
    std::vector<Known>& known = m_prototypes[root.GetPath()];
    for (const Known& k : known) {
        if (!k.state.looksLike(state)) continue;
        m_mayVary |= k.mayVary;
        return k.chunk;
    }
    if (!m_underWay.insert(root.GetPath()).second) {
        VESK_LOG_WARN("Prototype {} holds itself and is not drawn there", root.GetPath().GetString());
        return nullptr;
    }
    InheritedState own = state;
    own.toRoot = GfMatrix4d(1.0);
    const bool before = std::exchange(m_mayVary, false);
    auto chunk = _readPrototype(root, own, rootIsDrawn);
    m_mayVary = m_items.takeShapesMayVary() || m_mayVary;
    m_underWay.erase(root.GetPath());
    m_prototypes[root.GetPath()].push_back({state, chunk, m_mayVary});
    m_mayVary |= before;
    return chunk;
}

std::shared_ptr<const SceneChunk> ChunkReader::_readPrototype(const UsdPrim& root, InheritedState state,
                                                              bool rootIsDrawn)
{
    auto chunk = std::make_shared<SceneChunk>();
    std::vector<SceneItem> items;
    std::vector<std::pair<UsdPrim, InheritedState>> pending;
    const auto pushChildren = [&pending](const UsdPrim& prim, const InheritedState& handedDown) {
        const std::vector<UsdPrim> children = childrenOf(prim);
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            pending.emplace_back(*child, handedDown);
    };
    if (rootIsDrawn) {
        pending.emplace_back(root, state);
    } else {
        pushChildren(root, state);
    }
    while (!pending.empty()) {
        auto [prim, own] = std::move(pending.back());
        pending.pop_back();
        m_mayVary = m_mayVary || anyAttributeMayVary(prim);
        if (!m_states.descend(prim, own)) continue;
        const std::size_t before = items.size();
        if (_addStandIn(prim, own, items)) {
            m_mayVary = true;
            for (std::size_t i = before; i < items.size(); ++i) {
                items[i].toGroup = own.toRoot;
                items[i].movesInGroup = own.toRoot != GfMatrix4d(1.0);
            }
            continue;
        }
        if (prim.IsInstance()) {
            _addNative(prim, own, *chunk);
            continue;
        }
        if (isInstancer(prim)) {
            _addInstancer(prim, own, *chunk);
            continue;
        }
        if (m_states.shows(own.purpose)) {
            if (auto item = m_items.read(prim, own, true)) {
                item->toGroup = own.toRoot;
                item->movesInGroup = own.toRoot != GfMatrix4d(1.0);
                const GfRange3d box(item->geometry->lower.toGfd(), item->geometry->upper.toGfd());
                if (isUsablePlace(item->toGroup, box)) items.push_back(std::move(*item));
            }
        }
        if (auto light = readStageLight(prim, own.toRoot, m_time, m_textures))
            chunk->lights.push_back(*light);
        pushChildren(prim, own);
    }
    if (!items.empty()) addGroup(*chunk, makeGroup(std::move(items)), GfMatrix4d(1.0));
    return chunk;
}

} // namespace vesk::renderers::embree
