#pragma once

/// Iteration over whole containers.

#include <pxr/base/tf/diagnosticLite.h>
#include <pxr/pxr.h>

#include <cstddef>
#include <iterator>
#include <type_traits>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// An iterator that knows where its container ends: it is true until then. The container must outlive it.
///
/// Aborts when it is dereferenced at the end.
template <class Container, bool Reverse = false>
class TfIterator
{
    static auto _Begin(Container& container)
    {
        if constexpr (Reverse) {
            return std::rbegin(container);
        } else {
            return std::begin(container);
        }
    }
    static auto _End(Container& container)
    {
        if constexpr (Reverse) {
            return std::rend(container);
        } else {
            return std::end(container);
        }
    }

public:
    using Iterator = decltype(_Begin(std::declval<Container&>()));
    using Reference = typename std::iterator_traits<Iterator>::reference;

    TfIterator() = default;
    TfIterator(Container& container) : _current(_Begin(container)), _end(_End(container)) {}
    TfIterator(const Iterator& begin, const Iterator& end) : _current(begin), _end(end) {}

    explicit operator bool() const { return !(_current == _end); }
    bool operator!() const { return _current == _end; }
    bool operator==(const TfIterator& other) const { return _current == other._current; }
    bool operator!=(const TfIterator& other) const { return !(*this == other); }

    TfIterator& operator++()
    {
        TF_AXIOM(*this);
        ++_current;
        return *this;
    }
    TfIterator operator++(int)
    {
        TfIterator before = *this;
        ++*this;
        return before;
    }

    Reference operator*() const
    {
        TF_AXIOM(*this);
        return *_current;
    }
    Iterator& operator->()
    {
        TF_AXIOM(*this);
        return _current;
    }

    operator Iterator() const { return _current; }
    const Iterator& base() const { return _current; }
    /// The iterator one step on.
    TfIterator GetNext() const
    {
        TfIterator next = *this;
        ++next;
        return next;
    }

private:
    Iterator _current{};
    Iterator _end{};
};

template <class T>
TfIterator<std::remove_reference_t<T>> TfMakeIterator(T&& container)
{
    return TfIterator<std::remove_reference_t<T>>(container);
}

/// The number of elements of an array.
template <class T, size_t N>
constexpr size_t TfArraySize(const T (&)[N])
{
    return N;
}

/// Loops with an iterator named `var` over a container, to and fro.
#define TF_FOR_ALL(var, container)                                                                           \
    for (PXR_NS::TfIterator<std::remove_reference_t<decltype(container)>> var(container); var; ++var)
#define TF_REVERSE_FOR_ALL(var, container)                                                                   \
    for (PXR_NS::TfIterator<std::remove_reference_t<decltype(container)>, true> var(container); var; ++var)

PXR_NAMESPACE_CLOSE_SCOPE
