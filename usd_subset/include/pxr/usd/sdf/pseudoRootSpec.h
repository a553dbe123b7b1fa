#pragma once

/// The root of a layer, seen as a prim.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/primSpec.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The spec at `/`, whose fields are the layer's own.
class SDF_API SdfPseudoRootSpec : public SdfPrimSpec
{
    SDF_DECLARE_SPEC(SdfPseudoRootSpec, SdfPrimSpec)
};

PXR_NAMESPACE_CLOSE_SCOPE
