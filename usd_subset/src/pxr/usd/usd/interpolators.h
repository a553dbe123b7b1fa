#pragma once

#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>

#include <typeinfo>

PXR_NAMESPACE_OPEN_SCOPE

/// Whether values of a type are interpolated linearly.
bool Usd_IsInterpolated(const std::type_info& type);

/// Interpolates linearly between two values of the same type that is interpolated: component by component,
/// rotations on the arc, arrays element by element where both have the same size, else the lower one holds.
/// @param fraction 0 is lower, 1 is upper
VtValue Usd_Interpolate(const VtValue& lower, const VtValue& upper, double fraction);

PXR_NAMESPACE_CLOSE_SCOPE
