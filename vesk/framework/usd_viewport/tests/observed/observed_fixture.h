#pragma once

#include "../private_members.h"
#include "../viewport_fixture.h"
#include "observed_utils.h"

#include <future>

namespace vesk::framework::usd_viewport::tests {

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
        utils.timeline = &timeline;
    }

    ~ObservedTest() override { utils.timeline = nullptr; }

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
};

} // namespace vesk::framework::usd_viewport::tests
