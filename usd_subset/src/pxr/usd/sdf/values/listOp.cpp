#include <pxr/usd/sdf/listOp.h>

#include "pxr/usd/sdf/values/listOpEditor.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/tf/type.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/sdf/reference.h>
#include <pxr/usd/sdf/types.h>

#include <algorithm>
#include <ostream>
#include <unordered_set>

PXR_NAMESPACE_OPEN_SCOPE

TF_REGISTRY_FUNCTION(TfType)
{
    const TfType root = TfType::GetRoot();
    TfType::Define<SdfTokenListOp>().Alias(root, "SdfTokenListOp");
    TfType::Define<SdfPathListOp>().Alias(root, "SdfPathListOp");
    TfType::Define<SdfStringListOp>().Alias(root, "SdfStringListOp");
    TfType::Define<SdfReferenceListOp>().Alias(root, "SdfReferenceListOp");
    TfType::Define<SdfPayloadListOp>().Alias(root, "SdfPayloadListOp");
    TfType::Define<SdfIntListOp>().Alias(root, "SdfIntListOp");
    TfType::Define<SdfUIntListOp>().Alias(root, "SdfUIntListOp");
    TfType::Define<SdfInt64ListOp>().Alias(root, "SdfInt64ListOp");
    TfType::Define<SdfUInt64ListOp>().Alias(root, "SdfUInt64ListOp");
    TfType::Define<SdfUnregisteredValueListOp>().Alias(root, "SdfUnregisteredValueListOp");
    TfType::Define<SdfListOpType>();
}

TF_REGISTRY_FUNCTION(TfEnum)
{
    TF_ADD_ENUM_NAME(SdfListOpTypeExplicit);
    TF_ADD_ENUM_NAME(SdfListOpTypeAdded);
    TF_ADD_ENUM_NAME(SdfListOpTypePrepended);
    TF_ADD_ENUM_NAME(SdfListOpTypeAppended);
    TF_ADD_ENUM_NAME(SdfListOpTypeDeleted);
    TF_ADD_ENUM_NAME(SdfListOpTypeOrdered);
}

template <>
struct Sdf_ListOpItemLess<SdfUnregisteredValue>
{
    struct Type
    {
        bool operator()(const SdfUnregisteredValue& a, const SdfUnregisteredValue& b) const
        {
            const size_t hashA = hash_value(a), hashB = hash_value(b);
            return hashA != hashB ? hashA < hashB : a != b && TfStringify(a) < TfStringify(b);
        }
    };
};

namespace {

template <class T>
bool Contains(const std::vector<T>& items, const T& item)
{
    return std::find(items.begin(), items.end(), item) != items.end();
}

template <class T>
void RemoveFrom(std::vector<T>* items, const T& item)
{
    items->erase(std::remove(items->begin(), items->end(), item), items->end());
}

/// Returns the items as the callback maps them, without those that it drops.
template <class T>
std::vector<T> Mapped(const SdfListOp<T>& op, SdfListOpType type,
                      const typename SdfListOp<T>::ApplyCallback& callback)
{
    const std::vector<T>& items = op.GetItems(type);
    if (!callback) {
        return items;
    }
    std::vector<T> mapped;
    mapped.reserve(items.size());
    for (const T& item : items) {
        if (std::optional<T> result = callback(type, item)) {
            mapped.push_back(std::move(*result));
        }
    }
    return mapped;
}

template <class T>
bool Modify(std::vector<T>* items, const typename SdfListOp<T>::ModifyCallback& callback,
            bool removeDuplicates)
{
    bool changed = false;
    std::vector<T> modified;
    std::unordered_set<T, TfHash> seen;
    for (const T& item : *items) {
        std::optional<T> result = callback(item);
        if (result && removeDuplicates && !seen.insert(*result).second) {
            result.reset();
        }
        changed = changed || !result || !(*result == item);
        if (result) {
            modified.push_back(std::move(*result));
        }
    }
    if (changed) {
        items->swap(modified);
    }
    return changed;
}

} // namespace

template <typename T>
SdfListOp<T> SdfListOp<T>::CreateExplicit(const ItemVector& explicitItems)
{
    SdfListOp op;
    op.SetExplicitItems(explicitItems);
    return op;
}

template <typename T>
SdfListOp<T> SdfListOp<T>::Create(const ItemVector& prependedItems, const ItemVector& appendedItems,
                                  const ItemVector& deletedItems)
{
    SdfListOp op;
    op._prependedItems = prependedItems;
    op._appendedItems = appendedItems;
    op._deletedItems = deletedItems;
    return op;
}

template <typename T>
void SdfListOp<T>::Swap(SdfListOp& rhs)
{
    std::swap(_isExplicit, rhs._isExplicit);
    _explicitItems.swap(rhs._explicitItems);
    _addedItems.swap(rhs._addedItems);
    _prependedItems.swap(rhs._prependedItems);
    _appendedItems.swap(rhs._appendedItems);
    _deletedItems.swap(rhs._deletedItems);
    _orderedItems.swap(rhs._orderedItems);
}

template <typename T>
bool SdfListOp<T>::HasItem(const T& item) const
{
    return Contains(_explicitItems, item) || Contains(_addedItems, item) || Contains(_prependedItems, item) ||
           Contains(_appendedItems, item) || Contains(_deletedItems, item) || Contains(_orderedItems, item);
}

template <typename T>
typename SdfListOp<T>::ItemVector& SdfListOp<T>::_Items(SdfListOpType type)
{
    switch (type) {
    case SdfListOpTypeExplicit:
        return _explicitItems;
    case SdfListOpTypeAdded:
        return _addedItems;
    case SdfListOpTypePrepended:
        return _prependedItems;
    case SdfListOpTypeAppended:
        return _appendedItems;
    case SdfListOpTypeDeleted:
        return _deletedItems;
    case SdfListOpTypeOrdered:
        return _orderedItems;
    }
    TF_CODING_ERROR("Got out-of-range type value: %d", int(type));
    return _explicitItems;
}

template <typename T>
const typename SdfListOp<T>::ItemVector& SdfListOp<T>::GetItems(SdfListOpType type) const
{
    return const_cast<SdfListOp*>(this)->_Items(type);
}

template <typename T>
typename SdfListOp<T>::ItemVector SdfListOp<T>::GetAppliedItems() const
{
    ItemVector items;
    ApplyOperations(&items);
    return items;
}

template <typename T>
void SdfListOp<T>::_SetExplicit(bool isExplicit)
{
    if (isExplicit != _isExplicit) {
        *this = SdfListOp();
        _isExplicit = isExplicit;
    }
}

template <typename T>
void SdfListOp<T>::SetItems(const ItemVector& items, SdfListOpType type)
{
    // The items may be this op's own.
    ItemVector kept = items;
    _SetExplicit(type == SdfListOpTypeExplicit);
    _Items(type) = std::move(kept);
}

template <typename T>
void SdfListOp<T>::SetExplicitItems(const ItemVector& items)
{
    SetItems(items, SdfListOpTypeExplicit);
}
template <typename T>
void SdfListOp<T>::SetAddedItems(const ItemVector& items)
{
    SetItems(items, SdfListOpTypeAdded);
}
template <typename T>
void SdfListOp<T>::SetPrependedItems(const ItemVector& items)
{
    SetItems(items, SdfListOpTypePrepended);
}
template <typename T>
void SdfListOp<T>::SetAppendedItems(const ItemVector& items)
{
    SetItems(items, SdfListOpTypeAppended);
}
template <typename T>
void SdfListOp<T>::SetDeletedItems(const ItemVector& items)
{
    SetItems(items, SdfListOpTypeDeleted);
}
template <typename T>
void SdfListOp<T>::SetOrderedItems(const ItemVector& items)
{
    SetItems(items, SdfListOpTypeOrdered);
}

template <typename T>
void SdfListOp<T>::Clear()
{
    *this = SdfListOp();
}

template <typename T>
void SdfListOp<T>::ClearAndMakeExplicit()
{
    *this = CreateExplicit();
}

template <typename T>
void SdfListOp<T>::ApplyOperations(ItemVector* vec, const ApplyCallback& callback) const
{
    if (!vec) {
        return;
    }
    if (_isExplicit) {
        Sdf_ListOpEditor<T> editor;
        editor.addMissing(Mapped(*this, SdfListOpTypeExplicit, callback));
        *vec = editor.items();
        return;
    }
    if (!callback && !HasKeys()) {
        return;
    }
    Sdf_ListOpEditor<T> editor(*vec);
    editor.remove(Mapped(*this, SdfListOpTypeDeleted, callback));
    editor.addMissing(Mapped(*this, SdfListOpTypeAdded, callback));
    editor.prepend(Mapped(*this, SdfListOpTypePrepended, callback));
    editor.append(Mapped(*this, SdfListOpTypeAppended, callback));
    editor.reorder(Mapped(*this, SdfListOpTypeOrdered, callback));
    *vec = editor.items();
}

template <typename T>
std::optional<SdfListOp<T>> SdfListOp<T>::ApplyOperations(const SdfListOp& inner) const
{
    if (_isExplicit) {
        return *this;
    }
    if (!_addedItems.empty() || !_orderedItems.empty()) {
        return std::nullopt;
    }
    if (inner._isExplicit) {
        ItemVector items = inner._explicitItems;
        ApplyOperations(&items);
        return CreateExplicit(items);
    }
    if (!inner._addedItems.empty() || !inner._orderedItems.empty()) {
        return std::nullopt;
    }
    SdfListOp result = inner;
    const auto takeOut = [&result](const T& item, bool alsoDeleted) {
        RemoveFrom(&result._prependedItems, item);
        RemoveFrom(&result._appendedItems, item);
        if (alsoDeleted) {
            RemoveFrom(&result._deletedItems, item);
        }
    };
    for (const T& item : _deletedItems) {
        takeOut(item, false);
        if (!Contains(result._deletedItems, item)) {
            result._deletedItems.push_back(item);
        }
    }
    for (const T& item : _prependedItems) {
        takeOut(item, true);
    }
    result._prependedItems.insert(result._prependedItems.begin(), _prependedItems.begin(),
                                  _prependedItems.end());
    for (const T& item : _appendedItems) {
        takeOut(item, true);
    }
    result._appendedItems.insert(result._appendedItems.end(), _appendedItems.begin(), _appendedItems.end());
    return result;
}

template <typename T>
bool SdfListOp<T>::ModifyOperations(const ModifyCallback& callback, bool removeDuplicates)
{
    bool changed = false;
    if (callback) {
        for (ItemVector* items : {&_explicitItems, &_addedItems, &_prependedItems, &_appendedItems,
                                  &_deletedItems, &_orderedItems}) {
            changed = Modify<T>(items, callback, removeDuplicates) || changed;
        }
    }
    return changed;
}

template <typename T>
bool SdfListOp<T>::ReplaceOperations(SdfListOpType op, size_t index, size_t n, const ItemVector& newItems)
{
    const bool switchesMode = _isExplicit != (op == SdfListOpTypeExplicit);
    if (switchesMode && (n > 0 || newItems.empty())) {
        return false;
    }
    ItemVector items = GetItems(op);
    if (index > items.size() || n > items.size() - index) {
        TF_CODING_ERROR("Invalid range of %zu items from %zu (size is %zu)", n, index, items.size());
        return false;
    }
    const auto first = items.erase(items.begin() + index, items.begin() + index + n);
    items.insert(first, newItems.begin(), newItems.end());
    SetItems(items, op);
    return true;
}

template <typename T>
void SdfListOp<T>::ComposeOperations(const SdfListOp& stronger, SdfListOpType op)
{
    const ItemVector& items = stronger.GetItems(op);
    if (op == SdfListOpTypeExplicit) {
        SetItems(items, op);
        return;
    }
    Sdf_ListOpEditor<T> editor(GetItems(op));
    switch (op) {
    case SdfListOpTypePrepended:
        editor.prepend(items);
        break;
    case SdfListOpTypeAppended:
        editor.append(items);
        break;
    case SdfListOpTypeOrdered:
        editor.addMissing(items);
        editor.reorder(items);
        break;
    default:
        editor.addMissing(items);
        break;
    }
    SetItems(editor.items(), op);
}

template <class ItemType>
void SdfApplyListOrdering(std::vector<ItemType>* list, const std::vector<ItemType>& order)
{
    if (!order.empty() && !list->empty()) {
        Sdf_ListOpEditor<ItemType> editor(*list);
        editor.reorder(order);
        *list = editor.items();
    }
}

namespace {

template <class T>
void StreamItems(std::ostream& out, const char* name, const std::vector<T>& items, const char** separator)
{
    out << *separator << name << " Items: [";
    *separator = ", ";
    for (size_t i = 0; i != items.size(); ++i) {
        out << (i ? ", " : "") << items[i];
    }
    out << "]";
}

} // namespace

template <typename T>
std::ostream& operator<<(std::ostream& out, const SdfListOp<T>& op)
{
    const std::vector<std::string> names = TfType::GetRoot().GetAliases(TfType::Find<SdfListOp<T>>());
    out << (names.empty() ? std::string("SdfListOp") : names.front()) << "(";
    const char* separator = "";
    if (op.IsExplicit()) {
        StreamItems(out, "Explicit", op.GetExplicitItems(), &separator);
    }
    const std::pair<const char*, SdfListOpType> lists[] = {{"Deleted", SdfListOpTypeDeleted},
                                                           {"Added", SdfListOpTypeAdded},
                                                           {"Prepended", SdfListOpTypePrepended},
                                                           {"Appended", SdfListOpTypeAppended},
                                                           {"Ordered", SdfListOpTypeOrdered}};
    for (const auto& [name, type] : lists) {
        if (!op.GetItems(type).empty()) {
            StreamItems(out, name, op.GetItems(type), &separator);
        }
    }
    return out << ")";
}

#define SDF_INSTANTIATE_LIST_OP(T)                                                                           \
    template class VESK_USD_API SdfListOp<T>;                                                                \
    template VESK_USD_API std::ostream& operator<<(std::ostream&, const SdfListOp<T>&);

SDF_INSTANTIATE_LIST_OP(int)
SDF_INSTANTIATE_LIST_OP(unsigned int)
SDF_INSTANTIATE_LIST_OP(int64_t)
SDF_INSTANTIATE_LIST_OP(uint64_t)
SDF_INSTANTIATE_LIST_OP(std::string)
SDF_INSTANTIATE_LIST_OP(TfToken)
SDF_INSTANTIATE_LIST_OP(SdfUnregisteredValue)
SDF_INSTANTIATE_LIST_OP(SdfPath)
SDF_INSTANTIATE_LIST_OP(SdfReference)
SDF_INSTANTIATE_LIST_OP(SdfPayload)

template VESK_USD_API void SdfApplyListOrdering(std::vector<std::string>*, const std::vector<std::string>&);
template VESK_USD_API void SdfApplyListOrdering(std::vector<TfToken>*, const std::vector<TfToken>&);

PXR_NAMESPACE_CLOSE_SCOPE
