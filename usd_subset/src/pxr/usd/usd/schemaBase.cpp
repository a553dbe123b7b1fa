#include <pxr/usd/usd/schemaBase.h>

#include "pxr/usd/usd/schemaDefine.h"

#include <pxr/base/tf/type.h>
#include <pxr/usd/usd/apiSchemaBase.h>
#include <pxr/usd/usd/primDefinition.h>
#include <pxr/usd/usd/schemaRegistry.h>
#include <pxr/usd/usd/typed.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

const TfType Usd_typeOfUsdSchemaBase = TfType::Define<UsdSchemaBase>();

} // namespace

UsdSchemaBase::UsdSchemaBase(const UsdPrim& prim) : _prim(prim) {}

UsdSchemaBase::UsdSchemaBase(const UsdSchemaBase& otherSchema) = default;

UsdSchemaBase::~UsdSchemaBase() = default;

SdfPath UsdSchemaBase::GetPath() const { return _prim ? _prim.GetPath() : SdfPath(); }

const UsdPrimDefinition* UsdSchemaBase::GetSchemaClassPrimDefinition() const
{
    const UsdSchemaRegistry& registry = UsdSchemaRegistry::GetInstance();
    const TfToken name = UsdSchemaRegistry::GetSchemaTypeName(_GetType());
    return IsAppliedAPISchema() ? registry.FindAppliedAPIPrimDefinition(name)
                                : registry.FindConcretePrimDefinition(name);
}

const TfTokenVector& UsdSchemaBase::GetSchemaAttributeNames(bool)
{
    static const TfTokenVector none;
    return none;
}

UsdSchemaBase::operator bool() const { return _prim && _IsCompatible(); }

UsdSchemaKind UsdSchemaBase::_GetSchemaKind() const { return schemaKind; }

bool UsdSchemaBase::_IsCompatible() const { return true; }

UsdAttribute UsdSchemaBase::_CreateAttr(const TfToken& attrName, const SdfValueTypeName& typeName,
                                        bool custom, SdfVariability variability, const VtValue& defaultValue,
                                        bool writeSparsely) const
{
    const UsdPrim prim = GetPrim();
    if (writeSparsely && !custom) {
        const UsdAttribute attribute = prim.GetAttribute(attrName);
        VtValue fallback;
        const bool isFallback =
            !attribute.HasAuthoredValue() && attribute.Get(&fallback) && fallback == defaultValue;
        if (defaultValue.IsEmpty() || isFallback) {
            return attribute;
        }
    }
    const UsdAttribute attribute = prim.CreateAttribute(attrName, typeName, custom, variability);
    if (attribute && !defaultValue.IsEmpty()) {
        attribute.Set(defaultValue);
    }
    return attribute;
}

UsdAttribute UsdSchemaBase::_CreateSchemaAttr(const TfToken& attrName, const VtValue& defaultValue,
                                              bool writeSparsely) const
{
    const UsdPrimDefinition* const definition = UsdSchemaRegistry::GetInstance()._FindDefinition(_GetType());
    const UsdPrimDefinition::Attribute attribute =
        definition ? definition->GetAttributeDefinition(attrName) : UsdPrimDefinition::Attribute();
    if (!TF_VERIFY(attribute, "%s has no attribute '%s'", _GetType().GetTypeName().c_str(),
                   attrName.GetText())) {
        return UsdAttribute();
    }
    return _CreateAttr(attrName, attribute.GetTypeName(), /*custom=*/false, attribute.GetVariability(),
                       defaultValue, writeSparsely);
}

const TfType& UsdSchemaBase::_GetStaticTfType()
{
    static const TfType type = TfType::Find<UsdSchemaBase>();
    return type;
}

const TfType& UsdSchemaBase::_GetTfType() const { return _GetStaticTfType(); }

VESK_USD_DEFINE_SCHEMA(UsdTyped, UsdSchemaBase)

bool UsdTyped::_IsCompatible() const { return UsdSchemaBase::_IsCompatible() && GetPrim().IsA(_GetType()); }

VESK_USD_DEFINE_SCHEMA_TYPE(UsdAPISchemaBase, UsdSchemaBase)

UsdAPISchemaBase::~UsdAPISchemaBase() = default;

bool UsdAPISchemaBase::_IsCompatible() const
{
    if (!UsdSchemaBase::_IsCompatible()) {
        return false;
    }
    if (IsMultipleApplyAPISchema()) {
        return !_instanceName.IsEmpty() && GetPrim().HasAPI(_GetTfType(), _instanceName);
    }
    return !IsAppliedAPISchema() || GetPrim().HasAPI(_GetTfType());
}

TfTokenVector UsdAPISchemaBase::_GetMultipleApplyInstanceNames(const UsdPrim& prim, const TfType& schemaType)
{
    TfTokenVector instanceNames;
    const TfToken schemaName = UsdSchemaRegistry::GetAPISchemaTypeName(schemaType);
    for (const TfToken& applied : prim.GetAppliedSchemas()) {
        const auto [name, instanceName] = UsdSchemaRegistry::GetTypeNameAndInstance(applied);
        if (name == schemaName) {
            instanceNames.push_back(instanceName);
        }
    }
    return instanceNames;
}

UsdPrim Usd_GetSchemaPrim(const UsdStagePtr& stage, const SdfPath& path)
{
    if (!stage) {
        TF_CODING_ERROR("There is no stage to look for <%s> on.", path.GetText());
        return UsdPrim();
    }
    return stage->GetPrimAtPath(path);
}

UsdPrim Usd_DefineSchemaPrim(const UsdStagePtr& stage, const SdfPath& path, const TfType& type)
{
    if (!stage) {
        TF_CODING_ERROR("There is no stage to define <%s> on.", path.GetText());
        return UsdPrim();
    }
    return stage->DefinePrim(path, UsdSchemaRegistry::GetConcreteSchemaTypeName(type));
}

PXR_NAMESPACE_CLOSE_SCOPE
