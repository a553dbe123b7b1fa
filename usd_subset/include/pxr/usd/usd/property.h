#pragma once

#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/propertySpec.h>
#include <pxr/usd/usd/object.h>
#include <pxr/usd/usd/prim.h>

#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class UsdEditTarget;

/// What attributes and relationships have in common.
class VESK_USD_API UsdProperty : public UsdObject
{
public:
    UsdProperty() : UsdObject(UsdTypeProperty) {}

    /// The specs that hold opinions, strongest first.
    SdfPropertySpecHandleVector GetPropertyStack(UsdTimeCode time = UsdTimeCode::Default()) const;
    std::vector<std::pair<SdfPropertySpecHandle, SdfLayerOffset>>
    GetPropertyStackWithLayerOffsets(UsdTimeCode time = UsdTimeCode::Default()) const;

    TfToken GetBaseName() const;
    TfToken GetNamespace() const;
    std::vector<std::string> SplitName() const;

    std::string GetDisplayGroup() const;
    bool SetDisplayGroup(const std::string& displayGroup) const;
    bool ClearDisplayGroup() const;
    bool HasAuthoredDisplayGroup() const;
    std::vector<std::string> GetNestedDisplayGroups() const;
    bool SetNestedDisplayGroups(const std::vector<std::string>& nestedGroups) const;

    bool IsCustom() const;
    bool SetCustom(bool isCustom) const;
    /// Whether the prim's schema or an opinion declares the property as one of this kind.
    bool IsDefined() const;
    bool IsAuthored() const;
    bool IsAuthoredAt(const UsdEditTarget& editTarget) const;

protected:
    explicit UsdProperty(UsdObjType type) : UsdObject(type) {}
    UsdProperty(UsdObjType objType, const Usd_PrimDataHandle& prim, const SdfPath& proxyPrimPath,
                const TfToken& propName)
        : UsdObject(objType, prim, proxyPrimPath, propName)
    {}

    /// Composes target or connection paths; true when an opinion about them exists.
    bool _GetTargets(SdfSpecType specType, SdfPathVector* out) const;
    /// The path as it has to be written at the stage's edit target; empty with a reason when it cannot be.
    SdfPath _GetPathForAuthoring(const SdfPath& path, std::string* whyNot) const;

private:
    friend class UsdObject;
    friend class UsdPrim;
    friend class Usd_ObjectAccess;
};

PXR_NAMESPACE_CLOSE_SCOPE
