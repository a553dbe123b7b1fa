#pragma once

#include <pxr/base/tf/declarePtrs.h>
#include <pxr/base/tf/refBase.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/base/vt/value.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/ar/resolverContext.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/common.h>
#include <pxr/usd/usd/editTarget.h>
#include <pxr/usd/usd/interpolation.h>
#include <pxr/usd/usd/primFlags.h>
#include <pxr/usd/usd/stageLoadRules.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class UsdPrimRange;
class Usd_StageImpl;

/// For each variant set the variants to choose where nothing is selected, the wanted first.
using PcpVariantFallbackMap = std::map<std::string, std::vector<std::string>>;

/// The composed scene: what a root layer, its sublayers and a stronger session layer say together.
///
/// Thread: reading from any number of threads while nobody edits; editing from one thread while nobody reads.
/// Posts: the notices of UsdNotice, on the editing thread.
class VESK_USD_API UsdStage : public TfRefBase, public TfWeakBase
{
public:
    enum InitialLoadSet
    {
        LoadAll, ///< Load all payloads.
        LoadNone ///< Load none.
    };

    /// Makes a new layer file and a stage on it. Null, with an error, when the file exists as an open layer
    /// or cannot be written.
    static UsdStageRefPtr CreateNew(const std::string& identifier, InitialLoadSet load = LoadAll);
    static UsdStageRefPtr CreateNew(const std::string& identifier, const SdfLayerHandle& sessionLayer,
                                    InitialLoadSet load = LoadAll);
    /// Makes a stage on an anonymous layer.
    static UsdStageRefPtr CreateInMemory(InitialLoadSet load = LoadAll);
    static UsdStageRefPtr CreateInMemory(const std::string& identifier, InitialLoadSet load = LoadAll);
    static UsdStageRefPtr CreateInMemory(const std::string& identifier, const SdfLayerHandle& sessionLayer,
                                         InitialLoadSet load = LoadAll);
    /// Opens a file. Null, with an error, when it cannot be read.
    static UsdStageRefPtr Open(const std::string& filePath, InitialLoadSet load = LoadAll);
    static UsdStageRefPtr Open(const SdfLayerHandle& rootLayer, InitialLoadSet load = LoadAll);
    static UsdStageRefPtr Open(const SdfLayerHandle& rootLayer, const SdfLayerHandle& sessionLayer,
                               InitialLoadSet load = LoadAll);
    /// Whether the name's extension is one of a file format that can be read.
    static bool IsSupportedFile(const std::string& filePath);

    ~UsdStage() override;

    /// Reads all used layers again.
    void Reload();
    /// Writes all changed layers that are no session layers; anonymous ones are named in a warning.
    void Save();
    void SaveSessionLayers();

    static PcpVariantFallbackMap GetGlobalVariantFallbacks();
    static void SetGlobalVariantFallbacks(const PcpVariantFallbackMap& fallbacks);

    // Payloads.
    UsdPrim Load(const SdfPath& path = SdfPath::AbsoluteRootPath(),
                 UsdLoadPolicy policy = UsdLoadWithDescendants);
    void Unload(const SdfPath& path = SdfPath::AbsoluteRootPath());
    void LoadAndUnload(const SdfPathSet& loadSet, const SdfPathSet& unloadSet,
                       UsdLoadPolicy policy = UsdLoadWithDescendants);
    SdfPathSet GetLoadSet();
    SdfPathSet FindLoadable(const SdfPath& rootPath = SdfPath::AbsoluteRootPath());
    const UsdStageLoadRules& GetLoadRules() const;
    void SetLoadRules(const UsdStageLoadRules& rules);

    // Objects.
    UsdPrim GetPseudoRoot() const;
    UsdPrim GetDefaultPrim() const;
    void SetDefaultPrim(const UsdPrim& prim);
    void ClearDefaultPrim();
    bool HasDefaultPrim() const;
    UsdPrim GetPrimAtPath(const SdfPath& path) const;
    UsdObject GetObjectAtPath(const SdfPath& path) const;
    UsdProperty GetPropertyAtPath(const SdfPath& path) const;
    UsdAttribute GetAttributeAtPath(const SdfPath& path) const;
    UsdRelationship GetRelationshipAtPath(const SdfPath& path) const;
    UsdPrimRange Traverse();
    UsdPrimRange Traverse(const Usd_PrimFlagsPredicate& predicate);
    UsdPrimRange TraverseAll();
    std::vector<UsdPrim> GetPrototypes() const;

    // Authoring prims at the edit target. An invalid prim is returned, with an error, where that is
    // impossible.
    UsdPrim OverridePrim(const SdfPath& path);
    UsdPrim DefinePrim(const SdfPath& path, const TfToken& typeName = TfToken());
    UsdPrim CreateClassPrim(const SdfPath& rootPrimPath);
    /// Removes what the edit target's layer says of the prim and all below it.
    bool RemovePrim(const SdfPath& path);

    // Layers.
    SdfLayerHandle GetSessionLayer() const;
    SdfLayerHandle GetRootLayer() const;
    std::string ResolveIdentifierToEditTarget(const std::string& identifier) const;
    /// The session layer, the root layer and their sublayers, strongest first.
    SdfLayerHandleVector GetLayerStack(bool includeSessionLayers = true) const;
    SdfLayerHandleVector GetUsedLayers(bool includeClipLayers = true) const;
    bool HasLocalLayer(const SdfLayerHandle& layer) const;
    const UsdEditTarget& GetEditTarget() const;
    UsdEditTarget GetEditTargetForLocalLayer(size_t i);
    UsdEditTarget GetEditTargetForLocalLayer(const SdfLayerHandle& layer);
    void SetEditTarget(const UsdEditTarget& editTarget);

    /// Composes without a layer, until it is unmuted. The root layer cannot be muted.
    void MuteLayer(const std::string& layerIdentifier);
    void UnmuteLayer(const std::string& layerIdentifier);
    void MuteAndUnmuteLayers(const std::vector<std::string>& muteLayers,
                             const std::vector<std::string>& unmuteLayers);
    const std::vector<std::string>& GetMutedLayers() const;
    /// Where asset paths are sought that are neither absolute nor begin with a dot: the root layer's folder.
    ArResolverContext GetPathResolverContext() const;
    bool IsLayerMuted(const std::string& layerIdentifier) const;

    /// Writes the composed stage as one layer.
    bool Export(const std::string& filename, bool addSourceFileComment = true,
                const SdfLayer::FileFormatArguments& args = SdfLayer::FileFormatArguments()) const;
    bool ExportToString(std::string* result, bool addSourceFileComment = true) const;
    /// The composed stage as one anonymous layer without composition arcs.
    SdfLayerRefPtr Flatten(bool addSourceFileComment = true) const;

    // Metadata of the stage: that of the session layer over that of the root layer.
    template <class T>
    bool GetMetadata(const TfToken& key, T* value) const
    {
        VtValue found;
        return GetMetadata(key, &found) && _Take(found, value);
    }
    bool GetMetadata(const TfToken& key, VtValue* value) const;
    bool HasMetadata(const TfToken& key) const;
    bool HasAuthoredMetadata(const TfToken& key) const;
    template <typename T>
    bool SetMetadata(const TfToken& key, const T& value) const
    {
        return SetMetadata(key, VtValue(value));
    }
    bool SetMetadata(const TfToken& key, const VtValue& value) const;
    bool ClearMetadata(const TfToken& key) const;
    template <typename T>
    bool GetMetadataByDictKey(const TfToken& key, const TfToken& keyPath, T* value) const
    {
        VtValue found;
        return GetMetadataByDictKey(key, keyPath, &found) && _Take(found, value);
    }
    bool GetMetadataByDictKey(const TfToken& key, const TfToken& keyPath, VtValue* value) const;
    bool HasMetadataDictKey(const TfToken& key, const TfToken& keyPath) const;
    bool HasAuthoredMetadataDictKey(const TfToken& key, const TfToken& keyPath) const;
    template <typename T>
    bool SetMetadataByDictKey(const TfToken& key, const TfToken& keyPath, const T& value) const
    {
        return SetMetadataByDictKey(key, keyPath, VtValue(value));
    }
    bool SetMetadataByDictKey(const TfToken& key, const TfToken& keyPath, const VtValue& value) const;
    bool ClearMetadataByDictKey(const TfToken& key, const TfToken& keyPath) const;

    // Time.
    double GetStartTimeCode() const;
    void SetStartTimeCode(double startTime);
    double GetEndTimeCode() const;
    void SetEndTimeCode(double endTime);
    bool HasAuthoredTimeCodeRange() const;
    double GetTimeCodesPerSecond() const;
    void SetTimeCodesPerSecond(double timeCodesPerSecond) const;
    double GetFramesPerSecond() const;
    void SetFramesPerSecond(double framesPerSecond) const;
    void SetInterpolationType(UsdInterpolationType interpolationType);
    UsdInterpolationType GetInterpolationType() const;

    // Colour.
    void SetColorConfiguration(const SdfAssetPath& colorConfig) const;
    SdfAssetPath GetColorConfiguration() const;
    void SetColorManagementSystem(const TfToken& cms) const;
    TfToken GetColorManagementSystem() const;

private:
    friend class Usd_StageImpl;

    UsdStage();
    UsdStage(const UsdStage&) = delete;
    UsdStage& operator=(const UsdStage&) = delete;

    template <class T>
    static bool _Take(const VtValue& found, T* value)
    {
        if (!found.IsHolding<T>()) {
            return false;
        }
        *value = found.UncheckedGet<T>();
        return true;
    }

    std::unique_ptr<Usd_StageImpl> _impl;
};

PXR_NAMESPACE_CLOSE_SCOPE
