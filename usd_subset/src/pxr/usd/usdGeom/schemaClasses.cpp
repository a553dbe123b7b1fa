#include "pxr/usd/usd/schemaDefine.h"

#include <pxr/usd/usdGeom/basisCurves.h>
#include <pxr/usd/usdGeom/camera.h>
#include <pxr/usd/usdGeom/capsule.h>
#include <pxr/usd/usdGeom/capsule_1.h>
#include <pxr/usd/usdGeom/cone.h>
#include <pxr/usd/usdGeom/cube.h>
#include <pxr/usd/usdGeom/cylinder.h>
#include <pxr/usd/usdGeom/cylinder_1.h>
#include <pxr/usd/usdGeom/hermiteCurves.h>
#include <pxr/usd/usdGeom/mesh.h>
#include <pxr/usd/usdGeom/modelAPI.h>
#include <pxr/usd/usdGeom/motionAPI.h>
#include <pxr/usd/usdGeom/nurbsCurves.h>
#include <pxr/usd/usdGeom/nurbsPatch.h>
#include <pxr/usd/usdGeom/plane.h>
#include <pxr/usd/usdGeom/pointInstancer.h>
#include <pxr/usd/usdGeom/points.h>
#include <pxr/usd/usdGeom/primvarsAPI.h>
#include <pxr/usd/usdGeom/scope.h>
#include <pxr/usd/usdGeom/sphere.h>
#include <pxr/usd/usdGeom/subset.h>
#include <pxr/usd/usdGeom/tetMesh.h>
#include <pxr/usd/usdGeom/visibilityAPI.h>
#include <pxr/usd/usdGeom/xform.h>
#include <pxr/usd/usdGeom/xformCommonAPI.h>

PXR_NAMESPACE_OPEN_SCOPE

TF_DEFINE_PUBLIC_TOKENS(UsdGeomTokens, USDGEOM_TOKENS);

VESK_USD_DEFINE_SCHEMA(UsdGeomImageable, UsdTyped)
VESK_USD_DEFINE_SCHEMA(UsdGeomXformable, UsdGeomImageable)
VESK_USD_DEFINE_SCHEMA(UsdGeomBoundable, UsdGeomXformable)
VESK_USD_DEFINE_SCHEMA(UsdGeomGprim, UsdGeomBoundable)
VESK_USD_DEFINE_SCHEMA(UsdGeomPointBased, UsdGeomGprim)
VESK_USD_DEFINE_SCHEMA(UsdGeomCurves, UsdGeomPointBased)

VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomScope, UsdGeomImageable)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomXform, UsdGeomXformable)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomCamera, UsdGeomXformable)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomPointInstancer, UsdGeomBoundable)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomCapsule, UsdGeomGprim)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomCapsule_1, UsdGeomGprim)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomCone, UsdGeomGprim)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomCube, UsdGeomGprim)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomCylinder, UsdGeomGprim)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomCylinder_1, UsdGeomGprim)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomPlane, UsdGeomGprim)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomSphere, UsdGeomGprim)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomBasisCurves, UsdGeomCurves)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomHermiteCurves, UsdGeomCurves)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomNurbsCurves, UsdGeomCurves)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomNurbsPatch, UsdGeomPointBased)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomMesh, UsdGeomPointBased)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomPoints, UsdGeomPointBased)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomTetMesh, UsdGeomPointBased)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdGeomSubset, UsdTyped)

VESK_USD_DEFINE_APPLIED_SCHEMA(UsdGeomModelAPI, UsdAPISchemaBase)
VESK_USD_DEFINE_APPLIED_SCHEMA(UsdGeomMotionAPI, UsdAPISchemaBase)
VESK_USD_DEFINE_APPLIED_SCHEMA(UsdGeomVisibilityAPI, UsdAPISchemaBase)
VESK_USD_DEFINE_SCHEMA(UsdGeomPrimvarsAPI, UsdAPISchemaBase)
VESK_USD_DEFINE_SCHEMA(UsdGeomXformCommonAPI, UsdAPISchemaBase)

PXR_NAMESPACE_CLOSE_SCOPE
