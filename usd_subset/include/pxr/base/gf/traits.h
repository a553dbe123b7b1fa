#pragma once

/// Compile-time questions about the types of this library.

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/hash.h>
#include <pxr/pxr.h>

#include <type_traits>

PXR_NAMESPACE_OPEN_SCOPE

/// True for the GfVec types.
template <class T>
struct GfIsGfVec
{
    static const bool value = false;
};

/// True for the GfMatrix types.
template <class T>
struct GfIsGfMatrix
{
    static const bool value = false;
};

/// True for GfQuatd, GfQuatf and GfQuath.
template <class T>
struct GfIsGfQuat
{
    static const bool value = false;
};

/// True for the GfRange types.
template <class T>
struct GfIsGfRange
{
    static const bool value = false;
};

/// True for float, double, long double and GfHalf.
template <class T>
struct GfIsFloatingPoint : public std::is_floating_point<T>
{};

/// True for the integers and the floating point types, GfHalf included.
template <class T>
struct GfIsArithmetic
    : public std::integral_constant<bool, GfIsFloatingPoint<T>::value || std::is_arithmetic<T>::value>
{};

PXR_NAMESPACE_CLOSE_SCOPE
