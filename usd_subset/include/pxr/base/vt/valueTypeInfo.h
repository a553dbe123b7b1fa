#pragma once

/// How VtValue keeps a value of one type: private to VtValue.

#include <pxr/base/vt/hash.h>
#include <pxr/base/vt/streamOut.h>
#include <pxr/base/vt/traits.h>
#include <pxr/pxr.h>

#include <atomic>
#include <iosfwd>
#include <new>
#include <type_traits>
#include <typeinfo>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// Small values lie in the VtValue itself, others are shared by count and copied before they are changed.
inline constexpr size_t Vt_LocalStorageSize = sizeof(void*);

template <class T>
inline constexpr bool Vt_IsLocal = sizeof(T) <= Vt_LocalStorageSize &&
                                   alignof(T) <= alignof(void*) && std::is_nothrow_move_constructible_v<T>;

template <class T>
struct Vt_SharedValue
{
    template <class... Args>
    explicit Vt_SharedValue(Args&&... args) : value(std::forward<Args>(args)...)
    {}
    T value;
    std::atomic<size_t> count{1};
};

/// The operations of one type. `storage` is the VtValue's own bytes, `object` the value itself.
struct Vt_ValueTypeInfo
{
    std::type_info const* type;
    std::type_info const* elementType; // of an array's elements, else null
    bool isHashable;
    void (*copy)(void const* storage, void* to);
    void (*move)(void* storage, void* to);
    void (*destroy)(void* storage);
    void const* (*get)(void const* storage);
    size_t (*hash)(void const* object);
    bool (*equal)(void const* object, void const* other);
    std::ostream& (*stream)(void const* object, std::ostream& out);
    size_t (*arraySize)(void const* object);
};

template <class T>
struct Vt_ValueOps
{
    using Shared = Vt_SharedValue<T>;

    static Shared*& SharedOf(void* storage) { return *static_cast<Shared**>(storage); }
    static Shared* SharedOf(void const* storage) { return *static_cast<Shared* const*>(storage); }

    template <class... Args>
    static void Make(void* storage, Args&&... args)
    {
        if constexpr (Vt_IsLocal<T>) {
            new (storage) T(std::forward<Args>(args)...);
        } else {
            new (storage) Shared*(new Shared(std::forward<Args>(args)...));
        }
    }

    static void Copy(void const* storage, void* to)
    {
        if constexpr (Vt_IsLocal<T>) {
            new (to) T(*static_cast<T const*>(storage));
        } else {
            Shared* shared = SharedOf(storage);
            shared->count.fetch_add(1, std::memory_order_relaxed);
            new (to) Shared*(shared);
        }
    }

    static void Move(void* storage, void* to)
    {
        if constexpr (Vt_IsLocal<T>) {
            T* object = static_cast<T*>(storage);
            new (to) T(std::move(*object));
            object->~T();
        } else {
            new (to) Shared*(SharedOf(storage));
        }
    }

    static void Destroy(void* storage)
    {
        if constexpr (Vt_IsLocal<T>) {
            static_cast<T*>(storage)->~T();
        } else {
            Release(SharedOf(storage));
        }
    }

    static T const& Get(void const* storage)
    {
        if constexpr (Vt_IsLocal<T>) {
            return *static_cast<T const*>(storage);
        } else {
            return SharedOf(storage)->value;
        }
    }

    /// Returns the value for writing, alone: a shared one is copied first.
    static T& GetMutable(void* storage)
    {
        if constexpr (Vt_IsLocal<T>) {
            return *static_cast<T*>(storage);
        } else {
            Shared*& shared = SharedOf(storage);
            if (shared->count.load(std::memory_order_acquire) != 1) {
                Shared* alone = new Shared(std::as_const(shared->value));
                Release(std::exchange(shared, alone));
            }
            return shared->value;
        }
    }

    static void const* GetErased(void const* storage) { return &Get(storage); }
    static size_t Hash(void const* object) { return VtHashValue(*static_cast<T const*>(object)); }
    static bool Equal(void const* object, void const* other)
    {
        return *static_cast<T const*>(object) == *static_cast<T const*>(other);
    }
    static std::ostream& Stream(void const* object, std::ostream& out)
    {
        return VtStreamOut(*static_cast<T const*>(object), out);
    }
    static size_t ArraySize(void const* object)
    {
        if constexpr (VtIsArray<T>::value) {
            return static_cast<T const*>(object)->size();
        } else {
            return 0;
        }
    }

    static constexpr std::type_info const* ElementType()
    {
        if constexpr (VtIsArray<T>::value) {
            return &typeid(typename T::value_type);
        } else {
            return nullptr;
        }
    }

    static void Release(Shared* shared)
    {
        if (shared->count.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete shared;
        }
    }
};

template <class T>
inline constexpr Vt_ValueTypeInfo Vt_valueTypeInfo = {&typeid(T),
                                                      Vt_ValueOps<T>::ElementType(),
                                                      VtIsHashable<T>(),
                                                      &Vt_ValueOps<T>::Copy,
                                                      &Vt_ValueOps<T>::Move,
                                                      &Vt_ValueOps<T>::Destroy,
                                                      &Vt_ValueOps<T>::GetErased,
                                                      &Vt_ValueOps<T>::Hash,
                                                      &Vt_ValueOps<T>::Equal,
                                                      &Vt_ValueOps<T>::Stream,
                                                      &Vt_ValueOps<T>::ArraySize};

PXR_NAMESPACE_CLOSE_SCOPE
