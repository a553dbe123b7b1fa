#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec2h.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/base/gf/vec3i.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4h.h>
#include <pxr/base/gf/vec4i.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/usdGeom/primvar.h>

#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class T>
bool _FlattenArray(const VtArray<T>& values, const VtIntArray& indices, int elementSize, VtArray<T>* result,
                   std::string* errString)
{
    const size_t step = size_t(elementSize);
    const size_t elements = values.size() / step;
    VtArray<T> flat(indices.size() * step);
    T* const out = flat.data();
    size_t bad = 0, firstBad = 0;
    for (size_t i = 0; i < indices.size(); ++i) {
        if (indices[i] < 0 || size_t(indices[i]) >= elements) {
            firstBad = bad++ == 0 ? i : firstBad;
            continue;
        }
        for (size_t j = 0; j < step; ++j) {
            out[i * step + j] = values[size_t(indices[i]) * step + j];
        }
    }
    if (bad > 0 && errString) {
        *errString =
            TfStringPrintf("%zu indices name no element of the %zu there are; the first is %d at %zu.", bad,
                           elements, indices[firstBad], firstBad);
    }
    result->swap(flat);
    return bad == 0;
}

/// Flattens arrays of one of the types; -1 where the value holds none of them.
template <class... T>
int _FlattenAny(const VtValue& value, const VtIntArray& indices, int elementSize, VtValue* result,
                std::string* errString)
{
    int done = -1;
    const auto attempt = [&](auto tag) {
        using Array = VtArray<decltype(tag)>;
        if (!value.IsHolding<Array>()) {
            return false;
        }
        Array flat;
        done = _FlattenArray(value.UncheckedGet<Array>(), indices, elementSize, &flat, errString) ? 1 : 0;
        if (done) {
            *result = VtValue::Take(flat);
        }
        return true;
    };
    (attempt(T()) || ...);
    return done;
}

} // namespace

bool UsdGeomPrimvar::ComputeFlattened(VtValue* value, UsdTimeCode time) const
{
    VtValue held;
    if (!Get(&held, time)) {
        return false;
    }
    if (!held.IsArrayValued() || !IsIndexed()) {
        value->Swap(held);
        return true;
    }
    VtIntArray indices;
    if (!GetIndices(&indices, time)) {
        TF_WARN("<%s> is indexed, but has no indices at this time.", _attr.GetPath().GetText());
        return false;
    }
    std::string error;
    const bool done = ComputeFlattened(value, held, indices, GetElementSize(), &error);
    if (!error.empty()) {
        TF_WARN("<%s> cannot be flattened: %s", _attr.GetPath().GetText(), error.c_str());
    }
    return done;
}

bool UsdGeomPrimvar::ComputeFlattened(VtValue* value, const VtValue& attrVal, const VtIntArray& indices,
                                      std::string* errString)
{
    return ComputeFlattened(value, attrVal, indices, 1, errString);
}

bool UsdGeomPrimvar::ComputeFlattened(VtValue* value, const VtValue& attrVal, const VtIntArray& indices,
                                      int elementSize, std::string* errString)
{
    if (!attrVal.IsArrayValued()) {
        *value = attrVal;
        return true;
    }
    if (elementSize < 1) {
        if (errString) {
            *errString = TfStringPrintf("an element size of %d is not above 0.", elementSize);
        }
        return false;
    }
    const int done =
        _FlattenAny<GfVec2f, GfVec2d, GfVec2i, GfVec2h, GfVec3f, GfVec3d, GfVec3i, GfVec3h, GfVec4f, GfVec4d,
                    GfVec4i, GfVec4h, GfMatrix3d, GfMatrix4d, std::string, double, int, unsigned int, float,
                    GfHalf>(attrVal, indices, elementSize, value, errString);
    if (done < 0 && errString) {
        *errString = "values of type " + attrVal.GetTypeName() + " cannot be indexed.";
    }
    return done > 0;
}

PXR_NAMESPACE_CLOSE_SCOPE
