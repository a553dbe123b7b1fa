#pragma once

/// A weak pointer that has forgotten its type.

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/weakPtr.h>
#include <pxr/pxr.h>

#include <typeinfo>

PXR_NAMESPACE_OPEN_SCOPE

/// Observes an object of any class that derives from TfWeakBase.
class TfAnyWeakPtr
{
public:
    TfAnyWeakPtr() = default;
    TfAnyWeakPtr(std::nullptr_t) {}
    TfAnyWeakPtr(TfNullPtrType) {}
    template <class T>
    TfAnyWeakPtr(TfWeakPtr<T> const& p) : _base(p ? p.GetWeakBase() : nullptr), _type(&typeid(T))
    {
        if (_base) {
            _remnant = Tf_WeakBaseAccess::GetRemnant(*_base);
        }
    }

    /// Returns whether the object was there and is gone.
    bool IsInvalid() const { return _remnant && !_remnant->_IsAlive(); }
    void const* GetUniqueIdentifier() const { return get_pointer(_remnant); }
    TfWeakBase const* GetWeakBase() const { return _remnant && _remnant->_IsAlive() ? _base : nullptr; }
    std::type_info const& GetTypeInfo() const { return *_type; }

    explicit operator bool() const { return GetWeakBase() != nullptr; }
    bool operator!() const { return GetWeakBase() == nullptr; }
    bool operator==(TfAnyWeakPtr const& o) const { return _remnant == o._remnant; }
    bool operator!=(TfAnyWeakPtr const& o) const { return !(*this == o); }
    bool operator<(TfAnyWeakPtr const& o) const { return _remnant < o._remnant; }

    template <class HashState>
    friend void TfHashAppend(HashState& h, TfAnyWeakPtr const& p)
    {
        h.Append(p.GetUniqueIdentifier());
    }

private:
    TfWeakBase const* _base = nullptr;
    std::type_info const* _type = &typeid(void);
    TfRefPtr<Tf_Remnant> _remnant;
};

PXR_NAMESPACE_CLOSE_SCOPE
