#include <pxr/usd/usd/object.h>

#include "pxr/usd/usd/metadataResolver.h"
#include "pxr/usd/usd/propertySites.h"
#include "pxr/usd/usd/specEditor.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/prim.h>

PXR_NAMESPACE_OPEN_SCOPE

bool UsdObject::IsValid() const
{
    switch (_type) {
    case UsdTypePrim:
        return static_cast<bool>(_prim);
    case UsdTypeAttribute:
        return _prim && _GetDefiningSpecType() == SdfSpecTypeAttribute;
    case UsdTypeRelationship:
        return _prim && _GetDefiningSpecType() == SdfSpecTypeRelationship;
    default:
        return false;
    }
}

SdfSpecType UsdObject::_GetDefiningSpecType() const
{
    const Usd_PrimData& prim = *get_pointer(_prim);
    SdfSpecType type = prim.GetPrimDefinition().GetSpecType(_propName);
    for (Usd_PropertySites sites(prim, _propName); sites && type == SdfSpecTypeUnknown; ++sites) {
        type = sites.GetSpecType();
    }
    return type;
}

UsdStageWeakPtr UsdObject::GetStage() const { return UsdStageWeakPtr(_prim ? _prim->GetStage() : nullptr); }

SdfPath UsdObject::GetPath() const
{
    const SdfPath& primPath = GetPrimPath();
    return _type == UsdTypePrim || primPath.IsEmpty() ? primPath : primPath.AppendProperty(_propName);
}

const SdfPath& UsdObject::GetPrimPath() const
{
    if (!_proxyPrimPath.IsEmpty()) {
        return _proxyPrimPath;
    }
    const Usd_PrimData* const data = get_pointer(_prim);
    return data ? data->GetPath() : SdfPath::EmptyPath();
}

std::string UsdObject::GetDescription() const { return UsdDescribe(*this); }

Usd_StageImpl& UsdObject::_Impl() const { return Usd_StageImpl::Of(*_GetStage()); }

bool UsdObject::GetMetadata(const TfToken& key, VtValue* value) const
{
    return Usd_MetadataResolver(*this).Get(key, TfToken(), true, value);
}

bool UsdObject::SetMetadata(const TfToken& key, const VtValue& value) const
{
    return Usd_SpecEditor(_Impl()).SetMetadata(*this, key, TfToken(), value);
}

bool UsdObject::ClearMetadata(const TfToken& key) const
{
    return Usd_SpecEditor(_Impl()).ClearMetadata(*this, key, TfToken());
}

bool UsdObject::HasMetadata(const TfToken& key) const
{
    return Usd_MetadataResolver(*this).Has(key, TfToken(), true);
}

bool UsdObject::HasAuthoredMetadata(const TfToken& key) const
{
    return Usd_MetadataResolver(*this).Has(key, TfToken(), false);
}

bool UsdObject::GetMetadataByDictKey(const TfToken& key, const TfToken& keyPath, VtValue* value) const
{
    return Usd_MetadataResolver(*this).Get(key, keyPath, true, value);
}

bool UsdObject::SetMetadataByDictKey(const TfToken& key, const TfToken& keyPath, const VtValue& value) const
{
    return Usd_SpecEditor(_Impl()).SetMetadata(*this, key, keyPath, value);
}

bool UsdObject::ClearMetadataByDictKey(const TfToken& key, const TfToken& keyPath) const
{
    return Usd_SpecEditor(_Impl()).ClearMetadata(*this, key, keyPath);
}

bool UsdObject::HasMetadataDictKey(const TfToken& key, const TfToken& keyPath) const
{
    return Usd_MetadataResolver(*this).Has(key, keyPath, true);
}

bool UsdObject::HasAuthoredMetadataDictKey(const TfToken& key, const TfToken& keyPath) const
{
    return Usd_MetadataResolver(*this).Has(key, keyPath, false);
}

UsdMetadataValueMap UsdObject::GetAllMetadata() const { return Usd_MetadataResolver(*this).GetAll(true); }

UsdMetadataValueMap UsdObject::GetAllAuthoredMetadata() const
{
    return Usd_MetadataResolver(*this).GetAll(false);
}

bool UsdObject::IsHidden() const
{
    bool hidden = false;
    GetMetadata(SdfFieldKeys->Hidden, &hidden);
    return hidden;
}

bool UsdObject::SetHidden(bool hidden) const { return SetMetadata(SdfFieldKeys->Hidden, hidden); }

bool UsdObject::ClearHidden() const { return ClearMetadata(SdfFieldKeys->Hidden); }

bool UsdObject::HasAuthoredHidden() const { return HasAuthoredMetadata(SdfFieldKeys->Hidden); }

std::string UsdObject::GetDocumentation() const
{
    std::string text;
    GetMetadata(SdfFieldKeys->Documentation, &text);
    return text;
}

bool UsdObject::SetDocumentation(const std::string& doc) const
{
    return SetMetadata(SdfFieldKeys->Documentation, doc);
}

bool UsdObject::ClearDocumentation() const { return ClearMetadata(SdfFieldKeys->Documentation); }

bool UsdObject::HasAuthoredDocumentation() const { return HasAuthoredMetadata(SdfFieldKeys->Documentation); }

std::string UsdObject::GetDisplayName() const
{
    std::string text;
    GetMetadata(SdfFieldKeys->DisplayName, &text);
    return text;
}

bool UsdObject::SetDisplayName(const std::string& name) const
{
    return SetMetadata(SdfFieldKeys->DisplayName, name);
}

bool UsdObject::ClearDisplayName() const { return ClearMetadata(SdfFieldKeys->DisplayName); }

bool UsdObject::HasAuthoredDisplayName() const { return HasAuthoredMetadata(SdfFieldKeys->DisplayName); }

PXR_NAMESPACE_CLOSE_SCOPE
