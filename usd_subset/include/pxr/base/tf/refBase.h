#pragma once

/// Base of objects that TfRefPtr counts.

#include <pxr/export.h>
#include <pxr/pxr.h>

#include <atomic>
#include <cstddef>

PXR_NAMESPACE_OPEN_SCOPE

template <class T>
class TfRefPtr;

/// Holds the count; an object starts with one reference, which TfCreateRefPtr() takes over. Thread: any.
class VESK_USD_API TfRefBase
{
public:
    TfRefBase() = default;
    TfRefBase(TfRefBase const&) {}
    TfRefBase& operator=(TfRefBase const&) { return *this; }

    size_t GetCurrentCount() const { return _refCount.load(std::memory_order_relaxed); }
    bool IsUnique() const { return GetCurrentCount() == 1; }

protected:
    virtual ~TfRefBase();

private:
    template <class U>
    friend class TfRefPtr;
    friend class Tf_RefCount;

    mutable std::atomic<size_t> _refCount{1};
};

/// A counted base whose destructor is public.
class VESK_USD_API TfSimpleRefBase : public TfRefBase
{
public:
    virtual ~TfSimpleRefBase();
};

/// The three operations on a count.
class Tf_RefCount
{
public:
    static void Add(const TfRefBase* object)
    {
        if (object) {
            object->_refCount.fetch_add(1, std::memory_order_relaxed);
        }
    }

    /// Adds a reference unless the last one is gone, that is unless the object is being destroyed.
    static bool AddIfAlive(const TfRefBase* object)
    {
        size_t count = object->_refCount.load(std::memory_order_relaxed);
        while (count != 0) {
            if (object->_refCount.compare_exchange_weak(count, count + 1, std::memory_order_acq_rel)) {
                return true;
            }
        }
        return false;
    }

    static void Remove(const TfRefBase* object)
    {
        // Release and acquire in one: whoever destroys sees what every other holder wrote.
        if (object && object->_refCount.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete object;
        }
    }
};

PXR_NAMESPACE_CLOSE_SCOPE
