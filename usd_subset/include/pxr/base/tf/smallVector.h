#pragma once

/// Vectors for few elements.

#include <pxr/pxr.h>

#include <cstdint>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A vector that is meant to hold about N elements. N is a hint without effect here: all elements are on the
/// heap.
template <typename T, uint32_t N>
using TfSmallVector = std::vector<T>;

PXR_NAMESPACE_CLOSE_SCOPE
