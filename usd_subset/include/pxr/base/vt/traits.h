#pragma once

/// What kind of value a type is.

#include <pxr/pxr.h>

#include <type_traits>

PXR_NAMESPACE_OPEN_SCOPE

template <typename T>
class VtArray;

/// True for VtArray of anything.
template <typename T>
struct VtIsArray : public std::false_type
{};
template <typename T>
struct VtIsArray<VtArray<T>> : public std::true_type
{};

PXR_NAMESPACE_CLOSE_SCOPE
