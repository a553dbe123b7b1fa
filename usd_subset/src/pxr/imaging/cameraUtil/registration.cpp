#include <pxr/base/tf/enum.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/imaging/cameraUtil/conformWindow.h>

PXR_NAMESPACE_OPEN_SCOPE

TF_REGISTRY_FUNCTION(TfEnum)
{
    TF_ADD_ENUM_NAME(CameraUtilMatchVertically, "MatchVertically");
    // The spelling is OpenUSD's.
    TF_ADD_ENUM_NAME(CameraUtilMatchHorizontally, "MatchHotizontally");
    TF_ADD_ENUM_NAME(CameraUtilFit, "Fit");
    TF_ADD_ENUM_NAME(CameraUtilCrop, "Crop");
    TF_ADD_ENUM_NAME(CameraUtilDontConform, "DontConform");
}

PXR_NAMESPACE_CLOSE_SCOPE
