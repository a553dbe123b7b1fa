#pragma once

/// The null that every Tf pointer accepts.

#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

struct TfNullPtrType
{};

inline constexpr TfNullPtrType TfNullPtr{};

PXR_NAMESPACE_CLOSE_SCOPE
