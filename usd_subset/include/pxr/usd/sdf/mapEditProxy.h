#pragma once

/// A map-valued field (custom data, variant selections, relocates) edited in place.

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/spec.h>
#include <pxr/usd/sdf/types.h>

#include <string>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// Reads a map-valued field; an empty value where the spec or the field is gone.
SDF_API VtValue Sdf_GetMapField(const SdfSpecHandle& owner, const TfToken& field);
/// Writes a map-valued field; an empty value removes it.
SDF_API void Sdf_SetMapField(const SdfSpecHandle& owner, const TfToken& field, const VtValue& map);

/// A map whose every change is written to the layer at once.
template <class T>
class SdfMapEditProxy
{
public:
    typedef T Type;
    typedef typename T::key_type key_type;
    typedef typename T::mapped_type mapped_type;
    typedef typename T::value_type value_type;
    typedef std::size_t size_type;

    SdfMapEditProxy() = default;
    SdfMapEditProxy(const SdfSpecHandle& owner, const TfToken& field) : _owner(owner), _field(field) {}

    /// An entry that can be assigned to.
    class reference
    {
    public:
        reference(SdfMapEditProxy* map, const key_type& key) : _map(map), _key(key) {}
        reference& operator=(const mapped_type& value)
        {
            T all = *_map;
            all[_key] = value;
            _map->_Store(all);
            return *this;
        }
        operator mapped_type() const { return Get(); }
        mapped_type Get() const
        {
            const T all = *_map;
            const auto it = all.find(_key);
            return it == all.end() ? mapped_type() : it->second;
        }

    private:
        SdfMapEditProxy* _map;
        key_type _key;
    };

    operator T() const
    {
        const VtValue value = Sdf_GetMapField(_owner, _field);
        return value.IsHolding<T>() ? value.UncheckedGet<T>() : T();
    }
    SdfMapEditProxy(const SdfMapEditProxy&) = default;
    SdfMapEditProxy& operator=(const SdfMapEditProxy& other) { return *this = static_cast<T>(other); }
    SdfMapEditProxy& operator=(const T& other)
    {
        _Store(other);
        return *this;
    }

    size_type size() const { return static_cast<T>(*this).size(); }
    bool empty() const { return static_cast<T>(*this).empty(); }
    size_type count(const key_type& key) const { return static_cast<T>(*this).count(key); }
    reference operator[](const key_type& key) { return reference(this, key); }
    void insert(const value_type& entry)
    {
        T all = *this;
        all.insert(entry);
        _Store(all);
    }
    size_type erase(const key_type& key)
    {
        T all = *this;
        const size_type count = all.erase(key);
        _Store(all);
        return count;
    }
    void clear() { _Store(T()); }
    /// Returns a copy of the map, for walking over it.
    T items() const { return *this; }

    bool operator==(const T& other) const { return static_cast<T>(*this) == other; }
    bool operator!=(const T& other) const { return !(*this == other); }
    bool IsExpired() const { return !_owner; }
    explicit operator bool() const { return static_cast<bool>(_owner); }

private:
    void _Store(const T& map) { Sdf_SetMapField(_owner, _field, map.empty() ? VtValue() : VtValue(map)); }

    SdfSpecHandle _owner;
    TfToken _field;
};

PXR_NAMESPACE_CLOSE_SCOPE
