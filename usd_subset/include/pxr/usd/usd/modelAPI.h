#pragma once

#include <pxr/base/tf/staticTokens.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/usd/apiSchemaBase.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

#define USDMODEL_ASSET_INFO_KEYS (identifier)(name)(version)(payloadAssetDependencies)
TF_DECLARE_PUBLIC_TOKENS(UsdModelAPIAssetInfoKeys, VESK_USD_API, USDMODEL_ASSET_INFO_KEYS);

/// A prim's role in the model hierarchy (its kind) and what is known of the asset that it comes from.
class VESK_USD_API UsdModelAPI : public UsdAPISchemaBase
{
    VESK_USD_API_SCHEMA(UsdModelAPI, UsdAPISchemaBase)

    /// Whether a kind counts only where the prim's ancestors form a model hierarchy too.
    enum KindValidation
    {
        KindValidationNone,
        KindValidationModelHierarchy
    };

    bool GetKind(TfToken* kind) const;
    bool SetKind(const TfToken& kind) const;
    bool IsKind(const TfToken& baseKind, KindValidation validation = KindValidationModelHierarchy) const;
    bool IsModel() const;
    bool IsGroup() const;

    bool GetAssetIdentifier(SdfAssetPath* identifier) const;
    void SetAssetIdentifier(const SdfAssetPath& identifier) const;
    bool GetAssetName(std::string* assetName) const;
    void SetAssetName(const std::string& assetName) const;
    bool GetAssetVersion(std::string* version) const;
    void SetAssetVersion(const std::string& version) const;
    bool GetPayloadAssetDependencies(VtArray<SdfAssetPath>* assetDeps) const;
    void SetPayloadAssetDependencies(const VtArray<SdfAssetPath>& assetDeps) const;
    bool GetAssetInfo(VtDictionary* info) const;
    void SetAssetInfo(const VtDictionary& info) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
