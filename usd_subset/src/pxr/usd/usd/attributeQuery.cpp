#include <pxr/usd/usd/attributeQuery.h>

#include "pxr/usd/usd/valueResolver.h"

#include <set>

PXR_NAMESPACE_OPEN_SCOPE

UsdAttributeQuery::UsdAttributeQuery(const UsdAttribute& attr) : _attr(attr)
{
    if (_attr) {
        _resolveInfo = _attr.GetResolveInfo();
    }
}

UsdAttributeQuery::UsdAttributeQuery(const UsdPrim& prim, const TfToken& attrName)
    : UsdAttributeQuery(prim.GetAttribute(attrName))
{}

std::vector<UsdAttributeQuery> UsdAttributeQuery::CreateQueries(const UsdPrim& prim,
                                                                const TfTokenVector& attrNames)
{
    std::vector<UsdAttributeQuery> queries;
    queries.reserve(attrNames.size());
    for (const TfToken& name : attrNames) {
        queries.emplace_back(prim, name);
    }
    return queries;
}

bool UsdAttributeQuery::Get(VtValue* value, UsdTimeCode time) const { return _Get(value, time, nullptr); }

bool UsdAttributeQuery::_Get(VtValue* value, UsdTimeCode time, const std::type_info* type) const
{
    const Usd_ValueResolver resolver(_attr);
    // What was found for numeric times does not say where the default value comes from.
    if (time.IsDefault() &&
        (_resolveInfo.GetSource() == UsdResolveInfoSourceTimeSamples ||
         _resolveInfo.GetSource() == UsdResolveInfoSourceValueClips || _resolveInfo.ValueIsBlocked())) {
        return resolver.Get(value, time, type);
    }
    return resolver.Get(_resolveInfo, value, time, type);
}

bool UsdAttributeQuery::GetTimeSamples(std::vector<double>* times) const
{
    return GetTimeSamplesInInterval(GfInterval::GetFullInterval(), times);
}

bool UsdAttributeQuery::GetTimeSamplesInInterval(const GfInterval& interval, std::vector<double>* times) const
{
    *times = Usd_ValueResolver(_attr).GetTimeSamples(_resolveInfo, interval);
    return true;
}

bool UsdAttributeQuery::GetUnionedTimeSamples(const std::vector<UsdAttributeQuery>& attrQueries,
                                              std::vector<double>* times)
{
    return GetUnionedTimeSamplesInInterval(attrQueries, GfInterval::GetFullInterval(), times);
}

bool UsdAttributeQuery::GetUnionedTimeSamplesInInterval(const std::vector<UsdAttributeQuery>& attrQueries,
                                                        const GfInterval& interval,
                                                        std::vector<double>* times)
{
    bool succeeded = true;
    std::set<double> all;
    for (const UsdAttributeQuery& query : attrQueries) {
        std::vector<double> own;
        if (!query || !query.GetTimeSamplesInInterval(interval, &own)) {
            succeeded = false;
            continue;
        }
        all.insert(own.begin(), own.end());
    }
    times->assign(all.begin(), all.end());
    return succeeded;
}

size_t UsdAttributeQuery::GetNumTimeSamples() const
{
    return Usd_ValueResolver(_attr).GetNumTimeSamples(_resolveInfo);
}

bool UsdAttributeQuery::GetBracketingTimeSamples(double desiredTime, double* lower, double* upper,
                                                 bool* hasTimeSamples) const
{
    return Usd_ValueResolver(_attr).GetBracketingTimeSamples(_resolveInfo, desiredTime, lower, upper,
                                                             hasTimeSamples);
}

bool UsdAttributeQuery::HasValue() const { return _resolveInfo.GetSource() != UsdResolveInfoSourceNone; }

bool UsdAttributeQuery::HasAuthoredValueOpinion() const { return _resolveInfo.HasAuthoredValueOpinion(); }

bool UsdAttributeQuery::HasAuthoredValue() const { return _resolveInfo.HasAuthoredValue(); }

bool UsdAttributeQuery::HasFallbackValue() const { return _attr.HasFallbackValue(); }

bool UsdAttributeQuery::ValueMightBeTimeVarying() const
{
    return Usd_ValueResolver(_attr).ValueMightBeTimeVarying(_resolveInfo);
}

PXR_NAMESPACE_CLOSE_SCOPE
