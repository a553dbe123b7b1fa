#pragma once

/// Mathematical calls that differ between platforms.

#include <pxr/pxr.h>

#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

/// Sets *s and *c to the sine and the cosine of an angle in radians.
inline void ArchSinCos(double v, double* s, double* c)
{
    *s = std::sin(v);
    *c = std::cos(v);
}

/// Sets *s and *c to the sine and the cosine of an angle in radians.
inline void ArchSinCosf(float v, float* s, float* c)
{
    *s = std::sin(v);
    *c = std::cos(v);
}

PXR_NAMESPACE_CLOSE_SCOPE
