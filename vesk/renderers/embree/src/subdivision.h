#pragma once

#include "mesh_topology.h"

namespace vesk::renderers::embree {

/// Replaces a cage by the limit surface of its subdivision: fine faces whose points and normals are the
/// limit's own, with all primvars refined by the rules of their interpolation. Edges and corners that stay
/// sharp keep a normal for each of their sides.
/// \param geometry holds the cage's points and primvars; its triangles are made here
/// Returns false, and changes nothing, for a cage that the scheme does not allow (faces of less than three or
/// of repeated points, a loop scheme on faces that are no triangles) or that has more than
/// `kMostCageCorners`.
bool subdivide(Geometry& geometry, const MeshTopology& topology);

/// Cages beyond this are fine enough as they are.
inline constexpr std::size_t kMostCageCorners = 1u << 20;

} // namespace vesk::renderers::embree
