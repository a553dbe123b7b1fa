#include "pxr/usd/sdf/changeManager.h"
#include "pxr/usd/sdf/layerRegistry.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/data.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/sdf/notice.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

SdfLayer::SdfLayer(const SdfFileFormatConstPtr& fileFormat, const std::string& identifier,
                   const ArResolvedPath& resolvedPath, const FileFormatArguments& args)
    : _fileFormat(fileFormat),
      _fileFormatArgs(args),
      _identifier(identifier),
      _resolvedPath(resolvedPath),
      _data(fileFormat->InitData(args)),
      _stateDelegate(SdfSimpleLayerStateDelegate::New())
{
    _stateDelegate->_SetLayer(_Self());
}

SdfLayer::~SdfLayer() { Sdf_LayerRegistry::Get().Erase(this); }

SdfLayerHandle SdfLayer::_Self() const { return TfCreateWeakPtr(const_cast<SdfLayer*>(this)); }

template <>
SdfHandleTo<SdfLayer>::Handle SdfCreateHandle(SdfLayer* p)
{
    return p ? TfCreateWeakPtr(p) : SdfLayerHandle();
}

const SdfSchemaBase& SdfLayer::GetSchema() const { return SdfSchema::GetInstance(); }

const SdfFileFormatConstPtr& SdfLayer::GetFileFormat() const { return _fileFormat; }

const SdfLayer::FileFormatArguments& SdfLayer::GetFileFormatArguments() const { return _fileFormatArgs; }

SdfLayerHandleSet SdfLayer::GetLoadedLayers() { return Sdf_LayerRegistry::Get().GetLayers(); }

SdfDataRefPtr SdfLayer::GetMetadata() const
{
    const SdfPath& root = SdfPath::AbsoluteRootPath();
    SdfDataRefPtr result = TfCreateRefPtr(new SdfData);
    result->CreateSpec(root, SdfSpecTypePseudoRoot);
    for (const TfToken& field : _data->List(root)) {
        result->Set(root, field, _data->Get(root, field));
    }
    return result;
}

bool SdfLayer::IsEmpty() const
{
    return GetRootPrims().empty() && GetRootPrimOrder().empty() && GetNumSubLayerPaths() == 0 &&
           !HasRelocates();
}

bool SdfLayer::StreamsData() const { return _data->StreamsData(); }

bool SdfLayer::IsDetached() const { return _data->IsDetached(); }

bool SdfLayer::IsAnonymous() const { return IsAnonymousLayerIdentifier(_identifier); }

bool SdfLayer::IsAnonymousLayerIdentifier(const std::string& identifier)
{
    return identifier.compare(0, 5, "anon:") == 0;
}

const std::string& SdfLayer::GetIdentifier() const { return _identifier; }

const ArResolvedPath& SdfLayer::GetResolvedPath() const { return _resolvedPath; }

const std::string& SdfLayer::GetRealPath() const { return _resolvedPath.GetPathString(); }

std::string SdfLayer::GetDisplayName() const { return GetDisplayNameFromIdentifier(_identifier); }

std::string SdfLayer::GetFileExtension() const
{
    const std::string extension = SdfFileFormat::GetFileExtension(GetRealPath());
    return extension.empty() ? _fileFormat->GetPrimaryFileExtension() : extension;
}

const std::string& SdfLayer::GetVersion() const { return _assetInfo.version; }
const std::string& SdfLayer::GetRepositoryPath() const { return _assetInfo.repoPath; }
const std::string& SdfLayer::GetAssetName() const { return _assetInfo.assetName; }
const VtValue& SdfLayer::GetAssetInfo() const { return _assetInfo.resolverInfo; }

std::string SdfLayer::ComputeAbsolutePath(const std::string& assetPath) const
{
    if (assetPath.empty() || IsAnonymousLayerIdentifier(assetPath)) {
        return assetPath;
    }
    return SdfComputeAssetPathRelativeToLayer(_Self(), assetPath);
}

SdfSpecType SdfLayer::GetSpecType(const SdfPath& path) const { return _data->GetSpecType(path); }

SdfPath SdfLayer::_FindProperty(const SdfPath& primPath, const TfToken& name, SdfSpecType* specType) const
{
    return _data->FindProperty(primPath, name, specType);
}

bool SdfLayer::HasSpec(const SdfPath& path) const { return _data->HasSpec(path); }

const VtValue* SdfLayer::_RequiredFallback(const TfToken& fieldName, SdfSpecType specType) const
{
    const SdfSchemaBase& schema = GetSchema();
    if (!schema.IsRequiredFieldName(fieldName)) {
        return nullptr;
    }
    const SdfSchemaBase::SpecDefinition* spec = schema.GetSpecDefinition(specType);
    return spec && spec->IsRequiredField(fieldName) ? &schema.GetFallback(fieldName) : nullptr;
}

std::vector<TfToken> SdfLayer::ListFields(const SdfPath& path) const
{
    std::vector<TfToken> names = _data->List(path);
    const size_t authored = names.size();
    for (const TfToken& required : GetSchema().GetRequiredFields(GetSpecType(path))) {
        bool found = false;
        for (size_t i = 0; i < authored && !found; ++i) {
            found = names[i] == required;
        }
        if (!found) {
            names.push_back(required);
        }
    }
    return names;
}

bool SdfLayer::HasField(const SdfPath& path, const TfToken& fieldName, VtValue* value) const
{
    SdfSpecType type = SdfSpecTypeUnknown;
    if (_data->HasSpecAndField(path, fieldName, value, &type)) {
        return true;
    }
    const VtValue* fallback = _RequiredFallback(fieldName, type);
    if (fallback && value) {
        *value = *fallback;
    }
    return fallback != nullptr;
}

bool SdfLayer::HasField(const SdfPath& path, const TfToken& fieldName, SdfAbstractDataValue* value) const
{
    SdfSpecType type = SdfSpecTypeUnknown;
    if (_data->HasSpecAndField(path, fieldName, value, &type)) {
        return true;
    }
    const VtValue* fallback = _RequiredFallback(fieldName, type);
    return fallback && (!value || value->StoreValue(*fallback));
}

bool SdfLayer::HasFieldDictKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                               VtValue* value) const
{
    return _data->HasDictKey(path, fieldName, keyPath, value);
}

bool SdfLayer::HasFieldDictKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                               SdfAbstractDataValue* value) const
{
    return _data->HasDictKey(path, fieldName, keyPath, value);
}

VtValue SdfLayer::GetField(const SdfPath& path, const TfToken& fieldName) const
{
    VtValue value;
    HasField(path, fieldName, &value);
    return value;
}

VtValue SdfLayer::GetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName,
                                         const TfToken& keyPath) const
{
    VtValue value;
    HasFieldDictKey(path, fieldName, keyPath, &value);
    return value;
}

template <class Spec>
SdfHandle<Spec> SdfLayer::_GetSpecAs(const SdfPath& path)
{
    const SdfPath absolute = path.IsEmpty() || (path.IsAbsolutePath() && !path.ContainsTargetPath())
                                 ? path
                                 : path.MakeAbsolutePath(SdfPath::AbsoluteRootPath());
    if (absolute.IsEmpty() || !HasSpec(absolute)) {
        return SdfHandle<Spec>();
    }
    const SdfSpecHandle spec(_identities.Identify(_Self(), absolute));
    return TfDynamic_cast<SdfHandle<Spec>>(spec);
}

SdfPrimSpecHandle SdfLayer::GetPseudoRoot() const
{
    return SdfPrimSpecHandle(_identities.Identify(_Self(), SdfPath::AbsoluteRootPath()));
}

SdfSpecHandle SdfLayer::GetObjectAtPath(const SdfPath& path) { return _GetSpecAs<SdfSpec>(path); }

SdfPrimSpecHandle SdfLayer::GetPrimAtPath(const SdfPath& path) { return _GetSpecAs<SdfPrimSpec>(path); }

SdfPropertySpecHandle SdfLayer::GetPropertyAtPath(const SdfPath& path)
{
    return _GetSpecAs<SdfPropertySpec>(path);
}

SdfAttributeSpecHandle SdfLayer::GetAttributeAtPath(const SdfPath& path)
{
    return _GetSpecAs<SdfAttributeSpec>(path);
}

SdfRelationshipSpecHandle SdfLayer::GetRelationshipAtPath(const SdfPath& path)
{
    return _GetSpecAs<SdfRelationshipSpec>(path);
}

bool SdfLayer::PermissionToEdit() const { return _permissionToEdit; }

bool SdfLayer::PermissionToSave() const
{
    return _permissionToSave && !IsAnonymous() && ArGetResolver().CanWriteAssetToPath(_resolvedPath);
}

void SdfLayer::SetPermissionToEdit(bool allow) { _permissionToEdit = allow; }

void SdfLayer::SetPermissionToSave(bool allow) { _permissionToSave = allow; }

SdfLayerStateDelegateBasePtr SdfLayer::GetStateDelegate() const { return _stateDelegate; }

void SdfLayer::SetStateDelegate(const SdfLayerStateDelegateBaseRefPtr& delegate)
{
    if (!delegate) {
        TF_CODING_ERROR("Invalid layer state delegate");
        return;
    }
    _stateDelegate->_SetLayer(SdfLayerHandle());
    _stateDelegate = delegate;
    _stateDelegate->_SetLayer(_Self());
    if (_lastDirtyState) {
        _stateDelegate->_MarkCurrentStateAsDirty();
    } else {
        _stateDelegate->_MarkCurrentStateAsClean();
    }
}

bool SdfLayer::IsDirty() const { return _stateDelegate->IsDirty(); }

bool SdfLayer::_UpdateLastDirtinessState() const
{
    const bool changed = _lastDirtyState != IsDirty();
    _lastDirtyState = IsDirty();
    return changed;
}

void SdfLayer::_MarkCurrentStateAsClean() const
{
    _stateDelegate->_MarkCurrentStateAsClean();
    if (_UpdateLastDirtinessState()) {
        SdfNotice::LayerDirtinessChanged().Send(_Self());
    }
}

std::set<double> SdfLayer::ListAllTimeSamples() const { return _data->ListAllTimeSamples(); }

std::set<double> SdfLayer::ListTimeSamplesForPath(const SdfPath& path) const
{
    return _data->ListTimeSamplesForPath(path);
}

bool SdfLayer::GetBracketingTimeSamples(double time, double* tLower, double* tUpper)
{
    return _data->GetBracketingTimeSamples(time, tLower, tUpper);
}

size_t SdfLayer::GetNumTimeSamplesForPath(const SdfPath& path) const
{
    return _data->GetNumTimeSamplesForPath(path);
}

bool SdfLayer::GetBracketingTimeSamplesForPath(const SdfPath& path, double time, double* tLower,
                                               double* tUpper)
{
    return _data->GetBracketingTimeSamplesForPath(path, time, tLower, tUpper);
}

bool SdfLayer::QueryTimeSample(const SdfPath& path, double time, VtValue* value) const
{
    return _data->QueryTimeSample(path, time, value);
}

bool SdfLayer::QueryTimeSample(const SdfPath& path, double time, SdfAbstractDataValue* value) const
{
    return _data->QueryTimeSample(path, time, value);
}

PXR_NAMESPACE_CLOSE_SCOPE
