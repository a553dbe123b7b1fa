#include <pxr/usd/usd/primCursor.h>

#include "pxr/usd/usd/stageImpl.h"

PXR_NAMESPACE_OPEN_SCOPE

bool Usd_PrimCursor::MoveToChild(const Usd_PrimFlagsPredicate& predicate)
{
    if (!_prim) {
        return false;
    }
    const bool isInstance = _prim->IsInstance();
    const Usd_PrimDataConstPtr source = isInstance ? _prim->GetPrototype() : _prim;
    const Usd_PrimDataConstPtr child = source ? source->GetFirstChild() : nullptr;
    if (!child) {
        return false;
    }
    SdfPath proxyPath;
    if (isInstance || !_proxyPath.IsEmpty()) {
        proxyPath = (_proxyPath.IsEmpty() ? _prim->GetPath() : _proxyPath).AppendChild(child->GetName());
    }
    Usd_PrimCursor moved(child, proxyPath);
    if (!moved.Matches(predicate) && !moved.MoveToNextSibling(predicate)) {
        return false;
    }
    *this = moved;
    return true;
}

bool Usd_PrimCursor::MoveToNextSibling(const Usd_PrimFlagsPredicate& predicate)
{
    const bool isProxy = !_proxyPath.IsEmpty();
    for (Usd_PrimDataConstPtr next = _prim ? _prim->GetNextSibling() : nullptr; next;
         next = next->GetNextSibling()) {
        if (predicate._Eval(next->GetFlags(), isProxy)) {
            if (isProxy) {
                _proxyPath = _proxyPath.ReplaceName(next->GetName());
            }
            _prim = next;
            return true;
        }
    }
    return false;
}

void Usd_PrimCursor::MoveToParent()
{
    const Usd_PrimDataConstPtr parent = _prim->GetParent();
    if (_proxyPath.IsEmpty() || !parent) {
        _prim = parent;
        return;
    }
    _proxyPath = _proxyPath.GetParentPath();
    if (!parent->IsPrototype()) {
        _prim = parent;
        return;
    }
    const UsdPrim instance = Usd_StageImpl::Of(*parent->GetStage()).GetPrimOrProxy(_proxyPath);
    *this =
        Usd_PrimCursor(Usd_ObjectAccess::GetDataOrNull(instance), Usd_ObjectAccess::GetProxyPath(instance));
}

PXR_NAMESPACE_CLOSE_SCOPE
