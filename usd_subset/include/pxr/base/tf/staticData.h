#pragma once

/// Global objects that are made on first use and never destroyed.

#include <pxr/base/tf/diagnosticLite.h>
#include <pxr/base/tf/preprocessorUtilsLite.h>
#include <pxr/pxr.h>

#include <atomic>
#include <mutex>

PXR_NAMESPACE_OPEN_SCOPE

template <class T>
struct Tf_StaticDataDefaultFactory
{
    static T* New() { return new T; }
};

/// A namespace-scope object that is safe to use from any static initializer and from any thread: it is itself
/// constant-initialized and makes its T once.
template <class T, class Factory = Tf_StaticDataDefaultFactory<T>>
class TfStaticData
{
public:
    constexpr TfStaticData() = default;
    TfStaticData(const TfStaticData&) = delete;
    TfStaticData& operator=(const TfStaticData&) = delete;

    T* Get() const
    {
        T* data = _data.load(std::memory_order_acquire);
        return data ? data : _Make();
    }
    T* operator->() const { return Get(); }
    T& operator*() const { return *Get(); }

    bool IsInitialized() const { return _data.load(std::memory_order_acquire) != nullptr; }
    /// Makes the object now.
    void Touch() const { Get(); }

private:
    T* _Make() const
    {
        std::call_once(_once, [this] { _data.store(Factory::New(), std::memory_order_release); });
        return _data.load(std::memory_order_acquire);
    }

    mutable std::atomic<T*> _data{nullptr};
    mutable std::once_flag _once;
};

PXR_NAMESPACE_CLOSE_SCOPE
