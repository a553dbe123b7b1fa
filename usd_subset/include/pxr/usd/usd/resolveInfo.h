#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/api.h>
#include <pxr/usd/usd/common.h>
#include <pxr/usd/usd/interpolation.h>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_LayerStack;

/// Where an attribute's value comes from.
enum UsdResolveInfoSource
{
    UsdResolveInfoSourceNone,
    UsdResolveInfoSourceFallback,
    UsdResolveInfoSourceDefault,
    UsdResolveInfoSourceTimeSamples,
    UsdResolveInfoSourceValueClips,
};

/// The source of an attribute's value, found once so that values can be asked for many times. It is stale
/// after an edit of the stage.
class UsdResolveInfo
{
public:
    UsdResolveInfoSource GetSource() const { return _source; }
    bool HasAuthoredValueOpinion() const { return HasAuthoredValue() || _valueIsBlocked; }
    bool HasAuthoredValue() const
    {
        return _source == UsdResolveInfoSourceDefault || _source == UsdResolveInfoSourceTimeSamples ||
               _source == UsdResolveInfoSourceValueClips;
    }
    bool ValueIsBlocked() const { return _valueIsBlocked; }

private:
    friend class Usd_ValueResolver;

    SdfLayerHandle _layer;
    SdfPath _specPath;
    const Usd_LayerStack* _clipLayerStack = nullptr; // only compared
    SdfLayerOffset _layerToStageOffset;
    UsdResolveInfoSource _source = UsdResolveInfoSourceNone;
    bool _valueIsBlocked = false;
};

PXR_NAMESPACE_CLOSE_SCOPE
