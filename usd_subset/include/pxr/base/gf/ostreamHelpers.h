#pragma once

/// Writes numbers to streams as the shortest text that reads back equal.

#include <pxr/base/gf/api.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

/// A number to be written as the shortest decimal text that reads back as the same float or double.
struct Gf_StreamFloat
{
    float value;
};
struct Gf_StreamDouble
{
    double value;
};

VESK_USD_API std::ostream& operator<<(std::ostream& out, Gf_StreamFloat number);
VESK_USD_API std::ostream& operator<<(std::ostream& out, Gf_StreamDouble number);

/// Wraps floats and doubles for output and passes everything else on.
template <class T>
T Gf_OstreamHelperP(T v)
{
    return v;
}
inline Gf_StreamFloat Gf_OstreamHelperP(float v) { return {v}; }
inline Gf_StreamDouble Gf_OstreamHelperP(double v) { return {v}; }

PXR_NAMESPACE_CLOSE_SCOPE
