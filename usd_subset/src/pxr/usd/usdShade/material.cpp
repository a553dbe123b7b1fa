#include <pxr/usd/usdShade/material.h>

#include "pxr/usd/usdShade/connections.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/types.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

// ---- UsdShadeShader ----

namespace {

TfToken _SourceAssetName(const TfToken& sourceType)
{
    return TfToken(sourceType.IsEmpty() ? "info:sourceAsset"
                                        : "info:" + sourceType.GetString() + ":sourceAsset");
}

/// Tells what the first of the attributes at a terminal's end belongs to.
UsdShadeShader _ToShader(const UsdShadeAttributeVector& attributes, TfToken* sourceName,
                         UsdShadeAttributeType* sourceType)
{
    if (attributes.empty()) {
        return UsdShadeShader();
    }
    const auto [name, type] = UsdShade_SplitName(attributes.front().GetName());
    if (sourceName) {
        *sourceName = name;
    }
    if (sourceType) {
        *sourceType = type;
    }
    return UsdShadeShader(attributes.front().GetPrim());
}

} // namespace

TfToken UsdShadeShader::GetImplementationSource() const
{
    TfToken source;
    GetImplementationSourceAttr().Get(&source);
    if (source == UsdShadeTokens->id || source == UsdShadeTokens->sourceAsset ||
        source == UsdShadeTokens->sourceCode) {
        return source;
    }
    TF_WARN("<%s> has '%s' as the source of its implementation; id is taken.", GetPath().GetText(),
            source.GetText());
    return UsdShadeTokens->id;
}

bool UsdShadeShader::SetShaderId(const TfToken& id) const
{
    return CreateImplementationSourceAttr(VtValue(UsdShadeTokens->id), /*writeSparsely=*/true) &&
           GetIdAttr().Set(id);
}

bool UsdShadeShader::GetShaderId(TfToken* id) const
{
    return GetImplementationSource() == UsdShadeTokens->id && GetIdAttr().Get(id);
}

bool UsdShadeShader::SetSourceAsset(const SdfAssetPath& sourceAsset, const TfToken& sourceType) const
{
    const UsdAttribute attribute = GetPrim().CreateAttribute(
        _SourceAssetName(sourceType), SdfValueTypeNames->Asset, /*custom=*/false, SdfVariabilityUniform);
    return CreateImplementationSourceAttr(VtValue(UsdShadeTokens->sourceAsset)) && attribute.Set(sourceAsset);
}

bool UsdShadeShader::GetSourceAsset(SdfAssetPath* sourceAsset, const TfToken& sourceType) const
{
    if (GetImplementationSource() != UsdShadeTokens->sourceAsset) {
        return false;
    }
    const UsdAttribute attribute = GetPrim().GetAttribute(_SourceAssetName(sourceType));
    if (attribute) {
        return attribute.Get(sourceAsset);
    }
    // What holds for all source types serves one that has none of its own.
    const UsdAttribute universal = GetPrim().GetAttribute(_SourceAssetName(TfToken()));
    return universal && universal.Get(sourceAsset);
}

// ---- UsdShadeNodeGraph ----

UsdShadeShader UsdShadeNodeGraph::ComputeOutputSource(const TfToken& outputName, TfToken* sourceName,
                                                      UsdShadeAttributeType* sourceType) const
{
    const UsdShadeOutput output = GetOutput(outputName);
    return output ? _ToShader(output.GetValueProducingAttributes(), sourceName, sourceType)
                  : UsdShadeShader();
}

// ---- UsdShadeMaterial ----

namespace {

TfToken _TerminalName(const TfToken& renderContext, const TfToken& terminal)
{
    return renderContext.IsEmpty() ? terminal
                                   : TfToken(renderContext.GetString() + ":" + terminal.GetString());
}

} // namespace

UsdShadeOutput UsdShadeMaterial::_CreateTerminal(const TfToken& renderContext, const TfToken& terminal) const
{
    return CreateOutput(_TerminalName(renderContext, terminal), SdfValueTypeNames->Token);
}

UsdShadeOutput UsdShadeMaterial::_GetTerminal(const TfToken& renderContext, const TfToken& terminal) const
{
    return GetOutput(_TerminalName(renderContext, terminal));
}

std::vector<UsdShadeOutput> UsdShadeMaterial::_GetTerminals(const TfToken& terminal) const
{
    std::vector<UsdShadeOutput> outputs;
    if (const UsdShadeOutput universal = _GetTerminal(TfToken(), terminal)) {
        outputs.push_back(universal);
    }
    const std::string ending = ":" + terminal.GetString();
    for (const UsdShadeOutput& output : GetOutputs()) {
        if (TfStringEndsWith(output.GetBaseName().GetString(), ending)) {
            outputs.push_back(output);
        }
    }
    return outputs;
}

UsdShadeShader UsdShadeMaterial::_ComputeSource(const TfToken& terminal, const TfTokenVector& contextVector,
                                                TfToken* sourceName, UsdShadeAttributeType* sourceType) const
{
    TfTokenVector contexts = contextVector;
    const TfToken& universal = UsdShadeTokens->universalRenderContext;
    if (std::find(contexts.begin(), contexts.end(), universal) == contexts.end()) {
        contexts.push_back(universal);
    }
    for (const TfToken& context : contexts) {
        const UsdShadeOutput output = _GetTerminal(context, terminal);
        if (!output) {
            continue;
        }
        if (context == universal && !output.GetAttr().IsAuthored()) {
            break;
        }
        const UsdShadeAttributeVector attributes =
            output.GetValueProducingAttributes(/*shaderOutputsOnly=*/true);
        if (attributes.size() > 1) {
            TF_WARN("<%s> has %zu sources; only the first is taken.", output.GetAttr().GetPath().GetText(),
                    attributes.size());
        }
        if (!attributes.empty()) {
            return _ToShader(attributes, sourceName, sourceType);
        }
    }
    return UsdShadeShader();
}

#define USD_SHADE_TERMINAL(Name, token)                                                                      \
    UsdShadeOutput UsdShadeMaterial::Create##Name##Output(const TfToken& renderContext) const                \
    {                                                                                                        \
        return _CreateTerminal(renderContext, token);                                                        \
    }                                                                                                        \
    UsdShadeOutput UsdShadeMaterial::Get##Name##Output(const TfToken& renderContext) const                   \
    {                                                                                                        \
        return _GetTerminal(renderContext, token);                                                           \
    }                                                                                                        \
    std::vector<UsdShadeOutput> UsdShadeMaterial::Get##Name##Outputs() const                                 \
    {                                                                                                        \
        return _GetTerminals(token);                                                                         \
    }                                                                                                        \
    UsdShadeShader UsdShadeMaterial::Compute##Name##Source(                                                  \
        const TfTokenVector& contextVector, TfToken* sourceName, UsdShadeAttributeType* sourceType) const    \
    {                                                                                                        \
        return _ComputeSource(token, contextVector, sourceName, sourceType);                                 \
    }                                                                                                        \
    UsdShadeShader UsdShadeMaterial::Compute##Name##Source(                                                  \
        const TfToken& renderContext, TfToken* sourceName, UsdShadeAttributeType* sourceType) const          \
    {                                                                                                        \
        return _ComputeSource(token, {renderContext}, sourceName, sourceType);                               \
    }
USD_SHADE_TERMINAL(Surface, UsdShadeTokens->surface)
USD_SHADE_TERMINAL(Displacement, UsdShadeTokens->displacement)
USD_SHADE_TERMINAL(Volume, UsdShadeTokens->volume)
#undef USD_SHADE_TERMINAL

PXR_NAMESPACE_CLOSE_SCOPE
