#pragma once

#include "pxr/usd/usd/clip.h"

#include <pxr/base/gf/interval.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>

#include <memory>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_LayerStack;
struct Usd_ClipSetDefinition;

/// Clips that follow each other in time and give values to a prim and those below it. Of what attributes, a
/// manifest says; an attribute that it declares has a value from the clips at any time.
///
/// Thread: any, while nobody edits the stage.
class Usd_ClipSet
{
public:
    using Clip = std::unique_ptr<const Usd_Clip>;

    /// Null when the set misses something that it needs, or, with a reason, when what it has is wrong. A set
    /// without clips answers nothing, and only hides weaker ones of its name.
    /// @param warnings remembers which clips were found missing
    static std::shared_ptr<const Usd_ClipSet> New(const Usd_ClipSetDefinition& definition,
                                                  const std::shared_ptr<Usd_ClipWarnings>& warnings,
                                                  std::string* why);

    const std::string& GetName() const { return _name; }
    const SdfLayerHandle& GetSourceLayer() const { return _source.layer; }
    const SdfPath& GetClipPath() const { return _source.clipPath; }
    const std::vector<Clip>& GetClips() const { return _clips; }
    const Usd_Clip& GetManifest() const { return *_manifest; }
    bool HasGeneratedManifest() const { return _hasGeneratedManifest; }
    /// Generates the manifest anew from the clips as they are now.
    void RegenerateManifest() const;

    /// Whether the set gives values to what is at a place, and its manifest declares the attribute.
    /// @param path of an attribute in the layer stack's namespace
    bool HasValuesOf(const Usd_LayerStack* layerStack, const SdfPath& path) const;
    /// The clip that the value at a time comes from.
    const Usd_Clip& GetActiveClip(double time) const { return *_clips[_FindActive(time)]; }
    /// The layer that the value at a time comes from: the active clip's or the manifest.
    const Usd_Clip& GetSourceOf(const SdfPath& path, double time) const;

    void GetBracketingTimes(const SdfPath& path, double time, double* lower, double* upper) const;
    std::vector<double> GetTimesInInterval(const SdfPath& path, const GfInterval& interval) const;
    /// False only when the value is surely the same at all times.
    bool MightBeTimeVarying(const SdfPath& path) const;
    /// The value at any time, between samples too.
    bool GetValue(const SdfPath& path, double time, const Usd_Interpolator& interpolator,
                  VtValue* value) const;

private:
    class _Samples;

    Usd_ClipSet(const Usd_ClipSetDefinition& definition, const std::shared_ptr<Usd_ClipWarnings>& warnings);
    void _MakeClips(const Usd_ClipSetDefinition& definition);
    void _MakeManifest(const Usd_ClipSetDefinition& definition);
    SdfLayerRefPtr _GenerateManifest() const;
    size_t _FindActive(double time) const;
    bool _Contributes(const Usd_Clip& clip, const SdfPath& path) const;
    bool _Query(const SdfPath& path, double time, const Usd_Interpolator& interpolator, bool takesBlocks,
                VtValue* value) const;

    const std::string _name;
    const Usd_LayerStack* const _layerStack; // only compared
    const bool _interpolatesMissing;
    Usd_ClipSource _source;
    std::vector<Clip> _clips; // in the order of time
    Clip _manifest;
    bool _hasGeneratedManifest = false;
};

using Usd_ClipSetPtr = std::shared_ptr<const Usd_ClipSet>;

PXR_NAMESPACE_CLOSE_SCOPE
