#pragma once

/// Copies specs.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/types.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Copies a spec and what lies below it to a place of its kind, in the same layer or another; what was there
/// is replaced. Paths in connections, targets, inherits, specializes and internal references and payloads
/// that point into the source are moved along. Says whether it was done; posts one error where not.
SDF_API bool SdfCopySpec(const SdfLayerHandle& srcLayer, const SdfPath& srcPath,
                         const SdfLayerHandle& dstLayer, const SdfPath& dstPath);

PXR_NAMESPACE_CLOSE_SCOPE
