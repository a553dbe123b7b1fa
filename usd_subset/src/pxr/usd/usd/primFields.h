#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/types.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The fields of prims that composition itself needs.
class Usd_PrimFields
{
public:
    static bool IsActive(const Usd_PrimIndex& index);
    static TfToken GetKind(const Usd_PrimIndex& index);
    /// The strongest name that names a type.
    static TfToken GetTypeName(const Usd_PrimIndex& index);
    static TfTokenVector GetAppliedSchemas(const Usd_PrimIndex& index);
    /// The strongest specifier that defines; a class that is inherited directly does not count if a def is
    /// below.
    static SdfSpecifier GetSpecifier(const Usd_PrimIndex& index);
};

PXR_NAMESPACE_CLOSE_SCOPE
