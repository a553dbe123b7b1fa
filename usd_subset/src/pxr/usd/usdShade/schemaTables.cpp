#include "pxr/usd/usd/schemaTable.h"

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// clang-format off
const Usd_SchemaTable kUsdShade(R"(
plain ConnectableAPI UsdShadeConnectableAPI : UsdAPISchemaBase
multi CoordSysAPI UsdShadeCoordSysAPI : UsdAPISchemaBase
    rel coordSys:__INSTANCE_NAME__:binding
api MaterialBindingAPI UsdShadeMaterialBindingAPI : UsdAPISchemaBase
api NodeDefAPI UsdShadeNodeDefAPI : UsdAPISchemaBase
    uniform token info:id
    uniform token info:implementationSource = "id" | id sourceAsset sourceCode
concrete NodeGraph UsdShadeNodeGraph : UsdTyped
concrete Material UsdShadeMaterial : UsdShadeNodeGraph
    token outputs:displacement
    token outputs:surface
    token outputs:volume
concrete Shader UsdShadeShader : UsdTyped
    apis NodeDefAPI
)");
// clang-format on

} // namespace

PXR_NAMESPACE_CLOSE_SCOPE
