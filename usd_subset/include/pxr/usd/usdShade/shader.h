#pragma once

#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/usd/typed.h>
#include <pxr/usd/usdShade/connectableAPI.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A shading node.
class VESK_USD_API UsdShadeShader : public UsdTyped
{
    VESK_USD_CONCRETE_SCHEMA(UsdShadeShader, UsdTyped)

    VESK_USD_SCHEMA_ATTR(ImplementationSource, UsdShadeTokens->infoImplementationSource)
    VESK_USD_SCHEMA_ATTR(Id, UsdShadeTokens->infoId)

    explicit UsdShadeShader(const UsdShadeConnectableAPI& connectable) : UsdShadeShader(connectable.GetPrim())
    {}
    UsdShadeConnectableAPI ConnectableAPI() const { return UsdShadeConnectableAPI(GetPrim()); }
    UsdShadeInput CreateInput(const TfToken& name, const SdfValueTypeName& typeName) const
    {
        return ConnectableAPI().CreateInput(name, typeName);
    }
    UsdShadeInput GetInput(const TfToken& name) const { return ConnectableAPI().GetInput(name); }
    std::vector<UsdShadeInput> GetInputs(bool onlyAuthored = true) const
    {
        return ConnectableAPI().GetInputs(onlyAuthored);
    }
    UsdShadeOutput CreateOutput(const TfToken& name, const SdfValueTypeName& typeName) const
    {
        return ConnectableAPI().CreateOutput(name, typeName);
    }
    UsdShadeOutput GetOutput(const TfToken& name) const { return ConnectableAPI().GetOutput(name); }
    std::vector<UsdShadeOutput> GetOutputs(bool onlyAuthored = true) const
    {
        return ConnectableAPI().GetOutputs(onlyAuthored);
    }

    /// id, sourceAsset or sourceCode; id, with a warning, where anything else is authored.
    TfToken GetImplementationSource() const;
    /// Sets the id and makes it the source of the implementation.
    bool SetShaderId(const TfToken& id) const;
    /// The id where it is the source of the implementation.
    bool GetShaderId(TfToken* id) const;
    bool SetSourceAsset(const SdfAssetPath& sourceAsset,
                        const TfToken& sourceType = UsdShadeTokens->universalSourceType) const;
    bool GetSourceAsset(SdfAssetPath* sourceAsset,
                        const TfToken& sourceType = UsdShadeTokens->universalSourceType) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
