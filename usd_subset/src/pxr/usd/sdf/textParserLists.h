#pragma once

/// How the reader puts lists of items into list ops.

#include "pxr/usd/sdf/textParser.h"

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

/// Says whether an item is in a list twice.
template <class Item>
bool Sdf_HasDuplicates(const std::vector<Item>& items)
{
    // Most lists are short or sorted.
    const auto less = [](const Item& a, const Item& b) { return a < b; };
    if (std::adjacent_find(items.begin(), items.end(),
                           [&](const Item& a, const Item& b) { return !less(a, b); }) == items.end()) {
        return false;
    }
    std::vector<const Item*> sorted;
    sorted.reserve(items.size());
    for (const Item& item : items) {
        sorted.push_back(&item);
    }
    std::sort(sorted.begin(), sorted.end(), [&](const Item* a, const Item* b) { return less(*a, *b); });
    return std::adjacent_find(sorted.begin(), sorted.end(),
                              [](const Item* a, const Item* b) { return *a == *b; }) != sorted.end();
}

template <class Item, class ReadItem>
void Sdf_TextParser::_ParseListOp(const TfToken& field, SdfListOpType op, const _Spec& spec, const char* what,
                                  const ReadItem& readItem)
{
    const size_t offset = _s.Offset();
    std::vector<Item> items;
    if (_s.Peek() == '[') {
        _s.List('[', ']', what, [&] { items.push_back(readItem()); });
    } else if (!_s.AcceptKeyword("None")) {
        items.push_back(readItem());
    }
    if (items.empty() && op != SdfListOpTypeExplicit) {
        _s.Fail(offset, "an empty list", "at least one item, as only a plain list may be empty");
    }
    if (Sdf_HasDuplicates(items)) {
        _s.Fail(offset, "a list that names an item twice", "each item once");
    }
    auto listOp = spec.fields.GetAs<SdfListOp<Item>>(field);
    listOp.SetItems(items, op);
    spec.fields.Set(field, std::move(listOp));
}

PXR_NAMESPACE_CLOSE_SCOPE
