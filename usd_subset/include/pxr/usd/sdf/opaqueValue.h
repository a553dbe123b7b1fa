#pragma once

/// The value of attributes that never have one.

#include <pxr/export.h>
#include <pxr/pxr.h>

#include <cstddef>
#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

/// The type of opaque and group attributes, which only mark a place to connect to.
class SdfOpaqueValue final
{};

inline bool operator==(SdfOpaqueValue const&, SdfOpaqueValue const&) { return true; }
inline bool operator!=(SdfOpaqueValue const&, SdfOpaqueValue const&) { return false; }
inline size_t hash_value(SdfOpaqueValue const&) { return 9; }

VESK_USD_API std::ostream& operator<<(std::ostream& out, SdfOpaqueValue const& value);

PXR_NAMESPACE_CLOSE_SCOPE
