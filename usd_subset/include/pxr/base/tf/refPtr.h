#pragma once

/// Shared ownership of objects that derive from TfRefBase.

#include <pxr/base/tf/diagnosticLite.h>
#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/nullPtr.h>
#include <pxr/base/tf/refBase.h>
#include <pxr/pxr.h>

#include <cstddef>
#include <functional>
#include <type_traits>
#include <typeinfo>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

template <class T>
class TfWeakPtr;
template <class T>
class TfRefPtr;

template <class T>
TfRefPtr<T> TfCreateRefPtr(T* object);
template <class T>
TfRefPtr<T> TfCreateRefPtrFromProtectedWeakPtr(TfWeakPtr<T> const& weak);

/// A counted pointer to T, which derives from TfRefBase; T may be incomplete where nothing is dereferenced.
/// Thread: any; one pointer object is written by one thread at a time, the object's count is atomic.
template <class T>
class TfRefPtr
{
public:
    typedef T DataType;
    typedef T element_type;
    template <class U>
    struct Rebind
    {
        typedef TfRefPtr<U> Type;
    };
    template <class U>
    using _IfConvertible = std::enable_if_t<std::is_convertible_v<U*, T*>>;

    TfRefPtr() = default;
    TfRefPtr(TfNullPtrType) {}
    TfRefPtr(std::nullptr_t) {}
    TfRefPtr(TfRefPtr const& p) : _object(p._object) { Tf_RefCount::Add(_object); }
    TfRefPtr(TfRefPtr&& p) noexcept : _object(std::exchange(p._object, nullptr)) {}
    template <class U, class = _IfConvertible<U>>
    TfRefPtr(TfRefPtr<U> const& p) : _object(p._object)
    {
        Tf_RefCount::Add(_object);
    }
    template <class U, class = _IfConvertible<U>>
    TfRefPtr(TfRefPtr<U>&& p) : _object(std::exchange(p._object, nullptr))
    {}
    /// Shares the object of a raw pointer; unlike TfCreateRefPtr() it adds a reference.
    template <class U, class = _IfConvertible<U>>
    explicit TfRefPtr(U* object) : _object(object)
    {
        Tf_RefCount::Add(_object);
    }
    /// Shares the object of a weak pointer; null where it expired or is being destroyed.
    template <class U, class = _IfConvertible<U>>
    TfRefPtr(TfWeakPtr<U> const& p) : _object(p._Promote())
    {}
    ~TfRefPtr() { Tf_RefCount::Remove(_object); }

    TfRefPtr& operator=(TfRefPtr const& p)
    {
        TfRefPtr(p).swap(*this);
        return *this;
    }
    TfRefPtr& operator=(TfRefPtr&& p) noexcept
    {
        TfRefPtr(std::move(p)).swap(*this);
        return *this;
    }

    template <class U>
    auto operator==(TfRefPtr<U> const& p) const -> decltype(std::declval<T*>() == std::declval<U*>(), bool())
    {
        return _object == p._object;
    }
    template <class U>
    auto operator!=(TfRefPtr<U> const& p) const -> decltype(std::declval<T*>() == std::declval<U*>(), bool())
    {
        return _object != p._object;
    }
    template <class U>
    bool operator<(TfRefPtr<U> const& p) const
    {
        return std::less<const void*>()(_object, p._object);
    }
    template <class U>
    bool operator>(TfRefPtr<U> const& p) const
    {
        return p < *this;
    }
    template <class U>
    bool operator<=(TfRefPtr<U> const& p) const
    {
        return !(p < *this);
    }
    template <class U>
    bool operator>=(TfRefPtr<U> const& p) const
    {
        return !(*this < p);
    }

    T* operator->() const
    {
        if (_object) {
            return _Get();
        }
        Tf_PostNullSmartPtrDereferenceFatalError(TF_CALL_CONTEXT, typeid(TfRefPtr).name());
    }
    T& operator*() const { return *operator->(); }

    using UnspecifiedBoolType = const TfRefBase*(TfRefPtr::*);
    operator UnspecifiedBoolType() const { return _object ? &TfRefPtr::_object : nullptr; }
    bool operator!() const { return _object == nullptr; }

    void swap(TfRefPtr& other) noexcept { std::swap(_object, other._object); }
    void Reset() { TfRefPtr().swap(*this); }

    /// Returns the plain pointer without a reference.
    friend T* get_pointer(TfRefPtr const& p) { return p._Get(); }
    friend void swap(TfRefPtr& a, TfRefPtr& b) noexcept { a.swap(b); }

private:
    template <class U>
    friend class TfRefPtr;
    template <class U>
    friend class TfWeakPtr;
    template <class U>
    friend TfRefPtr<U> TfCreateRefPtr(U*);
    template <class U>
    friend TfRefPtr<U> TfCreateRefPtrFromProtectedWeakPtr(TfWeakPtr<U> const&);

    struct _TakeOver
    {};
    TfRefPtr(const TfRefBase* object, _TakeOver) : _object(object) {}
    T* _Get() const { return static_cast<T*>(const_cast<TfRefBase*>(_object)); }

    const TfRefBase* _object = nullptr;
};

/// Takes over the one reference that a new object is born with.
template <class T>
TfRefPtr<T> TfCreateRefPtr(T* object)
{
    return TfRefPtr<T>(object, typename TfRefPtr<T>::_TakeOver());
}

template <class T>
bool operator==(TfRefPtr<T> const& p, std::nullptr_t)
{
    return !p;
}
template <class T>
bool operator==(std::nullptr_t, TfRefPtr<T> const& p)
{
    return !p;
}
template <class T>
bool operator!=(TfRefPtr<T> const& p, std::nullptr_t)
{
    return bool(p);
}
template <class T>
bool operator!=(std::nullptr_t, TfRefPtr<T> const& p)
{
    return bool(p);
}

template <class T>
const std::type_info& TfTypeid(TfRefPtr<T> const& p)
{
    return typeid(*p);
}

template <class D, class T>
TfRefPtr<typename D::DataType> TfDynamic_cast(TfRefPtr<T> const& p)
{
    return TfRefPtr<typename D::DataType>(dynamic_cast<typename D::DataType*>(get_pointer(p)));
}

template <class D, class T>
TfRefPtr<typename D::DataType> TfSafeDynamic_cast(TfRefPtr<T> const& p)
{
    return TfDynamic_cast<D>(p);
}

template <class D, class T>
TfRefPtr<typename D::DataType> TfStatic_cast(TfRefPtr<T> const& p)
{
    return TfRefPtr<typename D::DataType>(static_cast<typename D::DataType*>(get_pointer(p)));
}

template <class D>
TfRefPtr<typename D::DataType> TfConst_cast(TfRefPtr<const typename D::DataType> const& p)
{
    return TfRefPtr<typename D::DataType>(const_cast<typename D::DataType*>(get_pointer(p)));
}

template <class HashState, class T>
void TfHashAppend(HashState& h, TfRefPtr<T> const& p)
{
    h.Append(static_cast<const void*>(get_pointer(p)));
}

template <class T>
size_t hash_value(TfRefPtr<T> const& p)
{
    return TfHash()(p);
}

PXR_NAMESPACE_CLOSE_SCOPE
