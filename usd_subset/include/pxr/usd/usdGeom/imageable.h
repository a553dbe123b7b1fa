#pragma once

#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/usd/usd/timeCode.h>
#include <pxr/usd/usd/typed.h>
#include <pxr/usd/usdGeom/primvar.h>
#include <pxr/usd/usdGeom/tokens.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The base of everything that may be seen: visibility, purpose, bounds and the transform to world space.
class VESK_USD_API UsdGeomImageable : public UsdTyped
{
    VESK_USD_ABSTRACT_SCHEMA(UsdGeomImageable, UsdTyped)

    VESK_USD_SCHEMA_ATTR(Visibility, UsdGeomTokens->visibility)
    VESK_USD_SCHEMA_ATTR(Purpose, UsdGeomTokens->purpose)
    VESK_USD_SCHEMA_REL(ProxyPrim, UsdGeomTokens->proxyPrim)

    /// A prim's purpose, and whether prims below without an opinion of their own take it over.
    struct PurposeInfo
    {
        PurposeInfo() = default;
        PurposeInfo(const TfToken& purpose_, bool isInheritable_)
            : purpose(purpose_), isInheritable(isInheritable_)
        {}

        explicit operator bool() const { return !purpose.IsEmpty(); }
        bool operator==(const PurposeInfo& rhs) const
        {
            return purpose == rhs.purpose && isInheritable == rhs.isInheritable;
        }
        bool operator!=(const PurposeInfo& rhs) const { return !(*this == rhs); }
        /// The purpose where it is inheritable, else the empty token.
        TfToken GetInheritablePurpose() const { return isInheritable ? purpose : TfToken(); }

        TfToken purpose;
        bool isInheritable = false;
    };

    /// default, render, proxy, guide.
    static const TfTokenVector& GetOrderedPurposeTokens();

    /// Makes the prim visible: invisible ancestors become visible, and siblings on the way down invisible.
    void MakeVisible(const UsdTimeCode& time = UsdTimeCode::Default()) const;
    void MakeInvisible(const UsdTimeCode& time = UsdTimeCode::Default()) const;

    /// invisible where the prim or an ancestor is, else inherited.
    TfToken ComputeVisibility(const UsdTimeCode& time = UsdTimeCode::Default()) const;
    /// The attribute that hides the prims of one purpose; invalid for a purpose without one.
    UsdAttribute GetPurposeVisibilityAttr(const TfToken& purpose = UsdGeomTokens->default_) const;
    TfToken ComputeEffectiveVisibility(const TfToken& purpose = UsdGeomTokens->default_,
                                       const UsdTimeCode& time = UsdTimeCode::Default()) const;

    PurposeInfo ComputePurposeInfo() const;
    /// The same where the parent's answer is known.
    PurposeInfo ComputePurposeInfo(const PurposeInfo& parentPurposeInfo) const;
    TfToken ComputePurpose() const;

    UsdPrim ComputeProxyPrim(UsdPrim* renderPrim = nullptr) const;
    bool SetProxyPrim(const UsdPrim& proxy) const;
    bool SetProxyPrim(const UsdSchemaBase& proxy) const;

    /// Bounds of the prim and what is below it, for up to four purposes, with extents hints off.
    GfBBox3d ComputeWorldBound(const UsdTimeCode& time, const TfToken& purpose1 = TfToken(),
                               const TfToken& purpose2 = TfToken(), const TfToken& purpose3 = TfToken(),
                               const TfToken& purpose4 = TfToken()) const;
    GfBBox3d ComputeLocalBound(const UsdTimeCode& time, const TfToken& purpose1 = TfToken(),
                               const TfToken& purpose2 = TfToken(), const TfToken& purpose3 = TfToken(),
                               const TfToken& purpose4 = TfToken()) const;
    GfBBox3d ComputeUntransformedBound(const UsdTimeCode& time, const TfToken& purpose1 = TfToken(),
                                       const TfToken& purpose2 = TfToken(),
                                       const TfToken& purpose3 = TfToken(),
                                       const TfToken& purpose4 = TfToken()) const;

    GfMatrix4d ComputeLocalToWorldTransform(const UsdTimeCode& time) const;
    GfMatrix4d ComputeParentToWorldTransform(const UsdTimeCode& time) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
