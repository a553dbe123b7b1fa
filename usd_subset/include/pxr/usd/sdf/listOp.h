#pragma once

/// Edits of lists: what one layer says about a list that weaker layers began.

#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/token.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

enum SdfListOpType
{
    SdfListOpTypeExplicit,
    SdfListOpTypeAdded,
    SdfListOpTypeDeleted,
    SdfListOpTypeOrdered,
    SdfListOpTypePrepended,
    SdfListOpTypeAppended
};

/// Either an explicit list, which replaces the weaker one, or edits of it: items to delete, add (when not
/// there), prepend, append, and an order. Setting items of one mode drops those of the other.
template <typename T>
class SdfListOp
{
public:
    typedef T ItemType;
    typedef std::vector<ItemType> ItemVector;
    typedef ItemType value_type;
    typedef ItemVector value_vector_type;

    SdfListOp() = default;
    VESK_USD_API static SdfListOp CreateExplicit(const ItemVector& explicitItems = ItemVector());
    VESK_USD_API static SdfListOp Create(const ItemVector& prependedItems = ItemVector(),
                                         const ItemVector& appendedItems = ItemVector(),
                                         const ItemVector& deletedItems = ItemVector());

    VESK_USD_API void Swap(SdfListOp& rhs);
    friend void swap(SdfListOp& a, SdfListOp& b) { a.Swap(b); }

    /// Returns whether it says anything; an explicit empty list does.
    bool HasKeys() const
    {
        return _isExplicit || !_addedItems.empty() || !_prependedItems.empty() || !_appendedItems.empty() ||
               !_deletedItems.empty() || !_orderedItems.empty();
    }
    /// Returns whether any of its lists has the item.
    VESK_USD_API bool HasItem(const T& item) const;
    bool IsExplicit() const { return _isExplicit; }

    const ItemVector& GetExplicitItems() const { return _explicitItems; }
    const ItemVector& GetAddedItems() const { return _addedItems; }
    const ItemVector& GetPrependedItems() const { return _prependedItems; }
    const ItemVector& GetAppendedItems() const { return _appendedItems; }
    const ItemVector& GetDeletedItems() const { return _deletedItems; }
    const ItemVector& GetOrderedItems() const { return _orderedItems; }
    VESK_USD_API const ItemVector& GetItems(SdfListOpType type) const;
    /// Returns the list that it makes of an empty one.
    VESK_USD_API ItemVector GetAppliedItems() const;

    VESK_USD_API void SetExplicitItems(const ItemVector& items);
    VESK_USD_API void SetAddedItems(const ItemVector& items);
    VESK_USD_API void SetPrependedItems(const ItemVector& items);
    VESK_USD_API void SetAppendedItems(const ItemVector& items);
    VESK_USD_API void SetDeletedItems(const ItemVector& items);
    VESK_USD_API void SetOrderedItems(const ItemVector& items);
    VESK_USD_API void SetItems(const ItemVector& items, SdfListOpType type);
    /// Removes all items and leaves explicit mode.
    VESK_USD_API void Clear();
    VESK_USD_API void ClearAndMakeExplicit();

    /// Maps an item before it is applied; none drops it.
    typedef std::function<std::optional<ItemType>(SdfListOpType, const ItemType&)> ApplyCallback;
    /// Applies its edits to the list: deletes, adds, prepends, appends, then orders.
    VESK_USD_API void ApplyOperations(ItemVector* vec, const ApplyCallback& callback = ApplyCallback()) const;
    /// Returns the one list op that does what `inner` and then this do; none where no such op exists (added
    /// or ordered items on either side).
    VESK_USD_API std::optional<SdfListOp> ApplyOperations(const SdfListOp& inner) const;

    /// Maps an item; none removes it.
    typedef std::function<std::optional<ItemType>(const ItemType&)> ModifyCallback;
    /// Maps every item of every list; returns whether anything changed.
    VESK_USD_API bool ModifyOperations(const ModifyCallback& callback, bool removeDuplicates = false);
    /// Replaces `n` items from `index` of one list. Fails when the range is outside the list, or when an
    /// empty list of the other mode would have to become used by more than nothing.
    VESK_USD_API bool ReplaceOperations(SdfListOpType op, size_t index, size_t n, const ItemVector& newItems);
    /// Composes one list of a stronger op over this one's.
    VESK_USD_API void ComposeOperations(const SdfListOp& stronger, SdfListOpType op);

    bool operator==(const SdfListOp& rhs) const
    {
        return _isExplicit == rhs._isExplicit && _explicitItems == rhs._explicitItems &&
               _addedItems == rhs._addedItems && _prependedItems == rhs._prependedItems &&
               _appendedItems == rhs._appendedItems && _deletedItems == rhs._deletedItems &&
               _orderedItems == rhs._orderedItems;
    }
    bool operator!=(const SdfListOp& rhs) const { return !(*this == rhs); }

    friend size_t hash_value(const SdfListOp& op)
    {
        return TfHash::Combine(op._isExplicit, op._explicitItems, op._addedItems, op._prependedItems,
                               op._appendedItems, op._deletedItems, op._orderedItems);
    }

private:
    void _SetExplicit(bool isExplicit);
    ItemVector& _Items(SdfListOpType type);

    bool _isExplicit = false;
    ItemVector _explicitItems;
    ItemVector _addedItems;
    ItemVector _prependedItems;
    ItemVector _appendedItems;
    ItemVector _deletedItems;
    ItemVector _orderedItems;
};

/// Orders the list: items named in `order` come in that order, each other item stays behind the one it
/// followed.
template <class ItemType>
VESK_USD_API void SdfApplyListOrdering(std::vector<ItemType>* list, const std::vector<ItemType>& order);

template <typename T>
VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfListOp<T>& op);

typedef class SdfListOp<int> SdfIntListOp;
typedef class SdfListOp<unsigned int> SdfUIntListOp;
typedef class SdfListOp<int64_t> SdfInt64ListOp;
typedef class SdfListOp<uint64_t> SdfUInt64ListOp;
typedef class SdfListOp<TfToken> SdfTokenListOp;
typedef class SdfListOp<std::string> SdfStringListOp;
typedef class SdfListOp<class SdfPath> SdfPathListOp;
typedef class SdfListOp<class SdfReference> SdfReferenceListOp;
typedef class SdfListOp<class SdfPayload> SdfPayloadListOp;
typedef class SdfListOp<class SdfUnregisteredValue> SdfUnregisteredValueListOp;

PXR_NAMESPACE_CLOSE_SCOPE
