#include "hydra_view.h"

#include <pxr/base/gf/vec3d.h>

#include <gtest/gtest.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {
namespace {

// A window as wide as it is deep: at the distance d it shows d units.
GfCamera squareCamera(GfCamera::Projection projection)
{
    GfCamera camera;
    camera.SetProjection(projection);
    camera.SetHorizontalAperture(20.0f);
    camera.SetVerticalAperture(20.0f);
    camera.SetFocalLength(20.0f);
    camera.SetClippingRange(GfRange1f(1.0f, 100.0f));
    return camera;
}

TEST(HydraView, TurnsTheDepthBuffersValuesBackIntoDistances)
{
    for (const auto projection : {GfCamera::Perspective, GfCamera::Orthographic}) {
        const auto view = HydraView::make(squareCamera(projection), CameraUtilFit, GfVec2i(10, 10));
        ASSERT_TRUE(view);
        for (const double distance : {1.0, 2.5, 40.0, 100.0}) {
            const double ndc = view->projection.Transform(GfVec3d(0.0, 0.0, -distance))[2];
            EXPECT_NEAR(view->viewDistance(0.5 * (ndc + 1.0)), distance, 1e-9 * distance);
        }
    }
}

// Pixel (75, 25) of 100 lies at +0.5 each way; a rectangle of 10 pixels around it fills the new picture.
TEST(HydraView, ShowsARectangleOfThePictureAlone)
{
    const auto view = HydraView::make(squareCamera(GfCamera::Perspective), CameraUtilFit, GfVec2i(100, 100));
    ASSERT_TRUE(view);
    const GfMatrix4d part = view->projectionOf(GfVec2i(100, 100), 70.0, 20.0, 10.0, 10.0);
    // At the distance 8 the picture shows 8 units: ndc 0.5 is 2 units, and 10 pixels are 0.8 units.
    const GfVec3d middle = part.Transform(GfVec3d(2.0, 2.0, -8.0));
    EXPECT_NEAR(middle[0], 0.0, 1e-12);
    EXPECT_NEAR(middle[1], 0.0, 1e-12);
    const GfVec3d corner = part.Transform(GfVec3d(2.4, 2.4, -8.0));
    EXPECT_NEAR(corner[0], 1.0, 1e-12);
    EXPECT_NEAR(corner[1], 1.0, 1e-12);
}

TEST(HydraView, ShiftsThePictureByPartsOfAPixel)
{
    const auto view = HydraView::make(squareCamera(GfCamera::Perspective), CameraUtilFit, GfVec2i(100, 50));
    ASSERT_TRUE(view);
    const GfVec3d still = view->projection.Transform(GfVec3d(1.0, 1.0, -8.0));
    const GfVec3d moved =
        view->shiftedProjection(GfVec2i(100, 50), GfVec2d(0.5, 0.25)).Transform(GfVec3d(1.0, 1.0, -8.0));
    EXPECT_NEAR((moved[0] - still[0]) * 50.0, 0.5, 1e-12);
    EXPECT_NEAR((moved[1] - still[1]) * 25.0, 0.25, 1e-12);
    EXPECT_NEAR(moved[2], still[2], 1e-12);
}

TEST(HydraView, RefusesACameraThatHasNoView)
{
    GfCamera camera = squareCamera(GfCamera::Perspective);
    camera.SetClippingRange(GfRange1f(10.0f, 1.0f));
    EXPECT_FALSE(HydraView::make(camera, CameraUtilFit, GfVec2i(10, 10)));
    camera = squareCamera(GfCamera::Perspective);
    camera.SetHorizontalAperture(0.0f);
    camera.SetVerticalAperture(0.0f);
    EXPECT_FALSE(HydraView::make(camera, CameraUtilFit, GfVec2i(10, 10)));
}

} // namespace
} // namespace vesk::renderers::hydra
