#include <pxr/usd/usdGeom/primvarsAPI.h>

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/usd/property.h>

#include <algorithm>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

const std::string kPrefix = "primvars:";

bool _IsValid(const UsdPrim& prim)
{
    if (!prim) {
        TF_CODING_ERROR("There are no primvars on %s.", UsdDescribe(prim).c_str());
    }
    return bool(prim);
}

template <class Filter>
std::vector<UsdGeomPrimvar> _Collect(const std::vector<UsdProperty>& properties, const Filter& filter)
{
    std::vector<UsdGeomPrimvar> primvars;
    for (const UsdProperty& property : properties) {
        UsdGeomPrimvar primvar(property.As<UsdAttribute>());
        if (primvar && filter(primvar)) {
            primvars.push_back(std::move(primvar));
        }
    }
    return primvars;
}

bool _IsConstant(const UsdGeomPrimvar& primvar)
{
    return primvar.GetInterpolation() == UsdGeomTokens->constant;
}

/// Lays a prim's own primvars over inherited ones; true where that changed something. Unless all are
/// accepted, one that is not constant takes an inherited one of its name away.
bool _LayOver(const UsdPrim& prim, bool acceptAll, std::vector<UsdGeomPrimvar>* primvars)
{
    bool hasChanged = false;
    for (const UsdProperty& property : prim.GetAuthoredPropertiesInNamespace(kPrefix)) {
        const UsdGeomPrimvar own(property.As<UsdAttribute>());
        if (!own || !own.HasAuthoredValue()) {
            continue;
        }
        const bool isAccepted = acceptAll || _IsConstant(own);
        const auto it =
            std::find_if(primvars->begin(), primvars->end(), [&own](const UsdGeomPrimvar& inherited) {
                return inherited.GetName() == own.GetName();
            });
        if (it == primvars->end()) {
            if (isAccepted) {
                primvars->push_back(own);
                hasChanged = true;
            }
            continue;
        }
        hasChanged = true;
        if (isAccepted) {
            *it = own;
        } else {
            std::swap(*it, primvars->back());
            primvars->pop_back();
        }
    }
    return hasChanged;
}

std::vector<UsdGeomPrimvar> _CollectInherited(const UsdPrim& prim, bool acceptAllHere)
{
    std::vector<UsdPrim> chain;
    for (UsdPrim it = prim; it && !it.IsPseudoRoot(); it = it.GetParent()) {
        chain.push_back(it);
    }
    std::vector<UsdGeomPrimvar> primvars;
    for (size_t i = chain.size(); i-- > 0;) {
        _LayOver(chain[i], acceptAllHere && i == 0, &primvars);
    }
    return primvars;
}

} // namespace

UsdGeomPrimvar UsdGeomPrimvarsAPI::CreatePrimvar(const TfToken& name, const SdfValueTypeName& typeName,
                                                 const TfToken& interpolation, int elementSize) const
{
    const TfToken attrName = UsdGeomPrimvar::_MakeNamespaced(name);
    if (attrName.IsEmpty() || !_IsValid(GetPrim())) {
        return UsdGeomPrimvar();
    }
    UsdGeomPrimvar primvar(GetPrim().CreateAttribute(attrName, typeName, /*custom=*/false));
    if (primvar && !interpolation.IsEmpty()) {
        primvar.SetInterpolation(interpolation);
    }
    if (primvar && elementSize > 0) {
        primvar.SetElementSize(elementSize);
    }
    return primvar;
}

bool UsdGeomPrimvarsAPI::RemovePrimvar(const TfToken& name)
{
    UsdPrim prim = GetPrim();
    const TfToken attrName = UsdGeomPrimvar::_MakeNamespaced(name);
    if (attrName.IsEmpty() || !_IsValid(prim)) {
        return false;
    }
    const UsdGeomPrimvar primvar(prim.GetAttribute(attrName));
    if (!primvar) {
        return false;
    }
    const UsdAttribute indices = primvar.GetIndicesAttr();
    const bool indicesAreGone = !indices || prim.RemoveProperty(indices.GetName());
    return prim.RemoveProperty(attrName) && indicesAreGone;
}

void UsdGeomPrimvarsAPI::BlockPrimvar(const TfToken& name)
{
    const UsdGeomPrimvar primvar = GetPrimvar(name);
    if (primvar) {
        primvar.BlockIndices();
        primvar.GetAttr().Block();
    }
}

UsdGeomPrimvar UsdGeomPrimvarsAPI::GetPrimvar(const TfToken& name) const
{
    return UsdGeomPrimvar(GetPrim().GetAttribute(UsdGeomPrimvar::_MakeNamespaced(name)));
}

std::vector<UsdGeomPrimvar> UsdGeomPrimvarsAPI::GetPrimvars() const
{
    return _IsValid(GetPrim())
               ? _Collect(GetPrim().GetPropertiesInNamespace(kPrefix), [](const auto&) { return true; })
               : std::vector<UsdGeomPrimvar>();
}

std::vector<UsdGeomPrimvar> UsdGeomPrimvarsAPI::GetAuthoredPrimvars() const
{
    return _IsValid(GetPrim()) ? _Collect(GetPrim().GetAuthoredPropertiesInNamespace(kPrefix),
                                          [](const auto&) { return true; })
                               : std::vector<UsdGeomPrimvar>();
}

std::vector<UsdGeomPrimvar> UsdGeomPrimvarsAPI::GetPrimvarsWithValues() const
{
    return _IsValid(GetPrim()) ? _Collect(GetPrim().GetAuthoredPropertiesInNamespace(kPrefix),
                                          [](const UsdGeomPrimvar& primvar) { return primvar.HasValue(); })
                               : std::vector<UsdGeomPrimvar>();
}

std::vector<UsdGeomPrimvar> UsdGeomPrimvarsAPI::GetPrimvarsWithAuthoredValues() const
{
    return _IsValid(GetPrim())
               ? _Collect(GetPrim().GetAuthoredPropertiesInNamespace(kPrefix),
                          [](const UsdGeomPrimvar& primvar) { return primvar.HasAuthoredValue(); })
               : std::vector<UsdGeomPrimvar>();
}

std::vector<UsdGeomPrimvar> UsdGeomPrimvarsAPI::FindInheritablePrimvars() const
{
    return _IsValid(GetPrim()) ? _CollectInherited(GetPrim(), /*acceptAllHere=*/false)
                               : std::vector<UsdGeomPrimvar>();
}

std::vector<UsdGeomPrimvar> UsdGeomPrimvarsAPI::FindIncrementallyInheritablePrimvars(
    const std::vector<UsdGeomPrimvar>& inheritedFromAncestors) const
{
    std::vector<UsdGeomPrimvar> primvars = inheritedFromAncestors;
    const bool hasChanged = _IsValid(GetPrim()) && _LayOver(GetPrim(), /*acceptAll=*/false, &primvars);
    return hasChanged ? primvars : std::vector<UsdGeomPrimvar>();
}

UsdGeomPrimvar UsdGeomPrimvarsAPI::FindPrimvarWithInheritance(const TfToken& name) const
{
    if (!_IsValid(GetPrim())) {
        return UsdGeomPrimvar();
    }
    const UsdGeomPrimvar local = GetPrimvar(name);
    if (local.HasAuthoredValue()) {
        return local;
    }
    const TfToken attrName = UsdGeomPrimvar::_MakeNamespaced(name, /*quiet=*/true);
    for (UsdPrim prim = GetPrim().GetParent(); prim && !prim.IsPseudoRoot(); prim = prim.GetParent()) {
        const UsdGeomPrimvar primvar(prim.GetAttribute(attrName));
        if (primvar && primvar.HasAuthoredValue()) {
            return _IsConstant(primvar) ? primvar : UsdGeomPrimvar();
        }
    }
    return local;
}

UsdGeomPrimvar UsdGeomPrimvarsAPI::FindPrimvarWithInheritance(
    const TfToken& name, const std::vector<UsdGeomPrimvar>& inheritedFromAncestors) const
{
    if (!_IsValid(GetPrim())) {
        return UsdGeomPrimvar();
    }
    const UsdGeomPrimvar local = GetPrimvar(name);
    if (local.HasAuthoredValue()) {
        return local;
    }
    const TfToken attrName = UsdGeomPrimvar::_MakeNamespaced(name, /*quiet=*/true);
    for (const UsdGeomPrimvar& inherited : inheritedFromAncestors) {
        if (inherited.GetName() == attrName) {
            return inherited;
        }
    }
    return local;
}

std::vector<UsdGeomPrimvar> UsdGeomPrimvarsAPI::FindPrimvarsWithInheritance() const
{
    return _IsValid(GetPrim()) ? _CollectInherited(GetPrim(), /*acceptAllHere=*/true)
                               : std::vector<UsdGeomPrimvar>();
}

std::vector<UsdGeomPrimvar> UsdGeomPrimvarsAPI::FindPrimvarsWithInheritance(
    const std::vector<UsdGeomPrimvar>& inheritedFromAncestors) const
{
    std::vector<UsdGeomPrimvar> primvars = inheritedFromAncestors;
    if (_IsValid(GetPrim())) {
        _LayOver(GetPrim(), /*acceptAll=*/true, &primvars);
    }
    return primvars;
}

bool UsdGeomPrimvarsAPI::HasPrimvar(const TfToken& name) const
{
    const TfToken attrName = UsdGeomPrimvar::_MakeNamespaced(name, /*quiet=*/true);
    return _IsValid(GetPrim()) && !attrName.IsEmpty() &&
           UsdGeomPrimvar::IsPrimvar(GetPrim().GetAttribute(attrName));
}

bool UsdGeomPrimvarsAPI::HasPossiblyInheritedPrimvar(const TfToken& name) const
{
    const UsdGeomPrimvar primvar = FindPrimvarWithInheritance(name);
    return primvar && primvar.HasAuthoredValue();
}

bool UsdGeomPrimvarsAPI::CanContainPropertyName(const TfToken& name)
{
    return TfStringStartsWith(name.GetString(), kPrefix);
}

PXR_NAMESPACE_CLOSE_SCOPE
