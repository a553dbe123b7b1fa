#pragma once

/// Colours between linear and display encoding (gamma 2.2). The fourth component, alpha, stays as it is.

#include <pxr/base/gf/api.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec3d;
class GfVec3f;
class GfVec3h;
class GfVec4d;
class GfVec4f;
class GfVec4h;

/// Raises each colour component to a power; a byte stands for 0 to 1.
VESK_USD_API GfVec3f GfApplyGamma(const GfVec3f& v, double gamma);
VESK_USD_API GfVec3d GfApplyGamma(const GfVec3d& v, double gamma);
VESK_USD_API GfVec3h GfApplyGamma(const GfVec3h& v, double gamma);
VESK_USD_API GfVec4f GfApplyGamma(const GfVec4f& v, double gamma);
VESK_USD_API GfVec4d GfApplyGamma(const GfVec4d& v, double gamma);
VESK_USD_API GfVec4h GfApplyGamma(const GfVec4h& v, double gamma);
VESK_USD_API float GfApplyGamma(const float& v, double gamma);
VESK_USD_API unsigned char GfApplyGamma(const unsigned char& v, double gamma);

/// Returns 2.2.
VESK_USD_API double GfGetDisplayGamma();

/// Raises to the power 1 / GfGetDisplayGamma().
VESK_USD_API GfVec3f GfConvertLinearToDisplay(const GfVec3f& v);
VESK_USD_API GfVec3d GfConvertLinearToDisplay(const GfVec3d& v);
VESK_USD_API GfVec3h GfConvertLinearToDisplay(const GfVec3h& v);
VESK_USD_API GfVec4f GfConvertLinearToDisplay(const GfVec4f& v);
VESK_USD_API GfVec4d GfConvertLinearToDisplay(const GfVec4d& v);
VESK_USD_API GfVec4h GfConvertLinearToDisplay(const GfVec4h& v);
VESK_USD_API float GfConvertLinearToDisplay(const float& v);
VESK_USD_API unsigned char GfConvertLinearToDisplay(const unsigned char& v);

/// Raises to the power GfGetDisplayGamma().
VESK_USD_API GfVec3f GfConvertDisplayToLinear(const GfVec3f& v);
VESK_USD_API GfVec3d GfConvertDisplayToLinear(const GfVec3d& v);
VESK_USD_API GfVec3h GfConvertDisplayToLinear(const GfVec3h& v);
VESK_USD_API GfVec4f GfConvertDisplayToLinear(const GfVec4f& v);
VESK_USD_API GfVec4d GfConvertDisplayToLinear(const GfVec4d& v);
VESK_USD_API GfVec4h GfConvertDisplayToLinear(const GfVec4h& v);
VESK_USD_API float GfConvertDisplayToLinear(const float& v);
VESK_USD_API unsigned char GfConvertDisplayToLinear(const unsigned char& v);

PXR_NAMESPACE_CLOSE_SCOPE
