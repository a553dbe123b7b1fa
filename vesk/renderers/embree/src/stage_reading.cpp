#include "stage_reading.h"

#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec2h.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/vt/value.h>

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

Interpolation toInterpolation(const TfToken& token)
{
    if (token == "uniform") return Interpolation::Uniform;
    if (token == "vertex") return Interpolation::Vertex;
    if (token == "varying") return Interpolation::Varying;
    if (token == "faceVarying") return Interpolation::FaceVarying;
    return Interpolation::Constant;
}

Interpolation readInterpolation(const UsdAttribute& attribute, Interpolation unauthored)
{
    TfToken token;
    return attribute.GetMetadata(TfToken("interpolation"), &token) ? toInterpolation(token) : unauthored;
}

// Values through their indices; an index out of range leaves the primvar unused.
template <class Out, class Values, class Convert>
Primvar<Out> expand(const Values& values, const VtIntArray& indices, Interpolation interpolation,
                    Convert convert)
{
    Primvar<Out> result;
    if (indices.empty()) {
        result.values.reserve(values.size());
        for (const auto& value : values) {
            result.values.push_back(convert(value));
        }
    } else {
        result.values.reserve(indices.size());
        for (const int index : indices) {
            if (index < 0 || static_cast<std::size_t>(index) >= values.size()) return {};
            result.values.push_back(convert(values[static_cast<std::size_t>(index)]));
        }
    }
    if (!result.values.empty()) result.interpolation = interpolation;
    return result;
}

VtIntArray readIndices(const UsdPrim& prim, const std::string& primvarName, UsdTimeCode time)
{
    return readAttribute(prim, (primvarName + ":indices").c_str(), time, VtIntArray());
}

} // namespace

UsdTimeCode toTimeCode(double time) { return std::isnan(time) ? UsdTimeCode::Default() : UsdTimeCode(time); }

Primvar<Vec3> readVectorPrimvar(const UsdPrim& prim, const std::string& name, UsdTimeCode time)
{
    const UsdAttribute attribute = prim.GetAttribute(TfToken(name));
    VtVec3fArray values;
    if (!attribute || !attribute.Get(&values, time)) return {};
    const bool isPrimvar = name.compare(0, 9, "primvars:") == 0;
    const Interpolation interpolation =
        readInterpolation(attribute, isPrimvar ? Interpolation::Constant : Interpolation::Vertex);
    const VtIntArray indices = isPrimvar ? readIndices(prim, name, time) : VtIntArray();
    return expand<Vec3>(values, indices, interpolation, [](const GfVec3f& v) { return Vec3(v); });
}

Primvar<float> readFloatPrimvar(const UsdPrim& prim, const std::string& name, UsdTimeCode time)
{
    const UsdAttribute attribute = prim.GetAttribute(TfToken(name));
    VtFloatArray values;
    if (!attribute || !attribute.Get(&values, time)) return {};
    return expand<float>(values, readIndices(prim, name, time),
                         readInterpolation(attribute, Interpolation::Constant), [](float v) { return v; });
}

namespace {

template <class T>
Vec4 numbersOf(const T& value)
{
    Vec4 v;
    for (std::size_t i = 0; i < T::dimension; ++i)
        v.v[i] = static_cast<float>(value[i]);
    return v;
}
Vec4 numbersOf(float value) { return {{value, value, value, 1.0f}}; }
Vec4 numbersOf(double value) { return numbersOf(static_cast<float>(value)); }

// Takes up a value of one type; false where it is of another.
template <class T>
bool takeNumbers(const VtValue& value, const VtIntArray& indices, Interpolation interpolation,
                 Primvar<Vec4>& out)
{
    const auto convert = [](const T& v) { return numbersOf(v); };
    if (value.IsHolding<VtArray<T>>()) {
        out = expand<Vec4>(value.UncheckedGet<VtArray<T>>(), indices, interpolation, convert);
    } else if (value.IsHolding<T>()) {
        out.values = {numbersOf(value.UncheckedGet<T>())};
        out.interpolation = Interpolation::Constant;
    } else {
        return false;
    }
    return true;
}

} // namespace

Primvar<Vec4> readNumbersPrimvar(const UsdPrim& prim, const std::string& name, UsdTimeCode time)
{
    const UsdAttribute attribute = prim.GetAttribute(TfToken(name));
    VtValue value;
    Primvar<Vec4> result;
    if (!attribute || !attribute.Get(&value, time)) return result;
    const VtIntArray indices = readIndices(prim, name, time);
    const Interpolation interpolation = readInterpolation(attribute, Interpolation::Constant);
    const bool known = takeNumbers<GfVec2f>(value, indices, interpolation, result) ||
                       takeNumbers<GfVec3f>(value, indices, interpolation, result) ||
                       takeNumbers<GfVec4f>(value, indices, interpolation, result) ||
                       takeNumbers<float>(value, indices, interpolation, result) ||
                       takeNumbers<GfVec2d>(value, indices, interpolation, result) ||
                       takeNumbers<GfVec3d>(value, indices, interpolation, result) ||
                       takeNumbers<GfVec2h>(value, indices, interpolation, result) ||
                       takeNumbers<GfVec3h>(value, indices, interpolation, result) ||
                       takeNumbers<double>(value, indices, interpolation, result);
    return known ? result : Primvar<Vec4>();
}

bool shapeMayVary(const UsdPrim& prim)
{
    for (const UsdAttribute& attribute : prim.GetAuthoredAttributes()) {
        const std::string& name = attribute.GetName().GetString();
        const bool isPlace = name.rfind("xformOp", 0) == 0 || name == "visibility" || name == "purpose";
        if (!isPlace && attribute.ValueMightBeTimeVarying()) return true;
    }
    return false;
}

bool anyAttributeMayVary(const UsdPrim& prim)
{
    const auto attributes = prim.GetAuthoredAttributes();
    return std::any_of(attributes.begin(), attributes.end(),
                       [](const UsdAttribute& attribute) { return attribute.ValueMightBeTimeVarying(); });
}

} // namespace vesk::renderers::embree
