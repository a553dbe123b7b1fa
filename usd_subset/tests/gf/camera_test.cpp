#include "test_helpers.h"

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/frustum.h>

namespace {

TEST(Camera, StartsAsAThirtyFiveMillimetreCamera)
{
    const GfCamera camera;
    EXPECT_EQ(camera.GetProjection(), GfCamera::Perspective);
    EXPECT_FLOAT_EQ(camera.GetHorizontalAperture(), 20.955f); // 0.825 inches
    EXPECT_FLOAT_EQ(camera.GetVerticalAperture(), 15.2908f);  // 0.602 inches
    EXPECT_EQ(camera.GetFocalLength(), 50);
    EXPECT_EQ(camera.GetClippingRange(), GfRange1f(1, 1000000));
    EXPECT_EQ(camera.GetTransform(), GfMatrix4d(1));
    EXPECT_EQ(camera.GetFStop(), 0);
    EXPECT_EQ(camera.GetFocusDistance(), 0);
    EXPECT_TRUE(camera.GetClippingPlanes().empty());
}

TEST(Camera, IsEqualOnlyIfEveryPartIs)
{
    GfCamera a, b;
    EXPECT_EQ(a, b);
    b.SetClippingPlanes({GfVec4f(1, 0, 0, 0)});
    EXPECT_NE(a, b);
    a.SetClippingPlanes({GfVec4f(1, 0, 0, 0)});
    EXPECT_EQ(a, b);
    a.SetFocusDistance(1);
    EXPECT_NE(a, b);
}

TEST(Camera, FieldOfViewFollowsFromApertureAndFocalLength)
{
    GfCamera camera;
    camera.SetHorizontalAperture(36);
    camera.SetVerticalAperture(24);
    camera.SetFocalLength(18);
    EXPECT_NEAR(camera.GetFieldOfView(GfCamera::FOVHorizontal), 90,
                1e-4); // half the width is the focal length
    EXPECT_NEAR(camera.GetFieldOfView(GfCamera::FOVVertical), 2 * std::atan(12.0 / 18) * 180 / M_PI, 1e-4);
    EXPECT_FLOAT_EQ(camera.GetAspectRatio(), 1.5f);
    camera.SetVerticalAperture(0);
    EXPECT_EQ(camera.GetAspectRatio(), 0);
}

TEST(Camera, TakesAFieldOfViewAndAnAspectRatio)
{
    GfCamera camera;
    camera.SetPerspectiveFromAspectRatioAndFieldOfView(2, 60, GfCamera::FOVVertical, 40);
    EXPECT_EQ(camera.GetHorizontalAperture(), 40);
    EXPECT_EQ(camera.GetVerticalAperture(), 20);
    EXPECT_NEAR(camera.GetFieldOfView(GfCamera::FOVVertical), 60, 1e-4);
    camera.SetPerspectiveFromAspectRatioAndFieldOfView(2, 60, GfCamera::FOVHorizontal);
    EXPECT_NEAR(camera.GetFieldOfView(GfCamera::FOVHorizontal), 60, 1e-4);
}

TEST(Camera, FallsBackForAFieldOfViewOrAspectRatioOfZero)
{
    GfCamera camera;
    camera.SetPerspectiveFromAspectRatioAndFieldOfView(0, 0, GfCamera::FOVVertical);
    EXPECT_EQ(camera.GetFocalLength(), 50);
    EXPECT_EQ(camera.GetVerticalAperture(), camera.GetHorizontalAperture());
}

TEST(Camera, OrthographicSizeIsInWorldUnits)
{
    GfCamera camera;
    camera.SetOrthographicFromAspectRatioAndSize(2, 30, GfCamera::FOVVertical);
    EXPECT_EQ(camera.GetProjection(), GfCamera::Orthographic);
    EXPECT_FLOAT_EQ(camera.GetVerticalAperture(), 300);
    EXPECT_FLOAT_EQ(camera.GetHorizontalAperture(), 600);
    const GfRange2d window = camera.GetFrustum().GetWindow();
    EXPECT_NEAR(window.GetSize()[0], 60, 1e-4);
    EXPECT_NEAR(window.GetSize()[1], 30, 1e-4);
    camera.SetOrthographicFromAspectRatioAndSize(0, 30, GfCamera::FOVHorizontal);
    EXPECT_FLOAT_EQ(camera.GetVerticalAperture(), 300); // no aspect ratio: a square
}

TEST(Camera, FrustumWindowIsTheApertureAtUnitDistance)
{
    GfCamera camera;
    camera.SetHorizontalAperture(36);
    camera.SetVerticalAperture(24);
    camera.SetFocalLength(50);
    camera.SetHorizontalApertureOffset(5);
    camera.SetClippingRange(GfRange1f(2, 20));
    const GfFrustum frustum = camera.GetFrustum();
    EXPECT_NEAR(frustum.GetWindow().GetMin()[0], (5 - 18) / 50.0, 1e-7);
    EXPECT_NEAR(frustum.GetWindow().GetMax()[0], (5 + 18) / 50.0, 1e-7);
    EXPECT_NEAR(frustum.GetWindow().GetMax()[1], 12 / 50.0, 1e-7);
    EXPECT_EQ(frustum.GetNearFar(), GfRange1d(2, 20));
}

TEST(Camera, ComesBackFromItsMatrices)
{
    for (GfCamera::Projection projection : {GfCamera::Perspective, GfCamera::Orthographic}) {
        GfMatrix4d pose;
        pose.SetTransform(GfRotation(GfVec3d(1, 2, 3), 40), GfVec3d(5, 6, 7));
        const GfCamera camera(pose, projection, 36, 24, 3, -2, 35, GfRange1f(0.5, 100));
        const GfFrustum frustum = camera.GetFrustum();
        GfCamera back;
        back.SetFromViewAndProjectionMatrix(frustum.ComputeViewMatrix(), frustum.ComputeProjectionMatrix(),
                                            35);
        EXPECT_EQ(back.GetProjection(), projection);
        expectNear(back.GetTransform(), pose, 1e-9);
        EXPECT_NEAR(back.GetHorizontalAperture(), 36, 1e-3);
        EXPECT_NEAR(back.GetVerticalAperture(), 24, 1e-3);
        EXPECT_NEAR(back.GetHorizontalApertureOffset(), 3, 1e-3);
        EXPECT_NEAR(back.GetVerticalApertureOffset(), -2, 1e-3);
        EXPECT_NEAR(back.GetClippingRange().GetMin(), 0.5, 1e-3);
        EXPECT_NEAR(back.GetClippingRange().GetMax(), 100, 1e-1);
    }
}

} // namespace
