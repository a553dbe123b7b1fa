#include "stage_reading.h"

#include <pxr/base/gf/vec3f.h>

#include <array>
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

bool shapeMayVary(const UsdPrim& prim)
{
    static constexpr std::array<const char*, 22> names = {"points",
                                                          "faceVertexCounts",
                                                          "faceVertexIndices",
                                                          "normals",
                                                          "primvars:normals",
                                                          "holeIndices",
                                                          "primvars:displayColor",
                                                          "primvars:displayColor:indices",
                                                          "primvars:displayOpacity",
                                                          "radius",
                                                          "height",
                                                          "size",
                                                          "width",
                                                          "length",
                                                          "axis",
                                                          "radiusTop",
                                                          "radiusBottom",
                                                          "widths",
                                                          "curveVertexCounts",
                                                          "orientation",
                                                          "primvars:widths",
                                                          "ids"};
    for (const char* name : names) {
        const UsdAttribute attribute = prim.GetAttribute(TfToken(name));
        if (attribute && attribute.ValueMightBeTimeVarying()) return true;
    }
    return false;
}

} // namespace vesk::renderers::embree
