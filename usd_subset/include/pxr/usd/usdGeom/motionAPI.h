#pragma once

#include <pxr/usd/usd/apiSchemaBase.h>
#include <pxr/usd/usdGeom/tokens.h>

PXR_NAMESPACE_OPEN_SCOPE

/// How motion is computed and shown, inherited down the namespace.
class VESK_USD_API UsdGeomMotionAPI : public UsdAPISchemaBase
{
    VESK_USD_APPLIED_SCHEMA(UsdGeomMotionAPI, UsdAPISchemaBase)

    VESK_USD_SCHEMA_ATTR(MotionBlurScale, UsdGeomTokens->motionBlurScale)
    VESK_USD_SCHEMA_ATTR(MotionVelocityScale, UsdGeomTokens->motionVelocityScale)
    VESK_USD_SCHEMA_ATTR(MotionNonlinearSampleCount, UsdGeomTokens->motionNonlinearSampleCount)

    float ComputeVelocityScale(UsdTimeCode time = UsdTimeCode::Default()) const;
    int ComputeNonlinearSampleCount(UsdTimeCode time = UsdTimeCode::Default()) const;
    float ComputeMotionBlurScale(UsdTimeCode time = UsdTimeCode::Default()) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
