#include "pxr/usd/usd/schemaDefine.h"

#include <pxr/usd/usdLux/cylinderLight.h>
#include <pxr/usd/usdLux/diskLight.h>
#include <pxr/usd/usdLux/distantLight.h>
#include <pxr/usd/usdLux/domeLight.h>
#include <pxr/usd/usdLux/domeLight_1.h>
#include <pxr/usd/usdLux/geometryLight.h>
#include <pxr/usd/usdLux/portalLight.h>
#include <pxr/usd/usdLux/rectLight.h>
#include <pxr/usd/usdLux/shadowAPI.h>
#include <pxr/usd/usdLux/shapingAPI.h>
#include <pxr/usd/usdLux/sphereLight.h>

PXR_NAMESPACE_OPEN_SCOPE

TF_DEFINE_PUBLIC_TOKENS(UsdLuxTokens, USDLUX_TOKENS);

VESK_USD_DEFINE_APPLIED_SCHEMA(UsdLuxLightAPI, UsdAPISchemaBase)
VESK_USD_DEFINE_APPLIED_SCHEMA(UsdLuxShapingAPI, UsdAPISchemaBase)
VESK_USD_DEFINE_APPLIED_SCHEMA(UsdLuxShadowAPI, UsdAPISchemaBase)
VESK_USD_DEFINE_SCHEMA(UsdLuxBoundableLightBase, UsdGeomBoundable)
VESK_USD_DEFINE_SCHEMA(UsdLuxNonboundableLightBase, UsdGeomXformable)

VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdLuxCylinderLight, UsdLuxBoundableLightBase)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdLuxDiskLight, UsdLuxBoundableLightBase)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdLuxPortalLight, UsdLuxBoundableLightBase)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdLuxRectLight, UsdLuxBoundableLightBase)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdLuxSphereLight, UsdLuxBoundableLightBase)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdLuxDistantLight, UsdLuxNonboundableLightBase)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdLuxDomeLight, UsdLuxNonboundableLightBase)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdLuxDomeLight_1, UsdLuxNonboundableLightBase)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdLuxGeometryLight, UsdLuxNonboundableLightBase)

PXR_NAMESPACE_CLOSE_SCOPE
