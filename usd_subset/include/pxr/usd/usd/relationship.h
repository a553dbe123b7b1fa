#pragma once

#include <pxr/usd/usd/property.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

typedef std::vector<UsdRelationship> UsdRelationshipVector;

/// A property that points at other objects.
class VESK_USD_API UsdRelationship : public UsdProperty
{
public:
    UsdRelationship() : UsdProperty(UsdTypeRelationship) {}

    bool AddTarget(const SdfPath& target, UsdListPosition position = UsdListPositionBackOfPrependList) const;
    bool RemoveTarget(const SdfPath& target) const;
    bool SetTargets(const SdfPathVector& targets) const;
    bool ClearTargets(bool removeSpec) const;

    /// The composed targets; true when an opinion about them exists, even one of no targets.
    bool GetTargets(SdfPathVector* targets) const;
    /// The targets, where a target that is a relationship stands for its own targets.
    bool GetForwardedTargets(SdfPathVector* targets) const;
    bool HasAuthoredTargets() const;

private:
    friend class UsdObject;
    friend class UsdPrim;
    friend class Usd_ObjectAccess;

    UsdRelationship(UsdObjType objType, const Usd_PrimDataHandle& prim, const SdfPath& proxyPrimPath,
                    const TfToken& propName)
        : UsdProperty(objType, prim, proxyPrimPath, propName)
    {}

    bool _GetForwardedTargets(SdfPathSet* visited, SdfPathSet* unique, SdfPathVector* targets,
                              bool* hasErrors) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
