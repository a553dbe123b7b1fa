#pragma once

/// The value types of the scene description, and the names of their arrays.

#include <pxr/base/gf/declare.h>
#include <pxr/base/gf/half.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/vt/hash.h>
#include <pxr/base/vt/traits.h>
#include <pxr/pxr.h>

#include <cstdint>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// \name Lists of value types: each calls X(C++ type, Name)
/// @{
#define VT_FOR_EACH_BUILTIN_NUMERIC_VALUE_TYPE(X)                                                            \
    X(bool, Bool)                                                                                            \
    X(char, Char)                                                                                            \
    X(unsigned char, UChar)                                                                                  \
    X(short, Short)                                                                                          \
    X(unsigned short, UShort) X(int, Int) X(unsigned int, UInt) X(int64_t, Int64) X(uint64_t, UInt64)        \
        X(double, Double) X(float, Float) X(GfHalf, Half)
#define VT_FOR_EACH_STRING_VALUE_TYPE(X) X(std::string, String) X(TfToken, Token)
#define VT_FOR_EACH_VEC_VALUE_TYPE(X)                                                                        \
    X(GfVec4i, Vec4i)                                                                                        \
    X(GfVec3i, Vec3i)                                                                                        \
    X(GfVec2i, Vec2i)                                                                                        \
    X(GfVec4h, Vec4h)                                                                                        \
    X(GfVec3h, Vec3h) X(GfVec2h, Vec2h) X(GfVec4f, Vec4f) X(GfVec3f, Vec3f) X(GfVec2f, Vec2f)                \
        X(GfVec4d, Vec4d) X(GfVec3d, Vec3d) X(GfVec2d, Vec2d)
#define VT_FOR_EACH_MATRIX_VALUE_TYPE(X)                                                                     \
    X(GfMatrix4f, Matrix4f)                                                                                  \
    X(GfMatrix3f, Matrix3f)                                                                                  \
    X(GfMatrix2f, Matrix2f) X(GfMatrix4d, Matrix4d) X(GfMatrix3d, Matrix3d) X(GfMatrix2d, Matrix2d)
#define VT_FOR_EACH_RANGE_VALUE_TYPE(X)                                                                      \
    X(GfRange3f, Range3f)                                                                                    \
    X(GfRange3d, Range3d)                                                                                    \
    X(GfRange2f, Range2f) X(GfRange2d, Range2d) X(GfRange1f, Range1f) X(GfRange1d, Range1d)
#define VT_FOR_EACH_QUATERNION_VALUE_TYPE(X)                                                                 \
    X(GfQuath, Quath) X(GfQuatf, Quatf) X(GfQuatd, Quatd) X(GfQuaternion, Quaternion)
#define VT_FOR_EACH_SCALAR_VALUE_TYPE(X)                                                                     \
    VT_FOR_EACH_BUILTIN_NUMERIC_VALUE_TYPE(X)                                                                \
    VT_FOR_EACH_STRING_VALUE_TYPE(X)                                                                         \
    VT_FOR_EACH_VEC_VALUE_TYPE(X)                                                                            \
    VT_FOR_EACH_MATRIX_VALUE_TYPE(X)                                                                         \
    VT_FOR_EACH_RANGE_VALUE_TYPE(X)                                                                          \
    VT_FOR_EACH_QUATERNION_VALUE_TYPE(X)
/// @}

// VtFloatArray, VtVec3fArray, ...
#define VT_ARRAY_TYPEDEF(type, name) typedef VtArray<type> Vt##name##Array;
VT_FOR_EACH_SCALAR_VALUE_TYPE(VT_ARRAY_TYPEDEF)
#undef VT_ARRAY_TYPEDEF

class GfRect2i;
class GfInterval;
typedef VtArray<GfRect2i> VtRect2iArray;
typedef VtArray<GfInterval> VtIntervalArray;

PXR_NAMESPACE_CLOSE_SCOPE
