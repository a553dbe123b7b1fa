#include <vesk/framework/usd_document/bbox_cache_guard.h>

#include <atomic>
#include <mutex>
#include <system_error>
#include <thread>

#include <pxr/usd/usdGeom/tokens.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_document {

struct UsdGeomBBoxCacheGuardWrapper::Shared
{
    std::mutex mutex;
    std::atomic<std::thread::id> owner{};
    std::atomic<bool> stale{false};
    UsdGeomBBoxCache cache{UsdTimeCode::Default(), {UsdGeomTokens->default_, UsdGeomTokens->render}};
};

UsdGeomBBoxCacheGuardWrapper::UsdGeomBBoxCacheGuardWrapper() : m_shared(std::make_shared<Shared>()) {}

void UsdGeomBBoxCacheGuardWrapper::invalidate() const noexcept { m_shared->stale.store(true); }

UsdGeomBBoxCacheLockGuard::UsdGeomBBoxCacheLockGuard(const UsdGeomBBoxCacheGuardWrapper& wrapper)
    : m_shared(wrapper.m_shared)
{
    if (m_shared->owner.load() == std::this_thread::get_id())
        throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur));
    m_shared->mutex.lock();
    m_shared->owner.store(std::this_thread::get_id());
    if (m_shared->stale.exchange(false)) m_shared->cache.Clear();
}

UsdGeomBBoxCacheLockGuard::~UsdGeomBBoxCacheLockGuard()
{
    m_shared->owner.store(std::thread::id());
    m_shared->mutex.unlock();
}

UsdGeomBBoxCache& UsdGeomBBoxCacheLockGuard::getBboxCache() const { return m_shared->cache; }

} // namespace vesk::framework::usd_document
