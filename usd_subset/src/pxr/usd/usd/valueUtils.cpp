#include "pxr/usd/usd/valueUtils.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/ar/resolverContextBinder.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/sdf/timeCode.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/sdf/variableExpression.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using Evaluate = std::function<std::string(const std::string&)>;

SdfAssetPath resolved(const SdfLayerHandle& layer, const Evaluate& evaluate, const SdfAssetPath& path)
{
    std::string text = path.GetAssetPath();
    if (SdfVariableExpression::IsExpression(text)) {
        text = evaluate(text);
        if (text == path.GetAssetPath()) {
            return path; // it cannot be evaluated
        }
    }
    if (text.empty()) {
        return SdfAssetPath();
    }
    const std::string anchored = SdfComputeAssetPathRelativeToLayer(layer, text);
    return SdfAssetPath(text, ArGetResolver().Resolve(anchored).GetPathString());
}

template <class Function>
void forEachInDictionary(VtValue* value, const Function& function)
{
    VtDictionary dictionary;
    value->UncheckedSwap(dictionary);
    for (auto& entry : dictionary) {
        function(&entry.second);
    }
    value->UncheckedSwap(dictionary);
}

} // namespace

void Usd_ApplyLayerOffset(const SdfLayerOffset& offset, VtValue* value)
{
    if (offset.IsIdentity()) {
        return;
    }
    if (value->IsHolding<SdfTimeCode>()) {
        *value = offset * value->UncheckedGet<SdfTimeCode>();
    } else if (value->IsHolding<VtArray<SdfTimeCode>>()) {
        VtArray<SdfTimeCode> times = value->UncheckedGet<VtArray<SdfTimeCode>>();
        for (SdfTimeCode& time : times) {
            time = offset * time;
        }
        *value = VtValue::Take(times);
    } else if (value->IsHolding<SdfTimeSampleMap>()) {
        SdfTimeSampleMap moved;
        for (const auto& sample : value->UncheckedGet<SdfTimeSampleMap>()) {
            VtValue content = sample.second;
            Usd_ApplyLayerOffset(offset, &content);
            moved[offset * sample.first] = content;
        }
        *value = VtValue::Take(moved);
    } else if (value->IsHolding<VtDictionary>()) {
        forEachInDictionary(value, [&offset](VtValue* content) { Usd_ApplyLayerOffset(offset, content); });
    }
}

std::string Usd_EvaluateExpression(const Usd_LayerStack& layerStack, const std::string& text,
                                   const SdfLayer& layer, const SdfPath& path)
{
    std::string why;
    const std::string evaluated = layerStack.Evaluate(text, &why);
    if (why.empty()) {
        return evaluated;
    }
    TF_WARN("The expression %s was left as it is: %s It is written on <%s> in @%s@.", text.c_str(),
            why.c_str(), path.GetText(), layer.GetIdentifier().c_str());
    return text;
}

void Usd_ResolveAssetPaths(const SdfLayerHandle& layer, const ArResolverContext& context,
                           const Evaluate& evaluate, VtValue* value)
{
    if (value->IsHolding<SdfAssetPath>()) {
        const ArResolverContextBinder binder(context);
        *value = resolved(layer, evaluate, value->UncheckedGet<SdfAssetPath>());
    } else if (value->IsHolding<VtArray<SdfAssetPath>>()) {
        const ArResolverContextBinder binder(context);
        VtArray<SdfAssetPath> paths = value->UncheckedGet<VtArray<SdfAssetPath>>();
        for (SdfAssetPath& path : paths) {
            path = resolved(layer, evaluate, path);
        }
        *value = VtValue::Take(paths);
    } else if (value->IsHolding<VtDictionary>()) {
        forEachInDictionary(
            value, [&](VtValue* content) { Usd_ResolveAssetPaths(layer, context, evaluate, content); });
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
