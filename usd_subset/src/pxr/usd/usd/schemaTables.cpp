#include "pxr/usd/usd/schemaTable.h"

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// clang-format off
const Usd_SchemaTable kUsd(R"(
base SchemaBase UsdSchemaBase : UsdSchemaBase
base APISchemaBase UsdAPISchemaBase : UsdSchemaBase
plain ClipsAPI UsdClipsAPI : UsdAPISchemaBase
multi CollectionAPI UsdCollectionAPI : UsdAPISchemaBase
    uniform opaque collection:__INSTANCE_NAME__
    rel collection:__INSTANCE_NAME__:excludes
    uniform token collection:__INSTANCE_NAME__:expansionRule = "expandPrims" | explicitOnly expandPrims
        expandPrimsAndProperties
    uniform bool collection:__INSTANCE_NAME__:includeRoot
    rel collection:__INSTANCE_NAME__:includes
    uniform pathExpression collection:__INSTANCE_NAME__:membershipExpression
plain ModelAPI UsdModelAPI : UsdAPISchemaBase
base Typed UsdTyped : UsdSchemaBase
)");
// clang-format on

} // namespace

PXR_NAMESPACE_CLOSE_SCOPE
