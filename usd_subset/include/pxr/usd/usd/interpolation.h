#pragma once

#include <pxr/base/gf/declare.h>
#include <pxr/base/tf/enum.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/timeCode.h>
#include <pxr/usd/usd/api.h>

#include <type_traits>

PXR_NAMESPACE_OPEN_SCOPE

/// How a value between two time samples comes about.
enum UsdInterpolationType
{
    UsdInterpolationTypeHeld,  ///< The sample before holds.
    UsdInterpolationTypeLinear ///< Linear where the value's type allows, else held.
};

/// Whether values of type T are interpolated linearly.
template <class T>
struct UsdLinearInterpolationTraits
{
    static const bool isSupported = false;
};

// clang-format off
#define USD_LINEAR_INTERPOLATION_SCALARS(X) \
    X(GfHalf) X(float) X(double) X(SdfTimeCode) X(GfMatrix2d) X(GfMatrix3d) X(GfMatrix4d) \
    X(GfVec2d) X(GfVec2f) X(GfVec2h) X(GfVec3d) X(GfVec3f) X(GfVec3h) X(GfVec4d) X(GfVec4f) X(GfVec4h) \
    X(GfQuatd) X(GfQuatf) X(GfQuath)

#define USD_DECLARE_LINEAR_INTERPOLATION(type) \
    template <> struct UsdLinearInterpolationTraits<type> { static const bool isSupported = true; }; \
    template <> struct UsdLinearInterpolationTraits<VtArray<type>> { static const bool isSupported = true; };
USD_LINEAR_INTERPOLATION_SCALARS(USD_DECLARE_LINEAR_INTERPOLATION)
#undef USD_DECLARE_LINEAR_INTERPOLATION
// clang-format on

PXR_NAMESPACE_CLOSE_SCOPE
