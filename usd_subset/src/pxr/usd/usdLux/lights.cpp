#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usdGeom/boundableComputeExtent.h>
#include <pxr/usd/usdGeom/metrics.h>
#include <pxr/usd/usdLux/cylinderLight.h>
#include <pxr/usd/usdLux/diskLight.h>
#include <pxr/usd/usdLux/domeLight.h>
#include <pxr/usd/usdLux/portalLight.h>
#include <pxr/usd/usdLux/rectLight.h>
#include <pxr/usd/usdLux/sphereLight.h>

PXR_NAMESPACE_OPEN_SCOPE

// ---- UsdLuxLightAPI ----

UsdCollectionAPI UsdLuxLightAPI::GetLightLinkCollectionAPI() const
{
    return UsdCollectionAPI(GetPrim(), UsdLuxTokens->lightLink);
}

UsdCollectionAPI UsdLuxLightAPI::GetShadowLinkCollectionAPI() const
{
    return UsdCollectionAPI(GetPrim(), UsdLuxTokens->shadowLink);
}

namespace {

TfToken _ShaderIdName(const TfToken& renderContext)
{
    return renderContext.IsEmpty()
               ? UsdLuxTokens->lightShaderId
               : TfToken(renderContext.GetString() + ":" + UsdLuxTokens->lightShaderId.GetString());
}

} // namespace

UsdAttribute UsdLuxLightAPI::GetShaderIdAttrForRenderContext(const TfToken& renderContext) const
{
    return GetPrim().GetAttribute(_ShaderIdName(renderContext));
}

UsdAttribute UsdLuxLightAPI::CreateShaderIdAttrForRenderContext(const TfToken& renderContext,
                                                                const VtValue& defaultValue,
                                                                bool writeSparsely) const
{
    return _CreateAttr(_ShaderIdName(renderContext), SdfValueTypeNames->Token, /*custom=*/false,
                       SdfVariabilityUniform, defaultValue, writeSparsely);
}

TfToken UsdLuxLightAPI::GetShaderId(const TfTokenVector& renderContexts) const
{
    TfToken shaderId;
    for (const TfToken& context : renderContexts) {
        const UsdAttribute attribute = GetShaderIdAttrForRenderContext(context);
        if (attribute && attribute.Get(&shaderId) && !shaderId.IsEmpty()) {
            return shaderId;
        }
    }
    GetShaderIdAttr().Get(&shaderId);
    return shaderId;
}

void UsdLuxDomeLight::OrientToStageUpAxis() const
{
    if (UsdGeomGetStageUpAxis(GetPrim().GetStage()) != UsdGeomTokens->z) {
        return;
    }
    const TfToken& suffix = UsdLuxTokens->orientToStageUpAxis;
    if (!GetXformOp(UsdGeomXformOp::TypeRotateX, suffix)) {
        AddXformOp(UsdGeomXformOp::TypeRotateX, UsdGeomXformOp::PrecisionFloat, suffix).Set(90.0f);
    }
}

// ---- Extents ----

namespace {

bool _SetExtent(const GfVec3f& max, const GfMatrix4d* transform, VtVec3fArray* extent)
{
    GfRange3d range(GfVec3d(-max), GfVec3d(max));
    if (transform) {
        range = GfBBox3d(range, *transform).ComputeAlignedRange();
    }
    extent->resize(2);
    (*extent)[0] = GfVec3f(range.GetMin());
    (*extent)[1] = GfVec3f(range.GetMax());
    return true;
}

bool _ComputeDisk(const UsdGeomBoundable& boundable, const UsdTimeCode& time, const GfMatrix4d* transform,
                  VtVec3fArray* extent)
{
    float radius = 0.0f;
    return UsdLuxDiskLight(boundable).GetRadiusAttr().Get(&radius, time) &&
           _SetExtent(GfVec3f(radius, radius, 0.0f), transform, extent);
}

bool _ComputeSphere(const UsdGeomBoundable& boundable, const UsdTimeCode& time, const GfMatrix4d* transform,
                    VtVec3fArray* extent)
{
    float radius = 0.0f;
    return UsdLuxSphereLight(boundable).GetRadiusAttr().Get(&radius, time) &&
           _SetExtent(GfVec3f(radius), transform, extent);
}

bool _ComputeCylinder(const UsdGeomBoundable& boundable, const UsdTimeCode& time, const GfMatrix4d* transform,
                      VtVec3fArray* extent)
{
    const UsdLuxCylinderLight light(boundable);
    float length = 0.0f, radius = 0.0f;
    return light.GetLengthAttr().Get(&length, time) && light.GetRadiusAttr().Get(&radius, time) &&
           _SetExtent(GfVec3f(length * 0.5f, radius, radius), transform, extent);
}

/// Rectangles: area lights and portals.
template <class Light>
bool _ComputeRect(const UsdGeomBoundable& boundable, const UsdTimeCode& time, const GfMatrix4d* transform,
                  VtVec3fArray* extent)
{
    const Light light(boundable);
    float width = 0.0f, height = 0.0f;
    return light.GetWidthAttr().Get(&width, time) && light.GetHeightAttr().Get(&height, time) &&
           _SetExtent(GfVec3f(width * 0.5f, height * 0.5f, 0.0f), transform, extent);
}

} // namespace

TF_REGISTRY_FUNCTION(UsdGeomBoundable)
{
    UsdGeomRegisterComputeExtentFunction<UsdLuxDiskLight>(_ComputeDisk);
    UsdGeomRegisterComputeExtentFunction<UsdLuxSphereLight>(_ComputeSphere);
    UsdGeomRegisterComputeExtentFunction<UsdLuxCylinderLight>(_ComputeCylinder);
    UsdGeomRegisterComputeExtentFunction<UsdLuxRectLight>(_ComputeRect<UsdLuxRectLight>);
    UsdGeomRegisterComputeExtentFunction<UsdLuxPortalLight>(_ComputeRect<UsdLuxPortalLight>);
}

PXR_NAMESPACE_CLOSE_SCOPE
