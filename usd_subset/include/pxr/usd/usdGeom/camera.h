#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/usd/usdGeom/xformable.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A camera. Apertures and focal length are tenths of a scene unit, other lengths scene units.
class VESK_USD_API UsdGeomCamera : public UsdGeomXformable
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomCamera, UsdGeomXformable)

    VESK_USD_SCHEMA_ATTR(Projection, UsdGeomTokens->projection)
    VESK_USD_SCHEMA_ATTR(HorizontalAperture, UsdGeomTokens->horizontalAperture)
    VESK_USD_SCHEMA_ATTR(VerticalAperture, UsdGeomTokens->verticalAperture)
    VESK_USD_SCHEMA_ATTR(HorizontalApertureOffset, UsdGeomTokens->horizontalApertureOffset)
    VESK_USD_SCHEMA_ATTR(VerticalApertureOffset, UsdGeomTokens->verticalApertureOffset)
    VESK_USD_SCHEMA_ATTR(FocalLength, UsdGeomTokens->focalLength)
    VESK_USD_SCHEMA_ATTR(ClippingRange, UsdGeomTokens->clippingRange)
    VESK_USD_SCHEMA_ATTR(ClippingPlanes, UsdGeomTokens->clippingPlanes)
    VESK_USD_SCHEMA_ATTR(FStop, UsdGeomTokens->fStop)
    VESK_USD_SCHEMA_ATTR(FocusDistance, UsdGeomTokens->focusDistance)
    VESK_USD_SCHEMA_ATTR(StereoRole, UsdGeomTokens->stereoRole)
    VESK_USD_SCHEMA_ATTR(ShutterOpen, UsdGeomTokens->shutterOpen)
    VESK_USD_SCHEMA_ATTR(ShutterClose, UsdGeomTokens->shutterClose)
    VESK_USD_SCHEMA_ATTR(Exposure, UsdGeomTokens->exposure)

    /// The camera at a time, its transform from camera to world space.
    GfCamera GetCamera(const UsdTimeCode& time) const;
    /// Authors a camera: its place as one transform op that takes the parent's transform into account.
    void SetFromCamera(const GfCamera& camera, const UsdTimeCode& time);
};

PXR_NAMESPACE_CLOSE_SCOPE
