#include "pxr/usd/usd/schemaDefine.h"

#include <pxr/usd/usdShade/materialBindingAPI.h>

PXR_NAMESPACE_OPEN_SCOPE

TF_DEFINE_PUBLIC_TOKENS(UsdShadeTokens, USDSHADE_TOKENS);

VESK_USD_DEFINE_SCHEMA(UsdShadeConnectableAPI, UsdAPISchemaBase)
VESK_USD_DEFINE_APPLIED_SCHEMA(UsdShadeMaterialBindingAPI, UsdAPISchemaBase)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdShadeShader, UsdTyped)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdShadeNodeGraph, UsdTyped)
VESK_USD_DEFINE_CONCRETE_SCHEMA(UsdShadeMaterial, UsdShadeNodeGraph)

PXR_NAMESPACE_CLOSE_SCOPE
