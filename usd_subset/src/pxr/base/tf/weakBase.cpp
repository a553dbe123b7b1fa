#include <pxr/base/tf/weakBase.h>

PXR_NAMESPACE_OPEN_SCOPE

Tf_Remnant::~Tf_Remnant() = default;

void Tf_Remnant::_Forget()
{
    const std::lock_guard<std::mutex> lock(_mutex);
    _alive.store(false, std::memory_order_release);
}

bool Tf_Remnant::_AddRefIfAlive(const TfRefBase* object) const
{
    // The lock keeps the object's memory: its destructor passes _Forget() before the memory goes.
    const std::lock_guard<std::mutex> lock(_mutex);
    return _alive.load(std::memory_order_relaxed) && Tf_RefCount::AddIfAlive(object);
}

TfRefPtr<Tf_Remnant> TfWeakBase::_Register() const
{
    Tf_Remnant* remnant = _remnant.load(std::memory_order_acquire);
    if (!remnant) {
        auto* made = new Tf_Remnant;
        if (_remnant.compare_exchange_strong(remnant, made, std::memory_order_acq_rel)) {
            remnant = made;
        } else {
            delete made;
        }
    }
    return TfRefPtr<Tf_Remnant>(remnant);
}

PXR_NAMESPACE_CLOSE_SCOPE
