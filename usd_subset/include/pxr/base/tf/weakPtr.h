#pragma once

/// Observing pointers to objects that derive from TfWeakBase.

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/diagnosticLite.h>
#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/nullPtr.h>
#include <pxr/base/tf/refPtr.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/pxr.h>

#include <cstddef>
#include <functional>
#include <type_traits>
#include <typeinfo>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// Points at an object and knows whether it still lives. Two pointers are equal when they observe one object,
/// living or gone. To use an object that another thread may drop, promote: TfRefPtr<T>(weak).
/// Thread: any; one pointer object is written by one thread at a time.
template <class T>
class TfWeakPtr
{
public:
    typedef T DataType;
    typedef T element_type;
    template <class U>
    struct Rebind
    {
        typedef TfWeakPtr<U> Type;
    };
    template <class U>
    using _IfConvertible = std::enable_if_t<std::is_convertible_v<U*, T*>>;

    TfWeakPtr() = default;
    TfWeakPtr(TfNullPtrType) {}
    TfWeakPtr(std::nullptr_t) {}
    TfWeakPtr(TfWeakPtr const&) = default;
    TfWeakPtr(TfWeakPtr&& p) noexcept
        : _object(std::exchange(p._object, nullptr)), _remnant(std::move(p._remnant))
    {}
    template <class U, class = _IfConvertible<U>>
    TfWeakPtr(TfRefPtr<U> const& p) : TfWeakPtr(get_pointer(p))
    {}
    template <class U, class = _IfConvertible<U>>
    explicit TfWeakPtr(U* object) : _object(object)
    {
        if (object) {
            _remnant = Tf_WeakBaseAccess::GetRemnant(object->__GetTfWeakBase__());
        }
    }
    template <class U, class = _IfConvertible<U>>
    TfWeakPtr(TfWeakPtr<U> const& p) : _object(p._object), _remnant(p._remnant)
    {}

    TfWeakPtr& operator=(TfWeakPtr const&) = default;
    TfWeakPtr& operator=(TfWeakPtr&& p) noexcept
    {
        TfWeakPtr moved(std::move(p));
        std::swap(_object, moved._object);
        _remnant.swap(moved._remnant);
        return *this;
    }

    /// Returns whether the observed object is gone; a null pointer observes none and is not expired.
    bool IsExpired() const { return _remnant && !_remnant->_IsAlive(); }
    bool IsInvalid() const { return IsExpired(); }

    void const* GetUniqueIdentifier() const { return get_pointer(_remnant); }
    TfWeakBase const* GetWeakBase() const { return &operator->()->__GetTfWeakBase__(); }

    template <class U>
    bool PointsTo(U const& object) const
    {
        return _Fetch() == &object;
    }
    template <class U>
    bool PointsToA() const
    {
        return dynamic_cast<U*>(_Fetch());
    }

    T* operator->() const
    {
        if (T* object = _Fetch()) {
            return object;
        }
        Tf_PostNullSmartPtrDereferenceFatalError(TF_CALL_CONTEXT, typeid(TfWeakPtr).name());
    }
    T& operator*() const { return *operator->(); }

    using UnspecifiedBoolType = T* (TfWeakPtr::*)() const;
    operator UnspecifiedBoolType() const { return _Fetch() ? &TfWeakPtr::_Fetch : nullptr; }
    bool operator!() const { return !_Fetch(); }

    void Reset() { *this = TfWeakPtr(); }

    /// Returns the plain pointer, null when the object is gone.
    friend T* get_pointer(TfWeakPtr const& p) { return p._Fetch(); }

private:
    template <class U>
    friend class TfWeakPtr;
    template <class U>
    friend class TfRefPtr;
    template <class U>
    friend TfRefPtr<U> TfCreateRefPtrFromProtectedWeakPtr(TfWeakPtr<U> const&);

    T* _Fetch() const { return _remnant && _remnant->_IsAlive() ? _object : nullptr; }
    const TfRefBase* _Promote() const
    {
        const TfRefBase* object = _object;
        return _remnant && _remnant->_AddRefIfAlive(object) ? object : nullptr;
    }

    T* _object = nullptr;
    TfRefPtr<Tf_Remnant> _remnant;
};

/// \name Comparisons
/// Free and symmetric, so that the reversed candidates of C++20 find nothing to recurse into.
/// @{
template <class T, class U>
bool operator==(TfWeakPtr<T> const& a, TfWeakPtr<U> const& b)
{
    return a.GetUniqueIdentifier() == b.GetUniqueIdentifier();
}
template <class T, class U>
bool operator!=(TfWeakPtr<T> const& a, TfWeakPtr<U> const& b)
{
    return !(a == b);
}
template <class T, class U>
bool operator<(TfWeakPtr<T> const& a, TfWeakPtr<U> const& b)
{
    return std::less<void const*>()(a.GetUniqueIdentifier(), b.GetUniqueIdentifier());
}
template <class T, class U>
bool operator>(TfWeakPtr<T> const& a, TfWeakPtr<U> const& b)
{
    return b < a;
}
template <class T, class U>
bool operator<=(TfWeakPtr<T> const& a, TfWeakPtr<U> const& b)
{
    return !(b < a);
}
template <class T, class U>
bool operator>=(TfWeakPtr<T> const& a, TfWeakPtr<U> const& b)
{
    return !(a < b);
}
template <class T, class U>
bool Tf_SameObject(TfWeakPtr<T> const& weak, TfRefPtr<U> const& strong)
{
    if (!weak.GetUniqueIdentifier()) {
        return !strong;
    }
    T* object = get_pointer(weak);
    return object && object == get_pointer(strong);
}
template <class T, class U>
bool operator==(TfWeakPtr<T> const& a, TfRefPtr<U> const& b)
{
    return Tf_SameObject(a, b);
}
template <class T, class U>
bool operator==(TfRefPtr<T> const& a, TfWeakPtr<U> const& b)
{
    return Tf_SameObject(b, a);
}
template <class T, class U>
bool operator!=(TfWeakPtr<T> const& a, TfRefPtr<U> const& b)
{
    return !Tf_SameObject(a, b);
}
template <class T, class U>
bool operator!=(TfRefPtr<T> const& a, TfWeakPtr<U> const& b)
{
    return !Tf_SameObject(b, a);
}
template <class T>
bool operator==(TfWeakPtr<T> const& p, std::nullptr_t)
{
    return !p;
}
template <class T>
bool operator==(std::nullptr_t, TfWeakPtr<T> const& p)
{
    return !p;
}
template <class T>
bool operator!=(TfWeakPtr<T> const& p, std::nullptr_t)
{
    return bool(p);
}
template <class T>
bool operator!=(std::nullptr_t, TfWeakPtr<T> const& p)
{
    return bool(p);
}
/// @}

template <class U>
TfWeakPtr<U> TfCreateWeakPtr(U* object)
{
    return TfWeakPtr<U>(object);
}

template <class U>
TfWeakPtr<U> TfCreateNonConstWeakPtr(U const* object)
{
    return TfWeakPtr<U>(const_cast<U*>(object));
}

/// Promotes a pointer whose object another thread may be destroying; null when it is too late.
template <class T>
TfRefPtr<T> TfCreateRefPtrFromProtectedWeakPtr(TfWeakPtr<T> const& weak)
{
    return TfRefPtr<T>(weak._Promote(), typename TfRefPtr<T>::_TakeOver());
}

template <class T>
const std::type_info& TfTypeid(TfWeakPtr<T> const& p)
{
    return typeid(*p);
}

template <class ToPtr, class T>
ToPtr TfDynamic_cast(TfWeakPtr<T> const& p)
{
    return ToPtr(dynamic_cast<typename ToPtr::DataType*>(get_pointer(p)));
}

template <class ToPtr, class T>
ToPtr TfSafeDynamic_cast(TfWeakPtr<T> const& p)
{
    return TfDynamic_cast<ToPtr>(p);
}

template <class ToPtr, class T>
ToPtr TfStatic_cast(TfWeakPtr<T> const& p)
{
    return ToPtr(static_cast<typename ToPtr::DataType*>(get_pointer(p)));
}

template <class ToPtr, class T>
ToPtr TfConst_cast(TfWeakPtr<T> const& p)
{
    return ToPtr(const_cast<typename ToPtr::DataType*>(get_pointer(p)));
}

template <class HashState, class T>
void TfHashAppend(HashState& h, TfWeakPtr<T> const& p)
{
    h.Append(p.GetUniqueIdentifier());
}

template <class T>
size_t hash_value(TfWeakPtr<T> const& p)
{
    return TfHash()(p);
}

PXR_NAMESPACE_CLOSE_SCOPE
