#pragma once

#include <pxr/usd/usd/apiSchemaBase.h>
#include <pxr/usd/usdShade/input.h>
#include <pxr/usd/usdShade/output.h>
#include <pxr/usd/usdShade/types.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Inputs, outputs and connections of shaders, node graphs, materials and lights.
class VESK_USD_API UsdShadeConnectableAPI : public UsdAPISchemaBase
{
    VESK_USD_API_SCHEMA(UsdShadeConnectableAPI, UsdAPISchemaBase)

    /// Whether the prim groups other nodes: a node graph or material.
    bool IsContainer() const;

    UsdShadeInput CreateInput(const TfToken& name, const SdfValueTypeName& typeName) const;
    UsdShadeInput GetInput(const TfToken& name) const;
    std::vector<UsdShadeInput> GetInputs(bool onlyAuthored = true) const;
    UsdShadeOutput CreateOutput(const TfToken& name, const SdfValueTypeName& typeName) const;
    UsdShadeOutput GetOutput(const TfToken& name) const;
    std::vector<UsdShadeOutput> GetOutputs(bool onlyAuthored = true) const;

    using ConnectionModification = UsdShadeConnectionModification;
    static bool ConnectToSource(const UsdAttribute& shadingAttr, const SdfPath& sourcePath);
    static bool ConnectToSource(const UsdAttribute& shadingAttr, const UsdShadeConnectionSourceInfo& source,
                                ConnectionModification mod = ConnectionModification::Replace);
    static UsdShadeSourceInfoVector GetConnectedSources(const UsdAttribute& shadingAttr,
                                                        SdfPathVector* invalidSourcePaths = nullptr);
    static bool GetConnectedSource(const UsdAttribute& shadingAttr, UsdShadeConnectableAPI* source,
                                   TfToken* sourceName, UsdShadeAttributeType* sourceType);
    static bool HasConnectedSource(const UsdAttribute& shadingAttr);
    static bool DisconnectSource(const UsdAttribute& shadingAttr,
                                 const UsdAttribute& sourceAttr = UsdAttribute());
    static bool ClearSources(const UsdAttribute& shadingAttr);

protected:
    bool _IsCompatible() const override;
};

/// Where a connection comes from: a node, the name of one of its attributes and that one's kind.
struct VESK_USD_API UsdShadeConnectionSourceInfo
{
    UsdShadeConnectionSourceInfo() = default;
    UsdShadeConnectionSourceInfo(const UsdShadeConnectableAPI& source_, const TfToken& sourceName_,
                                 UsdShadeAttributeType sourceType_,
                                 const SdfValueTypeName& typeName_ = SdfValueTypeName())
        : source(source_), sourceName(sourceName_), sourceType(sourceType_), typeName(typeName_)
    {}
    explicit UsdShadeConnectionSourceInfo(const UsdShadeInput& input);
    explicit UsdShadeConnectionSourceInfo(const UsdShadeOutput& output);
    /// The source that a path on a stage names.
    UsdShadeConnectionSourceInfo(const UsdStagePtr& stage, const SdfPath& sourcePath);

    bool IsValid() const;
    explicit operator bool() const { return IsValid(); }
    bool operator==(const UsdShadeConnectionSourceInfo& other) const;
    bool operator!=(const UsdShadeConnectionSourceInfo& other) const { return !(*this == other); }

    UsdShadeConnectableAPI source;
    TfToken sourceName;
    UsdShadeAttributeType sourceType = UsdShadeAttributeType::Invalid;
    SdfValueTypeName typeName;
};

PXR_NAMESPACE_CLOSE_SCOPE
