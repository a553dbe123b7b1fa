#pragma once

/// Reads splines, which are not evaluated: they are checked, kept as text and written back.

#include "pxr/usd/sdf/textScanner.h"

#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Reads the spline of an attribute of a type and returns it as it stands.
std::string Sdf_ReadTextSpline(Sdf_TextScanner& scanner, const TfToken& typeName);

PXR_NAMESPACE_CLOSE_SCOPE
