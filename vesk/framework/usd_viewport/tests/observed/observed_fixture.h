#pragma once

#include "../private_members.h"
#include "../viewport_fixture.h"
#include "observed_utils.h"

#include <vesk/framework/usd_document/bbox_cache_guard.h>

#include <future>
#include <system_error>

namespace vesk::framework::usd_viewport::tests {

using usd_document::UsdGeomBBoxCacheLockGuard;
using Names = std::vector<std::string>;

/// A viewport whose utilities are observed ones. Their calls stand in the common timeline.
class ObservedTest : public ViewportTest
{
protected:
    ObservedTest()
    {
        utils.take();
        utils.onCall = nullptr;
        utils.sceneBounds = GfRange3f();
        utils.sceneCamera = GfCamera();
        utils.distanceToCenter = 0.0f;
        utils.boundsError.reset();
        utils.partBounds = GfRange3f();
        utils.framedDistance = 0.0f;
        utils.framedCamera = GfCamera();
        utils.stageZUp = false;
        utils.upAxisError.reset();
        utils.materialError.reset();
        utils.lightsError.reset();
        utils.timeline = &timeline;
    }

    ~ObservedTest() override
    {
        utils.timeline = nullptr;
        utils.onEntry = nullptr;
    }

    /// From now on every call says whether the document's bounds cache is held; returns that cache.
    const UsdGeomBBoxCache* watchBoundsCache()
    {
        watched.document->read(
            "look", [this](const UsdDocument::ExecContext& context) { m_cache = context.bboxCacheGuard(); });
        run();
        forget();
        utils.onEntry = [this](UtilityCall& call) { call.holdsCache = holdsBoundsCache(); };
        return &UsdGeomBBoxCacheLockGuard(m_cache).getBboxCache();
    }

    /// Whether this thread holds the cache: it may not be taken twice.
    bool holdsBoundsCache() const
    {
        try {
            const UsdGeomBBoxCacheLockGuard guard(m_cache);
            return false;
        } catch (const std::system_error&) {
            return true;
        }
    }

    /// Calls that were made with the bounds cache held.
    static std::vector<std::string> namesOfHolders(const std::vector<UtilityCall>& calls)
    {
        std::vector<std::string> names;
        for (const UtilityCall& call : calls)
            if (call.holdsCache) names.push_back(call.name);
        return names;
    }

    void forgetAll()
    {
        forget();
        utils.take();
    }

    /// Follows the scene camera /Cam from now on.
    void followCamera()
    {
        follow("/Cam");
        forgetAll();
    }

    std::vector<std::string> namesOfCalls()
    {
        std::vector<std::string> names;
        for (const UtilityCall& call : utils.take())
            names.push_back(call.name);
        return names;
    }

    /// Whether another thread would get the mutex now.
    static bool isFree(std::mutex& mutex)
    {
        return std::async(
                   std::launch::async,
                   [&mutex] { return std::unique_lock<std::mutex>(mutex, std::try_to_lock).owns_lock(); })
            .get();
    }

    ObservedUtils& utils = observedUtils();

private:
    usd_document::UsdGeomBBoxCacheGuardWrapper m_cache;
};

} // namespace vesk::framework::usd_viewport::tests
