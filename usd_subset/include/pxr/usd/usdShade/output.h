#pragma once

#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usdShade/tokens.h>
#include <pxr/usd/usdShade/types.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class UsdShadeConnectableAPI;
class UsdShadeInput;

/// An attribute that is a value that a shader, node graph or material gives: "outputs:<name>".
class VESK_USD_API UsdShadeOutput
{
public:
    using SourceInfoVector = UsdShadeSourceInfoVector;
    using ConnectionModification = UsdShadeConnectionModification;

    UsdShadeOutput() = default;
    explicit UsdShadeOutput(const UsdAttribute& attr) : _attr(attr) {}

    static bool IsOutput(const UsdAttribute& attr);

    const UsdAttribute& GetAttr() const { return _attr; }
    operator const UsdAttribute&() const { return _attr; }
    UsdPrim GetPrim() const { return _attr.GetPrim(); }
    bool IsDefined() const { return IsOutput(_attr); }
    explicit operator bool() const { return IsDefined(); }
    friend bool operator==(const UsdShadeOutput& lhs, const UsdShadeOutput& rhs)
    {
        return lhs._attr == rhs._attr;
    }
    friend bool operator!=(const UsdShadeOutput& lhs, const UsdShadeOutput& rhs) { return !(lhs == rhs); }

    const TfToken& GetFullName() const { return _attr.GetName(); }
    /// The name without "outputs:".
    TfToken GetBaseName() const;
    SdfValueTypeName GetTypeName() const { return _attr.GetTypeName(); }

    template <typename T>
    bool Set(const T& value, UsdTimeCode time = UsdTimeCode::Default()) const
    {
        return _attr.Set(value, time);
    }

    bool ConnectToSource(const SdfPath& sourcePath) const;
    bool ConnectToSource(const UsdShadeInput& sourceInput) const;
    bool ConnectToSource(const UsdShadeOutput& sourceOutput) const;
    bool ConnectToSource(const UsdShadeConnectableAPI& source, const TfToken& sourceName,
                         UsdShadeAttributeType sourceType = UsdShadeAttributeType::Output,
                         SdfValueTypeName typeName = SdfValueTypeName()) const;
    /// The valid sources in order; the paths of the others go to `invalidSourcePaths`.
    SourceInfoVector GetConnectedSources(SdfPathVector* invalidSourcePaths = nullptr) const;
    /// The first valid source.
    bool GetConnectedSource(UsdShadeConnectableAPI* source, TfToken* sourceName,
                            UsdShadeAttributeType* sourceType) const;
    bool GetRawConnectedSourcePaths(SdfPathVector* sourcePaths) const;
    bool HasConnectedSource() const;
    bool DisconnectSource(const UsdAttribute& sourceAttr = UsdAttribute()) const;
    bool ClearSources() const;

    /// The attributes at the ends of the connections: values, or outputs of shaders.
    UsdShadeAttributeVector GetValueProducingAttributes(bool shaderOutputsOnly = false) const;

private:
    UsdAttribute _attr;
};

PXR_NAMESPACE_CLOSE_SCOPE
