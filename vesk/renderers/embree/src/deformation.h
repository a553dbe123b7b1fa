#pragma once

#include "geometry.h"

#include <pxr/base/gf/matrix4d.h>

#include <cstdint>
#include <vector>

namespace vesk::renderers::embree {

/// How a skeleton and blend shapes move the points of a mesh, at one time: offsets that are added to points,
/// then linear blend skinning (Magnenat-Thalmann et al. 1988) by the joints' matrices.
struct Deformation
{
    std::vector<Vec3> offsets;              ///< one a point, empty for none
    std::vector<Vec3> normalOffsets;        ///< likewise
    std::vector<PXR_NS::GfMatrix4d> joints; ///< from the mesh at rest to the mesh as it is posed
    std::vector<int> jointIndices;          ///< `perPoint` of them a point, or for all points together
    std::vector<float> weights;             ///< one a joint index
    std::size_t perPoint = 0;               ///< 0: no joint moves the mesh
    bool isRigid = false;                   ///< the indices and weights hold for all points

    /// Whether it moves anything.
    bool empty() const { return offsets.empty() && perPoint == 0; }

    /// Moves the points of the mesh at rest.
    void movePoints(std::vector<Vec3>& points) const;

    /// Turns a normal at a point, not normalised before and normalised after.
    Vec3 turnedNormal(Vec3 normal, std::size_t point) const;

private:
    PXR_NS::GfMatrix4d _matrixAt(std::size_t point) const;
};

/// Turns the normals of a mesh as its points are moved.
/// \param corners the point of each face corner
void turnNormals(Primvar<Vec3>& normals, const Deformation& deformation, const std::vector<int>& corners);

} // namespace vesk::renderers::embree
