#pragma once

#include <pxr/base/tf/staticTokens.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

// clang-format off
#define USDGEOM_TOKENS                                                                                      \
    (accelerations) (all) (angularVelocities) (axis) (basis) (bezier) (bilinear) (boundaries) (bounds)      \
    (box) (bspline) (cards) (catmullClark) (catmullRom) (clippingPlanes) (clippingRange) (closed)           \
    (constant) (cornerIndices) (cornerSharpnesses) (cornersOnly) (cornersPlus1) (cornersPlus2)              \
    (creaseIndices) (creaseLengths) (creaseSharpnesses) (cross) (cubic) (curveVertexCounts)                 \
    ((default_, "default")) (doubleSided) (edge) (edgeAndCorner) (edgeOnly) (elementSize) (elementType)     \
    (exposure) (extent) (extentsHint) (face) (faceVarying) (faceVaryingLinearInterpolation)                 \
    (faceVertexCounts) (faceVertexIndices) (familyName) (focalLength) (focusDistance) (fromTexture)         \
    (fStop) (guide) (guideVisibility) (height) (hermite) (holeIndices) (horizontalAperture)                 \
    (horizontalApertureOffset) (ids) (inactiveIds) (indices) (inherited) (interpolateBoundary)              \
    (interpolation) (invisible) (invisibleIds) (knots) (left) (leftHanded) (length) (linear) (loop)         \
    (metersPerUnit) ((modelApplyDrawMode, "model:applyDrawMode"))                                           \
    ((modelCardGeometry, "model:cardGeometry")) ((modelCardTextureXNeg, "model:cardTextureXNeg"))           \
    ((modelCardTextureXPos, "model:cardTextureXPos")) ((modelCardTextureYNeg, "model:cardTextureYNeg"))     \
    ((modelCardTextureYPos, "model:cardTextureYPos")) ((modelCardTextureZNeg, "model:cardTextureZNeg"))     \
    ((modelCardTextureZPos, "model:cardTextureZPos")) ((modelDrawMode, "model:drawMode"))                   \
    ((modelDrawModeColor, "model:drawModeColor")) (mono) ((motionBlurScale, "motion:blurScale"))            \
    ((motionNonlinearSampleCount, "motion:nonlinearSampleCount"))                                           \
    ((motionVelocityScale, "motion:velocityScale")) (none) (nonOverlapping) (nonperiodic) (normals)         \
    (open) (order) (orientation) (orientations) (orientationsf) (origin) (orthographic) (partition)         \
    (periodic) (perspective) (pinned) (pivot) (point) (points) (pointWeights) (positions) (power)           \
    ((primvarsDisplayColor, "primvars:displayColor"))                                                       \
    ((primvarsDisplayOpacity, "primvars:displayOpacity")) (projection) (protoIndices) (prototypes)          \
    (proxy) (proxyPrim) (proxyVisibility) (purpose) (radius) (radiusBottom) (radiusTop) (ranges)            \
    (render) (renderVisibility) (right) (rightHanded) (scales) (segment)                                    \
    ((shutterClose, "shutter:close")) ((shutterOpen, "shutter:open")) (size) (smooth) (stereoRole)          \
    (subdivisionScheme) (surfaceFaceVertexIndices) (tangents) (tetrahedron) (tetVertexIndices)              \
    (triangleSubdivisionRule) ((trimCurveCounts, "trimCurve:counts"))                                       \
    ((trimCurveKnots, "trimCurve:knots")) ((trimCurveOrders, "trimCurve:orders"))                           \
    ((trimCurvePoints, "trimCurve:points")) ((trimCurveRanges, "trimCurve:ranges"))                         \
    ((trimCurveVertexCounts, "trimCurve:vertexCounts")) (type) (uForm) (uKnots) (unauthoredValuesIndex)     \
    (uniform) (unrestricted) (uOrder) (upAxis) (uRange) (uVertexCount) (varying) (velocities) (vertex)      \
    (verticalAperture) (verticalApertureOffset) (vForm) (visibility) (visible) (vKnots) (vOrder)            \
    (vRange) (vVertexCount) (width) (widths) (wrap) ((x, "X")) (xformOpOrder) ((y, "Y")) ((z, "Z"))         \
    (BasisCurves) (Boundable) (Camera) (Capsule) (Capsule_1) (Cone) (Cube) (Curves) (Cylinder)              \
    (Cylinder_1) (GeomModelAPI) (GeomSubset) (Gprim) (HermiteCurves) (Imageable) (Mesh) (MotionAPI)         \
    (NurbsCurves) (NurbsPatch) (Plane) (PointBased) (PointInstancer) (Points) (PrimvarsAPI) (Scope)         \
    (Sphere) (TetMesh) (VisibilityAPI) (Xform) (Xformable) (XformCommonAPI)
// clang-format on

/// Names of the geometry schemas, their properties and values.
TF_DECLARE_PUBLIC_TOKENS(UsdGeomTokens, VESK_USD_API, USDGEOM_TOKENS);
using UsdGeomTokensType = UsdGeomTokens_StaticTokenType;

PXR_NAMESPACE_CLOSE_SCOPE
