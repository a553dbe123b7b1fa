#include <pxr/usd/usdGeom/xformable.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool _MightVary(const std::vector<UsdGeomXformOp>& ops)
{
    return std::any_of(ops.begin(), ops.end(),
                       [](const UsdGeomXformOp& op) { return op.MightBeTimeVarying(); });
}

} // namespace

bool UsdGeomXformable::TransformMightBeTimeVarying() const
{
    VtArray<TfToken> order;
    _GetXformOpOrderValue(&order);
    const VtArray<TfToken>& names = order;
    for (size_t i = names.size(); i-- > 0;) {
        if (names[i] == UsdGeomXformOpTypes->resetXformStack) {
            return false;
        }
        bool isInverse = false;
        const UsdAttribute attribute = UsdGeomXformOp::_GetXformOpAttr(GetPrim(), names[i], &isInverse);
        if (attribute && UsdGeomXformOp(attribute, isInverse).MightBeTimeVarying()) {
            return true;
        }
    }
    return false;
}

bool UsdGeomXformable::TransformMightBeTimeVarying(const std::vector<UsdGeomXformOp>& ops) const
{
    return _MightVary(ops);
}

bool UsdGeomXformable::GetTimeSamples(std::vector<double>* times) const
{
    return GetTimeSamplesInInterval(GfInterval::GetFullInterval(), times);
}

bool UsdGeomXformable::GetTimeSamplesInInterval(const GfInterval& interval, std::vector<double>* times) const
{
    bool resets = false;
    return GetTimeSamplesInInterval(GetOrderedXformOps(&resets), interval, times);
}

bool UsdGeomXformable::GetTimeSamples(const std::vector<UsdGeomXformOp>& orderedXformOps,
                                      std::vector<double>* times)
{
    return GetTimeSamplesInInterval(orderedXformOps, GfInterval::GetFullInterval(), times);
}

bool UsdGeomXformable::GetTimeSamplesInInterval(const std::vector<UsdGeomXformOp>& orderedXformOps,
                                                const GfInterval& interval, std::vector<double>* times)
{
    std::vector<UsdAttribute> attributes;
    attributes.reserve(orderedXformOps.size());
    for (const UsdGeomXformOp& op : orderedXformOps) {
        attributes.push_back(op.GetAttr());
    }
    return UsdAttribute::GetUnionedTimeSamplesInInterval(attributes, interval, times);
}

UsdGeomXformable::XformQuery::XformQuery(const UsdGeomXformable& xformable)
{
    _xformOps = xformable._GetOrderedXformOps(&_resetsXformStack, /*withQueries=*/true);
}

bool UsdGeomXformable::XformQuery::GetLocalTransformation(GfMatrix4d* transform, UsdTimeCode time) const
{
    return UsdGeomXformable::GetLocalTransformation(transform, _xformOps, time);
}

bool UsdGeomXformable::XformQuery::TransformMightBeTimeVarying() const { return _MightVary(_xformOps); }

bool UsdGeomXformable::XformQuery::GetTimeSamples(std::vector<double>* times) const
{
    return GetTimeSamplesInInterval(GfInterval::GetFullInterval(), times);
}

bool UsdGeomXformable::XformQuery::GetTimeSamplesInInterval(const GfInterval& interval,
                                                            std::vector<double>* times) const
{
    return UsdGeomXformable::GetTimeSamplesInInterval(_xformOps, interval, times);
}

bool UsdGeomXformable::XformQuery::IsAttributeIncludedInLocalTransform(const TfToken& attrName) const
{
    return std::any_of(_xformOps.begin(), _xformOps.end(),
                       [&attrName](const UsdGeomXformOp& op) { return op.GetName() == attrName; });
}

PXR_NAMESPACE_CLOSE_SCOPE
