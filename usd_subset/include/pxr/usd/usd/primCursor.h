#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/primData.h>
#include <pxr/usd/usd/primFlags.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A place in the tree of prims that a predicate lets through. Inside an instance the prims are those of its
/// prototype, and the proxy path says where in the scene they appear.
class Usd_PrimCursor
{
public:
    Usd_PrimCursor() = default;
    Usd_PrimCursor(Usd_PrimDataConstPtr prim, const SdfPath& proxyPath) : _prim(prim), _proxyPath(proxyPath)
    {}

    Usd_PrimDataConstPtr GetPrim() const { return _prim; }
    const SdfPath& GetProxyPath() const { return _proxyPath; }
    explicit operator bool() const { return _prim; }

    /// Whether the predicate lets this prim through.
    bool Matches(const Usd_PrimFlagsPredicate& predicate) const
    {
        return predicate._Eval(_prim->GetFlags(), !_proxyPath.IsEmpty());
    }

    /// Steps to the first child that matches; false, staying in place, when there is none.
    VESK_USD_API bool MoveToChild(const Usd_PrimFlagsPredicate& predicate);
    /// Steps to the next sibling that matches; false, staying in place, when there is none.
    VESK_USD_API bool MoveToNextSibling(const Usd_PrimFlagsPredicate& predicate);
    /// Steps to the parent: of the top of a prototype's content, the instance that it appears in.
    VESK_USD_API void MoveToParent();

    /// The predicate for a traversal that begins at the cursor: instances stay closed unless it asks for
    /// their content or the start lies in one.
    Usd_PrimFlagsPredicate PredicateForTraversal(Usd_PrimFlagsPredicate predicate) const
    {
        if (_proxyPath.IsEmpty() && !predicate.IncludeInstanceProxiesInTraversal()) {
            predicate.TraverseInstanceProxies(false);
        }
        return predicate;
    }

    friend bool operator==(const Usd_PrimCursor& a, const Usd_PrimCursor& b)
    {
        return a._prim == b._prim && a._proxyPath == b._proxyPath;
    }
    friend bool operator!=(const Usd_PrimCursor& a, const Usd_PrimCursor& b) { return !(a == b); }

private:
    Usd_PrimDataConstPtr _prim = nullptr;
    SdfPath _proxyPath;
};

PXR_NAMESPACE_CLOSE_SCOPE
