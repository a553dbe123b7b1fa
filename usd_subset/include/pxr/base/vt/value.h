#pragma once

/// A value of any type.

#include <pxr/base/gf/declare.h>
#include <pxr/base/tf/enum.h>
#include <pxr/base/tf/hashset.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/tf/type.h>
#include <pxr/base/vt/hash.h>
#include <pxr/base/vt/streamOut.h>
#include <pxr/base/vt/traits.h>
#include <pxr/base/vt/types.h>
#include <pxr/base/vt/valueTypeInfo.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <iosfwd>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// The type in which a value given as T is kept: C strings become std::string.
template <class T>
struct Vt_ValueStoredType
{
    typedef T Type;
};
template <>
struct Vt_ValueStoredType<char const*>
{
    typedef std::string Type;
};
template <>
struct Vt_ValueStoredType<char*>
{
    typedef std::string Type;
};
template <class T>
using Vt_Stored = typename Vt_ValueStoredType<std::decay_t<T>>::Type;

/// Holds one value of any copyable, equality-comparable type, or none. Copies of large values share them
/// until one is changed. Thread: any may read and copy; one object is written by one thread at a time.
class VtValue
{
    template <class T>
    using _IfNotValue = std::enable_if_t<!std::is_same_v<std::decay_t<T>, VtValue>>;

public:
    VtValue() noexcept {}
    VtValue(VtValue const& other)
    {
        if (other._info) {
            other._info->copy(other._storage, _storage);
            _info = other._info;
        }
    }
    VtValue(VtValue&& other) noexcept { _MoveFrom(other); }
    template <class T, class = _IfNotValue<T>>
    explicit VtValue(T&& object)
    {
        using Stored = Vt_Stored<T>;
        Vt_ValueOps<Stored>::Make(_storage, std::forward<T>(object));
        _info = &Vt_valueTypeInfo<Stored>;
    }
    ~VtValue() { _Clear(); }

    /// Makes a value by swapping it out of the object, which is left default-constructed.
    template <class T>
    static VtValue Take(T& object)
    {
        VtValue value;
        value.Swap(object);
        return value;
    }

    VtValue& operator=(VtValue const& other)
    {
        if (this != &other) {
            VtValue(other).Swap(*this);
        }
        return *this;
    }
    VtValue& operator=(VtValue&& other) noexcept
    {
        if (this != &other) {
            VtValue old(std::move(*this));
            _MoveFrom(other);
        }
        return *this;
    }
    template <class T, class = _IfNotValue<T>>
    VtValue& operator=(T&& object)
    {
        VtValue(std::forward<T>(object)).Swap(*this);
        return *this;
    }

    VtValue& Swap(VtValue& other) noexcept
    {
        VtValue temporary(std::move(other));
        other._MoveFrom(*this);
        _MoveFrom(temporary);
        return *this;
    }
    friend void swap(VtValue& a, VtValue& b) noexcept { a.Swap(b); }

    /// Swaps the held value with the object; first holds T() when it holds another type.
    template <class T>
    std::enable_if_t<std::is_same_v<T, Vt_Stored<T>>, VtValue&> Swap(T& object)
    {
        if (!IsHolding<T>()) {
            *this = T();
        }
        return UncheckedSwap(object);
    }
    /// Swaps, given that it holds T.
    template <class T>
    std::enable_if_t<std::is_same_v<T, Vt_Stored<T>>, VtValue&> UncheckedSwap(T& object)
    {
        using std::swap;
        swap(Vt_ValueOps<T>::GetMutable(_storage), object);
        return *this;
    }
    VtValue& UncheckedSwap(VtValue& other) noexcept { return Swap(other); }

    /// Moves the held T out and becomes empty; returns T() when it holds another type.
    template <class T>
    T Remove()
    {
        T result;
        Swap(result);
        _Clear();
        return result;
    }
    template <class T>
    T UncheckedRemove()
    {
        T result;
        UncheckedSwap(result);
        _Clear();
        return result;
    }

    /// Calls the function with the held T, to be changed in place; false when it holds another type.
    template <class T, class Fn>
    bool Mutate(Fn&& mutate)
    {
        if (!IsHolding<T>()) {
            return false;
        }
        UncheckedMutate<T>(std::forward<Fn>(mutate));
        return true;
    }
    template <class T, class Fn>
    void UncheckedMutate(Fn&& mutate)
    {
        std::forward<Fn>(mutate)(Vt_ValueOps<T>::GetMutable(_storage));
    }

    template <class T>
    bool IsHolding() const
    {
        return _info && (_info == &Vt_valueTypeInfo<T> || *_info->type == typeid(T));
    }
    bool IsEmpty() const { return !_info; }
    bool IsArrayValued() const { return _info && _info->elementType; }
    /// Returns the number of elements of a held array, 0 for anything else.
    size_t GetArraySize() const { return _info ? _info->arraySize(_Object()) : 0; }
    /// Returns the held type, void when empty.
    std::type_info const& GetTypeid() const { return _info ? *_info->type : typeid(void); }
    /// Returns the type of a held array's elements, else void.
    std::type_info const& GetElementTypeid() const
    {
        return IsArrayValued() ? *_info->elementType : typeid(void);
    }
    /// Returns the registered type; unknown, with a warning, for one that is not registered.
    VESK_USD_API TfType GetType() const;
    VESK_USD_API std::string GetTypeName() const;

    /// Returns the held T; posts a coding error and returns a default T when it holds another type.
    template <class T>
    T const& Get() const&
    {
        if (!IsHolding<T>()) {
            _PostGetFailed(typeid(T));
            static const T* const fallback = new T();
            return *fallback;
        }
        return UncheckedGet<T>();
    }
    template <class T>
    T Get() &&
    {
        if (!IsHolding<T>()) {
            _PostGetFailed(typeid(T));
            return T();
        }
        return UncheckedRemove<T>();
    }
    template <class T>
    T const& UncheckedGet() const&
    {
        return Vt_ValueOps<T>::Get(_storage);
    }
    template <class T>
    T UncheckedGet() &&
    {
        return UncheckedRemove<T>();
    }
    /// Returns a copy of the held T, or the given value when it holds another type.
    template <class T>
    T GetWithDefault(T const& fallback = T()) const
    {
        return IsHolding<T>() ? UncheckedGet<T>() : fallback;
    }

    /// \name Conversion by registered casts
    /// Built in: between all numbers (a number out of the target's range does not convert; fractions are
    /// cut), std::string and TfToken, Gf vectors and their arrays of different precision. Empty on failure.
    /// @{
    typedef VtValue (*CastFunction)(VtValue const&);

    template <typename From, typename To>
    static void RegisterCast(VtValue (*cast)(VtValue const&))
    {
        _RegisterCast(typeid(From), typeid(To), cast);
    }
    template <typename From, typename To>
    static void RegisterSimpleCast()
    {
        _RegisterCast(typeid(From), typeid(To),
                      [](VtValue const& value) { return VtValue(To(value.UncheckedGet<From>())); });
    }
    template <typename From, typename To>
    static void RegisterSimpleBidirectionalCast()
    {
        RegisterSimpleCast<From, To>();
        RegisterSimpleCast<To, From>();
    }

    template <typename T>
    static VtValue Cast(VtValue const& value)
    {
        return value.IsHolding<T>() ? value : _Cast(typeid(T), value);
    }
    static VtValue CastToTypeOf(VtValue const& value, VtValue const& other)
    {
        return _Cast(other.GetTypeid(), value);
    }
    static VtValue CastToTypeid(VtValue const& value, std::type_info const& type)
    {
        return _Cast(type, value);
    }
    VESK_USD_API static bool CanCastFromTypeidToTypeid(std::type_info const& from, std::type_info const& to);

    template <typename T>
    VtValue& Cast()
    {
        return *this = Cast<T>(*this);
    }
    VtValue& CastToTypeOf(VtValue const& other) { return *this = _Cast(other.GetTypeid(), *this); }
    VtValue& CastToTypeid(std::type_info const& type) { return *this = _Cast(type, *this); }
    template <typename T>
    bool CanCast() const
    {
        return CanCastToTypeid(typeid(T));
    }
    bool CanCastToTypeOf(VtValue const& other) const { return CanCastToTypeid(other.GetTypeid()); }
    bool CanCastToTypeid(std::type_info const& type) const
    {
        return !IsEmpty() && CanCastFromTypeidToTypeid(GetTypeid(), type);
    }
    /// @}

    bool CanHash() const { return !_info || _info->isHashable; }
    size_t GetHash() const { return _info ? _info->hash(_Object()) : 0; }

    /// Values are equal when both are empty, or hold equal objects of one type.
    friend bool operator==(VtValue const& a, VtValue const& b)
    {
        if (!a._info || !b._info) {
            return a._info == b._info;
        }
        return (a._info == b._info || *a._info->type == *b._info->type) &&
               a._info->equal(a._Object(), b._Object());
    }
    friend bool operator!=(VtValue const& a, VtValue const& b) { return !(a == b); }
    template <class T, class = _IfNotValue<T>>
    friend bool operator==(VtValue const& a, T const& b)
    {
        return a.IsHolding<Vt_Stored<T>>() && a.UncheckedGet<Vt_Stored<T>>() == b;
    }
    template <class T, class = _IfNotValue<T>>
    friend bool operator==(T const& a, VtValue const& b)
    {
        return b == a;
    }
    template <class T, class = _IfNotValue<T>>
    friend bool operator!=(VtValue const& a, T const& b)
    {
        return !(a == b);
    }
    template <class T, class = _IfNotValue<T>>
    friend bool operator!=(T const& a, VtValue const& b)
    {
        return !(b == a);
    }

    friend VESK_USD_API std::ostream& operator<<(std::ostream& out, VtValue const& value);

    template <class HashState>
    friend void TfHashAppend(HashState& h, VtValue const& value)
    {
        h.Append(value.GetHash());
    }
    friend size_t hash_value(VtValue const& value) { return value.GetHash(); }

private:
    void const* _Object() const { return _info->get(_storage); }
    void _Clear()
    {
        if (_info) {
            std::exchange(_info, nullptr)->destroy(_storage);
        }
    }
    void _MoveFrom(VtValue& other) noexcept
    {
        _info = std::exchange(other._info, nullptr);
        if (_info) {
            _info->move(other._storage, _storage);
        }
    }
    VESK_USD_API void _PostGetFailed(std::type_info const& queried) const;
    VESK_USD_API static void _RegisterCast(std::type_info const& from, std::type_info const& to,
                                           CastFunction cast);
    VESK_USD_API static VtValue _Cast(std::type_info const& to, VtValue const& value);

    alignas(void*) unsigned char _storage[Vt_LocalStorageSize];
    const Vt_ValueTypeInfo* _info = nullptr;
};

/// Hash function object for containers.
struct VtValueHash
{
    size_t operator()(VtValue const& value) const { return value.GetHash(); }
};

PXR_NAMESPACE_CLOSE_SCOPE
