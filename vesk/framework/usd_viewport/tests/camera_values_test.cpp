// The camera as a value: copies, what it is fitted to, its view matrix, rack focus.
#include "viewport_fixture.h"

#include <pxr/base/gf/matrix4f.h>

#include <cfloat>
#include <cmath>

namespace vesk::framework::usd_viewport::tests {
namespace {

class CameraValuesTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        forget();
    }
};

TEST_F(CameraValuesTest, TheCopyIsACopy)
{
    const GfCamera copy = model->getViewportCamera();
    const GfCamera* const address = &model->getGfCamera();
    model->setGfCamera(cameraAt(GfVec3d(0, 0, 7)), "");
    EXPECT_EQ(copy, GfCamera());
    EXPECT_EQ(&model->getGfCamera(), address);
}

TEST_F(CameraValuesTest, AdjustingFitsACopyAndChangesNothing)
{
    cacheBounds();
    model->setDistanceToCenter(10.0f);
    const GfCamera before = model->getGfCamera();
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    camera.SetHorizontalAperture(5.0f);
    const float fieldOfView = camera.GetFieldOfView(GfCamera::FOVVertical);
    const GfCamera adjusted = model->adjustGfCamera(camera);
    EXPECT_EQ(adjusted.GetHorizontalAperture(), 20.955f);
    EXPECT_FLOAT_EQ(adjusted.GetVerticalAperture(), 20.955f / 2.0f);
    EXPECT_NEAR(adjusted.GetFieldOfView(GfCamera::FOVVertical), fieldOfView, 1e-4f);
    EXPECT_GT(adjusted.GetClippingRange().GetMin(), 5.0f);
    EXPECT_EQ(model->getGfCamera(), before);
    expectSilence();
}

TEST_F(CameraValuesTest, AdjustingAnOrthographicCameraShowsTheDistance)
{
    model->setDistanceToCenter(10.0f);
    GfCamera camera;
    camera.SetProjection(GfCamera::Orthographic);
    const GfCamera adjusted = model->adjustGfCamera(camera);
    EXPECT_FLOAT_EQ(adjusted.GetVerticalAperture(), 100.0f);
    EXPECT_FLOAT_EQ(adjusted.GetHorizontalAperture(), 200.0f);
}

TEST_F(CameraValuesTest, AdjustingCountsTheLogicalRenderSizeOnly)
{
    // The physical size, 1 x 2, and the viewport, 2 : 1, have other shapes.
    const int size[2] = {3, 5};
    model->setRenderSize(size, 0.5f);
    const GfCamera adjusted = model->adjustGfCamera(GfCamera());
    EXPECT_FLOAT_EQ(adjusted.GetAspectRatio(), 3.0f / 5.0f);
}

TEST_F(CameraValuesTest, AdjustingWithoutWidthPassesTheZeroOn)
{
    const int size[2] = {0, 500};
    model->setRenderSize(size, 1.0f);
    model->setDistanceToCenter(10.0f);
    GfCamera camera;
    camera.SetProjection(GfCamera::Orthographic);
    EXPECT_EQ(model->adjustGfCamera(camera).GetHorizontalAperture(), 0.0f);
}

TEST_F(CameraValuesTest, AdjustingWithoutHeightTakesASquare)
{
    for (const int height : {0, -5}) {
        const int size[2] = {640, height};
        model->setRenderSize(size, 1.0f);
        const GfCamera adjusted = model->adjustGfCamera(GfCamera());
        EXPECT_EQ(adjusted.GetHorizontalAperture(), adjusted.GetVerticalAperture());
    }
}

TEST_F(CameraValuesTest, TheViewMatrixIsTheInverseOfTheTransform)
{
    model->setGfCamera(cameraAt(GfVec3d(1, 2, 3)), "");
    EXPECT_EQ(model->getViewMatrix(), GfMatrix4f(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -1, -2, -3, 1));
}

TEST_F(CameraValuesTest, TheViewMatrixIsInvertedInDoubleAndOnlyThenNarrowed)
{
    // 16777217 is no float. Narrowed first it would be 16777216, and three times that 50331648.
    GfCamera camera;
    GfMatrix4d transform(1.0);
    transform[0][0] = 1.0 / 3.0;
    transform[3][0] = 16777217.0;
    camera.SetTransform(transform);
    model->setGfCamera(camera, "");
    EXPECT_EQ(model->getViewMatrix()[3][0], static_cast<float>(-50331651.0));
}

TEST_F(CameraValuesTest, TheViewMatrixOfASingularCameraIsHuge)
{
    GfCamera camera;
    camera.SetTransform(GfMatrix4d(0.0));
    model->setGfCamera(camera, "");
    GfMatrix4f expected(0.0f);
    expected.SetDiagonal(GfVec4f(FLT_MAX, FLT_MAX, FLT_MAX, 1.0f));
    EXPECT_EQ(model->getViewMatrix(), expected);
}

TEST_F(CameraValuesTest, TheUpAxisIsAPlainValue)
{
    model->setZUp(true);
    EXPECT_TRUE(model->zUp());
    expectSilence();
}

TEST(RackFocus, KeepsTheSubjectsPlaceAndSize)
{
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    camera.SetFocusDistance(10.0f);
    camera.SetClippingRange(GfRange1f(0.5f, 99.0f));
    const float before = camera.GetFieldOfView(GfCamera::FOVVertical);
    const float aspect = camera.GetAspectRatio();
    setRackFocus(camera, 100.0f);
    // The field of view of a lens of 100 mm over the default height of 15.2908 mm.
    EXPECT_NEAR(camera.GetFieldOfView(GfCamera::FOVVertical), 2.0 * std::atan(15.2908 / 200.0) * 180.0 / M_PI,
                1e-4);
    const auto heightAtFocus = [](float degrees, float distance) {
        return std::tan(degrees * M_PI / 360.0) * distance;
    };
    EXPECT_NEAR(heightAtFocus(camera.GetFieldOfView(GfCamera::FOVVertical), camera.GetFocusDistance()),
                heightAtFocus(before, 10.0f), 1e-4);
    // What was in focus lies where it lay: at the origin.
    EXPECT_NEAR(row(camera, 3)[2] - camera.GetFocusDistance(), 0.0, 1e-5);
    EXPECT_FLOAT_EQ(camera.GetAspectRatio(), aspect);
    EXPECT_EQ(camera.GetHorizontalAperture(), 20.955f);
    EXPECT_EQ(camera.GetClippingRange(), GfRange1f(0.5f, 99.0f));
}

TEST(RackFocus, AtFocusDistanceZeroStaysInPlace)
{
    GfCamera camera = cameraAt(GfVec3d(1, 2, 3));
    setRackFocus(camera, 100.0f);
    EXPECT_EQ(row(camera, 3), GfVec3d(1, 2, 3));
    EXPECT_EQ(camera.GetFocusDistance(), 0.0f);
    EXPECT_NE(camera.GetFocalLength(), 50.0f);
}

TEST(RackFocus, MakesAnOrthographicCameraPerspective)
{
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    camera.SetOrthographicFromAspectRatioAndSize(2.0f, 4.0f, GfCamera::FOVVertical);
    camera.SetFocusDistance(10.0f);
    ViewportModel::setDefaultVerticalFieldOfView(90.0f);
    setRackFocus(camera, 50.0f);
    ViewportModel::setDefaultVerticalFieldOfView(45.0f);
    EXPECT_EQ(camera.GetProjection(), GfCamera::Perspective);
    EXPECT_FLOAT_EQ(camera.GetAspectRatio(), 2.0f);
    // Half the height at the focus plane was 10 * tan(45 degrees) = 10; the new lens shows that at 10 /
    // tan(half).
    EXPECT_NEAR(camera.GetFocusDistance(), 10.0 / (15.2908 / 100.0), 1e-2);
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
