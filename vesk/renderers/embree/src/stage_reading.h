#pragma once

#include "geometry.h"

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>

#include <optional>
#include <string>

namespace vesk::renderers::embree {

/// Reads an attribute's value at a time; `fallback` where the prim has no such attribute, no value or a value
/// of another type.
template <class T>
T readAttribute(const PXR_NS::UsdPrim& prim, const char* name, PXR_NS::UsdTimeCode time, const T& fallback)
{
    const PXR_NS::UsdAttribute attribute = prim.GetAttribute(PXR_NS::TfToken(name));
    T value = fallback;
    return attribute && attribute.Get(&value, time) ? value : fallback;
}

/// Turns a time code as hosts give it (NaN: the default time) into OpenUSD's.
PXR_NS::UsdTimeCode toTimeCode(double time);

/// Reads a colour or vector primvar, or the attribute of that name. The interpolation is `None` without a
/// value.
Primvar<Vec3> readVectorPrimvar(const PXR_NS::UsdPrim& prim, const std::string& name,
                                PXR_NS::UsdTimeCode time);

/// Reads a float primvar.
Primvar<float> readFloatPrimvar(const PXR_NS::UsdPrim& prim, const std::string& name,
                                PXR_NS::UsdTimeCode time);

/// Reads a primvar of one to four floating-point numbers a value, missing ones 0; a single value is constant.
Primvar<Vec4> readNumbersPrimvar(const PXR_NS::UsdPrim& prim, const std::string& name,
                                 PXR_NS::UsdTimeCode time);

/// Whether a primvar has as many values as its interpolation needs.
/// \param faces,points,corners the counts of the shape
template <class T>
bool fits(const Primvar<T>& primvar, std::size_t faces, std::size_t points, std::size_t corners)
{
    switch (primvar.interpolation) {
    case Interpolation::Constant:
        return !primvar.values.empty();
    case Interpolation::Uniform:
        return primvar.values.size() >= faces;
    case Interpolation::Varying:
    case Interpolation::Vertex:
        return primvar.values.size() >= points;
    case Interpolation::FaceVarying:
        return primvar.values.size() >= corners;
    default:
        return true;
    }
}

/// Whether any of the prim's attributes that shape it may change over time.
bool shapeMayVary(const PXR_NS::UsdPrim& prim);

/// Whether any of the prim's attributes may change over time.
bool anyAttributeMayVary(const PXR_NS::UsdPrim& prim);

} // namespace vesk::renderers::embree
