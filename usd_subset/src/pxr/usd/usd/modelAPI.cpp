#include <pxr/usd/usd/modelAPI.h>

#include "pxr/usd/usd/schemaDefine.h"

#include <pxr/usd/kind/registry.h>

PXR_NAMESPACE_OPEN_SCOPE

TF_DEFINE_PUBLIC_TOKENS(UsdModelAPIAssetInfoKeys, USDMODEL_ASSET_INFO_KEYS);

VESK_USD_DEFINE_SCHEMA(UsdModelAPI, UsdAPISchemaBase)

namespace {

template <class T>
bool _GetInfo(const UsdPrim& prim, const TfToken& key, T* value)
{
    VtValue held = prim.GetAssetInfoByKey(key);
    if (!held.IsHolding<T>()) {
        return false;
    }
    held.UncheckedSwap(*value);
    return true;
}

} // namespace

bool UsdModelAPI::GetKind(TfToken* kind) const { return GetPrim().GetKind(kind); }

bool UsdModelAPI::SetKind(const TfToken& kind) const { return GetPrim().SetKind(kind); }

bool UsdModelAPI::IsKind(const TfToken& baseKind, KindValidation validation) const
{
    if (validation == KindValidationModelHierarchy && KindRegistry::IsModel(baseKind) && !IsModel()) {
        return false;
    }
    TfToken kind;
    return GetKind(&kind) && KindRegistry::IsA(kind, baseKind);
}

bool UsdModelAPI::IsModel() const { return GetPrim().IsModel(); }

bool UsdModelAPI::IsGroup() const { return GetPrim().IsGroup(); }

bool UsdModelAPI::GetAssetIdentifier(SdfAssetPath* identifier) const
{
    return _GetInfo(GetPrim(), UsdModelAPIAssetInfoKeys->identifier, identifier);
}

void UsdModelAPI::SetAssetIdentifier(const SdfAssetPath& identifier) const
{
    GetPrim().SetAssetInfoByKey(UsdModelAPIAssetInfoKeys->identifier, VtValue(identifier));
}

bool UsdModelAPI::GetAssetName(std::string* assetName) const
{
    return _GetInfo(GetPrim(), UsdModelAPIAssetInfoKeys->name, assetName);
}

void UsdModelAPI::SetAssetName(const std::string& assetName) const
{
    GetPrim().SetAssetInfoByKey(UsdModelAPIAssetInfoKeys->name, VtValue(assetName));
}

bool UsdModelAPI::GetAssetVersion(std::string* version) const
{
    return _GetInfo(GetPrim(), UsdModelAPIAssetInfoKeys->version, version);
}

void UsdModelAPI::SetAssetVersion(const std::string& version) const
{
    GetPrim().SetAssetInfoByKey(UsdModelAPIAssetInfoKeys->version, VtValue(version));
}

bool UsdModelAPI::GetPayloadAssetDependencies(VtArray<SdfAssetPath>* assetDeps) const
{
    return _GetInfo(GetPrim(), UsdModelAPIAssetInfoKeys->payloadAssetDependencies, assetDeps);
}

void UsdModelAPI::SetPayloadAssetDependencies(const VtArray<SdfAssetPath>& assetDeps) const
{
    GetPrim().SetAssetInfoByKey(UsdModelAPIAssetInfoKeys->payloadAssetDependencies, VtValue(assetDeps));
}

bool UsdModelAPI::GetAssetInfo(VtDictionary* info) const
{
    if (!GetPrim().HasAssetInfo()) {
        return false;
    }
    *info = GetPrim().GetAssetInfo();
    return true;
}

void UsdModelAPI::SetAssetInfo(const VtDictionary& info) const { GetPrim().SetAssetInfo(info); }

PXR_NAMESPACE_CLOSE_SCOPE
