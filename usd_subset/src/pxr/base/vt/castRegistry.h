#pragma once

#include <pxr/base/vt/value.h>

#include <shared_mutex>
#include <typeindex>
#include <typeinfo>
#include <unordered_map>

PXR_NAMESPACE_OPEN_SCOPE

/// The casts between types of values. Thread: any.
class Vt_CastRegistry
{
public:
    static Vt_CastRegistry& GetInstance();

    /// Adds a cast; a second one between the same types is a coding error and has no effect.
    void Register(std::type_info const& from, std::type_info const& to, VtValue::CastFunction cast);
    /// Returns null where there is none.
    VtValue::CastFunction Find(std::type_info const& from, std::type_info const& to) const;

private:
    struct KeyHash
    {
        size_t operator()(std::pair<std::type_index, std::type_index> const& key) const
        {
            return key.first.hash_code() * 31 + key.second.hash_code();
        }
    };

    mutable std::shared_mutex m_mutex;
    std::unordered_map<std::pair<std::type_index, std::type_index>, VtValue::CastFunction, KeyHash> m_casts;
};

/// Registers the casts between numbers, and between strings and tokens.
void Vt_RegisterNumericCasts();
/// Registers the casts between Gf types and their arrays.
void Vt_RegisterGfCasts();

PXR_NAMESPACE_CLOSE_SCOPE
