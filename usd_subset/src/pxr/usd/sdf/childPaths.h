#pragma once

/// The paths of a spec's children, from the names or paths that its children fields list.

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Returns the path of the child that a children field of `parent` calls `name`.
SdfPath Sdf_ChildPath(const SdfPath& parent, const TfToken& childrenField, const TfToken& name);
/// Appends the paths of all children that a children field's value lists.
void Sdf_AppendChildPaths(const SdfPath& parent, const TfToken& childrenField, const VtValue& children,
                          SdfPathVector* paths);
/// Returns the children field of the parent in which a spec at this path is listed.
const TfToken& Sdf_ChildrenFieldOf(const SdfPath& path);
/// Returns the path of the spec that lists a spec at this path: the variant set for a variant.
SdfPath Sdf_ListingParentOf(const SdfPath& path);
/// Returns the name by which a spec at this path is listed.
TfToken Sdf_ChildNameOf(const SdfPath& path);

PXR_NAMESPACE_CLOSE_SCOPE
