#pragma once

#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/object.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/timeCode.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Writes opinions at a stage's edit target. What cannot be written posts one error.
class Usd_SpecEditor
{
public:
    explicit Usd_SpecEditor(Usd_StageImpl& stage) : _stage(stage) {}

    /// Whether objects of a prim may be edited: proxies and prims in prototypes may not.
    bool CanEdit(const UsdPrim& prim, const char* operation) const;
    bool CanEdit(const SdfPath& path, const char* operation) const;

    SdfPrimSpecHandle CreatePrimSpec(const SdfPath& path) const;
    SdfPrimSpecHandle CreatePrimSpec(const UsdPrim& prim) const;
    SdfAttributeSpecHandle CreateAttributeSpec(const UsdAttribute& attribute) const;
    SdfAttributeSpecHandle CreateAttributeSpec(const UsdAttribute& attribute,
                                               const SdfValueTypeName& typeName, bool custom,
                                               SdfVariability variability) const;
    /// @param fallbackCustom whether a relationship that nothing declares yet is custom
    SdfRelationshipSpecHandle CreateRelationshipSpec(const UsdRelationship& relationship,
                                                     bool fallbackCustom) const;
    /// The spec of a property: the one that is there, or one as the schema or the strongest opinion declares
    /// it.
    SdfPropertySpecHandle CreatePropertySpec(const UsdProperty& property) const;

    bool SetMetadata(const UsdObject& object, const TfToken& field, const TfToken& keyPath,
                     VtValue value) const;
    bool ClearMetadata(const UsdObject& object, const TfToken& field, const TfToken& keyPath) const;
    bool SetValue(const UsdAttribute& attribute, VtValue value, UsdTimeCode time) const;
    bool ClearValue(const UsdAttribute& attribute, UsdTimeCode time) const;
    bool RemoveProperty(const SdfPath& path) const;

private:
    SdfLayerOffset _ToLayerTime() const;
    SdfPropertySpecHandle _CreateFromSchema(const UsdProperty& property) const;
    SdfPropertySpecHandle _CreateLikeStrongest(const UsdProperty& property) const;
    bool _CheckType(const UsdAttribute& attribute, const VtValue& value) const;
    const char* _LayerName() const;

    Usd_StageImpl& _stage;
};

PXR_NAMESPACE_CLOSE_SCOPE
