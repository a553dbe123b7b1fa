#include <pxr/usd/usd/primRange.h>

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/usd/stage.h>

PXR_NAMESPACE_OPEN_SCOPE

UsdPrimRange::UsdPrimRange(const UsdPrim& start, const Usd_PrimFlagsPredicate& predicate)
    : _begin(start._Cursor()), _predicate(_begin ? _begin.PredicateForTraversal(predicate) : predicate)
{
    if (_begin && !_begin.Matches(_predicate)) {
        _begin = Usd_PrimCursor();
    }
}

UsdPrimRange UsdPrimRange::Stage(const UsdStagePtr& stage, const Usd_PrimFlagsPredicate& predicate)
{
    UsdPrimRange range(stage->GetPseudoRoot(), predicate);
    if (!range.empty()) {
        range.increment_begin();
    }
    return range;
}

void UsdPrimRange::iterator::PruneChildren()
{
    if (_isPost) {
        TF_CODING_ERROR("Cannot prune children during post-visit (prim <%s>).", (**this).GetPath().GetText());
        return;
    }
    _pruneChildren = true;
}

void UsdPrimRange::iterator::_Increment()
{
    if (!_isPost) {
        const bool enters = !_pruneChildren && _cursor.MoveToChild(_range->_predicate);
        _pruneChildren = false;
        if (enters) {
            ++_depth;
            return;
        }
        if (_range->_postOrder) {
            _isPost = true;
            return;
        }
    }
    while (_LeavePrim()) {
    }
}

// Steps on from a prim that is done with all below it; true when the prim that is reached is done, too.
bool UsdPrimRange::iterator::_LeavePrim()
{
    _isPost = false;
    if (_depth == 0) {
        _cursor = Usd_PrimCursor();
        return false;
    }
    if (_cursor.MoveToNextSibling(_range->_predicate)) {
        return false;
    }
    _cursor.MoveToParent();
    --_depth;
    _isPost = _range->_postOrder;
    return !_isPost;
}

PXR_NAMESPACE_CLOSE_SCOPE
