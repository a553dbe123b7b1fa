#pragma once

/// The format of `.usd` files, which are text or crate.

#include <pxr/base/tf/staticTokens.h>
#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/usd/api.h>

PXR_NAMESPACE_OPEN_SCOPE

class SdfLayer;

// `FormatArg` names the file format argument that tells the content of a new file: "usda" or "usdc".
#define USD_USD_FILE_FORMAT_TOKENS ((Id, "usd"))((Version, "1.0"))((Target, "usd"))((FormatArg, "format"))

TF_DECLARE_PUBLIC_TOKENS(UsdUsdFileFormatTokens, USD_API, USD_USD_FILE_FORMAT_TOKENS);

/// What can be asked about `.usd` files.
class UsdUsdFileFormat
{
public:
    UsdUsdFileFormat() = delete;

    /// Returns the format of the layer's content, "usda" or "usdc"; empty where the layer is no `.usd` file.
    USD_API static TfToken GetUnderlyingFormatForLayer(const SdfLayer& layer);
};

PXR_NAMESPACE_CLOSE_SCOPE
