#pragma once

#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/usd/apiSchemaBase.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/tokens.h>

PXR_NAMESPACE_OPEN_SCOPE

class UsdGeomBBoxCache;

/// Bounds and draw modes that stand for a whole model.
class VESK_USD_API UsdGeomModelAPI : public UsdAPISchemaBase
{
    VESK_USD_APPLIED_SCHEMA(UsdGeomModelAPI, UsdAPISchemaBase)

    VESK_USD_SCHEMA_ATTR(ModelDrawMode, UsdGeomTokens->modelDrawMode)
    VESK_USD_SCHEMA_ATTR(ModelApplyDrawMode, UsdGeomTokens->modelApplyDrawMode)
    VESK_USD_SCHEMA_ATTR(ModelDrawModeColor, UsdGeomTokens->modelDrawModeColor)
    VESK_USD_SCHEMA_ATTR(ModelCardGeometry, UsdGeomTokens->modelCardGeometry)
    VESK_USD_SCHEMA_ATTR(ModelCardTextureXPos, UsdGeomTokens->modelCardTextureXPos)
    VESK_USD_SCHEMA_ATTR(ModelCardTextureYPos, UsdGeomTokens->modelCardTextureYPos)
    VESK_USD_SCHEMA_ATTR(ModelCardTextureZPos, UsdGeomTokens->modelCardTextureZPos)
    VESK_USD_SCHEMA_ATTR(ModelCardTextureXNeg, UsdGeomTokens->modelCardTextureXNeg)
    VESK_USD_SCHEMA_ATTR(ModelCardTextureYNeg, UsdGeomTokens->modelCardTextureYNeg)
    VESK_USD_SCHEMA_ATTR(ModelCardTextureZNeg, UsdGeomTokens->modelCardTextureZNeg)

    UsdAttribute GetExtentsHintAttr() const;
    /// The hint: a box per purpose in their order, two corners each.
    bool GetExtentsHint(VtVec3fArray* extents, const UsdTimeCode& time = UsdTimeCode::Default()) const;
    bool SetExtentsHint(const VtVec3fArray& extents, const UsdTimeCode& time = UsdTimeCode::Default()) const;
    VtVec3fArray ComputeExtentsHint(UsdGeomBBoxCache& bboxCache) const;

    /// The draw mode that takes effect; `parentDrawMode`, where known, spares the way up.
    TfToken ComputeModelDrawMode(const TfToken& parentDrawMode = TfToken()) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
