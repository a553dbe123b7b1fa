#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/primFlags.h>

#include <cstddef>
#include <iterator>

PXR_NAMESPACE_OPEN_SCOPE

/// A prim and all below it that a predicate lets through, parents before children; on wish each prim once
/// more after its children. A prim that the predicate stops hides what is below it.
class UsdPrimRange
{
public:
    class iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = UsdPrim;
        using reference = UsdPrim;
        using pointer = Usd_PrimArrow;
        using difference_type = std::ptrdiff_t;

        iterator() = default;
        reference operator*() const { return UsdPrim(_cursor); }
        pointer operator->() const { return pointer(**this); }
        iterator& operator++()
        {
            _Increment();
            return *this;
        }
        iterator operator++(int)
        {
            iterator before = *this;
            _Increment();
            return before;
        }

        /// Whether the current prim is visited for the second time, after its children.
        bool IsPostVisit() const { return _isPost; }
        /// Makes the next step skip what is below the current prim; on a second visit that is an error.
        VESK_USD_API void PruneChildren();

        bool operator==(const iterator& other) const
        {
            return _range == other._range && _cursor == other._cursor && _depth == other._depth &&
                   _pruneChildren == other._pruneChildren && _isPost == other._isPost;
        }
        bool operator!=(const iterator& other) const { return !(*this == other); }

    private:
        friend class UsdPrimRange;
        iterator(const UsdPrimRange* range, const Usd_PrimCursor& cursor, std::size_t depth)
            : _cursor(cursor), _range(range), _depth(depth)
        {}
        VESK_USD_API void _Increment();
        bool _LeavePrim();

        Usd_PrimCursor _cursor;
        const UsdPrimRange* _range = nullptr;
        std::size_t _depth = 0; // below the prim that the range was made for
        bool _pruneChildren = false;
        bool _isPost = false;
    };
    using const_iterator = iterator;

    UsdPrimRange() = default;
    explicit UsdPrimRange(const UsdPrim& start) : UsdPrimRange(start, UsdPrimDefaultPredicate) {}
    VESK_USD_API UsdPrimRange(const UsdPrim& start, const Usd_PrimFlagsPredicate& predicate);

    static UsdPrimRange PreAndPostVisit(const UsdPrim& start)
    {
        return PreAndPostVisit(start, UsdPrimDefaultPredicate);
    }
    static UsdPrimRange PreAndPostVisit(const UsdPrim& start, const Usd_PrimFlagsPredicate& predicate)
    {
        UsdPrimRange result(start, predicate);
        result._postOrder = true;
        return result;
    }
    static UsdPrimRange AllPrims(const UsdPrim& start)
    {
        return UsdPrimRange(start, UsdPrimAllPrimsPredicate);
    }
    static UsdPrimRange AllPrimsPreAndPostVisit(const UsdPrim& start)
    {
        return PreAndPostVisit(start, UsdPrimAllPrimsPredicate);
    }
    /// All prims of a stage without its pseudo-root.
    VESK_USD_API static UsdPrimRange Stage(const UsdStagePtr& stage,
                                           const Usd_PrimFlagsPredicate& predicate = UsdPrimDefaultPredicate);

    iterator begin() const { return iterator(this, _begin, _initDepth); }
    const_iterator cbegin() const { return begin(); }
    iterator end() const { return iterator(this, Usd_PrimCursor(), 0); }
    const_iterator cend() const { return end(); }
    UsdPrim front() const { return *begin(); }
    void increment_begin() { set_begin(++begin()); }
    void set_begin(const iterator& newBegin)
    {
        _begin = newBegin._cursor;
        _initDepth = newBegin._depth;
    }
    bool empty() const { return !_begin; }
    explicit operator bool() const { return !empty(); }

    bool operator==(const UsdPrimRange& other) const
    {
        return _begin == other._begin && _predicate == other._predicate && _postOrder == other._postOrder &&
               _initDepth == other._initDepth;
    }
    bool operator!=(const UsdPrimRange& other) const { return !(*this == other); }

private:
    Usd_PrimCursor _begin;
    Usd_PrimFlagsPredicate _predicate;
    std::size_t _initDepth = 0;
    bool _postOrder = false;
};

PXR_NAMESPACE_CLOSE_SCOPE
