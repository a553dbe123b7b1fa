#pragma once

#include "scene_snapshot.h"

#include <vector>

namespace vesk::renderers::embree {

/// One copy of a prototype: where it is placed and its number.
struct Copy
{
    PXR_NS::GfMatrix4d place{1.0};
    int instanceIndex = -1;
};

/// Whether a matrix places things at finite, usable coordinates.
bool isUsablePlace(const PXR_NS::GfMatrix4d& matrix, const PXR_NS::GfRange3d& box);

/// A group with its box.
std::shared_ptr<const SceneGroup> makeGroup(std::vector<SceneItem> items);

/// Adds a group of its own at a place. Returns false where the place is not usable.
bool addGroup(SceneChunk& chunk, std::shared_ptr<const SceneGroup> group, const PXR_NS::GfMatrix4d& place);

/// Adds copies of a prototype, which is a chunk in a space of its own. The copies of one call share the
/// numbers of their prims.
/// \param root the path in the prototype that `stageRoot` takes the place of
/// \param instancePath the outermost instance or instancer that brings them
/// Returns how many placements were left out because they are not at usable places.
std::size_t addCopies(SceneChunk& chunk, const SceneChunk& prototype, const PXR_NS::SdfPath& root,
                      const PXR_NS::SdfPath& stageRoot, const PXR_NS::SdfPath& instancePath,
                      const std::vector<Copy>& copies);

} // namespace vesk::renderers::embree
