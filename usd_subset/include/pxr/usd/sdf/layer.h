#pragma once

/// Layers: the files of scene description, in memory.

#include <pxr/base/tf/anyWeakPtr.h>
#include <pxr/base/tf/declarePtrs.h>
#include <pxr/base/tf/diagnosticMgr.h>
#include <pxr/base/tf/error.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/base/tf/notice.h>
#include <pxr/base/tf/refBase.h>
#include <pxr/base/tf/smallVector.h>
#include <pxr/base/tf/staticTokens.h>
#include <pxr/base/tf/status.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/tf/warning.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/ar/ar.h>
#include <pxr/usd/ar/assetInfo.h>
#include <pxr/usd/ar/resolvedPath.h>
#include <pxr/usd/sdf/abstractData.h>
#include <pxr/usd/sdf/allowed.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/changeList.h>
#include <pxr/usd/sdf/data.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/identity.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/layerStateDelegate.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/proxyTypes.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/spec.h>
#include <pxr/usd/sdf/types.h>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

TF_DECLARE_WEAK_AND_REF_PTRS(SdfFileFormat);
TF_DECLARE_WEAK_AND_REF_PTRS(SdfData);
class SdfSchemaBase;

/// A container of specs, identified by a name, that may have been read from a file. Layers in use are found
/// again by their identifier or their file; a layer lives as long as somebody holds a SdfLayerRefPtr to it.
/// Thread: any number of readers of one layer, or one writer; opening, creating and finding from any thread.
class SDF_API SdfLayer : public TfRefBase, public TfWeakBase
{
public:
    typedef std::map<std::string, std::string> FileFormatArguments;
    typedef std::function<void(const SdfPath&)> TraversalFunction;
    typedef SdfPrimSpecView RootPrimsView;

    ~SdfLayer() override;
    SdfLayer(const SdfLayer&) = delete;
    SdfLayer& operator=(const SdfLayer&) = delete;

    // Making, opening and finding.

    const SdfSchemaBase& GetSchema() const;
    const SdfFileFormatConstPtr& GetFileFormat() const;
    const FileFormatArguments& GetFileFormatArguments() const;

    /// Creates an empty layer and its file; the extension tells the format. Null, with one error, where the
    /// identifier is taken by a loaded layer, has no known extension, or the file cannot be written.
    static SdfLayerRefPtr CreateNew(const std::string& identifier,
                                    const FileFormatArguments& args = FileFormatArguments());
    static SdfLayerRefPtr CreateNew(const SdfFileFormatConstPtr& fileFormat, const std::string& identifier,
                                    const FileFormatArguments& args = FileFormatArguments());
    /// Creates an empty layer that has no file before it is saved.
    static SdfLayerRefPtr New(const SdfFileFormatConstPtr& fileFormat, const std::string& identifier,
                              const FileFormatArguments& args = FileFormatArguments());
    /// Creates an empty layer without a file; the tag is its display name.
    static SdfLayerRefPtr CreateAnonymous(const std::string& tag = std::string(),
                                          const FileFormatArguments& args = FileFormatArguments());
    static SdfLayerRefPtr CreateAnonymous(const std::string& tag, const SdfFileFormatConstPtr& format,
                                          const FileFormatArguments& args = FileFormatArguments());

    /// Return a loaded layer, or null.
    static SdfLayerHandle Find(const std::string& identifier,
                               const FileFormatArguments& args = FileFormatArguments());
    static SdfLayerHandle FindRelativeToLayer(const SdfLayerHandle& anchor, const std::string& identifier,
                                              const FileFormatArguments& args = FileFormatArguments());
    /// Return a loaded layer, or open its file. Where no file lies there the answer is null without an error;
    /// where a file is there and cannot be read it is null with exactly one error.
    static SdfLayerRefPtr FindOrOpen(const std::string& identifier,
                                     const FileFormatArguments& args = FileFormatArguments());
    static SdfLayerRefPtr FindOrOpenRelativeToLayer(const SdfLayerHandle& anchor,
                                                    const std::string& identifier,
                                                    const FileFormatArguments& args = FileFormatArguments());
    /// Reads a file into a new anonymous layer, which knows nothing of the file.
    static SdfLayerRefPtr OpenAsAnonymous(const std::string& layerPath, bool metadataOnly = false,
                                          const std::string& tag = std::string());
    /// Returns all layers in use.
    static SdfLayerHandleSet GetLoadedLayers();

    /// Returns a data object with the root's fields alone.
    SdfDataRefPtr GetMetadata() const;
    /// Says whether the layer has neither prims nor prim order nor sublayers nor relocates.
    bool IsEmpty() const;
    bool StreamsData() const;
    bool IsDetached() const;
    /// Replaces the content by that of another layer, noting each difference.
    void TransferContent(const SdfLayerHandle& layer);
    bool IsAnonymous() const;
    static bool IsAnonymousLayerIdentifier(const std::string& identifier);
    static std::string GetDisplayNameFromIdentifier(const std::string& identifier);

    // Files.

    /// Writes the layer to its file, aside first; does nothing where it is clean and its file is there.
    bool Save(bool force = false) const;
    /// Writes a copy to a file in the format of its extension; the layer itself stays as it is.
    bool Export(const std::string& filename, const std::string& comment = std::string(),
                const FileFormatArguments& args = FileFormatArguments()) const;
    bool ExportToString(std::string* result) const;
    /// Replaces the content by what the text says; on an error the content stays as it was.
    bool ImportFromString(const std::string& string);
    bool Import(const std::string& layerPath);
    /// Makes the layer empty, noting each difference.
    void Clear();
    /// Reads the file again where it changed or the layer is dirty, or always when forced.
    bool Reload(bool force = false);
    static bool ReloadLayers(const std::set<SdfLayerHandle>& layers, bool force = false);

    /// Return the asset paths of sublayers, references and payloads, as they are written.
    std::set<std::string> GetExternalReferences() const;
    std::set<std::string> GetCompositionAssetDependencies() const;
    /// Replaces an asset path in sublayers, references and payloads; an empty new path removes them.
    bool UpdateExternalReference(const std::string& oldAssetPath,
                                 const std::string& newAssetPath = std::string());
    bool UpdateCompositionAssetDependency(const std::string& oldAssetPath,
                                          const std::string& newAssetPath = std::string());

    // Names and places.

    static bool SplitIdentifier(const std::string& identifier, std::string* layerPath,
                                FileFormatArguments* arguments);
    static std::string CreateIdentifier(const std::string& layerPath, const FileFormatArguments& arguments);
    const std::string& GetIdentifier() const;
    void SetIdentifier(const std::string& identifier);
    std::string GetDisplayName() const;
    const ArResolvedPath& GetResolvedPath() const;
    const std::string& GetRealPath() const;
    std::string GetFileExtension() const;
    const std::string& GetVersion() const;
    const std::string& GetRepositoryPath() const;
    const std::string& GetAssetName() const;
    const VtValue& GetAssetInfo() const;
    /// Returns the identifier of an asset that is written relative to this layer.
    std::string ComputeAbsolutePath(const std::string& assetPath) const;

    // Specs and fields.

    SdfSpecType GetSpecType(const SdfPath& path) const;
    bool HasSpec(const SdfPath& path) const;
    /// Returns the authored fields and those that every spec of the kind has.
    std::vector<TfToken> ListFields(const SdfPath& path) const;
    bool HasField(const SdfPath& path, const TfToken& fieldName, VtValue* value = nullptr) const;
    bool HasField(const SdfPath& path, const TfToken& fieldName, SdfAbstractDataValue* value) const;
    template <class T>
    bool HasField(const SdfPath& path, const TfToken& fieldName, T* value) const
    {
        if (!value) {
            return HasField(path, fieldName, static_cast<VtValue*>(nullptr));
        }
        SdfAbstractDataTypedValue<T> out(value);
        const bool found = HasField(path, fieldName, static_cast<SdfAbstractDataValue*>(&out));
        return found && out.isValueBlock == std::is_same_v<T, SdfValueBlock>;
    }
    /// Returns the type that a field holds, `void` where it is not authored.
    const std::type_info& GetFieldTypeid(const SdfPath& path, const TfToken& fieldName) const
    {
        return _data->GetTypeid(path, fieldName);
    }
    bool HasFieldDictKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                         VtValue* value = nullptr) const;
    bool HasFieldDictKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                         SdfAbstractDataValue* value) const;
    template <class T>
    bool HasFieldDictKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                         T* value) const
    {
        if (!value) {
            return HasFieldDictKey(path, fieldName, keyPath, static_cast<VtValue*>(nullptr));
        }
        SdfAbstractDataTypedValue<T> out(value);
        return HasFieldDictKey(path, fieldName, keyPath, static_cast<SdfAbstractDataValue*>(&out));
    }
    VtValue GetField(const SdfPath& path, const TfToken& fieldName) const;
    template <class T>
    T GetFieldAs(const SdfPath& path, const TfToken& fieldName, const T& defaultValue = T()) const
    {
        return _data->GetAs<T>(path, fieldName, defaultValue);
    }
    VtValue GetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName,
                                   const TfToken& keyPath) const;

    /// Set a field; an empty value erases it. An equal value changes nothing and notes nothing.
    void SetField(const SdfPath& path, const TfToken& fieldName, const VtValue& value);
    void SetField(const SdfPath& path, const TfToken& fieldName, const SdfAbstractDataConstValue& value);
    template <class T>
    void SetField(const SdfPath& path, const TfToken& fieldName, const T& value)
    {
        SetField(path, fieldName, VtValue(value));
    }
    void SetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                                const VtValue& value);
    void SetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                                const SdfAbstractDataConstValue& value);
    template <class T>
    void SetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                                const T& value)
    {
        SetFieldDictValueByKey(path, fieldName, keyPath, VtValue(value));
    }
    void EraseField(const SdfPath& path, const TfToken& fieldName);
    void EraseFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath);
    /// Calls the function for the spec and everything below it, children before their parents.
    void Traverse(const SdfPath& path, const TraversalFunction& func) const;

    // The layer's own fields.

    SdfAssetPath GetColorConfiguration() const;
    void SetColorConfiguration(const SdfAssetPath& colorConfiguration);
    bool HasColorConfiguration() const;
    void ClearColorConfiguration();
    TfToken GetColorManagementSystem() const;
    void SetColorManagementSystem(const TfToken& cms);
    bool HasColorManagementSystem() const;
    void ClearColorManagementSystem();
    std::string GetComment() const;
    void SetComment(const std::string& comment);
    TfToken GetDefaultPrim() const;
    /// Returns the default prim's path, an empty one where the name is not a path of prims.
    SdfPath GetDefaultPrimAsPath() const;
    void SetDefaultPrim(const TfToken& name);
    void ClearDefaultPrim();
    bool HasDefaultPrim() const;
    std::string GetDocumentation() const;
    void SetDocumentation(const std::string& documentation);
    double GetStartTimeCode() const;
    void SetStartTimeCode(double startTimeCode);
    bool HasStartTimeCode() const;
    void ClearStartTimeCode();
    double GetEndTimeCode() const;
    void SetEndTimeCode(double endTimeCode);
    bool HasEndTimeCode() const;
    void ClearEndTimeCode();
    /// Returns the authored rate, else the frames per second where those are authored, else 24.
    double GetTimeCodesPerSecond() const;
    void SetTimeCodesPerSecond(double timeCodesPerSecond);
    bool HasTimeCodesPerSecond() const;
    void ClearTimeCodesPerSecond();
    double GetFramesPerSecond() const;
    void SetFramesPerSecond(double framesPerSecond);
    bool HasFramesPerSecond() const;
    void ClearFramesPerSecond();
    int GetFramePrecision() const;
    void SetFramePrecision(int framePrecision);
    bool HasFramePrecision() const;
    void ClearFramePrecision();
    std::string GetOwner() const;
    void SetOwner(const std::string& owner);
    bool HasOwner() const;
    void ClearOwner();
    std::string GetSessionOwner() const;
    void SetSessionOwner(const std::string& owner);
    bool HasSessionOwner() const;
    void ClearSessionOwner();
    bool GetHasOwnedSubLayers() const;
    void SetHasOwnedSubLayers(bool value);
    VtDictionary GetCustomLayerData() const;
    void SetCustomLayerData(const VtDictionary& value);
    bool HasCustomLayerData() const;
    void ClearCustomLayerData();
    VtDictionary GetExpressionVariables() const;
    void SetExpressionVariables(const VtDictionary& expressionVars);
    bool HasExpressionVariables() const;
    void ClearExpressionVariables();

    // Prims, order, sublayers, relocates.

    RootPrimsView GetRootPrims() const;
    void RemoveRootPrim(const SdfPrimSpecHandle& prim);
    /// Removes a spec, at once or when the outermost change block closes, if it then has no effect.
    void ScheduleRemoveIfInert(const SdfSpec& spec);
    void RemovePrimIfInert(SdfPrimSpecHandle prim);
    void RemovePropertyIfHasOnlyRequiredFields(SdfPropertySpecHandle prop);
    void RemoveInertSceneDescription();
    SdfNameOrderProxy GetRootPrimOrder() const;
    void SetRootPrimOrder(const std::vector<TfToken>& names);
    void ApplyRootPrimOrder(std::vector<TfToken>* names) const;

    SdfSubLayerProxy GetSubLayerPaths() const;
    void SetSubLayerPaths(const std::vector<std::string>& newPaths);
    size_t GetNumSubLayerPaths() const;
    /// Inserts before `index`; -1 appends.
    void InsertSubLayerPath(const std::string& path, int index = -1);
    void RemoveSubLayerPath(int index);
    SdfLayerOffsetVector GetSubLayerOffsets() const;
    SdfLayerOffset GetSubLayerOffset(int index) const;
    void SetSubLayerOffset(const SdfLayerOffset& offset, int index);

    SdfRelocates GetRelocates() const;
    void SetRelocates(const SdfRelocates& relocates);
    bool HasRelocates() const;
    void ClearRelocates();

    SdfPrimSpecHandle GetPseudoRoot() const;
    SdfSpecHandle GetObjectAtPath(const SdfPath& path);
    SdfPrimSpecHandle GetPrimAtPath(const SdfPath& path);
    SdfPropertySpecHandle GetPropertyAtPath(const SdfPath& path);
    SdfAttributeSpecHandle GetAttributeAtPath(const SdfPath& path);
    SdfRelationshipSpecHandle GetRelationshipAtPath(const SdfPath& path);

    bool PermissionToEdit() const;
    bool PermissionToSave() const;
    void SetPermissionToEdit(bool allow);
    void SetPermissionToSave(bool allow);

    SdfLayerStateDelegateBasePtr GetStateDelegate() const;
    void SetStateDelegate(const SdfLayerStateDelegateBaseRefPtr& delegate);
    bool IsDirty() const;

    // Time samples.

    std::set<double> ListAllTimeSamples() const;
    std::set<double> ListTimeSamplesForPath(const SdfPath& path) const;
    bool GetBracketingTimeSamples(double time, double* tLower, double* tUpper);
    size_t GetNumTimeSamplesForPath(const SdfPath& path) const;
    bool GetBracketingTimeSamplesForPath(const SdfPath& path, double time, double* tLower, double* tUpper);
    bool QueryTimeSample(const SdfPath& path, double time, VtValue* value = nullptr) const;
    bool QueryTimeSample(const SdfPath& path, double time, SdfAbstractDataValue* value) const;
    template <class T>
    bool QueryTimeSample(const SdfPath& path, double time, T* data) const
    {
        if (!data) {
            return QueryTimeSample(path, time);
        }
        SdfAbstractDataTypedValue<T> out(data);
        const bool found = QueryTimeSample(path, time, static_cast<SdfAbstractDataValue*>(&out));
        return found && out.isValueBlock == std::is_same_v<T, SdfValueBlock>;
    }
    /// Sets a sample, cast to the attribute's type; posts an error where that fails.
    void SetTimeSample(const SdfPath& path, double time, const VtValue& value);
    void SetTimeSample(const SdfPath& path, double time, const SdfAbstractDataConstValue& value);
    template <class T>
    void SetTimeSample(const SdfPath& path, double time, const T& value)
    {
        SetTimeSample(path, time, VtValue(value));
    }
    void EraseTimeSample(const SdfPath& path, double time);

private:
    friend class SdfSpec;
    friend class SdfPrimSpec;
    friend class SdfPropertySpec;
    friend class SdfFileFormat;
    friend class SdfLayerStateDelegateBase;
    friend class Sdf_ChangeManager;
    friend class Sdf_LayerEdit;
    friend class Sdf_LayerRegistry;
    friend class Usd_PropertySites;
    struct _Opening;

    SdfLayer(const SdfFileFormatConstPtr& fileFormat, const std::string& identifier,
             const ArResolvedPath& resolvedPath, const FileFormatArguments& args);

    static SdfLayerRefPtr _CreateNew(SdfFileFormatConstPtr fileFormat, const std::string& identifier,
                                     const FileFormatArguments& args, bool save);
    static bool _ComputeOpening(const std::string& identifier, const FileFormatArguments& args,
                                _Opening* info);
    static SdfLayerRefPtr _Open(const _Opening& info, bool metadataOnly, const std::string* anonymousTag);
    enum _ReloadResult
    {
        _ReloadFailed,
        _ReloadSucceeded,
        _ReloadSkipped
    };
    _ReloadResult _Reload(bool force);

    bool _Write(const std::string& fileName, const std::string& comment, SdfFileFormatConstPtr fileFormat,
                const FileFormatArguments& args) const;
    SdfPath _FindProperty(const SdfPath& primPath, const TfToken& name, SdfSpecType* specType) const;
    void _MarkCurrentStateAsClean() const;
    bool _UpdateLastDirtinessState() const;
    bool _ShouldNotify() const { return _initialized; }
    SdfLayerHandle _Self() const;
    bool _CanEdit(const std::string& what, const SdfPath& path) const;
    const VtValue* _RequiredFallback(const TfToken& fieldName, SdfSpecType specType) const;
    template <class Spec>
    SdfHandle<Spec> _GetSpecAs(const SdfPath& path);
    bool _CastForAttribute(const SdfPath& path, const VtValue& value, VtValue* cast) const;

    bool _IsInert(const SdfPath& path, bool ignoreChildren,
                  bool requiredFieldOnlyPropertiesAreInert = false) const;
    bool _IsInertSubtree(const SdfPath& path) const;
    void _RemoveIfInert(const SdfSpec& spec);
    bool _RemoveInertDFS(const SdfPath& path);
    void _RemoveInertToRootmost(SdfPath path);

    // Exchanges the data with a notice for each difference, or with one coarse notice.
    void _SetData(const SdfAbstractDataRefPtr& newData);
    void _AdoptData(const SdfAbstractDataRefPtr& newData);

    // Edits with their checks; each goes through the state delegate.
    bool _CreateSpec(const SdfPath& path, SdfSpecType specType, bool inert);
    bool _DeleteSpec(const SdfPath& path);
    bool _MoveSpec(const SdfPath& oldPath, const SdfPath& newPath);
    template <class T>
    void _PushChild(const SdfPath& parentPath, const TfToken& fieldName, const T& value);

    // The same edits after the delegate: they change the data and note the change.
    void _PrimSetField(const SdfPath& path, const TfToken& fieldName, const VtValue& value, VtValue* oldValue,
                       bool useDelegate);
    void _PrimSetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                                     const VtValue& value, bool useDelegate);
    void _PrimSetTimeSample(const SdfPath& path, double time, const VtValue& value, bool useDelegate);
    void _PrimCreateSpec(const SdfPath& path, SdfSpecType specType, bool inert, bool useDelegate);
    void _PrimDeleteSpec(const SdfPath& path, bool inert, bool useDelegate);
    void _PrimMoveSpec(const SdfPath& oldPath, const SdfPath& newPath, bool useDelegate);
    template <class T>
    void _PrimPushChild(const SdfPath& parentPath, const TfToken& fieldName, const T& value,
                        bool useDelegate);
    template <class T>
    void _PrimPopChild(const SdfPath& parentPath, const TfToken& fieldName, bool useDelegate);

    template <class T>
    T _Info(const TfToken& key) const;
    template <class T>
    void _SetInfo(const TfToken& key, const T& value);
    bool _HasInfo(const TfToken& key) const;
    void _ClearInfo(const TfToken& key);

    SdfFileFormatConstPtr _fileFormat;
    FileFormatArguments _fileFormatArgs;
    std::string _identifier;
    ArResolvedPath _resolvedPath;
    ArAssetInfo _assetInfo;
    mutable double _modificationTime = 0.0;
    mutable Sdf_IdentityRegistry _identities;
    SdfAbstractDataRefPtr _data;
    SdfLayerStateDelegateBaseRefPtr _stateDelegate;
    mutable bool _lastDirtyState = false;
    bool _initialized = false;
    bool _permissionToEdit = true;
    bool _permissionToSave = true;
};

PXR_NAMESPACE_CLOSE_SCOPE
