#pragma once

/// Views of contiguous elements.

#include <pxr/base/tf/diagnostic.h>
#include <pxr/pxr.h>

#include <cstddef>
#include <iterator>
#include <type_traits>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// A view of elements that somebody else owns. Making a mutable view of a copy-on-write array detaches it.
template <typename T>
class TfSpan
{
public:
    using element_type = T;
    using value_type = std::remove_cv_t<T>;
    using pointer = T*;
    using reference = T&;
    using index_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using iterator = T*;
    using const_iterator = const T*;
    using reverse_iterator = std::reverse_iterator<iterator>;
    using const_reverse_iterator = std::reverse_iterator<const_iterator>;
    static constexpr index_type dynamic_extent = static_cast<index_type>(-1);

    TfSpan() noexcept = default;
    TfSpan(pointer data, index_type count) : _data(data), _size(count) {}
    TfSpan(pointer first, pointer last) : TfSpan(first, static_cast<index_type>(last - first)) {}
    template <class Container,
              class = std::enable_if_t<std::is_same_v<
                  std::remove_cv_t<std::remove_pointer_t<decltype(std::declval<Container&>().data())>>,
                  value_type>>>
    TfSpan(Container& container) : _data(container.data()), _size(container.size())
    {}
    template <class Container,
              class = std::enable_if_t<std::is_same_v<
                  std::remove_cv_t<std::remove_pointer_t<decltype(std::declval<const Container&>().data())>>,
                  value_type>>>
    TfSpan(const Container& container) : _data(container.data()), _size(container.size())
    {}

    index_type size() const { return _size; }
    index_type size_bytes() const { return _size * sizeof(T); }
    bool empty() const { return _size == 0; }
    pointer data() const { return _data; }
    reference operator[](index_type i) const { return _data[i]; }
    reference front() const { return _data[0]; }
    reference back() const { return _data[_size - 1]; }

    TfSpan subspan(index_type offset, index_type count = dynamic_extent) const
    {
        return TfSpan(_data + offset, count == dynamic_extent ? _size - offset : count);
    }
    TfSpan first(index_type count) const { return subspan(0, count); }
    TfSpan last(index_type count) const { return subspan(_size - count, count); }

    iterator begin() const { return _data; }
    iterator end() const { return _data + _size; }
    const_iterator cbegin() const { return _data; }
    const_iterator cend() const { return _data + _size; }
    reverse_iterator rbegin() const { return reverse_iterator(end()); }
    reverse_iterator rend() const { return reverse_iterator(begin()); }

private:
    pointer _data = nullptr;
    index_type _size = 0;
};

template <typename Container>
TfSpan<typename Container::value_type> TfMakeSpan(Container& container)
{
    return TfSpan<typename Container::value_type>(container);
}

template <typename Container>
TfSpan<const typename Container::value_type> TfMakeConstSpan(const Container& container)
{
    return TfSpan<const typename Container::value_type>(container);
}

PXR_NAMESPACE_CLOSE_SCOPE
