#include "pxr/usd/usd/valueResolver.h"

#include "pxr/usd/usd/interpolators.h"
#include "pxr/usd/usd/propertySites.h"
#include "pxr/usd/usd/stageImpl.h"
#include "pxr/usd/usd/valueUtils.h"

#include <pxr/base/gf/math.h>
#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

Usd_ValueResolver::Usd_ValueResolver(const UsdAttribute& attribute)
    : _attribute(attribute),
      _prim(Usd_ObjectAccess::GetData(attribute)),
      _name(Usd_ObjectAccess::GetPropertyName(attribute))
{}

UsdResolveInfo Usd_ValueResolver::Resolve(const UsdTimeCode* time, const std::type_info* wanted) const
{
    UsdResolveInfo info;
    for (Usd_PropertySites sites(*_prim, _name); sites; ++sites) {
        SdfLayer& layer = sites.GetLayer();
        const SdfPath& path = sites.GetPath();
        if ((!time || time->IsNumeric()) && layer.GetNumTimeSamplesForPath(path) > 0) {
            info._source = UsdResolveInfoSourceTimeSamples;
        } else {
            const std::type_info& type = layer.GetFieldTypeid(path, SdfFieldKeys->Default);
            if (type == typeid(void)) {
                continue;
            }
            if (type == typeid(SdfValueBlock)) {
                info._valueIsBlocked = true;
                break;
            }
            if (wanted && type != *wanted) {
                continue;
            }
            info._source = UsdResolveInfoSourceDefault;
        }
        info._layer = SdfLayerHandle(&layer);
        info._specPath = path;
        info._layerToStageOffset = sites.GetOffset();
        return info;
    }
    if (GetFallback(nullptr)) {
        info._source = UsdResolveInfoSourceFallback;
    }
    return info;
}

bool Usd_ValueResolver::GetFallback(VtValue* value) const
{
    VtValue found;
    if (!_prim->GetPrimDefinition().GetAttributeFallbackValue(_name, &found)) {
        return false;
    }
    if (value) {
        *value = std::move(found);
    }
    return true;
}

bool Usd_ValueResolver::Get(VtValue* value, UsdTimeCode time, const std::type_info* type) const
{
    const UsdResolveInfo info = Resolve(&time, type);
    if (time.IsDefault() && info._valueIsBlocked) {
        return false; // at the default time a block hides the fallback too
    }
    return Get(info, value, time, type);
}

bool Usd_ValueResolver::Get(const UsdResolveInfo& info, VtValue* value, UsdTimeCode time,
                            const std::type_info* type) const
{
    switch (info._source) {
    case UsdResolveInfoSourceFallback:
        return GetFallback(value);
    case UsdResolveInfoSourceDefault:
        if (!info._layer || !info._layer->HasField(info._specPath, SdfFieldKeys->Default, value)) {
            return false;
        }
        break;
    case UsdResolveInfoSourceTimeSamples:
        if (!info._layer || time.IsDefault() || !_GetSample(info, value, time.GetValue(), type)) {
            return false;
        }
        break;
    default:
        return false;
    }
    _Localize(info, value);
    return true;
}

bool Usd_ValueResolver::_GetSample(const UsdResolveInfo& info, VtValue* value, double time,
                                   const std::type_info* type) const
{
    const double layerTime = info._layerToStageOffset.GetInverse() * time;
    double lower = 0.0;
    double upper = 0.0;
    if (!info._layer->GetBracketingTimeSamplesForPath(info._specPath, layerTime, &lower, &upper)) {
        return false;
    }
    if (GfIsClose(lower, upper, 1e-6)) {
        VtValue found;
        if (!info._layer->QueryTimeSample(info._specPath, lower, &found) ||
            found.IsHolding<SdfValueBlock>()) {
            return false;
        }
        *value = std::move(found);
        return true;
    }
    return _Between(info, value, layerTime, lower, upper, type);
}

bool Usd_ValueResolver::_Between(const UsdResolveInfo& info, VtValue* value, double time, double lower,
                                 double upper, const std::type_info* type) const
{
    VtValue before;
    if (!info._layer->QueryTimeSample(info._specPath, lower, &before)) {
        return false;
    }
    const TfType declared = type ? TfType() : _attribute.GetTypeName().GetType();
    const std::type_info& wanted = type ? *type : declared.GetTypeid();
    if (Usd_StageImpl::Of(*_prim->GetStage()).interpolation == UsdInterpolationTypeHeld ||
        !Usd_IsInterpolated(wanted)) {
        // Who takes any type gets the block itself.
        if (type && before.IsHolding<SdfValueBlock>()) {
            return false;
        }
        *value = std::move(before);
        return true;
    }
    if (before.GetTypeid() != wanted) {
        return false;
    }
    VtValue after;
    if (!info._layer->QueryTimeSample(info._specPath, upper, &after) || after.GetTypeid() != wanted) {
        after = before; // blended all the same, rounding included
    }
    *value = Usd_Interpolate(before, after, (time - lower) / (upper - lower));
    return true;
}

void Usd_ValueResolver::_Localize(const UsdResolveInfo& info, VtValue* value) const
{
    Usd_ApplyLayerOffset(info._layerToStageOffset, value);
    Usd_ResolveAssetPaths(
        info._layer, Usd_StageImpl::Of(*_prim->GetStage()).resolverContext,
        [&](const std::string& text) {
            for (Usd_PropertySites sites(*_prim, _name); sites; ++sites) {
                if (SdfLayerHandle(&sites.GetLayer()) == info._layer && sites.GetPath() == info._specPath) {
                    return Usd_EvaluateExpression(*sites.GetNode().layerStack, text, sites.GetLayer(),
                                                  sites.GetPath());
                }
            }
            return text;
        },
        value);
}

std::vector<double> Usd_ValueResolver::GetTimeSamples(const UsdResolveInfo& info,
                                                      const GfInterval& interval) const
{
    std::vector<double> times;
    if (info._source != UsdResolveInfoSourceTimeSamples || !info._layer) {
        return times;
    }
    const SdfLayerOffset& toStage = info._layerToStageOffset;
    const SdfLayerOffset toLayer = toStage.GetInverse();
    const GfInterval within =
        toStage.IsIdentity() ? interval : interval * toLayer.GetScale() + GfInterval(toLayer.GetOffset());
    for (const double time : info._layer->ListTimeSamplesForPath(info._specPath)) {
        if (within.Contains(time)) {
            times.push_back(toStage * time);
        }
    }
    return times;
}

size_t Usd_ValueResolver::GetNumTimeSamples(const UsdResolveInfo& info) const
{
    return info._source == UsdResolveInfoSourceTimeSamples && info._layer
               ? info._layer->GetNumTimeSamplesForPath(info._specPath)
               : 0;
}

bool Usd_ValueResolver::GetBracketingTimeSamples(const UsdResolveInfo& info, double time, double* lower,
                                                 double* upper, bool* hasSamples) const
{
    if (info._source == UsdResolveInfoSourceTimeSamples && info._layer) {
        const SdfLayerOffset& toStage = info._layerToStageOffset;
        if (!info._layer->GetBracketingTimeSamplesForPath(info._specPath, toStage.GetInverse() * time, lower,
                                                          upper)) {
            return false;
        }
        *lower = toStage * *lower;
        *upper = toStage * *upper;
        *hasSamples = true;
        return true;
    }
    *hasSamples = false;
    return info._source != UsdResolveInfoSourceNone;
}

PXR_NAMESPACE_CLOSE_SCOPE
