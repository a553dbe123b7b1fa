#pragma once

// The ranges of children and descendants of a prim; included by prim.h.

#include <pxr/usd/usd/prim.h>

#include <cstddef>
#include <iterator>

PXR_NAMESPACE_OPEN_SCOPE

/// Hands out a prim by value where an iterator has to return a pointer.
class Usd_PrimArrow
{
public:
    explicit Usd_PrimArrow(const UsdPrim& prim) : _prim(prim) {}
    UsdPrim* operator->() { return &_prim; }

private:
    UsdPrim _prim;
};

/// Steps through the children of a prim.
class UsdPrimSiblingIterator
{
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = UsdPrim;
    using reference = UsdPrim;
    using pointer = Usd_PrimArrow;
    using difference_type = std::ptrdiff_t;

    UsdPrimSiblingIterator() = default;
    reference operator*() const { return UsdPrim(_cursor); }
    pointer operator->() const { return pointer(**this); }
    UsdPrimSiblingIterator& operator++()
    {
        if (!_cursor.MoveToNextSibling(_predicate)) {
            _cursor = Usd_PrimCursor();
        }
        return *this;
    }
    UsdPrimSiblingIterator operator++(int)
    {
        UsdPrimSiblingIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const UsdPrimSiblingIterator& other) const
    {
        return _cursor == other._cursor && _predicate == other._predicate;
    }
    bool operator!=(const UsdPrimSiblingIterator& other) const { return !(*this == other); }

private:
    friend class UsdPrimSiblingRange;
    UsdPrimSiblingIterator(const Usd_PrimCursor& cursor, const Usd_PrimFlagsPredicate& predicate)
        : _cursor(cursor), _predicate(predicate)
    {}

    Usd_PrimCursor _cursor;
    Usd_PrimFlagsPredicate _predicate;
};

/// Steps through all prims below a prim, parents before their children.
class UsdPrimSubtreeIterator
{
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = UsdPrim;
    using reference = UsdPrim;
    using pointer = Usd_PrimArrow;
    using difference_type = std::ptrdiff_t;

    UsdPrimSubtreeIterator() = default;
    reference operator*() const { return UsdPrim(_cursor); }
    pointer operator->() const { return pointer(**this); }
    UsdPrimSubtreeIterator& operator++()
    {
        if (_cursor.MoveToChild(_predicate)) {
            ++_depth;
            return *this;
        }
        while (!_cursor.MoveToNextSibling(_predicate)) {
            if (--_depth == 0) {
                _cursor = Usd_PrimCursor();
                return *this;
            }
            _cursor.MoveToParent();
        }
        return *this;
    }
    UsdPrimSubtreeIterator operator++(int)
    {
        UsdPrimSubtreeIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const UsdPrimSubtreeIterator& other) const
    {
        return _cursor == other._cursor && _predicate == other._predicate;
    }
    bool operator!=(const UsdPrimSubtreeIterator& other) const { return !(*this == other); }

private:
    friend class UsdPrimSubtreeRange;
    UsdPrimSubtreeIterator(const Usd_PrimCursor& firstChild, const Usd_PrimFlagsPredicate& predicate)
        : _cursor(firstChild), _predicate(predicate)
    {}

    Usd_PrimCursor _cursor;
    Usd_PrimFlagsPredicate _predicate;
    std::size_t _depth = 1; // below the prim whose descendants are visited
};

/// The children of a prim.
class UsdPrimSiblingRange
{
public:
    typedef UsdPrimSiblingIterator iterator;
    typedef UsdPrimSiblingIterator const_iterator;
    typedef std::ptrdiff_t difference_type;
    typedef UsdPrim value_type;
    typedef UsdPrim reference;

    UsdPrimSiblingRange() = default;
    UsdPrimSiblingRange(UsdPrimSiblingIterator begin, UsdPrimSiblingIterator end) : _begin(begin), _end(end)
    {}

    iterator begin() const { return _begin; }
    const_iterator cbegin() const { return _begin; }
    iterator end() const { return _end; }
    const_iterator cend() const { return _end; }
    explicit operator bool() const { return !empty(); }
    bool empty() const { return _begin == _end; }
    reference front() const { return *_begin; }
    UsdPrimSiblingRange& advance_begin(difference_type n)
    {
        std::advance(_begin, n);
        return *this;
    }
    bool operator==(const UsdPrimSiblingRange& other) const
    {
        return _begin == other._begin && _end == other._end;
    }
    bool operator!=(const UsdPrimSiblingRange& other) const { return !(*this == other); }

private:
    friend class UsdPrim;
    UsdPrimSiblingRange(Usd_PrimCursor parent, const Usd_PrimFlagsPredicate& predicate)
        : _begin(parent.MoveToChild(predicate) ? parent : Usd_PrimCursor(), predicate),
          _end(Usd_PrimCursor(), predicate)
    {}

    iterator _begin;
    iterator _end;
};

/// All prims below a prim.
class UsdPrimSubtreeRange
{
public:
    typedef UsdPrimSubtreeIterator iterator;
    typedef UsdPrimSubtreeIterator const_iterator;
    typedef std::ptrdiff_t difference_type;
    typedef UsdPrim value_type;
    typedef UsdPrim reference;

    UsdPrimSubtreeRange() = default;
    UsdPrimSubtreeRange(UsdPrimSubtreeIterator begin, UsdPrimSubtreeIterator end) : _begin(begin), _end(end)
    {}

    iterator begin() const { return _begin; }
    const_iterator cbegin() const { return _begin; }
    iterator end() const { return _end; }
    const_iterator cend() const { return _end; }
    explicit operator bool() const { return !empty(); }
    bool empty() const { return _begin == _end; }
    reference front() const { return *_begin; }
    UsdPrimSubtreeRange& advance_begin(difference_type n)
    {
        std::advance(_begin, n);
        return *this;
    }
    bool operator==(const UsdPrimSubtreeRange& other) const
    {
        return _begin == other._begin && _end == other._end;
    }
    bool operator!=(const UsdPrimSubtreeRange& other) const { return !(*this == other); }

private:
    friend class UsdPrim;
    UsdPrimSubtreeRange(Usd_PrimCursor parent, const Usd_PrimFlagsPredicate& predicate)
        : _begin(parent.MoveToChild(predicate) ? parent : Usd_PrimCursor(), predicate),
          _end(Usd_PrimCursor(), predicate)
    {}

    iterator _begin;
    iterator _end;
};

inline UsdPrimSiblingRange UsdPrim::GetFilteredChildren(const Usd_PrimFlagsPredicate& predicate) const
{
    const Usd_PrimCursor here = _Cursor();
    return UsdPrimSiblingRange(here, here.PredicateForTraversal(predicate));
}
inline UsdPrimSiblingRange UsdPrim::GetAllChildren() const
{
    return GetFilteredChildren(UsdPrimAllPrimsPredicate);
}
inline UsdPrimSiblingRange UsdPrim::GetChildren() const
{
    return GetFilteredChildren(UsdPrimDefaultPredicate);
}
inline UsdPrimSubtreeRange UsdPrim::GetFilteredDescendants(const Usd_PrimFlagsPredicate& predicate) const
{
    const Usd_PrimCursor here = _Cursor();
    return UsdPrimSubtreeRange(here, here.PredicateForTraversal(predicate));
}
inline UsdPrimSubtreeRange UsdPrim::GetAllDescendants() const
{
    return GetFilteredDescendants(UsdPrimAllPrimsPredicate);
}
inline UsdPrimSubtreeRange UsdPrim::GetDescendants() const
{
    return GetFilteredDescendants(UsdPrimDefaultPredicate);
}
inline UsdPrim UsdObject::GetPrim() const { return UsdPrim(_prim, _proxyPrimPath); }

PXR_NAMESPACE_CLOSE_SCOPE
