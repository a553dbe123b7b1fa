#pragma once

/// Layers as text: the names of the format.

#include <pxr/base/tf/staticTokens.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/usd/api.h>

PXR_NAMESPACE_OPEN_SCOPE

#define USD_USDA_FILE_FORMAT_TOKENS ((Id, "usda"))((Version, "1.0"))((Target, "usd"))

TF_DECLARE_PUBLIC_TOKENS(UsdUsdaFileFormatTokens, USD_API, USD_USDA_FILE_FORMAT_TOKENS);

PXR_NAMESPACE_CLOSE_SCOPE
