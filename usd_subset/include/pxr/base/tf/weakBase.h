#pragma once

/// Base of objects that TfWeakPtr observes.

#include <pxr/base/tf/refPtr.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <atomic>
#include <mutex>

PXR_NAMESPACE_OPEN_SCOPE

/// What is left of an object for those who observe it: whether it is alive. Outlives the object.
class VESK_USD_API Tf_Remnant : public TfSimpleRefBase
{
public:
    ~Tf_Remnant() override;

    bool _IsAlive() const { return _alive.load(std::memory_order_acquire); }
    void const* _GetUniqueIdentifier() const { return this; }

    /// Marks the object as gone; waits for a promotion that is under way.
    void _Forget();
    /// Adds a reference to the counted part of the object unless it is gone or being destroyed.
    bool _AddRefIfAlive(const TfRefBase* object) const;

private:
    mutable std::mutex _mutex;
    std::atomic<bool> _alive{true};
};

/// Gives an object a remnant on first demand. Thread: any may observe; destruction as for any object.
class TfWeakBase
{
public:
    TfWeakBase() = default;
    TfWeakBase(const TfWeakBase&) {}
    TfWeakBase& operator=(const TfWeakBase&) { return *this; }

    const TfWeakBase& __GetTfWeakBase__() const { return *this; }

    /// Returns an address that no other object has while anyone observes this one.
    void const* GetUniqueIdentifier() const { return get_pointer(_Register()); }

protected:
    ~TfWeakBase()
    {
        if (Tf_Remnant* remnant = _remnant.load(std::memory_order_acquire)) {
            remnant->_Forget();
            TfCreateRefPtr(remnant);
        }
    }

private:
    friend class Tf_WeakBaseAccess;
    VESK_USD_API TfRefPtr<Tf_Remnant> _Register() const;

    mutable std::atomic<Tf_Remnant*> _remnant{nullptr};
};

class Tf_WeakBaseAccess
{
public:
    static TfRefPtr<Tf_Remnant> GetRemnant(TfWeakBase const& object) { return object._Register(); }
};

PXR_NAMESPACE_CLOSE_SCOPE
