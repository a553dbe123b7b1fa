#pragma once

/// The unordered sets of the scene description under the names that its users know.

#include <pxr/base/tf/hash.h>
#include <pxr/pxr.h>

#include <unordered_set>

PXR_NAMESPACE_OPEN_SCOPE

template <class Key, class HashFn = std::hash<Key>, class EqualKey = std::equal_to<Key>,
          class Alloc = std::allocator<Key>>
using TfHashSet = std::unordered_set<Key, HashFn, EqualKey, Alloc>;

template <class Key, class HashFn = std::hash<Key>, class EqualKey = std::equal_to<Key>,
          class Alloc = std::allocator<Key>>
using TfHashMultiSet = std::unordered_multiset<Key, HashFn, EqualKey, Alloc>;

PXR_NAMESPACE_CLOSE_SCOPE
