#include "camera_fitting.h"

#include <pxr/base/gf/range1f.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/base/gf/vec4f.h>
#include <vesk/usd/utils/camera_utils.h>

#include <gtest/gtest.h>

#include <cmath>

namespace vesk::framework::usd_viewport {
namespace {

PXR_NAMESPACE_USING_DIRECTIVE
using namespace vesk::usd::utils;

GfMatrix4d cleaned(const GfMatrix4d& transform)
{
    GfCamera camera;
    camera.SetTransform(transform);
    cleanTransform(camera);
    return camera.GetTransform();
}

TEST(CleanTransform, LeavesAnOrthonormalFrameBitForBit)
{
    const GfMatrix4d turned(GfRotation(GfVec3d(1, 2, 3), 33.0), GfVec3d(4, 5, 6));
    EXPECT_EQ(cleaned(turned), turned);
    EXPECT_EQ(cleaned(GfMatrix4d(1.0)), GfMatrix4d(1.0));
}

TEST(CleanTransform, MakesScaledAxesUnitLengthAndKeepsTheRest)
{
    EXPECT_EQ(cleaned(GfMatrix4d(2, 0, 0, 7, 0, 2, 0, 8, 0, 0, 2, 9, 10, 11, 12, 13)),
              GfMatrix4d(1, 0, 0, 7, 0, 1, 0, 8, 0, 0, 1, 9, 10, 11, 12, 13));
}

TEST(CleanTransform, NegatesTheFirstRowOfAMirroredFrame)
{
    EXPECT_EQ(cleaned(GfMatrix4d(-1, 0, 0, 5, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1)),
              GfMatrix4d(1, 0, 0, -5, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1));
}

TEST(CleanTransform, NegatesAndThenNormalizesAMirroredAndScaledFrame)
{
    EXPECT_EQ(cleaned(GfMatrix4d(-3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 5, 0, 1, 2, 3, 1)),
              GfMatrix4d(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1));
}

TEST(CleanTransform, IsACheapTestThatSomeScaledFramesPass)
{
    // The sum (s, t, 1) has the length of an orthonormal frame's sum when s squared plus t squared is 2.
    const GfMatrix4d passes(1.2, 0, 0, 0, 0, std::sqrt(2.0 - 1.44), 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    EXPECT_EQ(cleaned(passes), passes);
}

TEST(CleanTransform, DoesNotMakeSkewedAxesPerpendicular)
{
    const double half = std::sqrt(0.5);
    const GfMatrix4d skewed(1, 0, 0, 0, half, half, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    const GfMatrix4d result = cleaned(skewed);
    for (int column = 0; column < 3; ++column)
        EXPECT_NEAR(result[1][column], skewed[1][column], 1e-15);
}

TEST(CleanTransform, ToleratesDeviationsBelowAMillionth)
{
    // The length is compared as a float: one float step above 1 is 1.19e-7.
    const GfMatrix4d close(1.0 + 4e-7, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    EXPECT_EQ(cleaned(close), close);
    const GfMatrix4d off(1.0 + 1e-5, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    EXPECT_EQ(cleaned(off)[0][0], 1.0);
}

GfMatrix4d scaled(double scale)
{
    return GfMatrix4d(scale, 0, 0, 0, 0, scale, 0, 0, 0, 0, scale, 0, 0, 0, 0, 1);
}

TEST(CleanTransform, RoundsTheLengthToFloatBeforeItIsCompared)
{
    // Above 1 the floats are 1.19e-7 apart: 1.01e-6 becomes eight steps, 9.54e-7.
    EXPECT_EQ(cleaned(scaled(1.0 + 1.01e-6)), scaled(1.0 + 1.01e-6));
    EXPECT_NE(cleaned(scaled(1.0 + 1.03e-6)), scaled(1.0 + 1.03e-6));
    // Below 1 they are 5.96e-8 apart: 0.99e-6 becomes seventeen steps, 1.013e-6.
    EXPECT_NE(cleaned(scaled(1.0 - 0.99e-6)), scaled(1.0 - 0.99e-6));
    EXPECT_EQ(cleaned(scaled(1.0 - 0.97e-6)), scaled(1.0 - 0.97e-6));
}

TEST(CleanTransform, KeepsTheDirectionsOfAxesThatItNormalizes)
{
    const GfMatrix4d long3(3, 4, 0, 0, 0, 5, 12, 0, 8, 0, 6, 0, 1, 2, 3, 1);
    const GfMatrix4d result = cleaned(long3);
    const double expected[3][3] = {{3.0 / 5, 4.0 / 5, 0}, {0, 5.0 / 13, 12.0 / 13}, {8.0 / 10, 0, 6.0 / 10}};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            EXPECT_EQ(result[row][column], expected[row][column]) << row << " " << column;
    }
}

TEST(CleanTransform, DividesTinyRowsByTheSmallestLength)
{
    const GfMatrix4d tiny(1e-12, 0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1);
    const GfMatrix4d result = cleaned(tiny);
    EXPECT_DOUBLE_EQ(result[0][0], 1e-2);
    EXPECT_EQ(result[1][1], 1.0);
    EXPECT_EQ(result[2][2], 0.0);
}

TEST(CleanTransform, LeavesNaNs)
{
    const GfMatrix4d result = cleaned(GfMatrix4d(std::nan("")));
    EXPECT_TRUE(std::isnan(result[0][0]));
}

TEST(FitAperture, KeepsThePerspectiveFieldOfView)
{
    GfCamera camera;
    camera.SetFocalLength(85.0f);
    const float before = camera.GetFieldOfView(GfCamera::FOVVertical);
    fitAperture(camera, 2.0f, 5.0f);
    EXPECT_EQ(camera.GetHorizontalAperture(), 20.955f);
    EXPECT_EQ(camera.GetVerticalAperture(), 20.955f / 2.0f);
    EXPECT_NEAR(camera.GetFieldOfView(GfCamera::FOVVertical), before, 1e-4f);
}

TEST(FitAperture, ShowsTheDistanceInAnOrthographicView)
{
    GfCamera camera;
    camera.SetProjection(GfCamera::Orthographic);
    fitAperture(camera, 0.5f, 5.0f);
    EXPECT_FLOAT_EQ(camera.GetVerticalAperture(), 50.0f);
    EXPECT_FLOAT_EQ(camera.GetHorizontalAperture(), 25.0f);
}

TEST(RackFocusArithmetic, NarrowsToFloatAtEachStep)
{
    GfCamera camera;
    camera.SetFocusDistance(3.3f);
    const float fieldOfViewBefore = camera.GetFieldOfView(GfCamera::FOVVertical);
    GfCamera result = camera;
    rackFocus(result, 77.7f, 45.0f);
    // The same chain of steps, each with its own name.
    const double ratio = (static_cast<double>(15.2908f) * 0.1) / (static_cast<double>(155.4f) * 0.1);
    const float radians = static_cast<float>(2.0 * std::atan(ratio));
    const float half = static_cast<float>(std::tan(fieldOfViewBefore * 0.017453292519943295 * 0.5) * 3.3f);
    const float distance = static_cast<float>(half / std::tan(radians * 0.5));
    EXPECT_EQ(result.GetFocusDistance(), distance);
    EXPECT_DOUBLE_EQ(result.GetTransform()[3][2], -static_cast<double>(3.3f - result.GetFocusDistance()));
}

TEST(RackFocusArithmetic, MeasuresTheNewDistanceWithTheAngleNarrowedToFloat)
{
    GfCamera camera;
    camera.SetProjection(GfCamera::Orthographic);
    camera.SetFocusDistance(5.0f);
    rackFocus(camera, 28.0f, 45.0f);
    // tan(22.5 deg) * 5 = 2.0710678; the angle 2 atan(15.2908f / 56) as a float gives 7.5849395, not narrowed
    // the next float.
    EXPECT_EQ(camera.GetFocusDistance(), 0x1.e56fa6p+2f);
}

TEST(RackFocusArithmetic, KeepsTheRestOfTheLens)
{
    GfCamera camera;
    camera.SetFocusDistance(5.0f);
    camera.SetHorizontalAperture(30.0f);
    camera.SetVerticalAperture(12.0f);
    camera.SetHorizontalApertureOffset(1.0f);
    camera.SetVerticalApertureOffset(2.0f);
    camera.SetFStop(4.0f);
    camera.SetClippingRange(GfRange1f(0.5f, 99.0f));
    camera.SetClippingPlanes({GfVec4f(1, 2, 3, 4)});
    rackFocus(camera, 80.0f, 45.0f);
    // The aspect ratio of 30 : 12 and the horizontal aperture are those of before.
    EXPECT_EQ(camera.GetHorizontalAperture(), 30.0f);
    EXPECT_FLOAT_EQ(camera.GetVerticalAperture(), 12.0f);
    EXPECT_EQ(camera.GetHorizontalApertureOffset(), 1.0f);
    EXPECT_EQ(camera.GetVerticalApertureOffset(), 2.0f);
    EXPECT_EQ(camera.GetFStop(), 4.0f);
    EXPECT_EQ(camera.GetClippingRange(), GfRange1f(0.5f, 99.0f));
    EXPECT_EQ(camera.GetClippingPlanes(), std::vector<GfVec4f>{GfVec4f(1, 2, 3, 4)});
}

TEST(RackFocusArithmetic, TakesAnyFocalLength)
{
    for (const float focalLength : {0.0f, -50.0f, std::nanf(""), HUGE_VALF}) {
        GfCamera camera;
        camera.SetFocusDistance(5.0f);
        rackFocus(camera, focalLength, 45.0f);
        EXPECT_EQ(camera.GetProjection(), GfCamera::Perspective);
    }
}

} // namespace
} // namespace vesk::framework::usd_viewport
