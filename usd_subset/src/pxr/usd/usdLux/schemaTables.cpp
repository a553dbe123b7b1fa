#include "pxr/usd/usd/schemaTable.h"

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// clang-format off
const Usd_SchemaTable kUsdLux(R"(
abstract BoundableLightBase UsdLuxBoundableLightBase : UsdGeomBoundable
    apis LightAPI
concrete CylinderLight UsdLuxCylinderLight : UsdLuxBoundableLightBase
    apis LightAPI
    float inputs:length = 1
    float inputs:radius = 0.5
    override uniform token light:shaderId = "CylinderLight"
    bool treatAsLine = 0
concrete DiskLight UsdLuxDiskLight : UsdLuxBoundableLightBase
    apis LightAPI
    float inputs:radius = 0.5
    override uniform token light:shaderId = "DiskLight"
api LightAPI UsdLuxLightAPI : UsdAPISchemaBase
    apis CollectionAPI:lightLink CollectionAPI:shadowLink
    override uniform bool collection:lightLink:includeRoot = 1
    override uniform bool collection:shadowLink:includeRoot = 1
    color3f inputs:color = (1, 1, 1)
    float inputs:colorTemperature = 6500
    float inputs:diffuse = 1
    bool inputs:enableColorTemperature = 0
    float inputs:exposure = 0
    float inputs:intensity = 1
    bool inputs:normalize = 0
    float inputs:specular = 1
    rel light:filters
    uniform token light:materialSyncMode = "noMaterialResponse" | materialGlowTintsLight independent
        noMaterialResponse
    uniform token light:shaderId = ""
concrete LightFilter UsdLuxLightFilter : UsdGeomXformable
    apis CollectionAPI:filterLink
    override uniform bool collection:filterLink:includeRoot = 1
    uniform token lightFilter:shaderId = ""
api LightListAPI UsdLuxLightListAPI : UsdAPISchemaBase
    rel lightList
    token lightList:cacheBehavior | consumeAndHalt consumeAndContinue ignore
api ListAPI UsdLuxListAPI : UsdAPISchemaBase
    rel lightList
    token lightList:cacheBehavior | consumeAndHalt consumeAndContinue ignore
api MeshLightAPI UsdLuxMeshLightAPI : UsdAPISchemaBase
    apis LightAPI
    override uniform token light:materialSyncMode = "materialGlowTintsLight"
    override uniform token light:shaderId = "MeshLight"
abstract NonboundableLightBase UsdLuxNonboundableLightBase : UsdGeomXformable
    apis LightAPI
concrete DistantLight UsdLuxDistantLight : UsdLuxNonboundableLightBase
    apis LightAPI
    float inputs:angle = 0.53
    override float inputs:intensity = 50000
    override uniform token light:shaderId = "DistantLight"
concrete DomeLight UsdLuxDomeLight : UsdLuxNonboundableLightBase
    apis LightAPI
    float guideRadius = 100000
    asset inputs:texture:file
    token inputs:texture:format = "automatic" | automatic latlong mirroredBall angular cubeMapVerticalCross
    override uniform token light:shaderId = "DomeLight"
    rel portals
concrete DomeLight_1 UsdLuxDomeLight_1 : UsdLuxNonboundableLightBase
    apis LightAPI
    float guideRadius = 100000
    asset inputs:texture:file
    token inputs:texture:format = "automatic" | automatic latlong mirroredBall angular cubeMapVerticalCross
    override uniform token light:shaderId = "DomeLight"
    uniform token poleAxis = "scene" | scene Y Z
    rel portals
concrete GeometryLight UsdLuxGeometryLight : UsdLuxNonboundableLightBase
    apis LightAPI
    rel geometry
    override uniform token light:shaderId = "GeometryLight"
concrete PluginLight UsdLuxPluginLight : UsdGeomXformable
    apis NodeDefAPI LightAPI
concrete PluginLightFilter UsdLuxPluginLightFilter : UsdLuxLightFilter
    apis NodeDefAPI CollectionAPI:filterLink
concrete PortalLight UsdLuxPortalLight : UsdLuxBoundableLightBase
    apis LightAPI
    float inputs:height = 1
    float inputs:width = 1
    override uniform token light:shaderId = "PortalLight"
concrete RectLight UsdLuxRectLight : UsdLuxBoundableLightBase
    apis LightAPI
    float inputs:height = 1
    asset inputs:texture:file
    float inputs:width = 1
    override uniform token light:shaderId = "RectLight"
api ShadowAPI UsdLuxShadowAPI : UsdAPISchemaBase
    color3f inputs:shadow:color = (0, 0, 0)
    float inputs:shadow:distance = -1
    bool inputs:shadow:enable = 1
    float inputs:shadow:falloff = -1
    float inputs:shadow:falloffGamma = 1
api ShapingAPI UsdLuxShapingAPI : UsdAPISchemaBase
    float inputs:shaping:cone:angle = 90
    float inputs:shaping:cone:softness = 0
    float inputs:shaping:focus = 0
    color3f inputs:shaping:focusTint = (0, 0, 0)
    float inputs:shaping:ies:angleScale = 0
    asset inputs:shaping:ies:file
    bool inputs:shaping:ies:normalize = 0
concrete SphereLight UsdLuxSphereLight : UsdLuxBoundableLightBase
    apis LightAPI
    float inputs:radius = 0.5
    override uniform token light:shaderId = "SphereLight"
    bool treatAsPoint = 0
api VolumeLightAPI UsdLuxVolumeLightAPI : UsdAPISchemaBase
    apis LightAPI
    override uniform token light:materialSyncMode = "materialGlowTintsLight"
    override uniform token light:shaderId = "VolumeLight"
)");
// clang-format on

} // namespace

PXR_NAMESPACE_CLOSE_SCOPE
