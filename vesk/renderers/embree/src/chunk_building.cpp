#include "chunk_building.h"

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

constexpr double kFarthest = 1e18;

// The box around a moved box: each axis adds the nearer or the farther end.
GfRange3d movedBox(const GfMatrix4d& m, const GfRange3d& box)
{
    GfVec3d low(m[3][0], m[3][1], m[3][2]);
    GfVec3d high = low;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const double a = m[row][column] * box.GetMin()[row];
            const double b = m[row][column] * box.GetMax()[row];
            low[column] += std::min(a, b);
            high[column] += std::max(a, b);
        }
    }
    return {low, high};
}

bool isUsable(const GfRange3d& box)
{
    for (int i = 0; i < 3; ++i) {
        if (!(std::abs(box.GetMin()[i]) < kFarthest && std::abs(box.GetMax()[i]) < kFarthest)) return false;
    }
    return true;
}

SdfPath moved(const SdfPath& path, const SdfPath& from, const SdfPath& to)
{
    return path.HasPrefix(from) ? path.ReplacePrefix(from, to) : path;
}

} // namespace

bool isUsablePlace(const GfMatrix4d& matrix, const GfRange3d& box) { return isUsable(movedBox(matrix, box)); }

bool SceneItem::isSolid() const
{
    const auto lets = [](const std::shared_ptr<const Material>& m) { return m && m->mayBeTransparent(); };
    const std::vector<float>& own = geometry->opacities.values;
    return displayOpacity >= 1.0f && !lets(materials.whole) &&
           std::none_of(materials.subsets.begin(), materials.subsets.end(), lets) &&
           std::all_of(own.begin(), own.end(), [](float opacity) { return opacity >= 1.0f; });
}

std::shared_ptr<const SceneGroup> makeGroup(std::vector<SceneItem> items)
{
    auto group = std::make_shared<SceneGroup>();
    for (const SceneItem& item : items) {
        const GfRange3d own(item.geometry->lower.toGfd(), item.geometry->upper.toGfd());
        group->box.UnionWith(item.movesInGroup ? movedBox(item.toGroup, own) : own);
        group->isSolid = group->isSolid && item.isSolid();
    }
    group->items = std::move(items);
    return group;
}

bool addGroup(SceneChunk& chunk, std::shared_ptr<const SceneGroup> group, const GfMatrix4d& place)
{
    const GfRange3d box = movedBox(place, group->box);
    if (!isUsable(box)) return false;
    chunk.bounds.UnionWith(box);
    if (chunk.sources.empty()) chunk.sources.emplace_back();
    Placement placement;
    placement.setMatrix(place);
    placement.group = static_cast<std::uint32_t>(chunk.groups.size());
    placement.firstPrim = chunk.primCount;
    chunk.placements.push_back(placement);
    chunk.primCount += static_cast<std::uint32_t>(group->items.size());
    chunk.isSolid = chunk.isSolid && group->isSolid;
    chunk.groups.push_back(std::move(group));
    return true;
}

std::size_t addCopies(SceneChunk& chunk, const SceneChunk& prototype, const SdfPath& root,
                      const SdfPath& stageRoot, const SdfPath& instancePath, const std::vector<Copy>& copies)
{
    if (copies.empty()) return 0;
    const auto firstGroup = static_cast<std::uint32_t>(chunk.groups.size());
    const auto firstSource = static_cast<std::uint32_t>(chunk.sources.size());
    chunk.groups.insert(chunk.groups.end(), prototype.groups.begin(), prototype.groups.end());
    for (PlacementSource source : prototype.sources) {
        if (source.prototypePrefix.IsEmpty()) source.prototypePrefix = source.stagePrefix = root;
        source.stagePrefix = moved(source.stagePrefix, root, stageRoot);
        source.instancePath = instancePath;
        chunk.sources.push_back(std::move(source));
    }
    std::size_t dropped = 0;
    chunk.placements.reserve(chunk.placements.size() + copies.size() * prototype.placements.size());
    for (const Copy& copy : copies) {
        for (const Placement& inner : prototype.placements) {
            const GfMatrix4d place = inner.matrix() * copy.place;
            const GfRange3d box = movedBox(place, prototype.groups[inner.group]->box);
            if (!isUsable(box)) {
                ++dropped;
                continue;
            }
            chunk.bounds.UnionWith(box);
            Placement placement;
            placement.setMatrix(place);
            placement.group = firstGroup + inner.group;
            placement.source = firstSource + inner.source;
            placement.firstPrim = chunk.primCount + inner.firstPrim;
            placement.instanceIndex = copy.instanceIndex >= 0 ? copy.instanceIndex : inner.instanceIndex;
            chunk.placements.push_back(placement);
        }
        for (StageLight light : prototype.lights) {
            light.localToWorld = light.localToWorld * copy.place;
            chunk.lights.push_back(std::move(light));
        }
    }
    chunk.primCount += prototype.primCount;
    chunk.isSolid = chunk.isSolid && prototype.isSolid;
    return dropped;
}

} // namespace vesk::renderers::embree
