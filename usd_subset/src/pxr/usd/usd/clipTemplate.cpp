#include "pxr/usd/usd/clipTemplate.h"

#include "pxr/usd/usd/clipSetDefinition.h"

#include <pxr/base/gf/vec2d.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/usd/clipsAPI.h>

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Times are counted in these steps of a time code, so that fractional strides do not drift.
constexpr double kStepsPerTime = 10000.0;
constexpr double kMaxFiles = 1e5;
constexpr double kMaxFileNumber = 2147483647.0;

template <class T>
const T* find(const VtDictionary& info, const TfToken& key)
{
    const auto found = info.find(key.GetString());
    return found != info.end() && found->second.IsHolding<T>() ? &found->second.UncheckedGet<T>() : nullptr;
}

/// A file name with one or two neighbouring groups of `#` between dots: for the whole and the decimal digits.
class Pattern
{
public:
    explicit Pattern(const std::string& assetPath)
    {
        std::string path;
        SdfLayer::SplitIdentifier(assetPath, &path, &_arguments);
        _folder = TfGetPathName(path);
        _parts = TfStringTokenize(TfGetBaseName(path), ".");
        for (size_t i = 0; i != _parts.size(); ++i) {
            if (_parts[i].find_first_not_of('#') == std::string::npos) {
                _groups.push_back(i);
                _widths.push_back(static_cast<int>(_parts[i].size()));
            }
        }
    }

    bool IsValid() const
    {
        return _groups.size() == 1 || (_groups.size() == 2 && _groups[0] + 1 == _groups[1]);
    }

    std::string MakePath(double time) const
    {
        std::vector<std::string> parts = _parts;
        parts[_groups[0]] = TfStringPrintf("%0*d", _widths[0], static_cast<int>(time));
        if (_groups.size() == 2) {
            const std::string number = TfStringPrintf("%.*f", _widths[1], time);
            parts[_groups[1]] = number.substr(number.find('.') + 1);
        }
        return _folder + TfStringJoin(parts, ".");
    }

    std::string MakeIdentifier(const std::string& path) const
    {
        return SdfLayer::CreateIdentifier(path, _arguments);
    }

private:
    std::string _folder;
    std::vector<std::string> _parts;
    std::vector<size_t> _groups;
    std::vector<int> _widths;
    SdfLayer::FileFormatArguments _arguments;
};

struct Range
{
    double start;
    double end;
    double stride;
    const double* activeOffset; // null when there is none
};

bool isValid(const Range& range, const Pattern& pattern, const std::string& text, const SdfPath& prim)
{
    if (!(range.stride > 0)) {
        TF_WARN("Invalid templateStride %f for prim <%s>. templateStride must be greater than 0.",
                range.stride, prim.GetText());
        return false;
    }
    if (range.activeOffset && !(std::abs(*range.activeOffset) <= range.stride)) {
        TF_WARN("Invalid templateActiveOffset %f for prim <%s>. Absolute value of templateActiveOffset must "
                "not exceed templateStride %f.",
                *range.activeOffset, prim.GetText(), range.stride);
        return false;
    }
    if (!pattern.IsValid()) {
        TF_WARN("Invalid templateAssetPath '%s' for prim <%s>. It must be of the form "
                "path/basename.###.usd or path/basename.###.###.usd. Note that the number of hash marks is "
                "variable in each group.",
                text.c_str(), prim.GetText());
        return false;
    }
    if (!(range.start <= range.end)) {
        TF_WARN("Invalid time range specified for prim <%s>. templateStartTime (%f) cannot be greater than "
                "templateEndTime (%f).",
                prim.GetText(), range.start, range.end);
        return false;
    }
    if (!((range.end - range.start) / range.stride < kMaxFiles) || std::abs(range.start) > kMaxFileNumber ||
        std::abs(range.end) > kMaxFileNumber) {
        TF_WARN("Invalid time range specified for prim <%s>. From templateStartTime (%g) to templateEndTime "
                "(%g) there are more than 100,000 steps of templateStride %g, or their numbers are too "
                "large for file names.",
                prim.GetText(), range.start, range.end, range.stride);
        return false;
    }
    return true;
}

void applyOffset(const SdfLayerOffset& offset, VtVec2dArray* times)
{
    for (GfVec2d& time : *times) {
        time[0] = offset * time[0];
    }
}

} // namespace

void Usd_DeriveClips(const VtDictionary& info, const SdfLayerOffset& offset, const SdfPath& prim,
                     Usd_ClipSetDefinition* definition)
{
    const auto* const text = find<std::string>(info, UsdClipsAPIInfoKeys->templateAssetPath);
    const double* const stride = find<double>(info, UsdClipsAPIInfoKeys->templateStride);
    const double* const start = find<double>(info, UsdClipsAPIInfoKeys->templateStartTime);
    const double* const end = find<double>(info, UsdClipsAPIInfoKeys->templateEndTime);
    if (!text || !stride || !start || !end) {
        return;
    }
    const Range range{*start, *end, *stride, find<double>(info, UsdClipsAPIInfoKeys->templateActiveOffset)};
    const Pattern pattern(*text);
    if (!isValid(range, pattern, *text, prim)) {
        return;
    }
    VtArray<SdfAssetPath> assets;
    VtVec2dArray active;
    VtVec2dArray times;
    const auto addKnot = [&times](double time) { times.push_back(GfVec2d(time, time)); };
    const double shift = range.activeOffset ? std::abs(*range.activeOffset) * kStepsPerTime : 0.0;
    if (range.activeOffset) {
        addKnot((range.start * kStepsPerTime - shift) / kStepsPerTime);
    }
    for (double step = range.start * kStepsPerTime; step <= range.end * kStepsPerTime;
         step += range.stride * kStepsPerTime) {
        const double time = step / kStepsPerTime;
        const std::string path = SdfComputeAssetPathRelativeToLayer(SdfLayerHandle(definition->sourceLayer),
                                                                    pattern.MakePath(time));
        if (ArGetResolver().Resolve(path).IsEmpty()) {
            continue;
        }
        const double activeFrom =
            range.activeOffset ? (step + *range.activeOffset * kStepsPerTime) / kStepsPerTime : time;
        active.push_back(GfVec2d(activeFrom, static_cast<double>(assets.size())));
        assets.push_back(SdfAssetPath(pattern.MakeIdentifier(path)));
        addKnot(time);
    }
    if (range.activeOffset) {
        addKnot((range.end * kStepsPerTime + shift) / kStepsPerTime);
    }
    // The offset moves when files are shown, not which files are sought.
    applyOffset(offset, &times);
    applyOffset(offset, &active);
    definition->assetPaths = std::move(assets);
    definition->active = std::move(active);
    definition->times = std::move(times);
}

PXR_NAMESPACE_CLOSE_SCOPE
