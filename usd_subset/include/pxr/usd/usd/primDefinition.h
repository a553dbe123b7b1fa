#pragma once

#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/sdf/valueTypeName.h>
#include <pxr/usd/usd/schemaRegistry.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

struct Usd_SchemaProperty;

/// The properties, fallback values and metadata that a prim has by its type and applied schemas.
class VESK_USD_API UsdPrimDefinition
{
public:
    /// One built-in property; false when the definition has none of the name.
    class VESK_USD_API Property
    {
    public:
        Property() = default;

        const TfToken& GetName() const { return _name; }
        explicit operator bool() const { return _property != nullptr; }
        bool IsAttribute() const { return GetSpecType() == SdfSpecTypeAttribute; }
        bool IsRelationship() const { return GetSpecType() == SdfSpecTypeRelationship; }
        SdfSpecType GetSpecType() const;
        SdfVariability GetVariability() const;
        TfTokenVector ListMetadataFields() const;

        /// Reads one metadata field; false and value untouched when it is absent or of another type.
        template <class T>
        bool GetMetadata(const TfToken& key, T* value) const
        {
            VtValue field;
            return _GetField(key, &field) && UsdPrimDefinition::_Extract(&field, value);
        }

    protected:
        friend class UsdPrimDefinition;
        Property(const TfToken& name, const Usd_SchemaProperty* property) : _name(name), _property(property)
        {}
        bool _GetField(const TfToken& key, VtValue* value) const;

        TfToken _name;
        const Usd_SchemaProperty* _property = nullptr;
    };

    /// A built-in attribute; false when made from anything else.
    class VESK_USD_API Attribute : public Property
    {
    public:
        Attribute() = default;
        Attribute(const Property& property);
        explicit operator bool() const { return IsAttribute(); }
        SdfValueTypeName GetTypeName() const;
        TfToken GetTypeNameToken() const;

        template <class T>
        bool GetFallbackValue(T* value) const
        {
            VtValue field;
            return _GetFallback(&field) && UsdPrimDefinition::_Extract(&field, value);
        }

    private:
        bool _GetFallback(VtValue* value) const;
    };

    /// A built-in relationship; false when made from anything else.
    class VESK_USD_API Relationship : public Property
    {
    public:
        Relationship() = default;
        Relationship(const Property& property);
        explicit operator bool() const { return IsRelationship(); }
    };

    const TfTokenVector& GetPropertyNames() const { return _properties; }
    /// The API schemas that belong to the definition, strongest first.
    const TfTokenVector& GetAppliedAPISchemas() const { return _appliedAPISchemas; }

    Property GetPropertyDefinition(const TfToken& propName) const;
    Attribute GetAttributeDefinition(const TfToken& attrName) const;
    Relationship GetRelationshipDefinition(const TfToken& relName) const;
    SdfSpecType GetSpecType(const TfToken& propName) const;

    template <class T>
    bool GetAttributeFallbackValue(const TfToken& attrName, T* value) const
    {
        return GetAttributeDefinition(attrName).GetFallbackValue(value);
    }

    TfTokenVector ListPropertyMetadataFields(const TfToken& propName) const;
    template <class T>
    bool GetPropertyMetadata(const TfToken& propName, const TfToken& key, T* value) const
    {
        return GetPropertyDefinition(propName).GetMetadata(key, value);
    }

private:
    friend class UsdSchemaRegistry;
    friend class Usd_SchemaComposer;
    friend VESK_USD_API bool Usd_GetFallbackValue(const UsdPrimDefinition& primDef, const TfToken& propName,
                                                  const TfToken& fieldName, const TfToken& keyPath,
                                                  VtValue* value);

    UsdPrimDefinition() = default;
    UsdPrimDefinition(const UsdPrimDefinition&) = default;

    static bool _Extract(VtValue* field, VtValue* value)
    {
        field->Swap(*value);
        return true;
    }
    template <class T>
    static bool _Extract(VtValue* field, T* value)
    {
        if (!field->IsHolding<T>()) {
            return false;
        }
        field->UncheckedSwap(*value);
        return true;
    }

    std::unordered_map<TfToken, std::shared_ptr<const Usd_SchemaProperty>, TfHash> _propertyMap;
    TfTokenVector _properties;
    TfTokenVector _appliedAPISchemas;
};

/// Reads a field of a built-in property for value resolution, without hiding any; false when there is none.
VESK_USD_API bool Usd_GetFallbackValue(const UsdPrimDefinition& primDef, const TfToken& propName,
                                       const TfToken& fieldName, const TfToken& keyPath, VtValue* value);

PXR_NAMESPACE_CLOSE_SCOPE
