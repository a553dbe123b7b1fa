#include "pxr/usd/usd/interpolators.h"

#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/gf/half.h>
#include <pxr/base/gf/math.h>
#include <pxr/base/gf/matrix2d.h>
#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/quath.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec2h.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4h.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/interpolation.h>

#include <type_traits>
#include <typeindex>
#include <unordered_map>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class T>
T blend(const T& lower, const T& upper, double fraction)
{
    if constexpr (std::is_same_v<T, GfQuatd> || std::is_same_v<T, GfQuatf> || std::is_same_v<T, GfQuath>) {
        return GfSlerp(fraction, lower, upper);
    } else if constexpr (std::is_same_v<T, SdfTimeCode>) {
        return SdfTimeCode(GfLerp(fraction, lower.GetValue(), upper.GetValue()));
    } else {
        return GfLerp(fraction, lower, upper);
    }
}

template <class T>
VtValue blendScalars(const VtValue& lower, const VtValue& upper, double fraction)
{
    return VtValue(blend(lower.UncheckedGet<T>(), upper.UncheckedGet<T>(), fraction));
}

template <class T>
VtValue blendArrays(const VtValue& lower, const VtValue& upper, double fraction)
{
    const auto& lowers = lower.UncheckedGet<VtArray<T>>();
    const auto& uppers = upper.UncheckedGet<VtArray<T>>();
    if (lowers.size() != uppers.size() || fraction == 0.0) {
        return lower;
    }
    if (fraction == 1.0) {
        return upper;
    }
    VtArray<T> result(lowers.size());
    T* const out = result.data();
    const T* const from = lowers.cdata();
    const T* const to = uppers.cdata();
    for (size_t i = 0; i != lowers.size(); ++i) {
        out[i] = blend(from[i], to[i], fraction);
    }
    return VtValue::Take(result);
}

using Blend = VtValue (*)(const VtValue&, const VtValue&, double);

const std::unordered_map<std::type_index, Blend>& blends()
{
// clang-format off
#define USD_ADD_BLEND(type) \
        {std::type_index(typeid(type)), &blendScalars<type>}, \
        {std::type_index(typeid(VtArray<type>)), &blendArrays<type>},
    static const std::unordered_map<std::type_index, Blend> table{USD_LINEAR_INTERPOLATION_SCALARS(USD_ADD_BLEND)};
#undef USD_ADD_BLEND
    // clang-format on
    return table;
}

} // namespace

bool Usd_LayerSamples::Query(double time, const Usd_Interpolator& interpolator, bool takesBlocks,
                             VtValue* value) const
{
    VtValue found;
    if (!_layer.QueryTimeSample(_path, time, &found)) {
        return false;
    }
    const std::type_info* const type = interpolator.GetType();
    if (type && found.GetTypeid() != *type && !(takesBlocks && found.IsHolding<SdfValueBlock>())) {
        return false;
    }
    *value = std::move(found);
    return true;
}

bool Usd_Interpolator::GetValue(const Usd_SampleSource& source, double time, double lower, double upper,
                                VtValue* value) const
{
    VtValue before;
    if (GfIsClose(lower, upper, 1e-6)) {
        if (!source.Query(lower, *this, true, &before) || before.IsHolding<SdfValueBlock>()) {
            return false;
        }
        *value = std::move(before);
        return true;
    }
    const std::type_info* const linear = _FindLinearType();
    if (!linear) {
        return source.Query(lower, *this, false, value);
    }
    const Usd_Interpolator inner(*linear);
    VtValue after;
    if (!source.Query(lower, inner, false, &before)) {
        return false;
    }
    if (!source.Query(upper, inner, false, &after)) {
        after = before; // the sample before a block holds
    }
    *value = Usd_Interpolate(before, after, (time - lower) / (upper - lower));
    return true;
}

const std::type_info* Usd_Interpolator::_FindLinearType() const
{
    if (!_attribute) {
        return _type;
    }
    if (Usd_ObjectAccess::GetImpl(*_attribute).interpolation == UsdInterpolationTypeHeld) {
        return nullptr;
    }
    const std::type_info& type = _type ? *_type : _attribute->GetTypeName().GetType().GetTypeid();
    return blends().count(std::type_index(type)) != 0 ? &type : nullptr;
}

VtValue Usd_Interpolate(const VtValue& lower, const VtValue& upper, double fraction)
{
    return blends().at(std::type_index(lower.GetTypeid()))(lower, upper, fraction);
}

PXR_NAMESPACE_CLOSE_SCOPE
