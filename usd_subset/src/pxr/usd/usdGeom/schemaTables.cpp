#include "pxr/usd/usd/schemaTable.h"

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// clang-format off
const Usd_SchemaTable kUsdGeom(R"(
abstract Imageable UsdGeomImageable : UsdTyped
    rel proxyPrim
    uniform token purpose = "default" | default render proxy guide
    token visibility = "inherited" | inherited invisible
api GeomModelAPI UsdGeomModelAPI : UsdAPISchemaBase
    uniform bool model:applyDrawMode = 0
    uniform token model:cardGeometry = "cross" | cross box fromTexture
    asset model:cardTextureXNeg
    asset model:cardTextureXPos
    asset model:cardTextureYNeg
    asset model:cardTextureYPos
    asset model:cardTextureZNeg
    asset model:cardTextureZPos
    uniform token model:drawMode = "inherited" | origin bounds cards default inherited
    uniform float3 model:drawModeColor = (0.18, 0.18, 0.18)
api MotionAPI UsdGeomMotionAPI : UsdAPISchemaBase
    float motion:blurScale = 1
    int motion:nonlinearSampleCount = 3
    float motion:velocityScale = 1
plain PrimvarsAPI UsdGeomPrimvarsAPI : UsdAPISchemaBase
concrete Scope UsdGeomScope : UsdGeomImageable
concrete GeomSubset UsdGeomSubset : UsdTyped
    uniform token elementType = "face" | face point edge segment tetrahedron
    uniform token familyName = ""
    int[] indices = []
api VisibilityAPI UsdGeomVisibilityAPI : UsdAPISchemaBase
    only Imageable
    uniform token guideVisibility = "invisible" | inherited invisible visible
    uniform token proxyVisibility = "inherited" | inherited invisible visible
    uniform token renderVisibility = "inherited" | inherited invisible visible
plain XformCommonAPI UsdGeomXformCommonAPI : UsdAPISchemaBase
abstract Xformable UsdGeomXformable : UsdGeomImageable
    uniform token[] xformOpOrder
abstract Boundable UsdGeomBoundable : UsdGeomXformable
    float3[] extent
concrete Camera UsdGeomCamera : UsdGeomXformable
    float4[] clippingPlanes = []
    float2 clippingRange = (1, 1000000)
    float exposure = 0
    float focalLength = 50
    float focusDistance = 0
    float fStop = 0
    float horizontalAperture = 20.955
    float horizontalApertureOffset = 0
    token projection = "perspective" | perspective orthographic
    double shutter:close = 0
    double shutter:open = 0
    uniform token stereoRole = "mono" | mono left right
    float verticalAperture = 15.2908
    float verticalApertureOffset = 0
abstract Gprim UsdGeomGprim : UsdGeomBoundable
    uniform bool doubleSided = 0
    uniform token orientation = "rightHanded" | rightHanded leftHanded
    color3f[] primvars:displayColor
    float[] primvars:displayOpacity
concrete Capsule UsdGeomCapsule : UsdGeomGprim
    uniform token axis = "Z" | X Y Z
    float3[] extent = [(-0.5, -0.5, -1), (0.5, 0.5, 1)]
    double height = 1
    double radius = 0.5
concrete Capsule_1 UsdGeomCapsule_1 : UsdGeomGprim
    uniform token axis = "Z" | X Y Z
    float3[] extent = [(-0.5, -0.5, -1), (0.5, 0.5, 1)]
    double height = 1
    double radiusBottom = 0.5
    double radiusTop = 0.5
concrete Cone UsdGeomCone : UsdGeomGprim
    uniform token axis = "Z" | X Y Z
    float3[] extent = [(-1, -1, -1), (1, 1, 1)]
    double height = 2
    double radius = 1
concrete Cube UsdGeomCube : UsdGeomGprim
    float3[] extent = [(-1, -1, -1), (1, 1, 1)]
    double size = 2
concrete Cylinder UsdGeomCylinder : UsdGeomGprim
    uniform token axis = "Z" | X Y Z
    float3[] extent = [(-1, -1, -1), (1, 1, 1)]
    double height = 2
    double radius = 1
concrete Cylinder_1 UsdGeomCylinder_1 : UsdGeomGprim
    uniform token axis = "Z" | X Y Z
    float3[] extent = [(-1, -1, -1), (1, 1, 1)]
    double height = 2
    double radiusBottom = 1
    double radiusTop = 1
concrete Plane UsdGeomPlane : UsdGeomGprim
    uniform token axis = "Z" | X Y Z
    uniform bool doubleSided = 1
    float3[] extent = [(-1, -1, 0), (1, 1, 0)]
    double length = 2
    double width = 2
abstract PointBased UsdGeomPointBased : UsdGeomGprim
    vector3f[] accelerations
    normal3f[] normals
    point3f[] points
    vector3f[] velocities
abstract Curves UsdGeomCurves : UsdGeomPointBased
    int[] curveVertexCounts
    float[] widths
concrete BasisCurves UsdGeomBasisCurves : UsdGeomCurves
    uniform token basis = "bezier" | bezier bspline catmullRom
    uniform token type = "cubic" | linear cubic
    uniform token wrap = "nonperiodic" | nonperiodic periodic pinned
concrete HermiteCurves UsdGeomHermiteCurves : UsdGeomCurves
    vector3f[] tangents = []
concrete Mesh UsdGeomMesh : UsdGeomPointBased
    int[] cornerIndices = []
    float[] cornerSharpnesses = []
    int[] creaseIndices = []
    int[] creaseLengths = []
    float[] creaseSharpnesses = []
    token faceVaryingLinearInterpolation = "cornersPlus1" | none cornersOnly cornersPlus1 cornersPlus2
        boundaries all
    int[] faceVertexCounts
    int[] faceVertexIndices
    int[] holeIndices = []
    token interpolateBoundary = "edgeAndCorner" | none edgeOnly edgeAndCorner
    uniform token subdivisionScheme = "catmullClark" | catmullClark loop bilinear none
    token triangleSubdivisionRule = "catmullClark" | catmullClark smooth
concrete NurbsCurves UsdGeomNurbsCurves : UsdGeomCurves
    double[] knots
    int[] order = []
    double[] pointWeights
    double2[] ranges
concrete NurbsPatch UsdGeomNurbsPatch : UsdGeomPointBased
    double[] pointWeights
    int[] trimCurve:counts
    double[] trimCurve:knots
    int[] trimCurve:orders
    double3[] trimCurve:points
    double2[] trimCurve:ranges
    int[] trimCurve:vertexCounts
    uniform token uForm = "open" | open closed periodic
    double[] uKnots
    int uOrder
    double2 uRange
    int uVertexCount
    uniform token vForm = "open" | open closed periodic
    double[] vKnots
    int vOrder
    double2 vRange
    int vVertexCount
concrete PointInstancer UsdGeomPointInstancer : UsdGeomBoundable
    vector3f[] accelerations
    vector3f[] angularVelocities
    int64[] ids
    int64[] invisibleIds = []
    quath[] orientations
    quatf[] orientationsf
    point3f[] positions
    int[] protoIndices
    rel prototypes
    float3[] scales
    vector3f[] velocities
concrete Points UsdGeomPoints : UsdGeomPointBased
    int64[] ids
    float[] widths
concrete Sphere UsdGeomSphere : UsdGeomGprim
    float3[] extent = [(-1, -1, -1), (1, 1, 1)]
    double radius = 1
concrete TetMesh UsdGeomTetMesh : UsdGeomPointBased
    int3[] surfaceFaceVertexIndices
    int4[] tetVertexIndices
concrete Xform UsdGeomXform : UsdGeomXformable
)");
// clang-format on

} // namespace

PXR_NAMESPACE_CLOSE_SCOPE
