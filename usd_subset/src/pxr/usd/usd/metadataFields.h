#pragma once

#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/types.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Whether a field is no metadata: composition arcs, values, children.
bool Usd_IsPrivateField(const TfToken& field);

/// Adds the fields that each spec of a type has.
void Usd_AddRequiredFields(SdfSpecType type, TfTokenVector* fields);

PXR_NAMESPACE_CLOSE_SCOPE
