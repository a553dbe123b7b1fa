#pragma once

/// The parts of an affine matrix.

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Splits the upper left 3 x 3 part A of a matrix into scaleOrientation * scale * transpose(scaleOrientation)
/// * rotation: the scale is the root of A * transpose(A), the rotation what is left.
struct Gf_MatrixFactors
{
    /// Scales whose square is below eps become eps; the matrix is singular where |determinant| is below eps.
    /// floatScale rounds the scales to float before the rotation is computed from them.
    Gf_MatrixFactors(const GfMatrix4d& matrix, double eps, bool floatScale);

    GfMatrix4d scaleOrientation;
    GfVec3d scale;
    GfMatrix4d rotation;
    bool isSingular;
};

PXR_NAMESPACE_CLOSE_SCOPE
