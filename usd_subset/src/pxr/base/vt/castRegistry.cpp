#include "pxr/base/vt/castRegistry.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/registryManager.h>

#include <atomic>
#include <mutex>

PXR_NAMESPACE_OPEN_SCOPE

Vt_CastRegistry& Vt_CastRegistry::GetInstance()
{
    static Vt_CastRegistry* const registry = new Vt_CastRegistry;
    // Whatever registers casts comes back here, hence the guard.
    thread_local bool registering = false;
    static std::atomic<bool> ready{false};
    if (!registering && !ready.load(std::memory_order_acquire)) {
        registering = true;
        static std::once_flag once;
        std::call_once(once, [] {
            Vt_RegisterNumericCasts();
            Vt_RegisterGfCasts();
        });
        // Outside of call_once: a registry function of another thread may be waiting for the casts above.
        TfRegistryManager::GetInstance().SubscribeTo<VtValue>();
        ready.store(true, std::memory_order_release);
        registering = false;
    }
    return *registry;
}

void Vt_CastRegistry::Register(std::type_info const& from, std::type_info const& to,
                               VtValue::CastFunction cast)
{
    bool added = false;
    {
        const std::unique_lock<std::shared_mutex> lock(m_mutex);
        added = m_casts.emplace(std::make_pair(std::type_index(from), std::type_index(to)), cast).second;
    }
    if (!added) {
        TF_CODING_ERROR("VtValue cast already registered from '%s' to '%s'.  New cast will be ignored.",
                        TfType::GetCanonicalTypeName(from).c_str(), TfType::GetCanonicalTypeName(to).c_str());
    }
}

VtValue::CastFunction Vt_CastRegistry::Find(std::type_info const& from, std::type_info const& to) const
{
    const std::shared_lock<std::shared_mutex> lock(m_mutex);
    const auto found = m_casts.find({from, to});
    return found == m_casts.end() ? nullptr : found->second;
}

PXR_NAMESPACE_CLOSE_SCOPE
