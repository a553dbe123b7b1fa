#include <pxr/usd/usd/collectionAPI.h>

#include "pxr/usd/usd/schemaDefine.h"

#include <pxr/base/tf/stringUtils.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

VESK_USD_DEFINE_SCHEMA(UsdCollectionAPI, UsdAPISchemaBase)

namespace {

const std::string kPrefix = "collection:";

} // namespace

TfTokenVector UsdCollectionAPI::GetSchemaAttributeNames(bool includeInherited, const TfToken& instanceName)
{
    TfTokenVector names = GetSchemaAttributeNames(includeInherited);
    for (TfToken& name : names) {
        name = UsdSchemaRegistry::MakeMultipleApplyNameInstance(name.GetString(), instanceName.GetString());
    }
    return names;
}

UsdCollectionAPI UsdCollectionAPI::Get(const UsdPrim& prim, const TfToken& name)
{
    return UsdCollectionAPI(prim, name);
}

UsdCollectionAPI UsdCollectionAPI::GetCollection(const UsdStagePtr& stage, const SdfPath& collectionPath)
{
    TfToken name;
    if (!IsCollectionAPIPath(collectionPath, &name)) {
        TF_CODING_ERROR("<%s> is no path of a collection; it would end in '.collection:<name>'.",
                        collectionPath.GetText());
        return UsdCollectionAPI();
    }
    return UsdCollectionAPI(Usd_GetSchemaPrim(stage, collectionPath.GetPrimPath()), name);
}

std::vector<UsdCollectionAPI> UsdCollectionAPI::GetAll(const UsdPrim& prim)
{
    std::vector<UsdCollectionAPI> collections;
    for (const TfToken& name : _GetMultipleApplyInstanceNames(prim, _GetStaticTfType())) {
        collections.emplace_back(prim, name);
    }
    return collections;
}

bool UsdCollectionAPI::CanApply(const UsdPrim& prim, const TfToken& name, std::string* whyNot)
{
    return prim.CanApplyAPI<UsdCollectionAPI>(name, whyNot);
}

UsdCollectionAPI UsdCollectionAPI::Apply(const UsdPrim& prim, const TfToken& name)
{
    return prim.ApplyAPI<UsdCollectionAPI>(name) ? UsdCollectionAPI(prim, name) : UsdCollectionAPI();
}

bool UsdCollectionAPI::IsSchemaPropertyBaseName(const TfToken& baseName)
{
    static const TfTokenVector names = {
        TfToken("excludes"), TfToken("expansionRule"),        TfToken("includeRoot"),
        TfToken("includes"), TfToken("membershipExpression"), TfToken()};
    return std::find(names.begin(), names.end(), baseName) != names.end();
}

bool UsdCollectionAPI::IsCollectionAPIPath(const SdfPath& path, TfToken* name)
{
    const std::string& property = path.GetName();
    if (!path.IsPropertyPath() || !TfStringStartsWith(property, kPrefix)) {
        return false;
    }
    const size_t last = property.rfind(':');
    if (last != kPrefix.size() - 1 && IsSchemaPropertyBaseName(TfToken(property.substr(last + 1)))) {
        return false;
    }
    *name = TfToken(property.substr(kPrefix.size()));
    return true;
}

bool UsdCollectionAPI::CanContainPropertyName(const TfToken& name)
{
    return TfStringStartsWith(name.GetString(), kPrefix);
}

SdfPath UsdCollectionAPI::GetNamedCollectionPath(const UsdPrim& prim, const TfToken& collectionName)
{
    return prim.GetPath().AppendProperty(TfToken(kPrefix + collectionName.GetString()));
}

SdfPath UsdCollectionAPI::GetCollectionPath() const { return GetNamedCollectionPath(GetPrim(), GetName()); }

TfToken UsdCollectionAPI::_PropertyName(const TfToken& nameTemplate) const
{
    return UsdSchemaRegistry::MakeMultipleApplyNameInstance(nameTemplate.GetString(), GetName().GetString());
}

UsdAttribute UsdCollectionAPI::GetExpansionRuleAttr() const
{
    return GetPrim().GetAttribute(_PropertyName(UsdTokens->collection_MultipleApplyTemplate_ExpansionRule));
}

UsdAttribute UsdCollectionAPI::CreateExpansionRuleAttr(const VtValue& defaultValue, bool writeSparsely) const
{
    return _CreateAttr(_PropertyName(UsdTokens->collection_MultipleApplyTemplate_ExpansionRule),
                       SdfValueTypeNames->Token, /*custom=*/false, SdfVariabilityUniform, defaultValue,
                       writeSparsely);
}

UsdAttribute UsdCollectionAPI::GetIncludeRootAttr() const
{
    return GetPrim().GetAttribute(_PropertyName(UsdTokens->collection_MultipleApplyTemplate_IncludeRoot));
}

UsdAttribute UsdCollectionAPI::CreateIncludeRootAttr(const VtValue& defaultValue, bool writeSparsely) const
{
    return _CreateAttr(_PropertyName(UsdTokens->collection_MultipleApplyTemplate_IncludeRoot),
                       SdfValueTypeNames->Bool, /*custom=*/false, SdfVariabilityUniform, defaultValue,
                       writeSparsely);
}

UsdAttribute UsdCollectionAPI::GetCollectionAttr() const
{
    return GetPrim().GetAttribute(_PropertyName(UsdTokens->collection_MultipleApplyTemplate_));
}

UsdRelationship UsdCollectionAPI::GetIncludesRel() const
{
    return GetPrim().GetRelationship(_PropertyName(UsdTokens->collection_MultipleApplyTemplate_Includes));
}

UsdRelationship UsdCollectionAPI::CreateIncludesRel() const
{
    return GetPrim().CreateRelationship(_PropertyName(UsdTokens->collection_MultipleApplyTemplate_Includes),
                                        /*custom=*/false);
}

UsdRelationship UsdCollectionAPI::GetExcludesRel() const
{
    return GetPrim().GetRelationship(_PropertyName(UsdTokens->collection_MultipleApplyTemplate_Excludes));
}

UsdRelationship UsdCollectionAPI::CreateExcludesRel() const
{
    return GetPrim().CreateRelationship(_PropertyName(UsdTokens->collection_MultipleApplyTemplate_Excludes),
                                        /*custom=*/false);
}

bool UsdCollectionAPI::HasNoIncludedPaths() const
{
    SdfPathVector includes;
    bool includeRoot = false;
    if (const UsdRelationship rel = GetIncludesRel()) {
        rel.GetTargets(&includes);
    }
    if (const UsdAttribute attribute = GetIncludeRootAttr()) {
        attribute.Get(&includeRoot);
    }
    return includes.empty() && !includeRoot;
}

bool UsdCollectionAPI::ResetCollection() const
{
    bool done = true;
    for (const UsdRelationship& rel : {GetIncludesRel(), GetExcludesRel()}) {
        done = (!rel || rel.ClearTargets(/*removeSpec=*/true)) && done;
    }
    const UsdAttribute includeRoot = GetIncludeRootAttr();
    return (!includeRoot || includeRoot.Clear()) && done;
}

bool UsdCollectionAPI::BlockCollection() const
{
    bool done = true;
    for (const UsdRelationship& rel : {GetIncludesRel(), GetExcludesRel()}) {
        done = (!rel || rel.SetTargets({})) && done;
    }
    if (const UsdAttribute includeRoot = GetIncludeRootAttr()) {
        includeRoot.Block();
    }
    return done;
}

PXR_NAMESPACE_CLOSE_SCOPE
