#pragma once

/// How the types of this library build their hash_value().

#include <pxr/pxr.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

PXR_NAMESPACE_OPEN_SCOPE

/// The hash of one part: both zeros hash alike because they compare equal.
template <class T>
inline size_t Gf_HashPart(T const& part)
{
    if constexpr (std::is_floating_point_v<T>) {
        uint64_t bits = 0;
        if (part != T(0)) {
            std::memcpy(&bits, &part, sizeof(T));
        }
        return static_cast<size_t>(bits);
    } else if constexpr (std::is_integral_v<T> || std::is_enum_v<T>) {
        return static_cast<size_t>(part);
    } else {
        return hash_value(part);
    }
}

/// Combines the hashes of several parts; their order matters.
template <class... Parts>
inline size_t Gf_HashCombine(Parts const&... parts)
{
    uint64_t state = 0;
    auto append = [&state](uint64_t code) {
        state = (state ^ code) * 0x9e3779b97f4a7c15u;
        state ^= state >> 32;
    };
    (append(Gf_HashPart(parts)), ...);
    return static_cast<size_t>(state);
}

/// The hash of count parts that lie one after the other.
template <class T>
inline size_t Gf_HashArray(T const* parts, size_t count)
{
    size_t state = count;
    for (size_t i = 0; i != count; ++i) {
        state = Gf_HashCombine(state, parts[i]);
    }
    return state;
}

PXR_NAMESPACE_CLOSE_SCOPE
