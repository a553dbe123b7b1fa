#include "pxr/usd/sdf/usdFileFormat.h"

#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/usdFileFormat.h>
#include <pxr/usd/usd/usdaFileFormat.h>
#include <pxr/usd/usd/usdcFileFormat.h>
#include <pxr/usd/usd/usdzFileFormat.h>

PXR_NAMESPACE_OPEN_SCOPE

TF_DEFINE_PUBLIC_TOKENS(UsdUsdFileFormatTokens, USD_USD_FILE_FORMAT_TOKENS);
TF_DEFINE_PUBLIC_TOKENS(UsdUsdaFileFormatTokens, USD_USDA_FILE_FORMAT_TOKENS);
TF_DEFINE_PUBLIC_TOKENS(UsdUsdcFileFormatTokens, USD_USDC_FILE_FORMAT_TOKENS);
TF_DEFINE_PUBLIC_TOKENS(UsdUsdzFileFormatTokens, USD_USDZ_FILE_FORMAT_TOKENS);

TfToken UsdUsdFileFormat::GetUnderlyingFormatForLayer(const SdfLayer& layer)
{
    return layer.GetFileFormat()->GetFormatId() == UsdUsdFileFormatTokens->Id
               ? Sdf_UsdFileFormat::GetUnderlyingFormat(layer)->GetFormatId()
               : TfToken();
}

PXR_NAMESPACE_CLOSE_SCOPE
