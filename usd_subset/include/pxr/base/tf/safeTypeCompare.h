#pragma once

/// Comparison of types across shared libraries.

#include <pxr/pxr.h>

#include <typeinfo>

PXR_NAMESPACE_OPEN_SCOPE

inline bool TfSafeTypeCompare(std::type_info const& a, std::type_info const& b) { return a == b; }

template <typename To, typename From>
To TfSafeDynamic_cast(From* from)
{
    return dynamic_cast<To>(from);
}

PXR_NAMESPACE_CLOSE_SCOPE
