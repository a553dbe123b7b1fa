#pragma once

#include <pxr/pxr.h>
#include <pxr/usd/usd/common.h>

#include <cstddef>

PXR_NAMESPACE_OPEN_SCOPE

/// Puts an item at the front or back of a list that is edited: of the explicit list where there is one, else
/// of the prepended or appended items. An item that the list has already moves there.
template <class ListEditor, class Item>
void Usd_InsertListItem(ListEditor editor, const Item& item, UsdListPosition position)
{
    const bool isPrepended =
        position == UsdListPositionFrontOfPrependList || position == UsdListPositionBackOfPrependList;
    const bool isAtFront =
        position == UsdListPositionFrontOfPrependList || position == UsdListPositionFrontOfAppendList;
    auto list = editor.IsExplicit() ? editor.GetExplicitItems()
                : isPrepended       ? editor.GetPrependedItems()
                                    : editor.GetAppendedItems();
    const size_t found = list.Find(item);
    if (found != static_cast<size_t>(-1)) {
        if (found == (isAtFront ? 0 : list.size() - 1)) {
            return;
        }
        list.Erase(found);
    }
    list.Insert(isAtFront ? 0 : -1, item);
}

PXR_NAMESPACE_CLOSE_SCOPE
