#pragma once

/// Dictionaries of values.

#include <pxr/base/tf/diagnosticLite.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/vt/value.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <initializer_list>
#include <iosfwd>
#include <map>
#include <string>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A map from strings to values, iterated in the order of the keys. A dictionary held as a value of another
/// can be addressed by a path of keys, as in "a:b:c".
class VtDictionary
{
    typedef std::map<std::string, VtValue, std::less<>> _Map;

public:
    typedef _Map::key_type key_type;
    typedef _Map::mapped_type mapped_type;
    typedef _Map::value_type value_type;
    typedef _Map::allocator_type allocator_type;
    typedef _Map::size_type size_type;
    typedef _Map::iterator iterator;
    typedef _Map::const_iterator const_iterator;

    VtDictionary() = default;
    explicit VtDictionary(int) {}
    template <class Iterator>
    VtDictionary(Iterator first, Iterator last) : _map(first, last)
    {}
    VtDictionary(std::initializer_list<value_type> entries) : _map(entries) {}

    VtValue& operator[](const std::string& key) { return _map[key]; }
    size_type count(const std::string& key) const { return _map.count(key); }
    size_type count(const char* key) const { return _map.count(key); }
    size_type erase(const std::string& key) { return _map.erase(key); }
    iterator erase(iterator position) { return _map.erase(position); }
    iterator erase(iterator first, iterator last) { return _map.erase(first, last); }
    void clear() { _map.clear(); }
    iterator find(const std::string& key) { return _map.find(key); }
    iterator find(const char* key) { return _map.find(key); }
    const_iterator find(const std::string& key) const { return _map.find(key); }
    const_iterator find(const char* key) const { return _map.find(key); }
    iterator begin() { return _map.begin(); }
    const_iterator begin() const { return _map.begin(); }
    iterator end() { return _map.end(); }
    const_iterator end() const { return _map.end(); }
    size_type size() const { return _map.size(); }
    bool empty() const { return _map.empty(); }
    void swap(VtDictionary& other) noexcept { _map.swap(other._map); }
    friend void swap(VtDictionary& a, VtDictionary& b) noexcept { a.swap(b); }
    std::pair<iterator, bool> insert(const value_type& entry) { return _map.insert(entry); }
    template <class Iterator>
    void insert(Iterator first, Iterator last)
    {
        _map.insert(first, last);
    }

    /// Returns the value at a path of keys, null where there is none.
    VESK_USD_API VtValue const* GetValueAtPath(std::string const& keyPath,
                                               char const* delimiters = ":") const;
    VESK_USD_API VtValue const* GetValueAtPath(std::vector<std::string> const& keyPath) const;
    /// Sets the value at a path of keys, making the dictionaries on the way; an empty path changes nothing.
    VESK_USD_API void SetValueAtPath(std::string const& keyPath, VtValue const& value,
                                     char const* delimiters = ":");
    VESK_USD_API void SetValueAtPath(std::vector<std::string> const& keyPath, VtValue const& value);
    /// Removes the value at a path of keys, and the dictionaries on the way that become empty by it.
    VESK_USD_API void EraseValueAtPath(std::string const& keyPath, char const* delimiters = ":");
    VESK_USD_API void EraseValueAtPath(std::vector<std::string> const& keyPath);

    friend bool operator==(VtDictionary const& a, VtDictionary const& b) { return a._map == b._map; }
    friend bool operator!=(VtDictionary const& a, VtDictionary const& b) { return !(a == b); }
    friend VESK_USD_API std::ostream& operator<<(std::ostream& out, VtDictionary const& dictionary);

    template <class HashState>
    friend void TfHashAppend(HashState& h, VtDictionary const& dictionary)
    {
        h.AppendRange(dictionary.begin(), dictionary.end());
    }
    friend size_t hash_value(VtDictionary const& dictionary)
    {
        return dictionary.empty() ? 0 : TfHash()(dictionary);
    }

private:
    _Map _map;
};

struct VtDictionaryHash
{
    size_t operator()(VtDictionary const& dictionary) const { return hash_value(dictionary); }
};

VESK_USD_API VtDictionary const& VtGetEmptyDictionary();

/// Returns whether the key is there with a value of type T.
template <typename T>
bool VtDictionaryIsHolding(const VtDictionary& dictionary, const std::string& key)
{
    const auto found = dictionary.find(key);
    return found != dictionary.end() && found->second.IsHolding<T>();
}

/// Returns the value of the key, which must be there.
template <typename T>
const T& VtDictionaryGet(const VtDictionary& dictionary, const std::string& key)
{
    const auto found = dictionary.find(key);
    if (found == dictionary.end()) {
        TF_FATAL_ERROR("Attempted to get value for key '" + key + "', which is not in the dictionary.");
    }
    return found->second.Get<T>();
}

/// \name VtDictionaryGet<T>(dictionary, key, VtDefault = value)
/// @{
template <class T>
struct Vt_DefaultHolder
{
    explicit Vt_DefaultHolder(T const& value) : val(value) {}
    T const& val;
};
struct Vt_DefaultGenerator
{
    template <class T>
    Vt_DefaultHolder<T> operator=(T const& value) const
    {
        return Vt_DefaultHolder<T>(value);
    }
};
inline constexpr Vt_DefaultGenerator VtDefault{};

template <class T, class U>
T VtDictionaryGet(const VtDictionary& dictionary, const std::string& key, Vt_DefaultHolder<U> const& fallback)
{
    const auto found = dictionary.find(key);
    return found != dictionary.end() && found->second.IsHolding<T>() ? found->second.UncheckedGet<T>()
                                                                     : T(fallback.val);
}
/// @}

/// \name Composition: the strong dictionary's entries win
/// With coercion, a strong value is cast to the type of the weak entry, and becomes empty where it cannot be.
/// The recursive form composes dictionaries that both hold under one key.
/// @{
VESK_USD_API VtDictionary VtDictionaryOver(const VtDictionary& strong, const VtDictionary& weak,
                                           bool coerceToWeakerOpinionType = false);
VESK_USD_API void VtDictionaryOver(VtDictionary* strong, const VtDictionary& weak,
                                   bool coerceToWeakerOpinionType = false);
VESK_USD_API void VtDictionaryOver(const VtDictionary& strong, VtDictionary* weak,
                                   bool coerceToWeakerOpinionType = false);
VESK_USD_API VtDictionary VtDictionaryOverRecursive(const VtDictionary& strong, const VtDictionary& weak,
                                                    bool coerceToWeakerOpinionType = false);
VESK_USD_API void VtDictionaryOverRecursive(VtDictionary* strong, const VtDictionary& weak,
                                            bool coerceToWeakerOpinionType = false);
VESK_USD_API void VtDictionaryOverRecursive(const VtDictionary& strong, VtDictionary* weak,
                                            bool coerceToWeakerOpinionType = false);
/// @}

PXR_NAMESPACE_CLOSE_SCOPE
