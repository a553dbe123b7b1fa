#pragma once

#include "pxr/usd/usd/clipTimes.h"
#include "pxr/usd/usd/interpolators.h"

#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/ar/resolverContext.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/path.h>

#include <limits>
#include <memory>
#include <mutex>
#include <set>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Remembers of which clip layers it was said that they cannot be opened, so that it is said once.
class Usd_ClipWarnings
{
public:
    void WarnOnce(const std::string& text);

private:
    std::mutex _mutex;
    std::set<std::string> _said;
};

/// What the clips of a set have in common: where their asset paths are written, and which prim of theirs
/// stands for which prim of that place.
struct Usd_ClipSource
{
    SdfLayerHandle layer; ///< that names the clips
    SdfPath sourcePath;   ///< of the prim there
    SdfPath clipPath;     ///< of the prim in each clip
    ArResolverContext context;
    std::shared_ptr<Usd_ClipWarnings> warnings;
};

/// A layer that gives values to the attributes of a prim, and those below it, while it is active. Paths are
/// those of the place that names the clips, times are the stage's.
///
/// Thread: any, while nobody edits the stage.
class Usd_Clip
{
public:
    static constexpr double kEarliest = std::numeric_limits<double>::lowest();
    static constexpr double kLatest = std::numeric_limits<double>::max();

    /// @param authoredStart the time from which it is said to be active; the first clip is so from the
    /// earliest time on
    Usd_Clip(const Usd_ClipSource& source, const SdfAssetPath& asset, double authoredStart, double start,
             double end, std::shared_ptr<const Usd_ClipTimes> times);

    const SdfAssetPath& GetAsset() const { return _asset; }
    double GetAuthoredStart() const { return _authoredStart; }
    double GetStart() const { return _start; }
    double GetEnd() const { return _end; }

    /// Opens the layer if need be; null when that fails, with one warning.
    SdfLayerHandle GetLayer() const;
    SdfLayerHandle GetLayerIfOpen() const;

    bool HasField(const SdfPath& path, const TfToken& field, VtValue* value) const;
    bool HasAuthoredSamples(const SdfPath& path) const;
    /// Whether a block is written at just this time of the clip.
    bool IsBlocked(const SdfPath& path, double time) const;
    /// The times around one at which there are samples, knots or the clip's start, as far as it is active.
    bool GetBracketingTimes(const SdfPath& path, double time, double* lower, double* upper) const;
    std::set<double> ListTimes(const SdfPath& path) const;
    bool Query(const SdfPath& path, double time, const Usd_Interpolator& interpolator, bool takesBlocks,
               VtValue* value) const;
    SdfPath GetPathInClip(const SdfPath& path) const
    {
        return path.ReplacePrefix(_source.sourcePath, _source.clipPath);
    }

private:
    SdfLayer& _GetLayerOrEmpty() const;
    bool _IsActiveAt(double time) const { return time >= _start && time < _end; }

    const Usd_ClipSource _source;
    const SdfAssetPath _asset;
    const double _authoredStart;
    const double _start;
    const double _end;
    const std::shared_ptr<const Usd_ClipTimes> _times;

    mutable std::mutex _mutex;
    mutable SdfLayerRefPtr _layer; // an empty one where there is none to open
    mutable bool _isMissing = false;
};

PXR_NAMESPACE_CLOSE_SCOPE
