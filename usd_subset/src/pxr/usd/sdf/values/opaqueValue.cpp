#include <pxr/usd/sdf/opaqueValue.h>

#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/type.h>
#include <pxr/base/vt/array.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<SdfOpaqueValue>();
    TfType::Define<VtArray<SdfOpaqueValue>>();
}

std::ostream& operator<<(std::ostream& out, SdfOpaqueValue const&) { return out << "OpaqueValue"; }

PXR_NAMESPACE_CLOSE_SCOPE
