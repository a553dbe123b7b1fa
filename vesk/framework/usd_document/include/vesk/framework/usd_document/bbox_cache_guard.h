#pragma once

#include <memory>

#include <pxr/pxr.h>
#include <pxr/usd/usdGeom/bboxCache.h>

#include <vesk/framework/usd_document/export.h>

namespace vesk::framework::usd_document {

/// A handle to the document's one UsdGeomBBoxCache and the lock in front of it. Copies name the same cache.
class VESK_FRAMEWORK_USD_DOCUMENT_EXPORT UsdGeomBBoxCacheGuardWrapper
{
public:
    /// Makes a cache for the purposes default and render at the default time, extents hints off.
    UsdGeomBBoxCacheGuardWrapper();

    /// Says that the stage has changed: the next lock empties the cache. Never blocks. Thread: any.
    void invalidate() const noexcept;

private:
    friend class UsdGeomBBoxCacheLockGuard;
    struct Shared;

    std::shared_ptr<Shared> m_shared;
};

/// Exclusive use of the document's bounds cache while it lives. Set time and purposes before each use: other
/// work has left its own. Not recursive.
///
///     UsdGeomBBoxCacheLockGuard guard(context.bboxCacheGuard());
///     guard.getBboxCache().SetTime(time);
class VESK_FRAMEWORK_USD_DOCUMENT_EXPORT UsdGeomBBoxCacheLockGuard
{
public:
    /// Waits until the cache is free. Throws: std::system_error resource_deadlock_would_occur on a thread
    /// that holds it already.
    explicit UsdGeomBBoxCacheLockGuard(const UsdGeomBBoxCacheGuardWrapper& wrapper);
    ~UsdGeomBBoxCacheLockGuard();

    UsdGeomBBoxCacheLockGuard(const UsdGeomBBoxCacheLockGuard&) = delete;
    UsdGeomBBoxCacheLockGuard& operator=(const UsdGeomBBoxCacheLockGuard&) = delete;

    /// The document's cache, the same object for every guard of one document.
    PXR_NS::UsdGeomBBoxCache& getBboxCache() const;

private:
    std::shared_ptr<UsdGeomBBoxCacheGuardWrapper::Shared> m_shared;
};

} // namespace vesk::framework::usd_document
