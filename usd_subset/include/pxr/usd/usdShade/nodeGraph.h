#pragma once

#include <pxr/usd/usd/typed.h>
#include <pxr/usd/usdShade/connectableAPI.h>
#include <pxr/usd/usdShade/shader.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A group of shading nodes with inputs and outputs of its own.
class VESK_USD_API UsdShadeNodeGraph : public UsdTyped
{
    VESK_USD_CONCRETE_SCHEMA(UsdShadeNodeGraph, UsdTyped)

    explicit UsdShadeNodeGraph(const UsdShadeConnectableAPI& connectable)
        : UsdShadeNodeGraph(connectable.GetPrim())
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

    /// The shader that an output comes from in the end; invalid where none is connected.
    UsdShadeShader ComputeOutputSource(const TfToken& outputName, TfToken* sourceName = nullptr,
                                       UsdShadeAttributeType* sourceType = nullptr) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
