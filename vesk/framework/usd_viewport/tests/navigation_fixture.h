#pragma once

#include "viewport_fixture.h"

#include <cmath>

namespace vesk::framework::usd_viewport::tests {

/// A viewport whose camera stands at (0, 0, 10), looks along -Z and has its pivot at the origin.
class NavigationTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        place(GfVec3d(0, 0, 10), 10.0f);
    }

    void place(const GfVec3d& position, float distance)
    {
        model->setGfCamera(cameraAt(position), "");
        model->setDistanceToCenter(distance);
        forget();
    }

    void setRenderSize(int width, int height)
    {
        const int size[2] = {width, height};
        model->setRenderSize(size, 1.0f);
        forget();
    }

    GfVec3d pivot() const
    {
        return row(model->getGfCamera(), 3) -
               row(model->getGfCamera(), 2) * static_cast<double>(model->distanceToCenter());
    }

    /// The gestures, each with a motion that does something.
    std::vector<std::function<void(const std::string&)>> gestures()
    {
        return {[this](const std::string& label) { model->orbitCamera(3, 4, label); },
                [this](const std::string& label) { model->orbitCameraUsingDeltaAngles(3, 4, label); },
                [this](const std::string& label) { model->rotateCamera(3, 4, label); },
                [this](const std::string& label) { model->panCamera(3, 4, label); },
                [this](const std::string& label) { model->zoomCamera(3, 4, label); },
                [this](const std::string& label) { model->moveCamera(3, 4, 5, label); }};
    }
};

inline void expectNear(const GfVec3d& actual, const GfVec3d& expected, double tolerance = 1e-6)
{
    EXPECT_NEAR((actual - expected).GetLength(), 0.0, tolerance) << actual << " instead of " << expected;
}

/// The right-handed turn of a vector about a unit axis (Rodrigues' formula).
inline GfVec3d turned(const GfVec3d& vector, const GfVec3d& axis, double degrees)
{
    const double angle = degrees * M_PI / 180.0;
    return vector * std::cos(angle) + GfCross(axis, vector) * std::sin(angle) +
           axis * GfDot(axis, vector) * (1.0 - std::cos(angle));
}

} // namespace vesk::framework::usd_viewport::tests
