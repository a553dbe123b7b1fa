#include "pxr/usd/usd/schemaTable.h"

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// clang-format off
const Usd_SchemaTable kUsdSkel(R"(
concrete SkelAnimation UsdSkelAnimation : UsdTyped
    uniform token[] blendShapes
    float[] blendShapeWeights
    uniform token[] joints
    quatf[] rotations
    half3[] scales
    float3[] translations
api SkelBindingAPI UsdSkelBindingAPI : UsdAPISchemaBase
    matrix4d primvars:skel:geomBindTransform
    int[] primvars:skel:jointIndices
    float[] primvars:skel:jointWeights
    uniform token primvars:skel:skinningMethod = "classicLinear" | classicLinear dualQuaternion
    rel skel:animationSource
    uniform token[] skel:blendShapes
    rel skel:blendShapeTargets
    uniform token[] skel:joints
    rel skel:skeleton
concrete BlendShape UsdSkelBlendShape : UsdTyped
    uniform vector3f[] normalOffsets
    uniform vector3f[] offsets
    uniform int[] pointIndices
concrete SkelRoot UsdSkelRoot : UsdGeomBoundable
concrete Skeleton UsdSkelSkeleton : UsdGeomBoundable
    uniform matrix4d[] bindTransforms
    uniform token[] jointNames
    uniform token[] joints
    uniform matrix4d[] restTransforms
)");
// clang-format on

// clang-format off
const Usd_SchemaTable kUsdVol(R"(
abstract FieldBase UsdVolFieldBase : UsdGeomXformable
abstract FieldAsset UsdVolFieldAsset : UsdVolFieldBase
    token fieldDataType
    int fieldIndex
    token fieldName
    asset filePath
    token vectorDataRoleHint = "None" | None Point Normal Vector Color
concrete Field3DAsset UsdVolField3DAsset : UsdVolFieldAsset
    token fieldDataType | half float double half3 float3 double3
    token fieldPurpose
concrete OpenVDBAsset UsdVolOpenVDBAsset : UsdVolFieldAsset
    token fieldClass | levelSet fogVolume staggered unknown
    token fieldDataType | half float double int uint int64 half2 float2 double2 int2 half3 float3 double3
        int3 matrix3d matrix4d quatd bool mask string
concrete Volume UsdVolVolume : UsdGeomGprim
)");
// clang-format on

// clang-format off
const Usd_SchemaTable kUsdRender(R"(
concrete RenderPass UsdRenderPass : UsdTyped
    apis CollectionAPI:renderVisibility CollectionAPI:prune
    override uniform bool collection:renderVisibility:includeRoot = 1
    uniform string[] command
    uniform bool denoise:enable = 0
    uniform asset fileName
    rel inputPasses
    uniform token passType
    rel renderSource
abstract RenderSettingsBase UsdRenderSettingsBase : UsdTyped
    uniform token aspectRatioConformPolicy = "expandAperture" | expandAperture cropAperture
        adjustApertureWidth adjustApertureHeight adjustPixelAspectRatio
    rel camera
    uniform float4 dataWindowNDC = (0, 0, 1, 1)
    uniform bool disableDepthOfField = 0
    uniform bool disableMotionBlur = 0
    uniform bool instantaneousShutter = 0
    uniform float pixelAspectRatio = 1
    uniform int2 resolution = (2048, 1080)
concrete RenderProduct UsdRenderProduct : UsdRenderSettingsBase
    rel orderedVars
    token productName = ""
    uniform token productType = "raster" | raster deepRaster
concrete RenderSettings UsdRenderSettings : UsdRenderSettingsBase
    uniform token[] includedPurposes = ["default", "render"]
    uniform token[] materialBindingPurposes = ["full", ""] | full preview ""
    rel products
    uniform token renderingColorSpace
concrete RenderVar UsdRenderVar : UsdTyped
    uniform token dataType = "color3f"
    uniform string sourceName = ""
    uniform token sourceType = "raw" | raw primvar lpe intrinsic
)");
// clang-format on

// clang-format off
const Usd_SchemaTable kUsdPhysics(R"(
api PhysicsArticulationRootAPI UsdPhysicsArticulationRootAPI : UsdAPISchemaBase
api PhysicsCollisionAPI UsdPhysicsCollisionAPI : UsdAPISchemaBase
    bool physics:collisionEnabled = 1
    rel physics:simulationOwner
concrete PhysicsCollisionGroup UsdPhysicsCollisionGroup : UsdTyped
    apis CollectionAPI:colliders
    rel physics:filteredGroups
    bool physics:invertFilteredGroups
    string physics:mergeGroup
multi PhysicsDriveAPI UsdPhysicsDriveAPI : UsdAPISchemaBase
    float drive:__INSTANCE_NAME__:physics:damping = 0
    float drive:__INSTANCE_NAME__:physics:maxForce = inf
    float drive:__INSTANCE_NAME__:physics:stiffness = 0
    float drive:__INSTANCE_NAME__:physics:targetPosition = 0
    float drive:__INSTANCE_NAME__:physics:targetVelocity = 0
    uniform token drive:__INSTANCE_NAME__:physics:type = "force" | force acceleration
api PhysicsFilteredPairsAPI UsdPhysicsFilteredPairsAPI : UsdAPISchemaBase
    rel physics:filteredPairs
concrete PhysicsJoint UsdPhysicsJoint : UsdGeomImageable
    rel physics:body0
    rel physics:body1
    float physics:breakForce = inf
    float physics:breakTorque = inf
    bool physics:collisionEnabled = 0
    uniform bool physics:excludeFromArticulation = 0
    bool physics:jointEnabled = 1
    point3f physics:localPos0 = (0, 0, 0)
    point3f physics:localPos1 = (0, 0, 0)
    quatf physics:localRot0 = (1, 0, 0, 0)
    quatf physics:localRot1 = (1, 0, 0, 0)
concrete PhysicsDistanceJoint UsdPhysicsDistanceJoint : UsdPhysicsJoint
    float physics:maxDistance = -1
    float physics:minDistance = -1
concrete PhysicsFixedJoint UsdPhysicsFixedJoint : UsdPhysicsJoint
multi PhysicsLimitAPI UsdPhysicsLimitAPI : UsdAPISchemaBase
    float limit:__INSTANCE_NAME__:physics:high = inf
    float limit:__INSTANCE_NAME__:physics:low = -inf
api PhysicsMassAPI UsdPhysicsMassAPI : UsdAPISchemaBase
    point3f physics:centerOfMass = (-inf, -inf, -inf)
    float physics:density = 0
    float3 physics:diagonalInertia = (0, 0, 0)
    float physics:mass = 0
    quatf physics:principalAxes = (0, 0, 0, 0)
api PhysicsMaterialAPI UsdPhysicsMaterialAPI : UsdAPISchemaBase
    float physics:density = 0
    float physics:dynamicFriction = 0
    float physics:restitution = 0
    float physics:staticFriction = 0
api PhysicsMeshCollisionAPI UsdPhysicsMeshCollisionAPI : UsdAPISchemaBase
    uniform token physics:approximation = "none" | none convexDecomposition convexHull boundingSphere
        boundingCube meshSimplification
concrete PhysicsPrismaticJoint UsdPhysicsPrismaticJoint : UsdPhysicsJoint
    uniform token physics:axis = "X" | X Y Z
    float physics:lowerLimit = -inf
    float physics:upperLimit = inf
concrete PhysicsRevoluteJoint UsdPhysicsRevoluteJoint : UsdPhysicsJoint
    uniform token physics:axis = "X" | X Y Z
    float physics:lowerLimit = -inf
    float physics:upperLimit = inf
api PhysicsRigidBodyAPI UsdPhysicsRigidBodyAPI : UsdAPISchemaBase
    vector3f physics:angularVelocity = (0, 0, 0)
    bool physics:kinematicEnabled = 0
    bool physics:rigidBodyEnabled = 1
    rel physics:simulationOwner
    uniform bool physics:startsAsleep = 0
    vector3f physics:velocity = (0, 0, 0)
concrete PhysicsScene UsdPhysicsScene : UsdTyped
    vector3f physics:gravityDirection = (0, 0, 0)
    float physics:gravityMagnitude = -inf
concrete PhysicsSphericalJoint UsdPhysicsSphericalJoint : UsdPhysicsJoint
    uniform token physics:axis = "X" | X Y Z
    float physics:coneAngle0Limit = -1
    float physics:coneAngle1Limit = -1
)");
// clang-format on

// clang-format off
const Usd_SchemaTable kUsdMedia(R"(
api AssetPreviewsAPI UsdMediaAssetPreviewsAPI : UsdAPISchemaBase
concrete SpatialAudio UsdMediaSpatialAudio : UsdGeomXformable
    uniform token auralMode = "spatial" | spatial nonSpatial
    uniform timecode endTime = 0
    uniform asset filePath = @@
    double gain = 1
    uniform double mediaOffset = 0
    uniform token playbackMode = "onceFromStart" | onceFromStart onceFromStartToEnd loopFromStart
        loopFromStartToEnd loopFromStage
    uniform timecode startTime = 0
)");
// clang-format on

// clang-format off
const Usd_SchemaTable kUsdUI(R"(
concrete Backdrop UsdUIBackdrop : UsdTyped
    uniform token ui:description
api NodeGraphNodeAPI UsdUINodeGraphNodeAPI : UsdAPISchemaBase
    uniform color3f ui:nodegraph:node:displayColor
    uniform string ui:nodegraph:node:docURI
    uniform token ui:nodegraph:node:expansionState | open closed minimized
    uniform asset ui:nodegraph:node:icon
    uniform float2 ui:nodegraph:node:pos
    uniform float2 ui:nodegraph:node:size
    uniform int ui:nodegraph:node:stackingOrder
api SceneGraphPrimAPI UsdUISceneGraphPrimAPI : UsdAPISchemaBase
    uniform token ui:displayGroup
    uniform token ui:displayName
)");
// clang-format on

// clang-format off
const Usd_SchemaTable kUsdProc(R"(
concrete GenerativeProcedural UsdProcGenerativeProcedural : UsdGeomBoundable
    token proceduralSystem
)");
// clang-format on

// clang-format off
const Usd_SchemaTable kUsdRi(R"(
api RiMaterialAPI UsdRiMaterialAPI : UsdAPISchemaBase
    token outputs:ri:displacement
    token outputs:ri:surface
    token outputs:ri:volume
api RiRenderPassAPI UsdRiRenderPassAPI : UsdAPISchemaBase
    apis CollectionAPI:matte CollectionAPI:cameraVisibility
    only RenderPass
    auto RenderPass
    override uniform bool collection:cameraVisibility:includeRoot = 1
api RiSplineAPI UsdRiSplineAPI : UsdAPISchemaBase
api StatementsAPI UsdRiStatementsAPI : UsdAPISchemaBase
)");
// clang-format on

// clang-format off
const Usd_SchemaTable kUsdHydra(R"(
api HydraGenerativeProceduralAPI UsdHydraGenerativeProceduralAPI : UsdAPISchemaBase
    only GenerativeProcedural
    token primvars:hdGp:proceduralType
    token proceduralSystem = "hydraGenerativeProcedural"
)");
// clang-format on

// clang-format off
const Usd_SchemaTable kUsdSemantics(R"(
multi SemanticsLabelsAPI UsdSemanticsLabelsAPI : UsdAPISchemaBase
    token[] semantics:labels:__INSTANCE_NAME__ = []
)");
// clang-format on

} // namespace

PXR_NAMESPACE_CLOSE_SCOPE
