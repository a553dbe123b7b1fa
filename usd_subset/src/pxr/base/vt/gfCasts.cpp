#include "pxr/base/vt/castRegistry.h"

#include <pxr/base/gf/range1d.h>
#include <pxr/base/gf/range1f.h>
#include <pxr/base/gf/range2d.h>
#include <pxr/base/gf/range2f.h>
#include <pxr/base/gf/range3d.h>
#include <pxr/base/gf/range3f.h>
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
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class To, class From>
To ConvertElement(From const& from)
{
    if constexpr (std::is_same_v<To, GfHalf>) {
        return To(static_cast<float>(from));
    } else {
        return To(from);
    }
}

template <class To, class From>
To ConvertRange(From const& from)
{
    return To(typename To::MinMaxType(from.GetMin()), typename To::MinMaxType(from.GetMax()));
}

template <class From, class To, To (*convert)(From const&)>
VtValue ConvertArray(VtValue const& value)
{
    const VtArray<From>& from = value.UncheckedGet<VtArray<From>>();
    VtArray<To> to(from.size());
    std::transform(from.cbegin(), from.cend(), to.data(), convert);
    return VtValue::Take(to);
}

template <class A, class B>
void RegisterArrays()
{
    VtValue::RegisterCast<VtArray<A>, VtArray<B>>(&ConvertArray<A, B, &ConvertElement<B, A>>);
    VtValue::RegisterCast<VtArray<B>, VtArray<A>>(&ConvertArray<B, A, &ConvertElement<A, B>>);
}

template <class A, class B>
void RegisterRangeArrays()
{
    VtValue::RegisterCast<VtArray<A>, VtArray<B>>(&ConvertArray<A, B, &ConvertRange<B, A>>);
    VtValue::RegisterCast<VtArray<B>, VtArray<A>>(&ConvertArray<B, A, &ConvertRange<A, B>>);
}

template <class I, class H, class F, class D>
void RegisterVectors()
{
    VtValue::RegisterSimpleCast<I, H>();
    VtValue::RegisterSimpleCast<I, F>();
    VtValue::RegisterSimpleCast<I, D>();
    VtValue::RegisterSimpleBidirectionalCast<H, D>();
    VtValue::RegisterSimpleBidirectionalCast<H, F>();
    VtValue::RegisterSimpleBidirectionalCast<F, D>();
    RegisterArrays<H, F>();
    RegisterArrays<H, D>();
    RegisterArrays<F, D>();
}

} // namespace

void Vt_RegisterGfCasts()
{
    RegisterVectors<GfVec2i, GfVec2h, GfVec2f, GfVec2d>();
    RegisterVectors<GfVec3i, GfVec3h, GfVec3f, GfVec3d>();
    RegisterVectors<GfVec4i, GfVec4h, GfVec4f, GfVec4d>();
    RegisterArrays<GfHalf, float>();
    RegisterArrays<GfHalf, double>();
    RegisterArrays<float, double>();
    RegisterRangeArrays<GfRange1f, GfRange1d>();
    RegisterRangeArrays<GfRange2f, GfRange2d>();
    RegisterRangeArrays<GfRange3f, GfRange3d>();
}

PXR_NAMESPACE_CLOSE_SCOPE
