#include "pxr/usd/usd/clip.h"

#include "pxr/usd/usd/errorText.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/ar/resolverContextBinder.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/sdf/timeCode.h>
#include <pxr/usd/sdf/types.h>

#include <algorithm>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// The neighbours of a time in sorted times; both are the nearest one outside of their range.
void findNeighbours(const std::vector<double>& times, double time, double* lower, double* upper)
{
    const auto next = std::lower_bound(times.begin(), times.end(), time);
    if (next == times.end()) {
        *lower = *upper = times.back();
    } else if (next == times.begin() || *next == time) {
        *lower = *upper = *next;
    } else {
        *lower = *(next - 1);
        *upper = *next;
    }
}

// Time codes in a clip are meant in the clip's time.
void moveTimeCodes(double offset, VtValue* value)
{
    if (value->IsHolding<SdfTimeCode>()) {
        *value = value->UncheckedGet<SdfTimeCode>() + SdfTimeCode(offset);
    } else if (value->IsHolding<VtArray<SdfTimeCode>>()) {
        VtArray<SdfTimeCode> times = value->UncheckedGet<VtArray<SdfTimeCode>>();
        for (SdfTimeCode& time : times) {
            time = time + SdfTimeCode(offset);
        }
        *value = VtValue::Take(times);
    }
}

} // namespace

void Usd_ClipWarnings::WarnOnce(const std::string& text)
{
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (!_said.insert(text).second) {
            return;
        }
    }
    TF_WARN("%s", text.c_str());
}

Usd_Clip::Usd_Clip(const Usd_ClipSource& source, const SdfAssetPath& asset, double authoredStart,
                   double start, double end, std::shared_ptr<const Usd_ClipTimes> times)
    : _source(source),
      _asset(asset),
      _authoredStart(authoredStart),
      _start(start),
      _end(end),
      _times(std::move(times)),
      // Layers are opened when they are needed, but one that is open already is kept.
      _layer(SdfLayer::FindRelativeToLayer(source.layer, asset.GetAssetPath()))
{}

SdfLayer& Usd_Clip::_GetLayerOrEmpty() const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    if (!_layer) {
        const std::string& asset = _asset.GetAssetPath();
        std::string why;
        const ArResolverContextBinder binder(_source.context);
        _layer = Usd_OpenLayer(SdfComputeAssetPathRelativeToLayer(_source.layer, asset), &why);
        if (!_layer) {
            _isMissing = true;
            _layer = SdfLayer::CreateAnonymous(".usda");
            _source.warnings->WarnOnce(TfStringPrintf(
                "The clip @%s@ of <%s>, which @%s@ names, was left out: %s.", asset.c_str(),
                _source.sourcePath.GetText(), _source.layer->GetIdentifier().c_str(), why.c_str()));
        }
    }
    return *_layer;
}

SdfLayerHandle Usd_Clip::GetLayer() const
{
    _GetLayerOrEmpty();
    return GetLayerIfOpen();
}

SdfLayerHandle Usd_Clip::GetLayerIfOpen() const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    return _isMissing ? SdfLayerHandle() : SdfLayerHandle(_layer);
}

bool Usd_Clip::HasField(const SdfPath& path, const TfToken& field, VtValue* value) const
{
    return _GetLayerOrEmpty().HasField(GetPathInClip(path), field, value);
}

bool Usd_Clip::HasAuthoredSamples(const SdfPath& path) const
{
    return _GetLayerOrEmpty().GetNumTimeSamplesForPath(GetPathInClip(path)) > 0;
}

bool Usd_Clip::IsBlocked(const SdfPath& path, double time) const
{
    VtValue value;
    return _GetLayerOrEmpty().QueryTimeSample(GetPathInClip(path), _times->ToClip(time), &value) &&
           value.IsHolding<SdfValueBlock>();
}

bool Usd_Clip::GetBracketingTimes(const SdfPath& path, double time, double* lower, double* upper) const
{
    std::vector<double> times;
    if (_GetLayerOrEmpty().GetBracketingTimeSamplesForPath(GetPathInClip(path), _times->ToClip(time), lower,
                                                           upper)) {
        if (const auto found = _times->FindStageTimes(time, *lower, *upper)) {
            times = {found->first, found->second};
        }
    }
    if (!_times->IsEmpty()) {
        std::vector<double> knots;
        for (const Usd_ClipTimes::Knot& knot : _times->GetKnots()) {
            knots.push_back(knot.stageTime);
        }
        findNeighbours(knots, time, lower, upper);
        times.push_back(*lower);
        times.push_back(*upper);
    }
    // Each clip has a sample where it starts, whatever its layer says, so that no value ever comes about
    // between two clips.
    times.push_back(_authoredStart);
    times.erase(std::remove_if(times.begin(), times.end(), [this](double t) { return !_IsActiveAt(t); }),
                times.end());
    if (times.empty()) {
        return false;
    }
    std::sort(times.begin(), times.end());
    findNeighbours(times, time, lower, upper);
    return true;
}

std::set<double> Usd_Clip::ListTimes(const SdfPath& path) const
{
    std::set<double> times;
    for (const double time : _GetLayerOrEmpty().ListTimeSamplesForPath(GetPathInClip(path))) {
        _times->AddStageTimes(time, _start, _end, &times);
    }
    for (const Usd_ClipTimes::Knot& knot : _times->GetKnots()) {
        if (_IsActiveAt(knot.stageTime)) {
            times.insert(knot.stageTime);
        }
    }
    times.insert(_authoredStart);
    return times;
}

bool Usd_Clip::Query(const SdfPath& path, double time, const Usd_Interpolator& interpolator, bool takesBlocks,
                     VtValue* value) const
{
    SdfLayer& layer = _GetLayerOrEmpty();
    const SdfPath pathInClip = GetPathInClip(path);
    const double timeInClip = _times->ToClip(time);
    const Usd_LayerSamples samples(layer, pathInClip);
    if (!samples.Query(timeInClip, interpolator, takesBlocks, value)) {
        double lower = 0.0;
        double upper = 0.0;
        if (!layer.GetBracketingTimeSamplesForPath(pathInClip, timeInClip, &lower, &upper) ||
            !interpolator.GetValue(samples, timeInClip, lower, upper, value)) {
            return false;
        }
    }
    moveTimeCodes(time - timeInClip, value);
    return true;
}

PXR_NAMESPACE_CLOSE_SCOPE
