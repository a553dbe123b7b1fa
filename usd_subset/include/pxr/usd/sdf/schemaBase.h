#pragma once

/// Which fields each kind of spec has, and what they are when nothing is authored.

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/allowed.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/types.h>

#include <map>
#include <unordered_map>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// The fields of scene description: the fixed ones and the metadata that the schema libraries add.
/// Thread: any; it does not change once it is made.
class SDF_API SdfSchemaBase
{
public:
    /// One field: its fallback and which values it takes.
    class SDF_API FieldDefinition
    {
    public:
        typedef SdfAllowed (*Validator)(const VtValue&);

        FieldDefinition() = default;
        FieldDefinition(const TfToken& name, const VtValue& fallback) : _name(name), _fallback(fallback) {}

        const TfToken& GetName() const { return _name; }
        const VtValue& GetFallbackValue() const { return _fallback; }
        /// Says whether a schema library added the field.
        bool IsPlugin() const { return _isPlugin; }
        /// Says whether the field changes only as a result of other edits.
        bool IsReadOnly() const { return _isReadOnly; }
        /// Says whether the field lists the children of a spec.
        bool HoldsChildren() const { return _holdsChildren; }
        SdfAllowed IsValidValue(const VtValue& value) const
        {
            return _validator ? _validator(value) : SdfAllowed();
        }

    private:
        friend class SdfSchemaBase;
        TfToken _name;
        VtValue _fallback;
        bool _isPlugin = false;
        bool _isReadOnly = false;
        bool _holdsChildren = false;
        Validator _validator = nullptr;
    };

    /// The fields of one kind of spec.
    class SDF_API SpecDefinition
    {
    public:
        std::vector<TfToken> GetFields() const;
        const std::vector<TfToken>& GetRequiredFields() const { return _required; }
        std::vector<TfToken> GetMetadataFields() const;
        bool IsValidField(const TfToken& name) const { return _fields.count(name) > 0; }
        bool IsMetadataField(const TfToken& name) const;
        TfToken GetMetadataFieldDisplayGroup(const TfToken& name) const;
        bool IsRequiredField(const TfToken& name) const;

    private:
        friend class SdfSchemaBase;
        struct _Info
        {
            bool required = false;
            bool metadata = false;
            TfToken displayGroup;
        };
        std::unordered_map<TfToken, _Info, TfToken::HashFunctor> _fields;
        std::vector<TfToken> _required;
    };

    /// Returns a field's definition, or null.
    const FieldDefinition* GetFieldDefinition(const TfToken& fieldKey) const;
    /// Returns the definition of a kind of spec, or null.
    const SpecDefinition* GetSpecDefinition(SdfSpecType specType) const;
    bool IsRegistered(const TfToken& fieldKey, VtValue* fallback = nullptr) const;
    bool HoldsChildren(const TfToken& fieldKey) const;
    /// Returns a field's fallback, an empty value for a field that is not known.
    const VtValue& GetFallback(const TfToken& fieldKey) const;
    bool IsValidFieldForSpec(const TfToken& fieldKey, SdfSpecType specType) const;
    std::vector<TfToken> GetFields(SdfSpecType specType) const;
    std::vector<TfToken> GetMetadataFields(SdfSpecType specType) const;
    TfToken GetMetadataFieldDisplayGroup(SdfSpecType specType, const TfToken& metadataField) const;
    const std::vector<TfToken>& GetRequiredFields(SdfSpecType specType) const;
    bool IsRequiredFieldName(const TfToken& fieldName) const;

    static SdfAllowed IsValidIdentifier(const std::string& name);
    static SdfAllowed IsValidNamespacedIdentifier(const std::string& name);
    static SdfAllowed IsValidVariantIdentifier(const std::string& name);
    static SdfAllowed IsValidVariantSelection(const std::string& selection);
    /// Says whether a value is of a type that scene description can hold.
    SdfAllowed IsValidValue(const VtValue& value) const;

    SdfSchemaBase(const SdfSchemaBase&) = delete;
    SdfSchemaBase& operator=(const SdfSchemaBase&) = delete;

protected:
    SdfSchemaBase();
    ~SdfSchemaBase();

private:
    typedef FieldDefinition::Validator _Validator;
    FieldDefinition& _Register(const TfToken& name, const VtValue& fallback, _Validator validator = nullptr);
    void _Define(SdfSpecType type, const std::vector<TfToken>& required, const std::vector<TfToken>& plain,
                 const std::vector<TfToken>& metadata);
    void _RegisterLayerFields();
    void _RegisterPrimFields();
    void _RegisterPropertyFields();
    void _RegisterChildrenFields();
    void _DefineSpecs();
    void _RegisterSchemaMetadata();
    void _AddMetadata(const char* name, const VtValue& fallback, const std::vector<SdfSpecType>& specs,
                      const char* displayGroup = "");

    std::unordered_map<TfToken, FieldDefinition, TfToken::HashFunctor> _fields;
    SpecDefinition _specs[SdfNumSpecTypes];
    bool _hasSpec[SdfNumSpecTypes] = {};
};

PXR_NAMESPACE_CLOSE_SCOPE
