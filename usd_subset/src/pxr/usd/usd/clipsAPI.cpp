#include <pxr/usd/usd/clipsAPI.h>

#include "pxr/usd/usd/clipManifest.h"
#include "pxr/usd/usd/clipSet.h"
#include "pxr/usd/usd/clipSetDefinition.h"
#include "pxr/usd/usd/schemaDefine.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/ar/resolverContextBinder.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/usd/tokens.h>

#include <optional>

PXR_NAMESPACE_OPEN_SCOPE

TF_DEFINE_PUBLIC_TOKENS(UsdClipsAPIInfoKeys, USDCLIPS_INFO_KEYS);
TF_DEFINE_PUBLIC_TOKENS(UsdClipsAPISetNames, USDCLIPS_SET_NAMES);

VESK_USD_DEFINE_SCHEMA(UsdClipsAPI, UsdAPISchemaBase)

namespace {

std::optional<Usd_ClipSetDefinition> findDefinition(const UsdPrim& prim, const std::string& clipSet)
{
    const ArResolverContextBinder binder(prim.GetStage()->GetPathResolverContext());
    for (Usd_ClipSetDefinition& definition :
         Usd_ComputeClipSetDefinitions(Usd_ObjectAccess::GetData(prim)->GetPrimIndex())) {
        if (definition.name == clipSet) {
            return std::move(definition);
        }
    }
    TF_CODING_ERROR("No clip set named '%s'", clipSet.c_str());
    return std::nullopt;
}

bool isStageRoot(const UsdPrim& prim) { return prim.GetPath().IsAbsoluteRootPath(); }

} // namespace

bool UsdClipsAPI::_CanUse(const std::string& clipSet) const
{
    if (isStageRoot(GetPrim())) {
        return false;
    }
    if (clipSet.empty()) {
        TF_CODING_ERROR("Empty clip set name not allowed");
        return false;
    }
    if (!TfIsValidIdentifier(clipSet)) {
        TF_CODING_ERROR("Clip set name must be a valid identifier (got '%s')", clipSet.c_str());
        return false;
    }
    return true;
}

template <class T>
bool UsdClipsAPI::_GetInfo(const TfToken& key, T* value, const std::string& clipSet) const
{
    return _CanUse(clipSet) &&
           GetPrim().GetMetadataByDictKey(UsdTokens->clips, TfToken(clipSet + ":" + key.GetString()), value);
}

template <class T>
bool UsdClipsAPI::_SetInfo(const TfToken& key, const T& value, const std::string& clipSet)
{
    return _CanUse(clipSet) &&
           GetPrim().SetMetadataByDictKey(UsdTokens->clips, TfToken(clipSet + ":" + key.GetString()), value);
}

bool UsdClipsAPI::GetClips(VtDictionary* clips) const
{
    return !isStageRoot(GetPrim()) && GetPrim().GetMetadata(UsdTokens->clips, clips);
}

bool UsdClipsAPI::SetClips(const VtDictionary& clips)
{
    return !isStageRoot(GetPrim()) && GetPrim().SetMetadata(UsdTokens->clips, clips);
}

bool UsdClipsAPI::GetClipSets(SdfStringListOp* clipSets) const
{
    if (isStageRoot(GetPrim())) {
        return false;
    }
    // Each layer's edits count for it alone; a composed list would not tell which set stands where.
    const SdfPrimSpecHandle spec = GetPrim().GetStage()->GetEditTarget().GetPrimSpecForScenePath(GetPath());
    return spec && spec->GetLayer()->HasField(spec->GetPath(), UsdTokens->clipSets, clipSets);
}

bool UsdClipsAPI::SetClipSets(const SdfStringListOp& clipSets)
{
    return !isStageRoot(GetPrim()) && GetPrim().SetMetadata(UsdTokens->clipSets, clipSets);
}

VtArray<SdfAssetPath> UsdClipsAPI::ComputeClipAssetPaths(const std::string& clipSet) const
{
    if (isStageRoot(GetPrim())) {
        return {};
    }
    const auto definition = findDefinition(GetPrim(), clipSet);
    if (!definition || !definition->assetPaths) {
        return {};
    }
    const ArResolverContextBinder binder(GetPrim().GetStage()->GetPathResolverContext());
    VtArray<SdfAssetPath> paths = *definition->assetPaths;
    for (SdfAssetPath& path : paths) {
        const std::string resolved = path.GetAssetPath().empty()
                                         ? std::string()
                                         : SdfResolveAssetPathRelativeToLayer(
                                               SdfLayerHandle(definition->sourceLayer), path.GetAssetPath())
                                               .GetPathString();
        if (!resolved.empty()) {
            path = SdfAssetPath(path.GetAssetPath(), resolved);
        }
    }
    return paths;
}

VtArray<SdfAssetPath> UsdClipsAPI::ComputeClipAssetPaths() const
{
    return ComputeClipAssetPaths(UsdClipsAPISetNames->default_);
}

SdfLayerRefPtr UsdClipsAPI::GenerateClipManifest(const std::string& clipSet,
                                                 bool writeBlocksForClipsWithMissingValues) const
{
    if (isStageRoot(GetPrim())) {
        return SdfLayerRefPtr();
    }
    const auto definition = findDefinition(GetPrim(), clipSet);
    if (!definition) {
        return SdfLayerRefPtr();
    }
    const ArResolverContextBinder binder(GetPrim().GetStage()->GetPathResolverContext());
    std::string why;
    const Usd_ClipSetPtr set = Usd_ClipSet::New(*definition, std::make_shared<Usd_ClipWarnings>(), &why);
    if (!set) {
        if (!why.empty()) {
            TF_CODING_ERROR("Invalid clips in clip set '%s': %s", clipSet.c_str(), why.c_str());
        }
        return SdfLayerRefPtr();
    }
    // A clip that cannot be opened has no samples of anything.
    const SdfLayerRefPtr empty = SdfLayer::CreateAnonymous(".usda");
    SdfLayerHandleVector layers;
    std::vector<double> starts;
    for (const Usd_ClipSet::Clip& clip : set->GetClips()) {
        const SdfLayerHandle layer = clip->GetLayer();
        layers.push_back(layer ? layer : SdfLayerHandle(empty));
        starts.push_back(clip->GetAuthoredStart());
    }
    return Usd_GenerateClipManifest(layers, set->GetClipPath(), std::string(),
                                    writeBlocksForClipsWithMissingValues ? &starts : nullptr);
}

SdfLayerRefPtr UsdClipsAPI::GenerateClipManifest(bool writeBlocksForClipsWithMissingValues) const
{
    return GenerateClipManifest(UsdClipsAPISetNames->default_, writeBlocksForClipsWithMissingValues);
}

SdfLayerRefPtr UsdClipsAPI::GenerateClipManifestFromLayers(const SdfLayerHandleVector& clipLayers,
                                                           const SdfPath& clipPrimPath)
{
    return Usd_GenerateClipManifest(clipLayers, clipPrimPath, std::string(), nullptr);
}

// The four functions of one entry of a set.
#define USD_DEFINE_CLIP_INFO(Name, key, Out, In)                                                             \
    bool UsdClipsAPI::Get##Name(Out* value, const std::string& clipSet) const                                \
    {                                                                                                        \
        return _GetInfo(UsdClipsAPIInfoKeys->key, value, clipSet);                                           \
    }                                                                                                        \
    bool UsdClipsAPI::Get##Name(Out* value) const                                                            \
    {                                                                                                        \
        return Get##Name(value, UsdClipsAPISetNames->default_);                                              \
    }                                                                                                        \
    bool UsdClipsAPI::Set##Name(In value, const std::string& clipSet)                                        \
    {                                                                                                        \
        return _SetInfo(UsdClipsAPIInfoKeys->key, value, clipSet);                                           \
    }                                                                                                        \
    bool UsdClipsAPI::Set##Name(In value) { return Set##Name(value, UsdClipsAPISetNames->default_); }

USD_DEFINE_CLIP_INFO(ClipAssetPaths, assetPaths, VtArray<SdfAssetPath>, const VtArray<SdfAssetPath>&)
USD_DEFINE_CLIP_INFO(ClipPrimPath, primPath, std::string, const std::string&)
USD_DEFINE_CLIP_INFO(ClipActive, active, VtVec2dArray, const VtVec2dArray&)
USD_DEFINE_CLIP_INFO(ClipTimes, times, VtVec2dArray, const VtVec2dArray&)
USD_DEFINE_CLIP_INFO(ClipManifestAssetPath, manifestAssetPath, SdfAssetPath, const SdfAssetPath&)
USD_DEFINE_CLIP_INFO(InterpolateMissingClipValues, interpolateMissingClipValues, bool, bool)
USD_DEFINE_CLIP_INFO(ClipTemplateAssetPath, templateAssetPath, std::string, const std::string&)
USD_DEFINE_CLIP_INFO(ClipTemplateStride, templateStride, double, double)
USD_DEFINE_CLIP_INFO(ClipTemplateActiveOffset, templateActiveOffset, double, double)
USD_DEFINE_CLIP_INFO(ClipTemplateStartTime, templateStartTime, double, double)
USD_DEFINE_CLIP_INFO(ClipTemplateEndTime, templateEndTime, double, double)

#undef USD_DEFINE_CLIP_INFO

PXR_NAMESPACE_CLOSE_SCOPE
