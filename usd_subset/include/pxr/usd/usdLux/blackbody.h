#pragma once

#include <pxr/base/gf/vec3f.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The colour of a black body of a temperature in kelvin, clamped to 1000 to 10000, at luminance 1.
VESK_USD_API GfVec3f UsdLuxBlackbodyTemperatureAsRgb(float colorTemp);

PXR_NAMESPACE_CLOSE_SCOPE
