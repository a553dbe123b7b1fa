#include "pxr/usd/usd/clipSet.h"

#include "pxr/usd/usd/clipManifest.h"
#include "pxr/usd/usd/clipSetDefinition.h"
#include "pxr/usd/usd/clipSetValidation.h"

#include <pxr/base/gf/vec2d.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/types.h>

#include <algorithm>
#include <map>

PXR_NAMESPACE_OPEN_SCOPE

/// The samples of one attribute in all clips of a set.
class Usd_ClipSet::_Samples final : public Usd_SampleSource
{
public:
    _Samples(const Usd_ClipSet& set, const SdfPath& path) : _set(set), _path(path) {}

    bool Query(double time, const Usd_Interpolator& interpolator, bool takesBlocks,
               VtValue* value) const override
    {
        return _set._Query(_path, time, interpolator, takesBlocks, value);
    }

private:
    const Usd_ClipSet& _set;
    const SdfPath& _path;
};

Usd_ClipSetPtr Usd_ClipSet::New(const Usd_ClipSetDefinition& definition,
                                const std::shared_ptr<Usd_ClipWarnings>& warnings, std::string* why)
{
    why->clear();
    if (!definition.assetPaths || !definition.primPath || !definition.active) {
        return nullptr;
    }
    *why = Usd_FindFaultInClips(definition);
    return why->empty() ? Usd_ClipSetPtr(new Usd_ClipSet(definition, warnings)) : nullptr;
}

Usd_ClipSet::Usd_ClipSet(const Usd_ClipSetDefinition& definition,
                         const std::shared_ptr<Usd_ClipWarnings>& warnings)
    : _name(definition.name),
      _layerStack(definition.layerStack),
      _interpolatesMissing(definition.interpolateMissingClipValues.value_or(false)),
      _source{SdfLayerHandle(definition.sourceLayer), definition.sourcePath, SdfPath(*definition.primPath),
              ArGetResolver().GetCurrentContext(), warnings}
{
    _MakeClips(definition);
    _MakeManifest(definition);
}

void Usd_ClipSet::_MakeClips(const Usd_ClipSetDefinition& definition)
{
    const auto times = std::make_shared<const Usd_ClipTimes>(definition.times.value_or(VtVec2dArray()));
    std::map<double, const SdfAssetPath*> assets;
    for (const GfVec2d& active : *definition.active) {
        assets[active[0]] = &(*definition.assetPaths)[static_cast<size_t>(active[1])];
    }
    for (auto entry = assets.begin(); entry != assets.end(); ++entry) {
        const double start = entry == assets.begin() ? Usd_Clip::kEarliest : entry->first;
        const auto next = std::next(entry);
        const double end = next == assets.end() ? Usd_Clip::kLatest : next->first;
        _clips.push_back(
            std::make_unique<const Usd_Clip>(_source, *entry->second, entry->first, start, end, times));
    }
}

void Usd_ClipSet::_MakeManifest(const Usd_ClipSetDefinition& definition)
{
    SdfLayerRefPtr generated;
    SdfAssetPath asset;
    if (definition.manifestAssetPath) {
        asset = *definition.manifestAssetPath;
    } else {
        generated = definition.generatedManifest ? definition.generatedManifest : _GenerateManifest();
        asset = SdfAssetPath(generated->GetIdentifier());
        _hasGeneratedManifest = true;
    }
    // The clip finds the generated layer, which is open, and keeps it.
    _manifest = std::make_unique<const Usd_Clip>(_source, asset, Usd_Clip::kEarliest, Usd_Clip::kEarliest,
                                                 Usd_Clip::kLatest, std::make_shared<const Usd_ClipTimes>());
}

SdfLayerRefPtr Usd_ClipSet::_GenerateManifest() const
{
    SdfLayerHandleVector layers;
    for (const Clip& clip : _clips) {
        if (const SdfLayerHandle layer = clip->GetLayer()) {
            layers.push_back(layer);
        }
    }
    return Usd_GenerateClipManifest(layers, _source.clipPath, "generated_manifest", nullptr);
}

void Usd_ClipSet::RegenerateManifest() const
{
    if (const SdfLayerHandle manifest = _manifest->GetLayerIfOpen()) {
        manifest->TransferContent(SdfLayerHandle(_GenerateManifest()));
    }
}

bool Usd_ClipSet::HasValuesOf(const Usd_LayerStack* layerStack, const SdfPath& path) const
{
    VtValue variability;
    return layerStack == _layerStack && path.HasPrefix(_source.sourcePath) &&
           _manifest->HasField(path, SdfFieldKeys->Variability, &variability) &&
           variability == VtValue(SdfVariabilityVarying);
}

size_t Usd_ClipSet::_FindActive(double time) const
{
    const auto next = std::upper_bound(_clips.begin(), _clips.end(), time,
                                       [](double at, const Clip& clip) { return at < clip->GetStart(); });
    return next == _clips.begin() ? 0 : static_cast<size_t>(next - _clips.begin()) - 1;
}

const Usd_Clip& Usd_ClipSet::GetSourceOf(const SdfPath& path, double time) const
{
    const Usd_Clip& clip = GetActiveClip(time);
    return clip.HasAuthoredSamples(path) ? clip : *_manifest;
}

// Where missing values are not interpolated, each clip has at least the sample at its start.
bool Usd_ClipSet::_Contributes(const Usd_Clip& clip, const SdfPath& path) const
{
    if (!_interpolatesMissing) {
        return true;
    }
    // A block in the manifest tells that the clip has no samples, so that it need not be opened.
    return (!_manifest->IsBlocked(path, clip.GetAuthoredStart()) && clip.HasAuthoredSamples(path)) ||
           _manifest->HasField(path, SdfFieldKeys->Default, nullptr);
}

void Usd_ClipSet::GetBracketingTimes(const SdfPath& path, double time, double* lower, double* upper) const
{
    const size_t active = _FindActive(time);
    bool hasLower = false;
    bool hasUpper = false;
    if (_Contributes(*_clips[active], path) && _clips[active]->GetBracketingTimes(path, time, lower, upper)) {
        hasLower = true;
        // Behind the last sample of the clip, the next clip's start is the upper one.
        hasUpper = !(*lower == *upper && time > *upper);
    }
    for (size_t i = active; !hasLower && i-- > 0;) {
        double first = 0.0;
        hasLower = _Contributes(*_clips[i], path) && _clips[i]->GetBracketingTimes(path, time, &first, lower);
    }
    for (size_t i = active + 1; !hasUpper && i < _clips.size(); ++i) {
        if (_Contributes(*_clips[i], path)) {
            *upper = _clips[i]->GetStart();
            hasUpper = true;
        }
    }
    if (!hasLower && !hasUpper) {
        *lower = *upper = _clips.front()->GetAuthoredStart();
    } else if (!hasLower) {
        *lower = *upper;
    } else if (!hasUpper) {
        *upper = *lower;
    }
}

std::vector<double> Usd_ClipSet::GetTimesInInterval(const SdfPath& path, const GfInterval& interval) const
{
    std::vector<double> times;
    for (const Clip& clip : _clips) {
        const GfInterval active(clip->GetStart(), clip->GetEnd(), /*minClosed=*/true, /*maxClosed=*/false);
        if (interval.Intersects(active) && _Contributes(*clip, path)) {
            for (const double time : clip->ListTimes(path)) {
                if (interval.Contains(time)) {
                    times.push_back(time);
                }
            }
        }
    }
    const bool isMissing = times.empty() && std::none_of(_clips.begin(), _clips.end(), [&](const Clip& clip) {
                               return _Contributes(*clip, path);
                           });
    if (isMissing && interval.Contains(_clips.front()->GetAuthoredStart())) {
        times.push_back(_clips.front()->GetAuthoredStart());
    }
    return times;
}

bool Usd_ClipSet::MightBeTimeVarying(const SdfPath& path) const
{
    // With several clips, finding out would mean to open all of them.
    return _clips.size() > 1 || _clips.front()->ListTimes(path).size() > 1;
}

bool Usd_ClipSet::_Query(const SdfPath& path, double time, const Usd_Interpolator& interpolator,
                         bool takesBlocks, VtValue* value) const
{
    if (GetActiveClip(time).Query(path, time, interpolator, takesBlocks, value)) {
        return true;
    }
    VtValue fallback;
    if (!_manifest->HasField(path, SdfFieldKeys->Default, &fallback) || fallback.IsHolding<SdfValueBlock>() ||
        (interpolator.GetType() && fallback.GetTypeid() != *interpolator.GetType())) {
        return false;
    }
    *value = std::move(fallback);
    return true;
}

bool Usd_ClipSet::GetValue(const SdfPath& path, double time, const Usd_Interpolator& interpolator,
                           VtValue* value) const
{
    double lower = 0.0;
    double upper = 0.0;
    GetBracketingTimes(path, time, &lower, &upper);
    return interpolator.GetValue(_Samples(*this, path), time, lower, upper, value);
}

PXR_NAMESPACE_CLOSE_SCOPE
