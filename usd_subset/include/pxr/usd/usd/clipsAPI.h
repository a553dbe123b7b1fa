#pragma once

#include <pxr/base/gf/vec2d.h>
#include <pxr/base/tf/staticTokens.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/usd/apiSchemaBase.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

// clang-format off
#define USDCLIPS_INFO_KEYS (active)(assetPaths)(interpolateMissingClipValues)(manifestAssetPath)(primPath) \
    (templateAssetPath)(templateEndTime)(templateStartTime)(templateStride)(templateActiveOffset)(times)
#define USDCLIPS_SET_NAMES ((default_, "default"))
// clang-format on
TF_DECLARE_PUBLIC_TOKENS(UsdClipsAPIInfoKeys, VESK_USD_API, USDCLIPS_INFO_KEYS);
TF_DECLARE_PUBLIC_TOKENS(UsdClipsAPISetNames, VESK_USD_API, USDCLIPS_SET_NAMES);

/// Value clips: layers that give time samples to the attributes of a prim and those below it, each while it
/// is active. Sets of them have names; functions that take none mean the set "default". A set's name must be
/// an identifier, anything else is an error; of the root of the stage, all functions answer false.
class VESK_USD_API UsdClipsAPI : public UsdAPISchemaBase
{
    VESK_USD_API_SCHEMA(UsdClipsAPI, UsdAPISchemaBase)

    /// All sets: a dictionary by their names with a dictionary of UsdClipsAPIInfoKeys each.
    bool GetClips(VtDictionary* clips) const;
    bool SetClips(const VtDictionary& clips);
    /// The edits of the list of sets at the stage's edit target; the first ones are the strongest.
    bool GetClipSets(SdfStringListOp* clipSets) const;
    bool SetClipSets(const SdfStringListOp& clipSets);

    /// The layers of a set, those that a template leads to included, and where they lead.
    VtArray<SdfAssetPath> ComputeClipAssetPaths(const std::string& clipSet) const;
    VtArray<SdfAssetPath> ComputeClipAssetPaths() const;

    /// Makes an anonymous layer that declares what the clips of a set have samples of.
    /// @param writeBlocksForClipsWithMissingValues whether a block marks each clip without samples
    SdfLayerRefPtr GenerateClipManifest(const std::string& clipSet,
                                        bool writeBlocksForClipsWithMissingValues = false) const;
    SdfLayerRefPtr GenerateClipManifest(bool writeBlocksForClipsWithMissingValues = false) const;
    static SdfLayerRefPtr GenerateClipManifestFromLayers(const SdfLayerHandleVector& clipLayers,
                                                         const SdfPath& clipPrimPath);

    /// The layers of the clips.
    bool GetClipAssetPaths(VtArray<SdfAssetPath>* assetPaths, const std::string& clipSet) const;
    bool GetClipAssetPaths(VtArray<SdfAssetPath>* assetPaths) const;
    bool SetClipAssetPaths(const VtArray<SdfAssetPath>& assetPaths, const std::string& clipSet);
    bool SetClipAssetPaths(const VtArray<SdfAssetPath>& assetPaths);

    /// The prim in the clips that stands for this one.
    bool GetClipPrimPath(std::string* primPath, const std::string& clipSet) const;
    bool GetClipPrimPath(std::string* primPath) const;
    bool SetClipPrimPath(const std::string& primPath, const std::string& clipSet);
    bool SetClipPrimPath(const std::string& primPath);

    /// Pairs of a time of the stage and the index of the clip that is active from it on.
    bool GetClipActive(VtVec2dArray* activeClips, const std::string& clipSet) const;
    bool GetClipActive(VtVec2dArray* activeClips) const;
    bool SetClipActive(const VtVec2dArray& activeClips, const std::string& clipSet);
    bool SetClipActive(const VtVec2dArray& activeClips);

    /// Pairs of a time of the stage and the time in the clips that is shown then. Two pairs with the same
    /// time of the stage are a jump.
    bool GetClipTimes(VtVec2dArray* clipTimes, const std::string& clipSet) const;
    bool GetClipTimes(VtVec2dArray* clipTimes) const;
    bool SetClipTimes(const VtVec2dArray& clipTimes, const std::string& clipSet);
    bool SetClipTimes(const VtVec2dArray& clipTimes);

    /// A layer that declares which attributes the clips have values of.
    bool GetClipManifestAssetPath(SdfAssetPath* manifestAssetPath, const std::string& clipSet) const;
    bool GetClipManifestAssetPath(SdfAssetPath* manifestAssetPath) const;
    bool SetClipManifestAssetPath(const SdfAssetPath& manifestAssetPath, const std::string& clipSet);
    bool SetClipManifestAssetPath(const SdfAssetPath& manifestAssetPath);

    /// Whether clips without samples of an attribute are filled from their neighbours.
    bool GetInterpolateMissingClipValues(bool* interpolate, const std::string& clipSet) const;
    bool GetInterpolateMissingClipValues(bool* interpolate) const;
    bool SetInterpolateMissingClipValues(bool interpolate, const std::string& clipSet);
    bool SetInterpolateMissingClipValues(bool interpolate);

    /// The pattern of the clips' files: `folder/name.###.usd`, or `folder/name.###.###.usd` with decimals.
    bool GetClipTemplateAssetPath(std::string* clipTemplateAssetPath, const std::string& clipSet) const;
    bool GetClipTemplateAssetPath(std::string* clipTemplateAssetPath) const;
    bool SetClipTemplateAssetPath(const std::string& clipTemplateAssetPath, const std::string& clipSet);
    bool SetClipTemplateAssetPath(const std::string& clipTemplateAssetPath);

    /// The step between the times in file names; above 0.
    bool GetClipTemplateStride(double* clipTemplateStride, const std::string& clipSet) const;
    bool GetClipTemplateStride(double* clipTemplateStride) const;
    bool SetClipTemplateStride(double clipTemplateStride, const std::string& clipSet);
    bool SetClipTemplateStride(double clipTemplateStride);

    /// By how much later than the time in its name a file becomes active; at most the stride either way.
    bool GetClipTemplateActiveOffset(double* clipTemplateActiveOffset, const std::string& clipSet) const;
    bool GetClipTemplateActiveOffset(double* clipTemplateActiveOffset) const;
    bool SetClipTemplateActiveOffset(double clipTemplateActiveOffset, const std::string& clipSet);
    bool SetClipTemplateActiveOffset(double clipTemplateActiveOffset);

    /// The first and last time that files are sought for.
    bool GetClipTemplateStartTime(double* clipTemplateStartTime, const std::string& clipSet) const;
    bool GetClipTemplateStartTime(double* clipTemplateStartTime) const;
    bool SetClipTemplateStartTime(double clipTemplateStartTime, const std::string& clipSet);
    bool SetClipTemplateStartTime(double clipTemplateStartTime);
    bool GetClipTemplateEndTime(double* clipTemplateEndTime, const std::string& clipSet) const;
    bool GetClipTemplateEndTime(double* clipTemplateEndTime) const;
    bool SetClipTemplateEndTime(double clipTemplateEndTime, const std::string& clipSet);
    bool SetClipTemplateEndTime(double clipTemplateEndTime);

private:
    bool _CanUse(const std::string& clipSet) const;
    template <class T>
    bool _GetInfo(const TfToken& key, T* value, const std::string& clipSet) const;
    template <class T>
    bool _SetInfo(const TfToken& key, const T& value, const std::string& clipSet);
};

PXR_NAMESPACE_CLOSE_SCOPE
