#pragma once

/// Hashing of values and of user types: TfHash and the state that types append themselves to.

#include <pxr/export.h>
#include <pxr/pxr.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// \name Appending the types of the language and of the standard library
/// A user type joins by a function TfHashAppend(HashState&, T const&) in its own namespace.
/// @{
template <class HashState, class T>
std::enable_if_t<std::is_integral_v<T>> TfHashAppend(HashState& h, T integral)
{
    h.Append(integral);
}

template <class HashState, class Enum>
std::enable_if_t<std::is_enum_v<Enum>> TfHashAppend(HashState& h, Enum e)
{
    h.Append(static_cast<std::underlying_type_t<Enum>>(e));
}

/// Both zeros hash alike because they compare equal.
template <class HashState, class T>
std::enable_if_t<std::is_floating_point_v<T>> TfHashAppend(HashState& h, T number)
{
    static_assert(sizeof(T) <= sizeof(uint64_t), "long double has padding and no hash");
    uint64_t bits = 0;
    if (number != static_cast<T>(0)) {
        std::memcpy(&bits, &number, sizeof(T));
    }
    h.Append(bits);
}

template <class HashState, class T, class U>
void TfHashAppend(HashState& h, std::pair<T, U> const& pair)
{
    h.Append(pair.first, pair.second);
}

template <class HashState, class T>
void TfHashAppend(HashState& h, std::vector<T> const& elements)
{
    h.AppendContiguous(elements.data(), elements.size());
}

template <class HashState>
void TfHashAppend(HashState& h, std::vector<bool> const& elements)
{
    h.Append(std::hash<std::vector<bool>>()(elements));
}

template <class HashState, class T, class Compare>
void TfHashAppend(HashState& h, std::set<T, Compare> const& elements)
{
    h.AppendRange(elements.begin(), elements.end());
}

template <class HashState, class Key, class Value, class Compare>
void TfHashAppend(HashState& h, std::map<Key, Value, Compare> const& elements)
{
    h.AppendRange(elements.begin(), elements.end());
}

template <class HashState>
void TfHashAppend(HashState& h, const std::string& text)
{
    h.AppendContiguous(text.data(), text.size());
}

template <class HashState, class T>
void TfHashAppend(HashState& h, std::unique_ptr<T> const& pointer)
{
    h.Append(pointer.get());
}

template <class HashState, class T>
void TfHashAppend(HashState& h, std::shared_ptr<T> const& pointer)
{
    h.Append(pointer.get());
}

template <class HashState, class T>
void TfHashAppend(HashState& h, const T* pointer)
{
    h.Append(reinterpret_cast<uintptr_t>(pointer));
}

/// Characters are ambiguous, address or text: say which with TfHashAsCStr().
template <class HashState>
void TfHashAppend(HashState& h, char const* pointer) = delete;
template <class HashState>
void TfHashAppend(HashState& h, char* pointer) = delete;
/// @}

/// Marks a C string whose characters, not whose address, is to be hashed.
struct TfCStrHashWrapper
{
    explicit TfCStrHashWrapper(char const* text) : cstr(text) {}
    char const* cstr;
};

inline TfCStrHashWrapper TfHashAsCStr(char const* text) { return TfCStrHashWrapper(text); }

template <class HashState>
void TfHashAppend(HashState& h, TfCStrHashWrapper text)
{
    h.AppendContiguous(text.cstr, std::strlen(text.cstr));
}

/// \name Choice of the hash: TfHashAppend(), then std::hash, then hash_value()
/// @{
template <int N>
struct Tf_HashRank : Tf_HashRank<N - 1>
{};
template <>
struct Tf_HashRank<0>
{};

template <class HashState, class T>
auto Tf_HashImpl(HashState& h, T&& value, Tf_HashRank<2>)
    -> decltype(TfHashAppend(h, std::forward<T>(value)), void())
{
    TfHashAppend(h, std::forward<T>(value));
}

template <class HashState, class T>
auto Tf_HashImpl(HashState& h, T&& value, Tf_HashRank<1>)
    -> decltype(std::hash<std::decay_t<T>>()(std::forward<T>(value)), void())
{
    h.Append(std::hash<std::decay_t<T>>()(std::forward<T>(value)));
}

template <class HashState, class T>
auto Tf_HashImpl(HashState& h, T&& value, Tf_HashRank<0>)
    -> decltype(hash_value(std::forward<T>(value)), void())
{
    h.Append(hash_value(std::forward<T>(value)));
}
/// @}

/// What a hash function appends to. Thread: one at a time.
class Tf_HashState
{
public:
    template <class... Args>
    void Append(Args&&... args)
    {
        (_Append(std::forward<Args>(args)), ...);
    }

    template <class T>
    void AppendContiguous(T const* elements, size_t count)
    {
        if constexpr (std::is_integral_v<T>) {
            _AppendBytes(reinterpret_cast<char const*>(elements), count * sizeof(T));
        } else {
            for (size_t i = 0; i != count; ++i) {
                _Append(elements[i]);
            }
        }
    }

    template <class Iterator>
    void AppendRange(Iterator first, Iterator last)
    {
        for (; first != last; ++first) {
            _Append(*first);
        }
    }

    size_t GetCode() const { return _Mix(_state); }

private:
    template <class T>
    void _Append(T&& value)
    {
        using Type = std::decay_t<T>;
        if constexpr (std::is_integral_v<Type>) {
            _state = _Mix(_state + 0x9e3779b97f4a7c15u) ^ static_cast<uint64_t>(value);
        } else {
            Tf_HashImpl(*this, std::forward<T>(value), Tf_HashRank<2>());
        }
    }

    VESK_USD_API void _AppendBytes(char const* bytes, size_t count);

    // The finalizer of SplitMix64 (Steele, Lea, Flood 2014): a bijection in which every input bit
    // reaches every output bit.
    static constexpr uint64_t _Mix(uint64_t x)
    {
        x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9u;
        x = (x ^ (x >> 27)) * 0x94d049bb133111ebu;
        return x ^ (x >> 31);
    }

    uint64_t _state = 0;
};

/// Function object that hashes any value that appends itself, has std::hash, or has hash_value().
class TfHash
{
public:
    template <class T>
    auto operator()(T&& value) const
        -> decltype(Tf_HashImpl(std::declval<Tf_HashState&>(), std::forward<T>(value), Tf_HashRank<2>()),
                    size_t())
    {
        Tf_HashState h;
        Tf_HashImpl(h, std::forward<T>(value), Tf_HashRank<2>());
        return h.GetCode();
    }

    /// Returns one hash of all arguments, in their order.
    template <class... Args>
    static size_t Combine(Args&&... args)
    {
        Tf_HashState h;
        (Tf_HashImpl(h, std::forward<Args>(args), Tf_HashRank<2>()), ...);
        return h.GetCode();
    }
};

/// Hashes the characters of a C string.
struct TfHashCharPtr
{
    size_t operator()(const char* text) const { return text ? TfHash()(TfHashAsCStr(text)) : 0; }
};

struct TfHashCString
{
    size_t operator()(const char* text) const { return TfHashCharPtr()(text); }
};

struct TfEqualCString
{
    bool operator()(const char* a, const char* b) const { return std::strcmp(a, b) == 0; }
};

PXR_NAMESPACE_CLOSE_SCOPE
