#include "pxr/usd/usd/valueUtils.h"

#include <pxr/base/vt/array.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/ar/resolverContextBinder.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/sdf/timeCode.h>
#include <pxr/usd/sdf/types.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

SdfAssetPath resolved(const SdfLayerHandle& layer, const SdfAssetPath& path)
{
    if (path.GetAssetPath().empty()) {
        return path;
    }
    const std::string anchored = SdfComputeAssetPathRelativeToLayer(layer, path.GetAssetPath());
    return SdfAssetPath(path.GetAssetPath(), ArGetResolver().Resolve(anchored).GetPathString());
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

void Usd_ResolveAssetPaths(const SdfLayerHandle& layer, const ArResolverContext& context, VtValue* value)
{
    if (value->IsHolding<SdfAssetPath>()) {
        const ArResolverContextBinder binder(context);
        *value = resolved(layer, value->UncheckedGet<SdfAssetPath>());
    } else if (value->IsHolding<VtArray<SdfAssetPath>>()) {
        const ArResolverContextBinder binder(context);
        VtArray<SdfAssetPath> paths = value->UncheckedGet<VtArray<SdfAssetPath>>();
        for (SdfAssetPath& path : paths) {
            path = resolved(layer, path);
        }
        *value = VtValue::Take(paths);
    } else if (value->IsHolding<VtDictionary>()) {
        forEachInDictionary(value, [&](VtValue* content) { Usd_ResolveAssetPaths(layer, context, content); });
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
