#pragma once

/// What the specs of attributes and relationships have in common.

#include <pxr/base/tf/type.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/proxyTypes.h>
#include <pxr/usd/sdf/spec.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/sdf/valueTypeName.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// A property as one layer describes it.
class SDF_API SdfPropertySpec : public SdfSpec
{
    SDF_DECLARE_ABSTRACT_SPEC(SdfPropertySpec, SdfSpec)

public:
    const std::string& GetName() const;
    TfToken GetNameToken() const;
    bool CanSetName(const std::string& newName, std::string* whyNot) const;
    bool SetName(const std::string& newName, bool validate = true);
    static bool IsValidName(const std::string& name);
    /// Returns the prim that the property belongs to.
    SdfSpecHandle GetOwner() const;

    SdfDictionaryProxy GetCustomData() const;
    SdfDictionaryProxy GetAssetInfo() const;
    void SetCustomData(const std::string& name, const VtValue& value);
    void SetAssetInfo(const std::string& name, const VtValue& value);
    std::string GetDisplayGroup() const;
    void SetDisplayGroup(const std::string& value);
    std::string GetDisplayName() const;
    void SetDisplayName(const std::string& value);
    std::string GetDocumentation() const;
    void SetDocumentation(const std::string& value);
    bool GetHidden() const;
    void SetHidden(bool value);
    SdfPermission GetPermission() const;
    void SetPermission(SdfPermission value);
    std::string GetPrefix() const;
    void SetPrefix(const std::string& value);
    std::string GetSuffix() const;
    void SetSuffix(const std::string& value);
    std::string GetSymmetricPeer() const;
    void SetSymmetricPeer(const std::string& peerName);
    SdfDictionaryProxy GetSymmetryArguments() const;
    void SetSymmetryArgument(const std::string& name, const VtValue& value);
    TfToken GetSymmetryFunction() const;
    void SetSymmetryFunction(const TfToken& functionName);

    SdfTimeSampleMap GetTimeSampleMap() const;
    TfType GetValueType() const;
    SdfValueTypeName GetTypeName() const;
    VtValue GetDefaultValue() const;
    /// Sets the default value, cast to the property's type; posts an error and returns false where that
    /// fails.
    bool SetDefaultValue(const VtValue& defaultValue);
    bool HasDefaultValue() const;
    void ClearDefaultValue();
    std::string GetComment() const;
    void SetComment(const std::string& value);
    bool IsCustom() const;
    void SetCustom(bool custom);
    SdfVariability GetVariability() const;
    /// Says whether nothing but custom, variability and type is authored.
    bool HasOnlyRequiredFields() const;
};

PXR_NAMESPACE_CLOSE_SCOPE
