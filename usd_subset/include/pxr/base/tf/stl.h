#pragma once

/// Small helpers for standard containers.

#include <pxr/base/tf/hashmap.h>
#include <pxr/base/tf/hashset.h>
#include <pxr/base/tf/iterator.h>
#include <pxr/pxr.h>

#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// Copies the value of a key if it is there; returns whether it is.
template <typename Container, typename Key, typename Result>
bool TfMapLookup(Container const& map, Key const& key, Result* value)
{
    const auto found = map.find(key);
    if (found == map.end()) {
        return false;
    }
    *value = found->second;
    return true;
}

/// Returns the value of a key, the given one when it is not there.
template <typename Container, typename Key, typename Result>
Result TfMapLookupByValue(Container const& map, Key const& key, Result const& fallback)
{
    const auto found = map.find(key);
    return found == map.end() ? fallback : Result(found->second);
}

/// Returns the address of the value of a key, null when it is not there.
template <typename Container, typename Key>
auto TfMapLookupPtr(Container& map, Key const& key) -> decltype(&map.find(key)->second)
{
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

template <typename T>
std::pair<T, T> TfOrderedPair(T a, T b)
{
    return b < a ? std::pair<T, T>(b, a) : std::pair<T, T>(a, b);
}

PXR_NAMESPACE_CLOSE_SCOPE
