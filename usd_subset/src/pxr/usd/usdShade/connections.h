#pragma once

#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usdShade/types.h>

#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// Splits "inputs:color" into "color" and its kind; other names are of the invalid kind.
std::pair<TfToken, UsdShadeAttributeType> UsdShade_SplitName(const TfToken& fullName);

/// The other way round.
TfToken UsdShade_FullName(const TfToken& baseName, UsdShadeAttributeType type);

/// The attributes at the ends of the connections that start at an input or output.
UsdShadeAttributeVector UsdShade_GetValueProducingAttributes(const UsdAttribute& start,
                                                             bool shaderOutputsOnly);

PXR_NAMESPACE_CLOSE_SCOPE
