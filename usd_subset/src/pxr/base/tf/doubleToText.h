#pragma once

#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Returns the shortest text that reads back to the same number: plain digits from 1e-6 to below 1e15, else
/// with an exponent; "inf", "-inf", "nan".
/// \param trailingZero whether a whole number written plainly gets ".0"
std::string Tf_ShortestText(double number, bool trailingZero = false);
std::string Tf_ShortestText(float number, bool trailingZero = false);

PXR_NAMESPACE_CLOSE_SCOPE
