#include "pxr/usd/usd/valueResolver.h"

#include "pxr/usd/usd/clipSites.h"
#include "pxr/usd/usd/interpolators.h"
#include "pxr/usd/usd/propertySites.h"
#include "pxr/usd/usd/valueUtils.h"

#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

Usd_ValueResolver::Usd_ValueResolver(const UsdAttribute& attribute)
    : _attribute(attribute),
      _prim(Usd_ObjectAccess::GetData(attribute)),
      _name(Usd_ObjectAccess::GetPropertyName(attribute))
{}

UsdResolveInfo Usd_ValueResolver::Resolve(const UsdTimeCode* time, const std::type_info* wanted) const
{
    if (_prim->MayHaveOpinionsInClips() && (!time || time->IsNumeric())) {
        return _ResolveWithClips(time, wanted);
    }
    UsdResolveInfo info;
    for (Usd_PropertySites sites(*_prim, _name); sites; ++sites) {
        if (_ResolveAtSite(sites.GetLayer(), sites.GetPath(), time, wanted, &info)) {
            info._layerToStageOffset = sites.GetOffset();
            return info;
        }
        if (info._valueIsBlocked) {
            break;
        }
    }
    _ResolveFallback(&info);
    return info;
}

bool Usd_ValueResolver::_ResolveAtSite(SdfLayer& layer, const SdfPath& path, const UsdTimeCode* time,
                                       const std::type_info* wanted, UsdResolveInfo* info) const
{
    if ((!time || time->IsNumeric()) && layer.GetNumTimeSamplesForPath(path) > 0) {
        info->_source = UsdResolveInfoSourceTimeSamples;
    } else {
        const std::type_info& type = layer.GetFieldTypeid(path, SdfFieldKeys->Default);
        if (type == typeid(void)) {
            return false;
        }
        if (type == typeid(SdfValueBlock)) {
            info->_valueIsBlocked = true;
            return false;
        }
        if (wanted && type != *wanted) {
            return false;
        }
        info->_source = UsdResolveInfoSourceDefault;
    }
    info->_layer = SdfLayerHandle(&layer);
    info->_specPath = path;
    return true;
}

UsdResolveInfo Usd_ValueResolver::_ResolveWithClips(const UsdTimeCode* time,
                                                    const std::type_info* wanted) const
{
    UsdResolveInfo info;
    const auto atSite = [&](const Usd_SpecSite& site, const SdfPath& path) {
        info._layerToStageOffset = site.offset;
        return _ResolveAtSite(*site.layer, path, time, wanted, &info) || info._valueIsBlocked;
    };
    const auto atClips = [&](const Usd_ClipSet& set, const Usd_LayerStack& layerStack, const SdfPath& path,
                             const SdfLayerOffset&) {
        info._source = UsdResolveInfoSourceValueClips;
        info._layerToStageOffset = SdfLayerOffset(); // it is in the times of the clips already
        info._clipLayerStack = &layerStack;
        info._specPath = path;
        _clips = &set;
        return true;
    };
    if (!Usd_VisitSitesAndClips(*_prim, _name, atSite, atClips) || info._valueIsBlocked) {
        info._layerToStageOffset = SdfLayerOffset();
        _ResolveFallback(&info);
    }
    return info;
}

void Usd_ValueResolver::_ResolveFallback(UsdResolveInfo* info) const
{
    if (GetFallback(nullptr)) {
        info->_source = UsdResolveInfoSourceFallback;
    }
}

// OpenUSD finds them again by the path of the prim as it is seen, also in an instance, and takes the first
// set that is written in the layer stack, whichever of its layers names it.
const Usd_ClipSet* Usd_ValueResolver::_FindClips(const UsdResolveInfo& info) const
{
    const Usd_ClipCache& cache = Usd_StageImpl::Of(*_prim->GetStage()).clips;
    for (const Usd_ClipSetPtr& set : cache.Get(_attribute.GetPrim().GetPath())) {
        if (set->HasValuesOf(info._clipLayerStack, info._specPath)) {
            return set.get();
        }
    }
    return nullptr;
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
    case UsdResolveInfoSourceValueClips:
        return time.IsNumeric() && _GetFromClips(info, value, time.GetValue(), type);
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
    return info._layer->GetBracketingTimeSamplesForPath(info._specPath, layerTime, &lower, &upper) &&
           Usd_Interpolator(_attribute, type)
               .GetValue(Usd_LayerSamples(*info._layer, info._specPath), layerTime, lower, upper, value);
}

bool Usd_ValueResolver::_GetFromClips(const UsdResolveInfo& info, VtValue* value, double time,
                                      const std::type_info* type) const
{
    const Usd_ClipSet* const clips = _clips ? _clips : _FindClips(info);
    if (!clips || !clips->GetValue(info._specPath, time, Usd_Interpolator(_attribute, type), value)) {
        return false;
    }
    if (const SdfLayerHandle layer = clips->GetSourceOf(info._specPath, time).GetLayer()) {
        Usd_ResolveAssetPaths(
            layer, Usd_StageImpl::Of(*_prim->GetStage()).resolverContext,
            [](const std::string& text) { return text; }, value);
    }
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
    if (info._source == UsdResolveInfoSourceValueClips) {
        const Usd_ClipSet* const clips = _FindClips(info);
        return clips ? clips->GetTimesInInterval(info._specPath, interval) : times;
    }
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
    if (info._source == UsdResolveInfoSourceValueClips) {
        return GetTimeSamples(info, GfInterval::GetFullInterval()).size();
    }
    return info._source == UsdResolveInfoSourceTimeSamples && info._layer
               ? info._layer->GetNumTimeSamplesForPath(info._specPath)
               : 0;
}

bool Usd_ValueResolver::ValueMightBeTimeVarying(const UsdResolveInfo& info) const
{
    if (info._source == UsdResolveInfoSourceValueClips) {
        const Usd_ClipSet* const clips = _clips ? _clips : _FindClips(info);
        return clips && clips->MightBeTimeVarying(info._specPath);
    }
    return GetNumTimeSamples(info) > 1;
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
    if (info._source == UsdResolveInfoSourceValueClips) {
        const Usd_ClipSet* const clips = _clips ? _clips : _FindClips(info);
        if (!clips) {
            return false;
        }
        clips->GetBracketingTimes(info._specPath, time, lower, upper);
        *hasSamples = true;
        return true;
    }
    *hasSamples = false;
    return info._source != UsdResolveInfoSourceNone;
}

PXR_NAMESPACE_CLOSE_SCOPE
