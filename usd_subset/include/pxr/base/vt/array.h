#pragma once

/// Arrays that share their elements until one is changed.

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/enum.h>
#include <pxr/base/tf/hash.h>
#include <pxr/base/vt/arrayStorage.h>
#include <pxr/base/vt/streamOut.h>
#include <pxr/base/vt/traits.h>
#include <pxr/base/vt/types.h>
#include <pxr/pxr.h>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <ostream>
#include <type_traits>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// A contiguous array with copy on write: copying is one count, and any access that could change an element
/// (data(), begin(), operator[] of a non-const array) first makes a copy when the elements are shared. To
/// read a non-const array use cdata(), cbegin(), AsConst().
/// Thread: any may read and copy; one array object is written by one thread at a time.
template <typename ELEM>
class VtArray : private Vt_ArrayBase
{
public:
    typedef ELEM ElementType;
    typedef ELEM value_type;
    typedef value_type& reference;
    typedef value_type const& const_reference;
    typedef value_type* pointer;
    typedef value_type const* const_pointer;
    typedef ELEM* iterator;
    typedef ELEM const* const_iterator;
    typedef std::reverse_iterator<iterator> reverse_iterator;
    typedef std::reverse_iterator<const_iterator> const_reverse_iterator;
    typedef size_t size_type;
    typedef std::ptrdiff_t difference_type;

    VtArray() = default;
    explicit VtArray(size_t n) { resize(n); }
    explicit VtArray(size_t n, value_type const& value) { assign(n, value); }
    VtArray(std::initializer_list<ELEM> elements) { assign(elements.begin(), elements.end()); }
    template <class Iterator, class = typename std::iterator_traits<Iterator>::iterator_category>
    VtArray(Iterator first, Iterator last)
    {
        assign(first, last);
    }
    VtArray(VtArray const& other) : Vt_ArrayBase(other), _data(other._data) { _AddRef(); }
    VtArray(VtArray&& other) noexcept { swap(other); }
    /// Shares elements of a foreign source. With addRef false it takes over a reference that the caller
    /// counted already.
    VtArray(Vt_ArrayForeignDataSource* foreign, ElementType* data, size_t size, bool addRef = true)
        : _data(data)
    {
        _foreign = foreign;
        _size = size;
        if (addRef) {
            _AddRef();
        }
    }
    ~VtArray() { _Release(); }

    VtArray& operator=(VtArray const& other)
    {
        VtArray(other).swap(*this);
        return *this;
    }
    VtArray& operator=(VtArray&& other) noexcept
    {
        VtArray(std::move(other)).swap(*this);
        return *this;
    }
    VtArray& operator=(std::initializer_list<ELEM> elements)
    {
        assign(elements);
        return *this;
    }

    VtArray const& AsConst() const noexcept { return *this; }

    /// \name Access; the non-const forms detach
    /// @{
    pointer data()
    {
        _Detach();
        return _data;
    }
    const_pointer data() const { return _data; }
    const_pointer cdata() const { return _data; }
    iterator begin() { return data(); }
    iterator end() { return data() + _size; }
    const_iterator begin() const { return _data; }
    const_iterator end() const { return _data + _size; }
    const_iterator cbegin() const { return _data; }
    const_iterator cend() const { return _data + _size; }
    reverse_iterator rbegin() { return reverse_iterator(end()); }
    reverse_iterator rend() { return reverse_iterator(begin()); }
    const_reverse_iterator rbegin() const { return const_reverse_iterator(end()); }
    const_reverse_iterator rend() const { return const_reverse_iterator(begin()); }
    const_reverse_iterator crbegin() const { return rbegin(); }
    const_reverse_iterator crend() const { return rend(); }
    ElementType& operator[](size_t index) { return data()[index]; }
    ElementType const& operator[](size_t index) const { return _data[index]; }
    reference front() { return *begin(); }
    const_reference front() const { return *begin(); }
    const_reference cfront() const { return *begin(); }
    reference back() { return *rbegin(); }
    const_reference back() const { return *rbegin(); }
    const_reference cback() const { return *rbegin(); }
    /// @}

    size_t size() const { return _size; }
    bool empty() const { return _size == 0; }
    constexpr size_t max_size() const { return size_t(-1) / sizeof(value_type) / 2; }
    /// Returns how many elements fit without a new allocation once the array is alone.
    size_t capacity() const { return !_data || _foreign ? _size : _BlockOf(_data)->capacity; }

    void push_back(ElementType const& element) { emplace_back(element); }
    void push_back(ElementType&& element) { emplace_back(std::move(element)); }
    template <typename... Args>
    void emplace_back(Args&&... args)
    {
        if (_IsAlone() && _size < capacity()) {
            ::new (static_cast<void*>(_data + _size)) value_type(std::forward<Args>(args)...);
        } else {
            // The new element is made first: the arguments may refer to an old one.
            VtArray grown;
            grown._Reserve(_GrownCapacity(_size + 1));
            ::new (static_cast<void*>(grown._data + _size)) value_type(std::forward<Args>(args)...);
            try {
                _TransferTo(grown._data, _size);
            } catch (...) {
                grown._data[_size].~value_type();
                throw;
            }
            grown._size = _size;
            swap(grown);
        }
        ++_size;
    }
    void pop_back()
    {
        _Detach();
        --_size;
        _data[_size].~value_type();
    }

    void reserve(size_t count)
    {
        if (count > capacity() || (_data && !_IsAlone())) {
            VtArray grown;
            grown._Reserve(std::max(count, _size));
            _TransferTo(grown._data, _size);
            grown._size = _size;
            swap(grown);
        }
    }

    /// Changes the size; new elements are value-initialized, copies of a value, or filled by
    /// fill(first, last) on uninitialized memory.
    void resize(size_t newSize)
    {
        resize(newSize, [](pointer first, pointer last) { std::uninitialized_value_construct(first, last); });
    }
    void resize(size_t newSize, value_type const& value) { _ResizeTo(newSize, value_type(value)); }
    void resize(size_t newSize, value_type& value) { _ResizeTo(newSize, value_type(value)); }
    void resize(size_t newSize, value_type&& value) { _ResizeTo(newSize, value_type(std::move(value))); }
    template <class FillElemsFn, class = decltype(std::declval<FillElemsFn&>()(pointer(), pointer()))>
    void resize(size_t newSize, FillElemsFn&& fill)
    {
        if (newSize == _size) {
            return;
        }
        if (newSize == 0) {
            clear();
        } else if (_IsAlone() && newSize <= capacity()) {
            if (newSize > _size) {
                std::forward<FillElemsFn>(fill)(_data + _size, _data + newSize);
            } else {
                std::destroy(_data + newSize, _data + _size);
            }
            _size = newSize;
        } else {
            VtArray other;
            other._Reserve(newSize);
            const size_t kept = std::min(_size, newSize);
            _TransferTo(other._data, kept);
            other._size = kept;
            if (newSize > kept) {
                std::forward<FillElemsFn>(fill)(other._data + kept, other._data + newSize);
            }
            other._size = newSize;
            swap(other);
        }
    }

    /// Makes it empty; keeps the memory when the elements are not shared.
    void clear()
    {
        if (_IsAlone()) {
            std::destroy(_data, _data + _size);
            _size = 0;
        } else {
            VtArray().swap(*this);
        }
    }

    iterator erase(const_iterator position) { return erase(position, position + 1); }
    iterator erase(const_iterator first, const_iterator last)
    {
        const size_t from = first - cbegin();
        const size_t count = last - first;
        if (count == 0) {
            return begin() + from;
        }
        _Detach();
        std::move(_data + from + count, _data + _size, _data + from);
        std::destroy(_data + _size - count, _data + _size);
        _size -= count;
        return _data + from;
    }

    template <class Iterator>
    typename std::enable_if_t<!std::is_integral_v<Iterator>> assign(Iterator first, Iterator last)
    {
        using Category = typename std::iterator_traits<Iterator>::iterator_category;
        VtArray assigned;
        if constexpr (std::is_base_of_v<std::forward_iterator_tag, Category>) {
            const size_t count = std::distance(first, last);
            if (count) {
                assigned._Reserve(count);
                std::uninitialized_copy(first, last, assigned._data);
                assigned._size = count;
            }
        } else {
            for (; first != last; ++first) {
                assigned.emplace_back(*first);
            }
        }
        swap(assigned);
    }
    void assign(size_t count, const value_type& value)
    {
        VtArray assigned;
        if (count) {
            assigned._Reserve(count);
            std::uninitialized_fill_n(assigned._data, count, value);
            assigned._size = count;
        }
        swap(assigned);
    }
    void assign(std::initializer_list<ELEM> elements) { assign(elements.begin(), elements.end()); }

    void swap(VtArray& other) noexcept
    {
        std::swap(_data, other._data);
        std::swap(_size, other._size);
        std::swap(_foreign, other._foreign);
    }
    friend void swap(VtArray& a, VtArray& b) noexcept { a.swap(b); }

    /// Returns whether both share the same elements.
    bool IsIdentical(VtArray const& other) const
    {
        return _data == other._data && _size == other._size && _foreign == other._foreign;
    }
    bool operator==(VtArray const& other) const
    {
        return IsIdentical(other) || (_size == other._size && std::equal(cbegin(), cend(), other.cbegin()));
    }
    bool operator!=(VtArray const& other) const { return !(*this == other); }

    friend std::ostream& operator<<(std::ostream& out, const VtArray& self)
    {
        const_pointer next = self.cdata();
        Vt_StreamOutElements(out, self.size(), [&next](std::ostream& o) { VtStreamOut(*next++, o); });
        return out;
    }

    template <class HashState>
    friend void TfHashAppend(HashState& h, VtArray const& array)
    {
        h.Append(array.size());
        h.AppendContiguous(array.cdata(), array.size());
    }

private:
    // Acquire: what former sharers read is read before this one writes.
    bool _IsAlone() const
    {
        return _data && !_foreign && _BlockOf(_data)->count.load(std::memory_order_acquire) == 1;
    }
    void _Detach()
    {
        if (_data && !_IsAlone()) {
            VtArray copy;
            copy._Reserve(_size);
            std::uninitialized_copy(_data, _data + _size, copy._data);
            copy._size = _size;
            swap(copy);
        }
    }
    void _AddRef() const
    {
        if (_foreign) {
            _foreign->_refCount.fetch_add(1, std::memory_order_relaxed);
        } else if (_data) {
            _BlockOf(_data)->count.fetch_add(1, std::memory_order_relaxed);
        }
    }
    void _Release()
    {
        if (_foreign) {
            if (_foreign->_refCount.fetch_sub(1, std::memory_order_acq_rel) == 1) {
                _foreign->_ArraysDetached();
            }
        } else if (_data && _BlockOf(_data)->count.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            std::destroy(_data, _data + _size);
            _Free(_data);
        }
    }
    /// Allocates for an array that has nothing yet.
    void _Reserve(size_t capacity)
    {
        static_assert(alignof(value_type) <= alignof(std::max_align_t), "over-aligned elements");
        _data = static_cast<pointer>(_Allocate(capacity, sizeof(value_type)));
    }
    static size_t _GrownCapacity(size_t needed)
    {
        size_t capacity = 1;
        while (capacity < needed) {
            capacity *= 2;
        }
        return capacity;
    }
    /// Moves or, when the elements are shared, copies the first `count` of them.
    void _TransferTo(pointer to, size_t count)
    {
        if (_IsAlone()) {
            std::uninitialized_move(_data, _data + count, to);
        } else {
            std::uninitialized_copy(_data, _data + count, to);
        }
    }
    void _ResizeTo(size_t newSize, value_type value)
    {
        resize(newSize,
               [&value](pointer first, pointer last) { std::uninitialized_fill(first, last, value); });
    }

    pointer _data = nullptr;
};

PXR_NAMESPACE_CLOSE_SCOPE
