#include <vesk/renderers/picture/camera_rays.h>

#include <pxr/base/gf/frustum.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/ray.h>
#include <pxr/base/gf/rotation.h>

#include <gtest/gtest.h>

#include <limits>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::picture {
namespace {

GfCamera turnedCamera(GfCamera::Projection projection)
{
    GfCamera camera;
    camera.SetProjection(projection);
    camera.SetHorizontalAperture(24.0f);
    camera.SetVerticalAperture(12.0f);
    camera.SetHorizontalApertureOffset(3.0f);
    camera.SetVerticalApertureOffset(-2.0f);
    camera.SetFocalLength(20.0f);
    camera.SetClippingRange(GfRange1f(2.0f, 50.0f));
    camera.SetTransform(GfMatrix4d(1.0).SetRotate(GfRotation(GfVec3d(1, 2, 3), 40.0)) *
                        GfMatrix4d(1.0).SetTranslate(GfVec3d(4, 5, 6)));
    return camera;
}

// The second formula is OpenUSD's own: a ray through a point of the frustum's window, from -1 to 1.
void expectRaysOfTheFrustum(GfCamera::Projection projection)
{
    const GfCamera camera = turnedCamera(projection);
    const auto rays = CameraRays::make(camera, CameraUtilFit, GfVec2i(200, 100), GfVec3d(0.0), 1000.0f);
    ASSERT_TRUE(rays.has_value());
    for (const auto& [x, y] : {std::pair(0.0f, 0.0f), std::pair(100.0f, 50.0f), std::pair(173.5f, 12.25f)}) {
        const ViewRay ray = rays->at(x, y);
        const GfRay expected = camera.GetFrustum().ComputeRay(GfVec2d(x / 100.0 - 1.0, 1.0 - y / 50.0));
        const GfVec3d direction = expected.GetDirection().GetNormalized();
        EXPECT_NEAR(GfDot(ray.direction.toGfd(), direction), 1.0, 1e-6);
        // Both begin somewhere on the same line.
        const GfVec3d offset = ray.origin.toGfd() - expected.GetStartPoint();
        EXPECT_NEAR((offset - direction * GfDot(offset, direction)).GetLength(), 0.0, 1e-4);
        // The near plane lies 2 in front of the camera along the view axis.
        EXPECT_NEAR(ray.viewDistance(ray.tClip), 2.0, 1e-4);
        EXPECT_NEAR(ray.viewDistance(ray.tFar), 50.0, 1e-3);
    }
}

TEST(CameraRays, RunAsThePerspectiveFrustumSays) { expectRaysOfTheFrustum(GfCamera::Perspective); }

TEST(CameraRays, RunAsTheOrthographicFrustumSays) { expectRaysOfTheFrustum(GfCamera::Orthographic); }

TEST(CameraRays, StartOrthographicRaysJustBeforeTheSceneHoweverFarTheNearPlaneIs)
{
    GfCamera camera = turnedCamera(GfCamera::Orthographic);
    camera.SetTransform(GfMatrix4d(1.0).SetTranslate(GfVec3d(0, 0, 10)));
    camera.SetClippingRange(GfRange1f(-1e6f, 1e6f));
    const auto rays = CameraRays::make(camera, CameraUtilFit, GfVec2i(10, 10), GfVec3d(0.0), 2.0f);
    const ViewRay ray = rays->at(5.0f, 5.0f);
    EXPECT_NEAR(ray.origin.z, 2.02f, 1e-4f);
    EXPECT_EQ(ray.tNear, 0.0f);
    EXPECT_NEAR(ray.viewDistance(0.0f), 7.98f, 1e-4f);
}

TEST(CameraRays, EndAtClippingPlanes)
{
    GfCamera camera;
    camera.SetClippingRange(GfRange1f(1.0f, 100.0f));
    camera.SetClippingPlanes({GfVec4f(0.0f, 0.0f, 1.0f, 20.0f)}); // camera space: z must not be below -20
    const auto rays = CameraRays::make(camera, CameraUtilFit, GfVec2i(10, 10), GfVec3d(0.0), 1.0f);
    const ViewRay ray = rays->at(5.0f, 5.0f);
    EXPECT_NEAR(ray.tFar, 20.0f, 1e-4f);
    EXPECT_NEAR(ray.tNear, 1.0f, 1e-5f);
}

TEST(CameraRays, MapTheNearPlaneToZeroAndTheFarPlaneToOne)
{
    for (const auto projection : {GfCamera::Perspective, GfCamera::Orthographic}) {
        const auto rays =
            CameraRays::make(turnedCamera(projection), CameraUtilFit, GfVec2i(2, 1), GfVec3d(0.0), 1.0f);
        EXPECT_NEAR(rays->windowDepth(2.0f), 0.0f, 1e-6f);
        EXPECT_NEAR(rays->windowDepth(50.0f), 1.0f, 1e-6f);
    }
}

TEST(CameraRays, AreNotMadeForACameraWithoutAView)
{
    const auto make = [](const GfCamera& camera) {
        return CameraRays::make(camera, CameraUtilFit, GfVec2i(4, 4), GfVec3d(0.0), 1.0f).has_value();
    };
    const float nan = std::numeric_limits<float>::quiet_NaN();
    GfCamera camera;
    EXPECT_TRUE(make(camera));
    camera.SetClippingRange(GfRange1f(5.0f, 5.0f));
    EXPECT_FALSE(make(camera));
    camera = GfCamera();
    camera.SetClippingRange(GfRange1f(nan, 5.0f));
    EXPECT_FALSE(make(camera));
    camera = GfCamera();
    camera.SetFocalLength(0.0f);
    EXPECT_FALSE(make(camera));
    camera = GfCamera();
    camera.SetHorizontalAperture(nan);
    EXPECT_FALSE(make(camera));
    camera = GfCamera();
    camera.SetTransform(GfMatrix4d(1.0).SetTranslate(GfVec3d(std::numeric_limits<double>::infinity(), 0, 0)));
    EXPECT_FALSE(make(camera));
}

} // namespace
} // namespace vesk::renderers::picture
