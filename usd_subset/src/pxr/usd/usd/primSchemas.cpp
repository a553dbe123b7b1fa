#include "pxr/usd/usd/specEditor.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/schemaRegistry.h>
#include <pxr/usd/usd/tokens.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool contains(const TfTokenVector& names, const TfToken& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

TfToken appliedName(const UsdSchemaRegistry::SchemaInfo& schema, const TfToken& instanceName)
{
    return instanceName.IsEmpty() ? schema.identifier
                                  : TfToken(SdfPath::JoinIdentifier(schema.identifier, instanceName));
}

// An applied schema must be named with an instance if and only if it is applied many times.
bool isOfKind(const char* operation, const UsdSchemaRegistry::SchemaInfo* schema, const TfToken& instanceName)
{
    if (!schema) {
        TF_CODING_ERROR("%s: the schema is not known to the schema registry.", operation);
        return false;
    }
    const UsdSchemaKind wanted =
        instanceName.IsEmpty() ? UsdSchemaKind::SingleApplyAPI : UsdSchemaKind::MultipleApplyAPI;
    if (schema->kind != wanted) {
        TF_CODING_ERROR("%s: '%s' is not an API schema that is applied %s.", operation,
                        schema->identifier.GetText(),
                        instanceName.IsEmpty() ? "without an instance name" : "under an instance name");
        return false;
    }
    return true;
}

} // namespace

bool UsdPrim::_IsA(const UsdSchemaRegistry::SchemaInfo* schema) const
{
    return schema && IsValid() && GetPrimTypeInfo().GetSchemaType().IsA(schema->type);
}

bool UsdPrim::IsA(const TfType& schemaType) const
{
    return _IsA(UsdSchemaRegistry::FindSchemaInfo(schemaType));
}

bool UsdPrim::IsA(const TfToken& schemaIdentifier) const
{
    return _IsA(UsdSchemaRegistry::FindSchemaInfo(schemaIdentifier));
}

TfTokenVector UsdPrim::GetAppliedSchemas() const { return GetPrimDefinition().GetAppliedAPISchemas(); }

bool UsdPrim::_HasAPI(const UsdSchemaRegistry::SchemaInfo* schema) const
{
    if (!schema || !IsValid()) {
        return false;
    }
    const TfTokenVector& applied = GetPrimDefinition().GetAppliedAPISchemas();
    if (schema->kind == UsdSchemaKind::SingleApplyAPI) {
        return contains(applied, schema->identifier);
    }
    // Under whichever instance name.
    const std::string prefix = schema->identifier.GetString() + GetNamespaceDelimiter();
    return schema->kind == UsdSchemaKind::MultipleApplyAPI &&
           std::any_of(applied.begin(), applied.end(), [&prefix](const TfToken& name) {
               return TfStringStartsWith(name.GetString(), prefix);
           });
}

bool UsdPrim::_HasAPIInstance(const UsdSchemaRegistry::SchemaInfo* schema, const TfToken& instanceName) const
{
    if (instanceName.IsEmpty()) {
        TF_CODING_ERROR("Instance name must be non-empty");
        return false;
    }
    return schema && IsValid() && schema->kind == UsdSchemaKind::MultipleApplyAPI &&
           contains(GetPrimDefinition().GetAppliedAPISchemas(), appliedName(*schema, instanceName));
}

bool UsdPrim::HasAPI(const TfType& schemaType) const
{
    return _HasAPI(UsdSchemaRegistry::FindSchemaInfo(schemaType));
}

bool UsdPrim::HasAPI(const TfType& schemaType, const TfToken& instanceName) const
{
    return _HasAPIInstance(UsdSchemaRegistry::FindSchemaInfo(schemaType), instanceName);
}

bool UsdPrim::HasAPI(const TfToken& schemaIdentifier) const
{
    return _HasAPI(UsdSchemaRegistry::FindSchemaInfo(schemaIdentifier));
}

bool UsdPrim::HasAPI(const TfToken& schemaIdentifier, const TfToken& instanceName) const
{
    return _HasAPIInstance(UsdSchemaRegistry::FindSchemaInfo(schemaIdentifier), instanceName);
}

bool UsdPrim::_CanApplyAPI(const UsdSchemaRegistry::SchemaInfo* schema, const TfToken& instanceName,
                           std::string* whyNot) const
{
    std::string ignored;
    std::string& why = whyNot ? *whyNot : ignored;
    if (!isOfKind("CanApplyAPI", schema, instanceName)) {
        return false;
    }
    if (!IsValid()) {
        why = "Prim is not valid.";
        return false;
    }
    if (!instanceName.IsEmpty() &&
        !UsdSchemaRegistry::IsAllowedAPISchemaInstanceName(schema->identifier, instanceName)) {
        why = TfStringPrintf("'%s' is not an allowed instance name for multiple apply API schema '%s'.",
                             instanceName.GetText(), schema->identifier.GetText());
        return false;
    }
    const TfTokenVector& onlyTo =
        UsdSchemaRegistry::GetAPISchemaCanOnlyApplyToTypeNames(schema->identifier, instanceName);
    const TfType type = GetPrimTypeInfo().GetSchemaType();
    const bool fits =
        onlyTo.empty() || std::any_of(onlyTo.begin(), onlyTo.end(), [&type](const TfToken& name) {
            return type.IsA(UsdSchemaRegistry::GetTypeFromSchemaTypeName(name));
        });
    if (!fits) {
        why = TfStringPrintf(
            "API schema '%s' can only be applied to prims of the following types: %s.",
            schema->identifier.GetText(),
            TfStringJoin(std::vector<std::string>(onlyTo.begin(), onlyTo.end()), ", ").c_str());
    }
    return fits;
}

bool UsdPrim::_ApplyAPI(const UsdSchemaRegistry::SchemaInfo* schema, const TfToken& instanceName) const
{
    if (!isOfKind("ApplyAPI", schema, instanceName)) {
        return false;
    }
    if (!IsValid()) {
        TF_CODING_ERROR("ApplyAPI: Invalid prim");
        return false;
    }
    return AddAppliedSchema(appliedName(*schema, instanceName));
}

bool UsdPrim::_RemoveAPI(const UsdSchemaRegistry::SchemaInfo* schema, const TfToken& instanceName) const
{
    if (!isOfKind("RemoveAPI", schema, instanceName)) {
        return false;
    }
    if (!IsValid()) {
        TF_CODING_ERROR("RemoveAPI: Invalid prim");
        return false;
    }
    return RemoveAppliedSchema(appliedName(*schema, instanceName));
}

bool UsdPrim::ApplyAPI(const TfType& schemaType) const
{
    return _ApplyAPI(UsdSchemaRegistry::FindSchemaInfo(schemaType), TfToken());
}

bool UsdPrim::ApplyAPI(const TfType& schemaType, const TfToken& instanceName) const
{
    return _ApplyAPI(UsdSchemaRegistry::FindSchemaInfo(schemaType), instanceName);
}

bool UsdPrim::ApplyAPI(const TfToken& schemaIdentifier) const
{
    return _ApplyAPI(UsdSchemaRegistry::FindSchemaInfo(schemaIdentifier), TfToken());
}

bool UsdPrim::ApplyAPI(const TfToken& schemaIdentifier, const TfToken& instanceName) const
{
    return _ApplyAPI(UsdSchemaRegistry::FindSchemaInfo(schemaIdentifier), instanceName);
}

bool UsdPrim::RemoveAPI(const TfType& schemaType) const
{
    return _RemoveAPI(UsdSchemaRegistry::FindSchemaInfo(schemaType), TfToken());
}

bool UsdPrim::RemoveAPI(const TfType& schemaType, const TfToken& instanceName) const
{
    return _RemoveAPI(UsdSchemaRegistry::FindSchemaInfo(schemaType), instanceName);
}

bool UsdPrim::RemoveAPI(const TfToken& schemaIdentifier) const
{
    return _RemoveAPI(UsdSchemaRegistry::FindSchemaInfo(schemaIdentifier), TfToken());
}

bool UsdPrim::RemoveAPI(const TfToken& schemaIdentifier, const TfToken& instanceName) const
{
    return _RemoveAPI(UsdSchemaRegistry::FindSchemaInfo(schemaIdentifier), instanceName);
}

bool UsdPrim::AddAppliedSchema(const TfToken& appliedSchemaName) const
{
    const SdfPrimSpecHandle spec = Usd_SpecEditor(_Impl()).CreatePrimSpec(*this);
    if (!spec) {
        return false;
    }
    SdfTokenListOp edits = spec->GetInfo(UsdTokens->apiSchemas).GetWithDefault<SdfTokenListOp>();
    TfTokenVector names = edits.IsExplicit() ? edits.GetExplicitItems() : edits.GetPrependedItems();
    if (contains(names, appliedSchemaName) ||
        (!edits.IsExplicit() && contains(edits.GetAppendedItems(), appliedSchemaName))) {
        return true;
    }
    names.push_back(appliedSchemaName);
    if (edits.IsExplicit()) {
        edits.SetExplicitItems(names);
    } else {
        edits.SetPrependedItems(names);
    }
    spec->SetInfo(UsdTokens->apiSchemas, VtValue(edits));
    return true;
}

bool UsdPrim::RemoveAppliedSchema(const TfToken& appliedSchemaName) const
{
    const SdfPrimSpecHandle spec = Usd_SpecEditor(_Impl()).CreatePrimSpec(*this);
    if (!spec) {
        return false;
    }
    const SdfTokenListOp edits = spec->GetInfo(UsdTokens->apiSchemas).GetWithDefault<SdfTokenListOp>();
    SdfTokenListOp removal;
    removal.SetDeletedItems({appliedSchemaName});
    const auto result = removal.ApplyOperations(edits);
    if (!result) {
        TF_CODING_ERROR("Cannot remove '%s' from the applied schemas of <%s>: its list uses reordering.",
                        appliedSchemaName.GetText(), GetPath().GetText());
        return false;
    }
    spec->SetInfo(UsdTokens->apiSchemas, VtValue(*result));
    return true;
}

PXR_NAMESPACE_CLOSE_SCOPE
