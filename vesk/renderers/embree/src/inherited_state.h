#pragma once

#include "geometry.h"
#include "scene_snapshot.h"

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/tf/token.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>

#include <optional>

namespace vesk::renderers::embree {

/// What a prim hands down to its children.
struct InheritedState
{
    PXR_NS::GfMatrix4d toRoot{1.0}; ///< to the world, or to the space of the prototype
    PXR_NS::TfToken purpose;        ///< the nearest authored one, empty while there is none
    std::optional<Vec3> color;      ///< a constant display colour
    std::optional<float> opacity;   ///< a constant display opacity
    PXR_NS::SdfPath material;       ///< the bound material
    bool materialIsStronger = false;
    bool hasCollections = false; ///< bindings by collection lie above: they are worked out prim by prim

    /// Whether what is drawn below looks the same, wherever it lies.
    bool looksLike(const InheritedState& other) const;
};

/// Turns what a prim inherits into what it hands down.
class StateReader
{
public:
    StateReader(const ExtractionRequest& request, PXR_NS::UsdTimeCode time) : m_request(request), m_time(time)
    {}

    /// Adds a prim's own opinions. \param state what its parent hands down
    /// Returns false where the prim is invisible, and so is everything below it.
    bool descend(const PXR_NS::UsdPrim& prim, InheritedState& state) const;

    /// What the parent of a prim hands down, worked out from the root; nothing where it is invisible.
    std::optional<InheritedState> above(const PXR_NS::UsdPrim& prim) const;

    /// Whether prims of a purpose are drawn.
    bool shows(const PXR_NS::TfToken& purpose) const;

private:
    void _applyTransform(const PXR_NS::UsdPrim& prim, InheritedState& state) const;
    void _applyPurpose(const PXR_NS::UsdPrim& prim, InheritedState& state) const;
    void _applyPrimvars(const PXR_NS::UsdPrim& prim, InheritedState& state) const;

    ExtractionRequest m_request;
    PXR_NS::UsdTimeCode m_time;
};

} // namespace vesk::renderers::embree
