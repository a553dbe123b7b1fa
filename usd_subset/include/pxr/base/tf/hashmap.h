#pragma once

/// The unordered maps of the scene description under the names that its users know.

#include <pxr/base/tf/hash.h>
#include <pxr/pxr.h>

#include <unordered_map>

PXR_NAMESPACE_OPEN_SCOPE

template <class Key, class Mapped, class HashFn = std::hash<Key>, class EqualKey = std::equal_to<Key>,
          class Alloc = std::allocator<std::pair<const Key, Mapped>>>
using TfHashMap = std::unordered_map<Key, Mapped, HashFn, EqualKey, Alloc>;

template <class Key, class Mapped, class HashFn = std::hash<Key>, class EqualKey = std::equal_to<Key>,
          class Alloc = std::allocator<std::pair<const Key, Mapped>>>
using TfHashMultiMap = std::unordered_multimap<Key, Mapped, HashFn, EqualKey, Alloc>;

PXR_NAMESPACE_CLOSE_SCOPE
