#pragma once

/// A list-op field (references, payloads, inherits, targets, ...) edited in place.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/listProxy.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// The six lists of a list-op field and the usual ways to edit them; every change is written to the layer at
/// once.
template <class _TypePolicy>
class SdfListEditorProxy
{
public:
    typedef _TypePolicy TypePolicy;
    typedef SdfListEditorProxy<TypePolicy> This;
    typedef SdfListProxy<TypePolicy> ListProxy;
    typedef typename TypePolicy::value_type value_type;
    typedef std::vector<value_type> value_vector_type;
    typedef std::function<std::optional<value_type>(SdfListOpType, const value_type&)> ApplyCallback;
    typedef std::function<std::optional<value_type>(const value_type&)> ModifyCallback;

    SdfListEditorProxy() = default;
    explicit SdfListEditorProxy(const std::shared_ptr<Sdf_ListEditor<TypePolicy>>& listEditor)
        : _editor(listEditor)
    {}

    bool IsExpired() const { return _editor && _editor->IsExpired(); }
    bool IsExplicit() const { return !_Valid() || _editor->IsExplicit(); }
    bool IsOrderedOnly() const { return _Valid() && _editor->IsOrderedOnly(); }
    /// Says whether the field has any edit, an explicit empty list included.
    bool HasKeys() const { return !_Valid() || _editor->HasKeys(); }

    void ApplyEditsToList(value_vector_type* items) const { ApplyEditsToList(items, ApplyCallback()); }
    template <class CB>
    void ApplyEditsToList(value_vector_type* items, CB callback) const
    {
        if (_Valid()) {
            _editor->ApplyEditsToList(items, ApplyCallback(callback));
        }
    }
    bool CopyItems(const This& other)
    {
        return _Valid() && other._Valid() && _editor->CopyEdits(*other._editor);
    }
    bool ClearEdits() { return _Valid() && _editor->ClearEdits(); }
    bool ClearEditsAndMakeExplicit() { return _Valid() && _editor->ClearEditsAndMakeExplicit(); }
    /// Replaces each item by what the callback returns for it, and drops those for which it returns nothing.
    template <class CB>
    void ModifyItemEdits(CB callback)
    {
        if (_Valid()) {
            _editor->ModifyItemEdits(ModifyCallback(callback));
        }
    }
    bool ContainsItemEdit(const value_type& item, bool onlyAddOrExplicit = false) const
    {
        bool found = _Has(SdfListOpTypeExplicit, item) || _Has(SdfListOpTypeAdded, item) ||
                     _Has(SdfListOpTypePrepended, item) || _Has(SdfListOpTypeAppended, item);
        if (!onlyAddOrExplicit) {
            found = found || _Has(SdfListOpTypeDeleted, item) || _Has(SdfListOpTypeOrdered, item);
        }
        return found;
    }
    void RemoveItemEdits(const value_type& item)
    {
        SdfChangeBlock block;
        for (SdfListOpType op : _AllOps()) {
            _List(op).Remove(item);
        }
    }
    void ReplaceItemEdits(const value_type& oldItem, const value_type& newItem)
    {
        SdfChangeBlock block;
        for (SdfListOpType op : _AllOps()) {
            _List(op).Replace(oldItem, newItem);
        }
    }

    ListProxy GetExplicitItems() const { return _List(SdfListOpTypeExplicit); }
    ListProxy GetAddedItems() const { return _List(SdfListOpTypeAdded); }
    ListProxy GetPrependedItems() const { return _List(SdfListOpTypePrepended); }
    ListProxy GetAppendedItems() const { return _List(SdfListOpTypeAppended); }
    ListProxy GetDeletedItems() const { return _List(SdfListOpTypeDeleted); }
    ListProxy GetOrderedItems() const { return _List(SdfListOpTypeOrdered); }
    value_vector_type GetAddedOrExplicitItems() const { return GetAppliedItems(); }
    value_vector_type GetAppliedItems() const
    {
        value_vector_type items;
        ApplyEditsToList(&items);
        return items;
    }

    void Add(const value_type& item)
    {
        if (!_CanEdit()) {
            return;
        }
        if (_editor->IsExplicit()) {
            _AddIfMissing(SdfListOpTypeExplicit, item);
        } else {
            GetDeletedItems().Remove(item);
            _AddIfMissing(SdfListOpTypeAdded, item);
        }
    }
    void Prepend(const value_type& item)
    {
        if (_CanEdit()) {
            _Insert(SdfListOpTypePrepended, item, true);
        }
    }
    void Append(const value_type& item)
    {
        if (_CanEdit()) {
            _Insert(SdfListOpTypeAppended, item, false);
        }
    }
    /// Takes the item out; where the list is not explicit it is also listed as deleted.
    void Remove(const value_type& item)
    {
        if (_Valid() && _editor->IsExplicit()) {
            GetExplicitItems().Remove(item);
        } else if (_CanEdit()) {
            Erase(item);
            _AddIfMissing(SdfListOpTypeDeleted, item);
        }
    }
    /// Takes the item out without listing it as deleted.
    void Erase(const value_type& item)
    {
        if (!_CanEdit()) {
            return;
        }
        if (_editor->IsExplicit()) {
            GetExplicitItems().Remove(item);
            return;
        }
        GetAddedItems().Remove(item);
        GetPrependedItems().Remove(item);
        GetAppendedItems().Remove(item);
    }

    explicit operator bool() const { return _Valid(); }

private:
    static std::vector<SdfListOpType> _AllOps()
    {
        return {SdfListOpTypeExplicit, SdfListOpTypeAdded,   SdfListOpTypePrepended,
                SdfListOpTypeAppended, SdfListOpTypeDeleted, SdfListOpTypeOrdered};
    }
    bool _Valid() const { return _editor && _editor->IsValid(); }
    bool _CanEdit() const { return _Valid() && !_editor->IsOrderedOnly(); }
    ListProxy _List(SdfListOpType op) const { return ListProxy(_editor, op); }
    bool _Has(SdfListOpType op, const value_type& item) const
    {
        return _List(op).Find(item) != ListProxy::invalidIndex;
    }
    void _AddIfMissing(SdfListOpType op, const value_type& item)
    {
        if (!_Has(op, item)) {
            _List(op).push_back(item);
        }
    }
    void _Insert(SdfListOpType op, const value_type& item, bool front)
    {
        SdfChangeBlock block;
        if (_editor->IsExplicit()) {
            op = SdfListOpTypeExplicit;
        } else {
            GetDeletedItems().Remove(item);
        }
        value_vector_type items = _List(op);
        const auto it = std::find(items.begin(), items.end(), item);
        if (it != items.end()) {
            items.erase(it);
        }
        items.insert(front ? items.begin() : items.end(), item);
        _editor->Set(op, items);
    }

    std::shared_ptr<Sdf_ListEditor<TypePolicy>> _editor;
};

PXR_NAMESPACE_CLOSE_SCOPE
