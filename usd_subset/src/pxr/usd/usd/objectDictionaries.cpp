#include <pxr/usd/usd/object.h>

#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

VtDictionary UsdObject::_GetDictionary(const TfToken& key) const
{
    VtDictionary dictionary;
    GetMetadata(key, &dictionary);
    return dictionary;
}

VtDictionary UsdObject::GetCustomData() const { return _GetDictionary(SdfFieldKeys->CustomData); }

VtValue UsdObject::GetCustomDataByKey(const TfToken& keyPath) const
{
    VtValue value;
    GetMetadataByDictKey(SdfFieldKeys->CustomData, keyPath, &value);
    return value;
}

void UsdObject::SetCustomData(const VtDictionary& customData) const
{
    SetMetadata(SdfFieldKeys->CustomData, customData);
}

void UsdObject::SetCustomDataByKey(const TfToken& keyPath, const VtValue& value) const
{
    SetMetadataByDictKey(SdfFieldKeys->CustomData, keyPath, value);
}

void UsdObject::ClearCustomData() const { ClearMetadata(SdfFieldKeys->CustomData); }

void UsdObject::ClearCustomDataByKey(const TfToken& keyPath) const
{
    ClearMetadataByDictKey(SdfFieldKeys->CustomData, keyPath);
}

bool UsdObject::HasCustomData() const { return HasMetadata(SdfFieldKeys->CustomData); }

bool UsdObject::HasCustomDataKey(const TfToken& keyPath) const
{
    return HasMetadataDictKey(SdfFieldKeys->CustomData, keyPath);
}

bool UsdObject::HasAuthoredCustomData() const { return HasAuthoredMetadata(SdfFieldKeys->CustomData); }

bool UsdObject::HasAuthoredCustomDataKey(const TfToken& keyPath) const
{
    return HasAuthoredMetadataDictKey(SdfFieldKeys->CustomData, keyPath);
}

VtDictionary UsdObject::GetAssetInfo() const { return _GetDictionary(SdfFieldKeys->AssetInfo); }

VtValue UsdObject::GetAssetInfoByKey(const TfToken& keyPath) const
{
    VtValue value;
    GetMetadataByDictKey(SdfFieldKeys->AssetInfo, keyPath, &value);
    return value;
}

void UsdObject::SetAssetInfo(const VtDictionary& assetInfo) const
{
    SetMetadata(SdfFieldKeys->AssetInfo, assetInfo);
}

void UsdObject::SetAssetInfoByKey(const TfToken& keyPath, const VtValue& value) const
{
    SetMetadataByDictKey(SdfFieldKeys->AssetInfo, keyPath, value);
}

void UsdObject::ClearAssetInfo() const { ClearMetadata(SdfFieldKeys->AssetInfo); }

void UsdObject::ClearAssetInfoByKey(const TfToken& keyPath) const
{
    ClearMetadataByDictKey(SdfFieldKeys->AssetInfo, keyPath);
}

bool UsdObject::HasAssetInfo() const { return HasMetadata(SdfFieldKeys->AssetInfo); }

bool UsdObject::HasAssetInfoKey(const TfToken& keyPath) const
{
    return HasMetadataDictKey(SdfFieldKeys->AssetInfo, keyPath);
}

bool UsdObject::HasAuthoredAssetInfo() const { return HasAuthoredMetadata(SdfFieldKeys->AssetInfo); }

bool UsdObject::HasAuthoredAssetInfoKey(const TfToken& keyPath) const
{
    return HasAuthoredMetadataDictKey(SdfFieldKeys->AssetInfo, keyPath);
}

PXR_NAMESPACE_CLOSE_SCOPE
