#pragma once

#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

using VtValueVector = std::vector<VtValue>;

/// Whether a value is a list edit that composes with weaker ones: of integers, strings or tokens.
bool Usd_IsListOp(const VtValue& value);

/// Applies list edits, the strongest first in the vector, over each other; the result is an explicit list.
VtValue Usd_ComposeListOps(const VtValueVector& strongestFirst);

PXR_NAMESPACE_CLOSE_SCOPE
