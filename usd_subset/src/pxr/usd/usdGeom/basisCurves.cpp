#include <pxr/usd/usdGeom/basisCurves.h>

#include <pxr/base/tf/diagnostic.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// What decides how many segments a curve has.
struct _Shape
{
    VtIntArray counts;
    TfToken type, basis, wrap;

    bool IsPeriodic() const { return wrap == UsdGeomTokens->periodic; }
    bool IsPinned() const { return wrap == UsdGeomTokens->pinned; }
    int Step() const { return basis == UsdGeomTokens->bezier ? 3 : 1; }
    bool IsKnown() const
    {
        const bool basisIsKnown = basis == UsdGeomTokens->bezier || basis == UsdGeomTokens->bspline ||
                                  basis == UsdGeomTokens->catmullRom;
        return (IsPeriodic() || IsPinned() || wrap == UsdGeomTokens->nonperiodic) &&
               (type == UsdGeomTokens->linear || (type == UsdGeomTokens->cubic && basisIsKnown));
    }
};

_Shape _ReadShape(const UsdGeomBasisCurves& curves, const UsdTimeCode& time)
{
    _Shape shape;
    curves.GetCurveVertexCountsAttr().Get(&shape.counts, time);
    curves.GetTypeAttr().Get(&shape.type, time);
    curves.GetBasisAttr().Get(&shape.basis, time);
    curves.GetWrapAttr().Get(&shape.wrap, time);
    return shape;
}

int _CountSegments(const _Shape& shape, int count)
{
    if (shape.type == UsdGeomTokens->linear) {
        return shape.IsPeriodic() ? count : count - 1;
    }
    if (shape.Step() == 3) {
        return shape.IsPeriodic() ? count / 3 : (count - 4) / 3 + 1;
    }
    return shape.IsPeriodic() ? count : shape.IsPinned() ? count - 1 : count - 3;
}

size_t _CountVarying(const _Shape& shape)
{
    if (!shape.IsKnown()) {
        return 0;
    }
    size_t sum = 0;
    for (const int count : shape.counts) {
        if (shape.type == UsdGeomTokens->linear) {
            sum += size_t(std::max(count, 0)) + (shape.IsPeriodic() ? 1 : 0);
        } else if (shape.IsPeriodic()) {
            sum += size_t(std::max(count, 0) / shape.Step());
        } else {
            sum += size_t(std::max((count - 4) / shape.Step(), 0) + 2);
        }
    }
    return sum;
}

size_t _CountVertices(const _Shape& shape)
{
    size_t sum = 0;
    for (const int count : shape.counts) {
        sum += size_t(std::max(count, 0));
    }
    return sum;
}

} // namespace

TfToken UsdGeomBasisCurves::ComputeInterpolationForSize(size_t n, const UsdTimeCode& timeCode,
                                                        ComputeInterpolationInfo* info) const
{
    const _Shape shape = _ReadShape(*this, timeCode);
    const std::pair<TfToken, size_t> expected[] = {{UsdGeomTokens->constant, 1},
                                                   {UsdGeomTokens->uniform, shape.counts.size()},
                                                   {UsdGeomTokens->varying, _CountVarying(shape)},
                                                   {UsdGeomTokens->vertex, _CountVertices(shape)}};
    if (info) {
        info->clear();
    }
    for (const auto& [interpolation, size] : expected) {
        if (n == size) {
            return interpolation;
        }
        if (info) {
            info->emplace_back(interpolation, size);
        }
    }
    return TfToken();
}

size_t UsdGeomBasisCurves::ComputeUniformDataSize(const UsdTimeCode& timeCode) const
{
    return GetCurveCount(timeCode);
}

size_t UsdGeomBasisCurves::ComputeVaryingDataSize(const UsdTimeCode& timeCode) const
{
    return _CountVarying(_ReadShape(*this, timeCode));
}

size_t UsdGeomBasisCurves::ComputeVertexDataSize(const UsdTimeCode& timeCode) const
{
    return _CountVertices(_ReadShape(*this, timeCode));
}

VtIntArray UsdGeomBasisCurves::ComputeSegmentCounts(const UsdTimeCode& timeCode) const
{
    const _Shape shape = _ReadShape(*this, timeCode);
    if (!shape.IsKnown()) {
        TF_WARN("The curves <%s> have no segments: their type, basis or wrap is none that is known.",
                GetPath().GetText());
        return VtIntArray();
    }
    VtIntArray segments;
    segments.reserve(shape.counts.size());
    for (const int count : shape.counts) {
        segments.push_back(_CountSegments(shape, count));
    }
    return segments;
}

PXR_NAMESPACE_CLOSE_SCOPE
