#include "inherited_state.h"

#include "material_binding.h"
#include "stage_reading.h"

#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usdGeom/xformable.h>

#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {

bool InheritedState::looksLike(const InheritedState& other) const
{
    return purpose == other.purpose && color == other.color && opacity == other.opacity &&
           material == other.material && materialIsStronger == other.materialIsStronger &&
           hasCollections == other.hasCollections;
}

bool StateReader::descend(const UsdPrim& prim, InheritedState& state) const
{
    static const TfToken visibility("visibility");
    static const TfToken invisible("invisible");
    TfToken value;
    const UsdAttribute attribute = prim.GetAttribute(visibility);
    if (attribute && attribute.Get(&value, m_time) && value == invisible) return false;
    _applyTransform(prim, state);
    _applyPurpose(prim, state);
    _applyPrimvars(prim, state);
    if (m_request.sceneMaterials) applyMaterialBinding(prim, state);
    return true;
}

std::optional<InheritedState> StateReader::above(const UsdPrim& prim) const
{
    std::vector<UsdPrim> ancestors;
    for (UsdPrim p = prim.GetParent(); p && !p.IsPseudoRoot(); p = p.GetParent())
        ancestors.push_back(p);
    InheritedState state;
    for (auto p = ancestors.rbegin(); p != ancestors.rend(); ++p) {
        if (!descend(*p, state)) return std::nullopt;
    }
    return state;
}

void StateReader::_applyTransform(const UsdPrim& prim, InheritedState& state) const
{
    const UsdGeomXformable xformable(prim);
    if (!xformable) return;
    GfMatrix4d local(1.0);
    bool resets = false;
    if (!xformable.GetLocalTransformation(&local, &resets, m_time)) return;
    state.toRoot = resets ? local : local * state.toRoot;
}

// An authored purpose holds for the prim and everything below it that authors none.
void StateReader::_applyPurpose(const UsdPrim& prim, InheritedState& state) const
{
    static const TfToken name("purpose");
    const UsdAttribute attribute = prim.GetAttribute(name);
    TfToken purpose;
    if (attribute && attribute.HasAuthoredValue() && attribute.Get(&purpose)) state.purpose = purpose;
}

bool StateReader::shows(const TfToken& purpose) const
{
    static const TfToken usual("default");
    static const TfToken proxy("proxy");
    static const TfToken render("render");
    return purpose.IsEmpty() || purpose == usual || purpose == (m_request.proxyPurpose ? proxy : render);
}

void StateReader::_applyPrimvars(const UsdPrim& prim, InheritedState& state) const
{
    const Primvar<Vec3> color = readVectorPrimvar(prim, "primvars:displayColor", m_time);
    if (color.interpolation == Interpolation::Constant) state.color = color.values[0];
    const Primvar<float> opacity = readFloatPrimvar(prim, "primvars:displayOpacity", m_time);
    if (opacity.interpolation == Interpolation::Constant) state.opacity = opacity.values[0];
}

} // namespace vesk::renderers::embree
