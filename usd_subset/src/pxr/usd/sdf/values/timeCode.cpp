#include <pxr/usd/sdf/timeCode.h>

#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/type.h>
#include <pxr/base/vt/array.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<SdfTimeCode>();
    TfType::Define<VtArray<SdfTimeCode>>();
}

std::ostream& operator<<(std::ostream& out, const SdfTimeCode& time) { return out << time.GetValue(); }

PXR_NAMESPACE_CLOSE_SCOPE
