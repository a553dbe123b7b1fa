#include <pxr/usd/usdShade/connectableAPI.h>

#include "pxr/usd/usdShade/connections.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/usd/property.h>
#include <pxr/usd/usd/schemaRegistry.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdShade/tokens.h>

#include <tuple>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool _IsOfType(const UsdPrim& prim, const char* identifier)
{
    const TfType type = UsdSchemaRegistry::GetTypeFromSchemaTypeName(TfToken(identifier));
    return !type.IsUnknown() && prim.IsA(type);
}

template <class T>
std::vector<T> _Collect(const UsdPrim& prim, const TfToken& prefix, bool onlyAuthored)
{
    std::vector<T> result;
    for (const UsdProperty& property : onlyAuthored
                                           ? prim.GetAuthoredPropertiesInNamespace(prefix.GetString())
                                           : prim.GetPropertiesInNamespace(prefix.GetString())) {
        if (const UsdAttribute attribute = property.As<UsdAttribute>()) {
            result.emplace_back(attribute);
        }
    }
    return result;
}

template <class T>
T _Find(const UsdPrim& prim, const TfToken& name, UsdShadeAttributeType type)
{
    const TfToken fullName = UsdShade_FullName(name, type);
    return prim.HasAttribute(fullName) ? T(prim.GetAttribute(fullName)) : T();
}

template <class T>
T _FindOrCreate(const UsdPrim& prim, const TfToken& name, UsdShadeAttributeType type,
                const SdfValueTypeName& typeName)
{
    const TfToken fullName = UsdShade_FullName(name, type);
    const UsdAttribute attribute = prim.GetAttribute(fullName);
    return T(attribute ? attribute : prim.CreateAttribute(fullName, typeName, /*custom=*/false));
}

} // namespace

bool UsdShadeConnectableAPI::_IsCompatible() const
{
    const UsdPrim prim = GetPrim();
    return UsdAPISchemaBase::_IsCompatible() &&
           (_IsOfType(prim, "Shader") || _IsOfType(prim, "NodeGraph") || _IsOfType(prim, "LightFilter") ||
            prim.HasAPI(TfToken("LightAPI")) || prim.HasAPI(TfToken("NodeDefAPI")));
}

bool UsdShadeConnectableAPI::IsContainer() const { return _IsOfType(GetPrim(), "NodeGraph"); }

UsdShadeInput UsdShadeConnectableAPI::CreateInput(const TfToken& name, const SdfValueTypeName& typeName) const
{
    return _FindOrCreate<UsdShadeInput>(GetPrim(), name, UsdShadeAttributeType::Input, typeName);
}

UsdShadeInput UsdShadeConnectableAPI::GetInput(const TfToken& name) const
{
    return _Find<UsdShadeInput>(GetPrim(), name, UsdShadeAttributeType::Input);
}

std::vector<UsdShadeInput> UsdShadeConnectableAPI::GetInputs(bool onlyAuthored) const
{
    return _Collect<UsdShadeInput>(GetPrim(), UsdShadeTokens->inputs, onlyAuthored);
}

UsdShadeOutput UsdShadeConnectableAPI::CreateOutput(const TfToken& name,
                                                    const SdfValueTypeName& typeName) const
{
    return _FindOrCreate<UsdShadeOutput>(GetPrim(), name, UsdShadeAttributeType::Output, typeName);
}

UsdShadeOutput UsdShadeConnectableAPI::GetOutput(const TfToken& name) const
{
    return _Find<UsdShadeOutput>(GetPrim(), name, UsdShadeAttributeType::Output);
}

std::vector<UsdShadeOutput> UsdShadeConnectableAPI::GetOutputs(bool onlyAuthored) const
{
    return _Collect<UsdShadeOutput>(GetPrim(), UsdShadeTokens->outputs, onlyAuthored);
}

bool UsdShadeConnectableAPI::ConnectToSource(const UsdAttribute& shadingAttr, const SdfPath& sourcePath)
{
    return ConnectToSource(shadingAttr, UsdShadeConnectionSourceInfo(shadingAttr.GetStage(), sourcePath));
}

bool UsdShadeConnectableAPI::ConnectToSource(const UsdAttribute& shadingAttr,
                                             const UsdShadeConnectionSourceInfo& source,
                                             ConnectionModification mod)
{
    if (!source) {
        TF_CODING_ERROR("<%s> cannot be connected: the source is no input or output of a prim.",
                        shadingAttr.GetPath().GetText());
        return false;
    }
    const UsdPrim prim = source.source.GetPrim();
    const TfToken name = UsdShade_FullName(source.sourceName, source.sourceType);
    UsdAttribute attribute = prim.GetAttribute(name);
    if (!attribute) {
        attribute = prim.CreateAttribute(name, source.typeName ? source.typeName : shadingAttr.GetTypeName(),
                                         /*custom=*/false);
    }
    if (!attribute) {
        return false;
    }
    switch (mod) {
    case ConnectionModification::Replace:
        return shadingAttr.SetConnections({attribute.GetPath()});
    case ConnectionModification::Prepend:
        return shadingAttr.AddConnection(attribute.GetPath(), UsdListPositionFrontOfPrependList);
    case ConnectionModification::Append:
        break;
    }
    return shadingAttr.AddConnection(attribute.GetPath(), UsdListPositionBackOfAppendList);
}

UsdShadeSourceInfoVector UsdShadeConnectableAPI::GetConnectedSources(const UsdAttribute& shadingAttr,
                                                                     SdfPathVector* invalidSourcePaths)
{
    SdfPathVector paths;
    shadingAttr.GetConnections(&paths);
    UsdShadeSourceInfoVector infos;
    for (const SdfPath& path : paths) {
        const UsdAttribute source = shadingAttr.GetStage()->GetAttributeAtPath(path);
        const auto [name, type] = UsdShade_SplitName(path.GetNameToken());
        if (source && type != UsdShadeAttributeType::Invalid) {
            infos.emplace_back(UsdShadeConnectableAPI(source.GetPrim()), name, type, source.GetTypeName());
        } else if (invalidSourcePaths) {
            invalidSourcePaths->push_back(path);
        }
    }
    return infos;
}

bool UsdShadeConnectableAPI::GetConnectedSource(const UsdAttribute& shadingAttr,
                                                UsdShadeConnectableAPI* source, TfToken* sourceName,
                                                UsdShadeAttributeType* sourceType)
{
    if (!source || !sourceName || !sourceType) {
        TF_CODING_ERROR("The source of <%s> needs all three results to be written to.",
                        shadingAttr.GetPath().GetText());
        return false;
    }
    const UsdShadeSourceInfoVector infos = GetConnectedSources(shadingAttr);
    if (infos.empty()) {
        return false;
    }
    if (infos.size() > 1) {
        TF_WARN("<%s> has %zu sources; only the first is told.", shadingAttr.GetPath().GetText(),
                infos.size());
    }
    *source = infos.front().source;
    *sourceName = infos.front().sourceName;
    *sourceType = infos.front().sourceType;
    return true;
}

bool UsdShadeConnectableAPI::HasConnectedSource(const UsdAttribute& shadingAttr)
{
    return !GetConnectedSources(shadingAttr).empty();
}

bool UsdShadeConnectableAPI::DisconnectSource(const UsdAttribute& shadingAttr, const UsdAttribute& sourceAttr)
{
    return sourceAttr ? shadingAttr.RemoveConnection(sourceAttr.GetPath()) : shadingAttr.SetConnections({});
}

bool UsdShadeConnectableAPI::ClearSources(const UsdAttribute& shadingAttr)
{
    return shadingAttr.ClearConnections();
}

UsdShadeConnectionSourceInfo::UsdShadeConnectionSourceInfo(const UsdShadeInput& input)
    : UsdShadeConnectionSourceInfo(UsdShadeConnectableAPI(input.GetPrim()), input.GetBaseName(),
                                   UsdShadeAttributeType::Input, input.GetTypeName())
{}

UsdShadeConnectionSourceInfo::UsdShadeConnectionSourceInfo(const UsdShadeOutput& output)
    : UsdShadeConnectionSourceInfo(UsdShadeConnectableAPI(output.GetPrim()), output.GetBaseName(),
                                   UsdShadeAttributeType::Output, output.GetTypeName())
{}

UsdShadeConnectionSourceInfo::UsdShadeConnectionSourceInfo(const UsdStagePtr& stage,
                                                           const SdfPath& sourcePath)
{
    if (!stage || !sourcePath.IsPropertyPath()) {
        return;
    }
    std::tie(sourceName, sourceType) = UsdShade_SplitName(sourcePath.GetNameToken());
    source = UsdShadeConnectableAPI(stage->GetPrimAtPath(sourcePath.GetPrimPath()));
    if (const UsdAttribute attribute = stage->GetAttributeAtPath(sourcePath)) {
        typeName = attribute.GetTypeName();
    }
}

bool UsdShadeConnectionSourceInfo::IsValid() const
{
    return sourceType != UsdShadeAttributeType::Invalid && !sourceName.IsEmpty() && source.GetPrim();
}

bool UsdShadeConnectionSourceInfo::operator==(const UsdShadeConnectionSourceInfo& other) const
{
    return source.GetPrim() == other.source.GetPrim() && sourceName == other.sourceName &&
           sourceType == other.sourceType;
}

// ---- Inputs and outputs ----

// What both have and differ in by name alone.
#define USD_SHADE_ENDPOINT(Class, Kind)                                                                      \
    bool Class::Is##Kind(const UsdAttribute& attr)                                                           \
    {                                                                                                        \
        return attr && UsdShade_SplitName(attr.GetName()).second == UsdShadeAttributeType::Kind;             \
    }                                                                                                        \
    TfToken Class::GetBaseName() const { return UsdShade_SplitName(GetFullName()).first; }                   \
    bool Class::ConnectToSource(const SdfPath& sourcePath) const                                             \
    {                                                                                                        \
        return UsdShadeConnectableAPI::ConnectToSource(_attr, sourcePath);                                   \
    }                                                                                                        \
    bool Class::ConnectToSource(const UsdShadeInput& sourceInput) const                                      \
    {                                                                                                        \
        return UsdShadeConnectableAPI::ConnectToSource(_attr, UsdShadeConnectionSourceInfo(sourceInput));    \
    }                                                                                                        \
    bool Class::ConnectToSource(const UsdShadeOutput& sourceOutput) const                                    \
    {                                                                                                        \
        return UsdShadeConnectableAPI::ConnectToSource(_attr, UsdShadeConnectionSourceInfo(sourceOutput));   \
    }                                                                                                        \
    bool Class::ConnectToSource(const UsdShadeConnectableAPI& source, const TfToken& sourceName,             \
                                UsdShadeAttributeType sourceType, SdfValueTypeName typeName) const           \
    {                                                                                                        \
        return UsdShadeConnectableAPI::ConnectToSource(                                                      \
            _attr, UsdShadeConnectionSourceInfo(source, sourceName, sourceType, typeName));                  \
    }                                                                                                        \
    Class::SourceInfoVector Class::GetConnectedSources(SdfPathVector* invalidSourcePaths) const              \
    {                                                                                                        \
        return UsdShadeConnectableAPI::GetConnectedSources(_attr, invalidSourcePaths);                       \
    }                                                                                                        \
    bool Class::GetConnectedSource(UsdShadeConnectableAPI* source, TfToken* sourceName,                      \
                                   UsdShadeAttributeType* sourceType) const                                  \
    {                                                                                                        \
        return UsdShadeConnectableAPI::GetConnectedSource(_attr, source, sourceName, sourceType);            \
    }                                                                                                        \
    bool Class::GetRawConnectedSourcePaths(SdfPathVector* sourcePaths) const                                 \
    {                                                                                                        \
        return _attr.GetConnections(sourcePaths);                                                            \
    }                                                                                                        \
    bool Class::HasConnectedSource() const { return UsdShadeConnectableAPI::HasConnectedSource(_attr); }     \
    bool Class::DisconnectSource(const UsdAttribute& sourceAttr) const                                       \
    {                                                                                                        \
        return UsdShadeConnectableAPI::DisconnectSource(_attr, sourceAttr);                                  \
    }                                                                                                        \
    bool Class::ClearSources() const { return UsdShadeConnectableAPI::ClearSources(_attr); }                 \
    UsdShadeAttributeVector Class::GetValueProducingAttributes(bool shaderOutputsOnly) const                 \
    {                                                                                                        \
        return UsdShade_GetValueProducingAttributes(_attr, shaderOutputsOnly);                               \
    }
USD_SHADE_ENDPOINT(UsdShadeInput, Input)
USD_SHADE_ENDPOINT(UsdShadeOutput, Output)
#undef USD_SHADE_ENDPOINT

namespace {

const TfToken& _ConnectabilityKey()
{
    static const TfToken key("connectability");
    return key;
}

} // namespace

bool UsdShadeInput::SetConnectability(const TfToken& connectability) const
{
    return _attr.SetMetadata(_ConnectabilityKey(), connectability);
}

TfToken UsdShadeInput::GetConnectability() const
{
    TfToken connectability;
    _attr.GetMetadata(_ConnectabilityKey(), &connectability);
    return connectability.IsEmpty() ? UsdShadeTokens->full : connectability;
}

bool UsdShadeInput::ClearConnectability() const { return _attr.ClearMetadata(_ConnectabilityKey()); }

PXR_NAMESPACE_CLOSE_SCOPE
