#pragma once

/// One of the lists of a list-valued field, edited in place.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/listEditor.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A vector of items whose every change is written to the layer at once.
template <class _TypePolicy>
class SdfListProxy
{
public:
    typedef _TypePolicy TypePolicy;
    typedef typename TypePolicy::value_type value_type;
    typedef std::vector<value_type> value_vector_type;
    typedef std::size_t size_type;
    typedef std::ptrdiff_t difference_type;
    static constexpr size_t invalidIndex = size_t(-1);

    /// An item that can be assigned to.
    class reference
    {
    public:
        reference(SdfListProxy* list, size_t index) : _list(list), _index(index) {}
        reference& operator=(const value_type& item)
        {
            _list->_Edit(_index, 1, {item});
            return *this;
        }
        reference& operator=(const reference& item) { return *this = static_cast<value_type>(item); }
        operator value_type() const { return _list->_At(_index); }
        bool operator==(const value_type& other) const { return static_cast<value_type>(*this) == other; }
        bool operator!=(const value_type& other) const { return !(*this == other); }

    private:
        SdfListProxy* _list;
        size_t _index;
    };

    /// Steps over the items by index; it dereferences to a value.
    class const_iterator
    {
    public:
        typedef std::random_access_iterator_tag iterator_category;
        typedef typename TypePolicy::value_type value_type;
        typedef value_type reference;
        typedef std::ptrdiff_t difference_type;
        struct pointer
        {
            value_type value;
            value_type* operator->() { return &value; }
        };

        const_iterator() = default;
        const_iterator(const SdfListProxy* list, size_t index) : _list(list), _index(index) {}
        reference operator*() const { return _list->_At(_index); }
        pointer operator->() const { return pointer{**this}; }
        const_iterator& operator++() { return *this += 1; }
        const_iterator& operator--() { return *this += -1; }
        const_iterator operator++(int) { return const_iterator(_list, _index++); }
        const_iterator operator--(int) { return const_iterator(_list, _index--); }
        const_iterator& operator+=(difference_type n)
        {
            _index += static_cast<size_t>(n);
            return *this;
        }
        const_iterator operator+(difference_type n) const { return const_iterator(*this) += n; }
        const_iterator operator-(difference_type n) const { return const_iterator(*this) += -n; }
        difference_type operator-(const const_iterator& other) const
        {
            return static_cast<difference_type>(_index) - static_cast<difference_type>(other._index);
        }
        bool operator==(const const_iterator& other) const { return _index == other._index; }
        bool operator!=(const const_iterator& other) const { return _index != other._index; }
        bool operator<(const const_iterator& other) const { return _index < other._index; }
        size_t GetIndex() const { return _index; }

    private:
        const SdfListProxy* _list = nullptr;
        size_t _index = 0;
    };
    typedef const_iterator iterator;

    SdfListProxy() = default;
    explicit SdfListProxy(SdfListOpType op) : _op(op) {}
    SdfListProxy(const std::shared_ptr<Sdf_ListEditor<TypePolicy>>& editor, SdfListOpType op)
        : _editor(editor), _op(op)
    {}

    SdfListProxy& operator=(const value_vector_type& items)
    {
        if (_editor) {
            _editor->Set(_op, items);
        }
        return *this;
    }
    SdfListProxy(const SdfListProxy&) = default;
    SdfListProxy& operator=(const SdfListProxy& other)
    {
        return *this = static_cast<value_vector_type>(other);
    }
    operator value_vector_type() const { return _Items(); }

    const_iterator begin() const { return const_iterator(this, 0); }
    const_iterator end() const { return const_iterator(this, size()); }
    size_t size() const { return _Items().size(); }
    bool empty() const { return _Items().empty(); }
    reference operator[](size_t n) { return reference(this, n); }
    value_type operator[](size_t n) const { return _At(n); }
    reference front() { return reference(this, 0); }
    reference back() { return reference(this, size() - 1); }
    value_type front() const { return _At(0); }
    value_type back() const { return _At(size() - 1); }

    void push_back(const value_type& item) { _Edit(size(), 0, {item}); }
    void pop_back() { _Edit(size() - 1, 1, {}); }
    iterator insert(iterator pos, const value_type& item)
    {
        _Edit(pos.GetIndex(), 0, {item});
        return iterator(this, pos.GetIndex());
    }
    void erase(iterator pos) { _Edit(pos.GetIndex(), 1, {}); }
    void erase(iterator first, iterator last)
    {
        _Edit(first.GetIndex(), last.GetIndex() - first.GetIndex(), {});
    }
    void clear() { _Edit(0, size(), {}); }
    void resize(size_t n, const value_type& item = value_type())
    {
        const size_t count = size();
        n < count ? _Edit(n, count - n, {}) : _Edit(count, 0, value_vector_type(n - count, item));
    }

    bool IsExpired() const { return _editor && _editor->IsExpired(); }
    explicit operator bool() const { return _editor && _editor->IsValid(); }

    size_t Count(const value_type& item) const
    {
        const value_vector_type items = _Items();
        return static_cast<size_t>(std::count(items.begin(), items.end(), item));
    }
    size_t Find(const value_type& item) const
    {
        const value_vector_type items = _Items();
        const auto it = std::find(items.begin(), items.end(), item);
        return it == items.end() ? invalidIndex : static_cast<size_t>(it - items.begin());
    }
    /// Inserts before `index`; -1 appends.
    void Insert(int index, const value_type& item)
    {
        _Edit(index < 0 ? size() : static_cast<size_t>(index), 0, {item});
    }
    void Erase(size_t index) { _Edit(index, 1, {}); }
    void Remove(const value_type& item)
    {
        const size_t index = Find(item);
        if (index != invalidIndex) {
            Erase(index);
        }
    }
    void Replace(const value_type& oldItem, const value_type& newItem)
    {
        const size_t index = Find(oldItem);
        if (index == invalidIndex) {
            return;
        }
        const bool there = Find(newItem) != invalidIndex && !(oldItem == newItem);
        _Edit(index, 1, there ? value_vector_type() : value_vector_type{newItem});
    }

    bool operator==(const value_vector_type& other) const { return _Items() == other; }
    bool operator!=(const value_vector_type& other) const { return _Items() != other; }
    bool operator==(const SdfListProxy& other) const { return _Items() == other._Items(); }
    bool operator!=(const SdfListProxy& other) const { return _Items() != other._Items(); }

private:
    value_vector_type _Items() const
    {
        return _editor && _editor->IsValid() ? _editor->Get(_op) : value_vector_type();
    }
    value_type _At(size_t n) const
    {
        const value_vector_type items = _Items();
        return n < items.size() ? items[n] : value_type();
    }
    void _Edit(size_t index, size_t count, const value_vector_type& items)
    {
        value_vector_type all = _Items();
        if (!_editor || index > all.size() || count > all.size() - index) {
            return;
        }
        const auto at = all.begin() + static_cast<difference_type>(index);
        const auto after = all.erase(at, at + static_cast<difference_type>(count));
        all.insert(after, items.begin(), items.end());
        _editor->Set(_op, all);
    }

    std::shared_ptr<Sdf_ListEditor<TypePolicy>> _editor;
    SdfListOpType _op = SdfListOpTypeExplicit;
};

PXR_NAMESPACE_CLOSE_SCOPE
