#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/frustum.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/range2d.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/base/tf/enum.h>
#include <pxr/imaging/cameraUtil/conformWindow.h>
#include <pxr/imaging/cameraUtil/framing.h>
#include <pxr/imaging/cameraUtil/screenWindowParameters.h>

#include <gtest/gtest.h>

#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

constexpr CameraUtilConformWindowPolicy kPolicies[] = {CameraUtilMatchVertically, CameraUtilMatchHorizontally,
                                                       CameraUtilFit, CameraUtilCrop};

struct Case
{
    const char* name;
    CameraUtilConformWindowPolicy policy;
    double target;
    GfVec2d expected;
};

class ConformWindow : public testing::TestWithParam<Case>
{};

TEST_P(ConformWindow, ChangesASizeOfFourByTwo)
{
    const GfVec2d size = CameraUtilConformedWindow(GfVec2d(4, 2), GetParam().policy, GetParam().target);
    EXPECT_EQ(size, GetParam().expected);
}

TEST_P(ConformWindow, KeepsTheCentreOfARange)
{
    const GfVec2d center(10, -3);
    const GfRange2d range(center - GfVec2d(2, 1), center + GfVec2d(2, 1));
    const GfRange2d conformed = CameraUtilConformedWindow(range, GetParam().policy, GetParam().target);
    EXPECT_EQ(conformed.GetMidpoint(), center);
    EXPECT_EQ(conformed.GetSize(), GetParam().expected);
    const GfVec4d sides(range.GetMin()[0], range.GetMax()[0], range.GetMin()[1], range.GetMax()[1]);
    EXPECT_EQ(
        CameraUtilConformedWindow(sides, GetParam().policy, GetParam().target),
        GfVec4d(conformed.GetMin()[0], conformed.GetMax()[0], conformed.GetMin()[1], conformed.GetMax()[1]));
}

TEST_P(ConformWindow, TreatsCameraAndFrustumAlike)
{
    GfCamera camera(GfMatrix4d(1), GfCamera::Perspective, 4, 2);
    GfFrustum frustum = camera.GetFrustum();
    CameraUtilConformWindow(&camera, GetParam().policy, GetParam().target);
    CameraUtilConformWindow(&frustum, GetParam().policy, GetParam().target);
    EXPECT_EQ(camera.GetHorizontalAperture(), float(GetParam().expected[0]));
    EXPECT_EQ(camera.GetVerticalAperture(), float(GetParam().expected[1]));
    const GfRange2d window = camera.GetFrustum().GetWindow();
    for (int i = 0; i != 2; ++i) {
        EXPECT_NEAR(frustum.GetWindow().GetMin()[i], window.GetMin()[i], 1e-6);
        EXPECT_NEAR(frustum.GetWindow().GetMax()[i], window.GetMax()[i], 1e-6);
    }
}

INSTANTIATE_TEST_SUITE_P(Policies, ConformWindow,
                         testing::Values(Case{"HeightKeptWider", CameraUtilMatchVertically, 4, {8, 2}},
                                         Case{"HeightKeptNarrower", CameraUtilMatchVertically, 1, {2, 2}},
                                         Case{"WidthKeptWider", CameraUtilMatchHorizontally, 4, {4, 1}},
                                         Case{"WidthKeptNarrower", CameraUtilMatchHorizontally, 1, {4, 4}},
                                         Case{"FitWiderGrowsInWidth", CameraUtilFit, 4, {8, 2}},
                                         Case{"FitNarrowerGrowsInHeight", CameraUtilFit, 1, {4, 4}},
                                         Case{"CropWiderLosesHeight", CameraUtilCrop, 4, {4, 1}},
                                         Case{"CropNarrowerLosesWidth", CameraUtilCrop, 1, {2, 2}},
                                         Case{"DontConformKeepsBoth", CameraUtilDontConform, 7, {4, 2}}),
                         [](const testing::TestParamInfo<Case>& tested) {
                             return std::string(tested.param.name);
                         });

TEST(ConformProjection, IsTheProjectionOfTheConformedFrustum)
{
    for (bool isPerspective : {true, false}) {
        for (CameraUtilConformWindowPolicy policy : kPolicies) {
            for (double target : {0.4, 1.0, 3.0}) {
                GfFrustum frustum;
                frustum.SetProjectionType(isPerspective ? GfFrustum::Perspective : GfFrustum::Orthographic);
                // Centred, as the offset of a matrix is measured in sizes of the window.
                frustum.SetWindow(GfRange2d(GfVec2d(-2, -1), GfVec2d(2, 1)));
                const GfMatrix4d conformed =
                    CameraUtilConformedWindow(frustum.ComputeProjectionMatrix(), policy, target);
                CameraUtilConformWindow(&frustum, policy, target);
                EXPECT_TRUE(GfIsClose(conformed, frustum.ComputeProjectionMatrix(), 1e-12))
                    << policy << " " << target;
            }
        }
    }
}

TEST(ConformProjection, KeepsMirroring)
{
    GfFrustum frustum;
    frustum.SetWindow(GfRange2d(GfVec2d(-1, -1), GfVec2d(3, 1)));
    const GfMatrix4d projection = frustum.ComputeProjectionMatrix();
    const GfMatrix4d mirror(GfVec4d(1, -1, 1, 1));
    for (CameraUtilConformWindowPolicy policy : kPolicies) {
        EXPECT_TRUE(GfIsClose(CameraUtilConformedWindow(projection * mirror, policy, 0.5),
                              CameraUtilConformedWindow(projection, policy, 0.5) * mirror, 1e-12));
    }
}

TEST(ConformWindowEdge, AspectRatioOfZeroNeverDivides)
{
    EXPECT_EQ(CameraUtilConformedWindow(GfVec2d(4, 2), CameraUtilMatchHorizontally, 0), GfVec2d(4, 4));
    EXPECT_EQ(CameraUtilConformedWindow(GfVec2d(4, 0), CameraUtilFit, 2), GfVec2d(0, 0));
}

TEST(Framing, OfOneWindowCoversItsPixels)
{
    const CameraUtilFraming framing(GfRect2i(GfVec2i(0, 0), 200, 100));
    EXPECT_TRUE(framing.IsValid());
    EXPECT_EQ(framing.displayWindow, GfRange2f(GfVec2f(0, 0), GfVec2f(200, 100)));
    EXPECT_FALSE(CameraUtilFraming().IsValid());
    EXPECT_EQ(framing, CameraUtilFraming(framing.displayWindow, framing.dataWindow));
}

TEST(Framing, FilmOfAWideCameraIsAStripInATallWindowThatFits)
{
    const CameraUtilFraming framing(GfRect2i(GfVec2i(0, 0), 100, 100));
    EXPECT_EQ(framing.ComputeFilmbackWindow(2, CameraUtilFit), GfRange2f(GfVec2f(0, 25), GfVec2f(100, 75)));
    EXPECT_EQ(framing.ComputeFilmbackWindow(2, CameraUtilCrop),
              GfRange2f(GfVec2f(-50, 0), GfVec2f(150, 100)));
}

TEST(Framing, ProjectionOfAPartOfTheDisplayEnlargesThatPart)
{
    // The lower right quarter of 200 x 100 pixels: its centre is at (0.5, -0.5) of the display.
    const CameraUtilFraming framing(GfRange2f(GfVec2f(0, 0), GfVec2f(200, 100)),
                                    GfRect2i(GfVec2i(100, 50), 100, 50));
    GfFrustum frustum;
    frustum.SetOrthographic(-1, 1, -0.5, 0.5, 1, 10);
    const GfMatrix4d projection =
        framing.ApplyToProjectionMatrix(frustum.ComputeProjectionMatrix(), CameraUtilFit);
    const GfVec3d center = projection.Transform(GfVec3d(0.5, -0.25, -1));
    EXPECT_NEAR(center[0], 0, 1e-6);
    EXPECT_NEAR(center[1], 0, 1e-6);
    EXPECT_NEAR(projection.Transform(GfVec3d(1, -0.25, -1))[0], 1, 1e-6);
}

TEST(ScreenWindow, HasSizeTwoInTheFitDirection)
{
    GfMatrix4d pose;
    pose.SetTranslate(GfVec3d(0, 0, 5));
    const GfCamera camera(pose, GfCamera::Perspective, 36, 24, 9, 0, 18);
    const CameraUtilScreenWindowParameters parameters(camera);
    EXPECT_EQ(parameters.GetScreenWindow(), GfVec4d(-0.5, 1.5, -24 / 36.0, 24 / 36.0));
    EXPECT_NEAR(parameters.GetFieldOfView(), 90, 1e-4);
    // It looks along +z: what is in front of the camera at the origin has z 5.
    EXPECT_EQ(parameters.GetZFacingViewMatrix().Transform(GfVec3d(0)), GfVec3d(0, 0, 5));
}

TEST(ConformWindowNames, AreThoseOfTheEnumerators)
{
    EXPECT_EQ(TfEnum::GetName(CameraUtilCrop), "CameraUtilCrop");
    EXPECT_EQ(TfEnum::GetDisplayName(CameraUtilMatchVertically), "MatchVertically");
    EXPECT_EQ(TfEnum::GetDisplayName(GfCamera::Orthographic), "orthographic");
    EXPECT_EQ(TfEnum::GetName(GfFrustum::Orthographic), "Orthographic");
}

} // namespace
