#pragma once

#include <pxr/base/tf/declarePtrs.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/usd/api.h>
#include <pxr/usd/usd/pathMapping.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Where edits of a stage are written: a layer, and how paths and times of the stage translate into it.
class VESK_USD_API UsdEditTarget
{
public:
    UsdEditTarget() = default;
    /// The layer in the stage's own namespace.
    /// @param offset from the layer's time to the stage's time
    UsdEditTarget(const SdfLayerHandle& layer, SdfLayerOffset offset = SdfLayerOffset());
    UsdEditTarget(const SdfLayerRefPtr& layer, SdfLayerOffset offset = SdfLayerOffset());

    /// Edits inside a variant that is written in a layer of the stage's own layer stack.
    /// @param varSelPath a path that ends in a variant selection, as in /Prim{set=variant}
    static UsdEditTarget ForLocalDirectVariant(const SdfLayerHandle& layer, const SdfPath& varSelPath);

    bool operator==(const UsdEditTarget& other) const;
    bool operator!=(const UsdEditTarget& other) const { return !(*this == other); }
    bool IsNull() const { return *this == UsdEditTarget(); }
    bool IsValid() const { return static_cast<bool>(_layer); }

    const SdfLayerHandle& GetLayer() const { return _layer; }
    /// Where the layer has, or would have, the spec for a path of the stage; empty when it cannot have one.
    SdfPath MapToSpecPath(const SdfPath& scenePath) const;
    SdfPrimSpecHandle GetPrimSpecForScenePath(const SdfPath& scenePath) const;
    SdfPropertySpecHandle GetPropertySpecForScenePath(const SdfPath& scenePath) const;
    SdfAttributeSpecHandle GetAttributeSpecForScenePath(const SdfPath& scenePath) const;
    SdfRelationshipSpecHandle GetRelationshipSpecForScenePath(const SdfPath& scenePath) const;
    SdfSpecHandle GetSpecForScenePath(const SdfPath& scenePath) const;
    const Usd_PathMapping& GetMapFunction() const { return _mapping; }

    /// This target, with what it leaves open taken from a weaker one.
    UsdEditTarget ComposeOver(const UsdEditTarget& weaker) const;

private:
    UsdEditTarget(const SdfLayerHandle& layer, const Usd_PathMapping& mapping);

    SdfLayerHandle _layer;
    Usd_PathMapping _mapping;
};

PXR_NAMESPACE_CLOSE_SCOPE
