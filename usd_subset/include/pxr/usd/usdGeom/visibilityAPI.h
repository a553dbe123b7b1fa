#pragma once

#include <pxr/usd/usd/apiSchemaBase.h>
#include <pxr/usd/usdGeom/tokens.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Visibility of each purpose.
class VESK_USD_API UsdGeomVisibilityAPI : public UsdAPISchemaBase
{
    VESK_USD_APPLIED_SCHEMA(UsdGeomVisibilityAPI, UsdAPISchemaBase)

    VESK_USD_SCHEMA_ATTR(GuideVisibility, UsdGeomTokens->guideVisibility)
    VESK_USD_SCHEMA_ATTR(ProxyVisibility, UsdGeomTokens->proxyVisibility)
    VESK_USD_SCHEMA_ATTR(RenderVisibility, UsdGeomTokens->renderVisibility)

    /// The attribute of a purpose; invalid and an error for one without.
    UsdAttribute GetPurposeVisibilityAttr(const TfToken& purpose) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
