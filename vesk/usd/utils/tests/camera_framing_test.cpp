#include "camera_check.h"

#include <vesk/usd/utils/camera_utils.h>

#include <random>
#include <vector>

using namespace vesk::usd::utils;
using namespace vesk::usd::utils::tests;
PXR_NAMESPACE_USING_DIRECTIVE

namespace {

const GfRange3f kUnitBox(GfVec3f(-1), GfVec3f(1));
constexpr float kFactor = 1.5f;

GfCamera cameraWithAspect(float aspect, bool orthographic)
{
    GfCamera camera;
    if (orthographic)
        camera.SetOrthographicFromAspectRatioAndSize(aspect, 1.0f, GfCamera::FOVVertical);
    else
        camera.SetPerspectiveFromAspectRatioAndFieldOfView(aspect, 45.0f, GfCamera::FOVVertical);
    return camera;
}

std::vector<GfVec3d> directions()
{
    std::vector<GfVec3d> all{{0, 0, 1}, {0, 0, -1}, {0, 1, 0}, {0, -1, 0}, {1, 0, 0}, {-1, 0, 0}, {1, 1, 1}};
    std::mt19937 random(20261120);
    std::uniform_real_distribution<double> number(-1.0, 1.0);
    for (int count = 0; count < 50; ++count)
        all.emplace_back(number(random), number(random), number(random));
    return all;
}

// All corners of a box, seen from everywhere, in every window: the largest coordinate in any window.
double worstCorner(const GfRange3f& box, ProjectionType projection, float fieldOfView)
{
    double worst = 0.0;
    const float distance = getDistanceToCenter(box, projection, fieldOfView, kFactor);
    for (const double aspect : {9.0 / 16.0, 3.0 / 4.0, 1.0, 16.0 / 9.0, 21.0 / 9.0}) {
        const GfCamera current =
            cameraWithAspect(static_cast<float>(aspect), projection == ProjectionType::Orthographic);
        for (const bool zUp : {false, true}) {
            for (const GfVec3d& direction : directions()) {
                const GfCamera camera = getFramedBBoxGfCameraWithDirection(
                    box, current, direction, zUp, projection, fieldOfView, distance, kFactor);
                worst = std::max(worst, largestWindowCoordinate(camera, box, aspect));
            }
        }
    }
    return worst;
}

TEST(DistanceToCenter, LeavesTheFactorAroundTheSphereInAWideView)
{
    // At 120 degrees the portrait window needs less than the factor: 1.5 * sqrt(3) / sin(60 degrees) = 3.
    EXPECT_NEAR(getDistanceToCenter(kUnitBox, ProjectionType::Perspective, 120.0f, 1.5f), 3.0f, 1e-5f);
}

TEST(DistanceToCenter, IsNeverLessThanAPortraitWindowNeeds)
{
    // tan(half) = 9/16 * tan(22.5 degrees) = 0.2329951; sin of that angle = 0.2269210; sqrt(3) / that
    // = 7.63283, and half a percent of room.
    EXPECT_NEAR(getDistanceToCenter(kUnitBox, ProjectionType::Perspective, 45.0f, 1.5f), 7.63283f * 1.005f,
                1e-3f);
}

TEST(DistanceToCenter, IsTheVerticalSizeOfAnOrthographicView)
{
    // The sphere's diameter times the factor, or over 9/16 with half a percent of room.
    EXPECT_NEAR(getDistanceToCenter(kUnitBox, ProjectionType::Orthographic, 45.0f, 3.0f),
                6.0 * std::sqrt(3.0), 1e-4);
    EXPECT_NEAR(getDistanceToCenter(kUnitBox, ProjectionType::Orthographic, 45.0f, 1.0f),
                2.0 * std::sqrt(3.0) * 16.0 / 9.0 * 1.005, 1e-4);
}

TEST(DistanceToCenter, ServesBothProjectionsWhenTheCameraKeepsItsOwn)
{
    for (const float fieldOfView : {20.0f, 45.0f, 120.0f}) {
        const float kept = getDistanceToCenter(kUnitBox, ProjectionType::Keep, fieldOfView, kFactor);
        EXPECT_EQ(
            kept,
            std::max(getDistanceToCenter(kUnitBox, ProjectionType::Perspective, fieldOfView, kFactor),
                     getDistanceToCenter(kUnitBox, ProjectionType::Orthographic, fieldOfView, kFactor)));
    }
}

TEST(DistanceToCenter, GrowsWithTheBoxAndKnowsNoFixedLength)
{
    const float one = getDistanceToCenter(kUnitBox, ProjectionType::Perspective, 45.0f, kFactor);
    for (const float scale : {1e-12f, 1e-3f, 1e6f, 1e12f}) {
        const GfRange3f box(GfVec3f(-scale), GfVec3f(scale));
        EXPECT_NEAR(getDistanceToCenter(box, ProjectionType::Perspective, 45.0f, kFactor) / scale, one,
                    one * 1e-5f);
    }
}

TEST(DistanceToCenter, OfNothingIsThatOfTheUnitBox)
{
    const float unit = getDistanceToCenter(kUnitBox, ProjectionType::Perspective, 45.0f, kFactor);
    const float nan = std::nanf("");
    for (const GfRange3f& box :
         {GfRange3f(), GfRange3f(GfVec3f(nan), GfVec3f(1)), GfRange3f(GfVec3f(1, 1, 1), GfVec3f(2, 0, 2)),
          GfRange3f(GfVec3f(-HUGE_VALF), GfVec3f(HUGE_VALF))})
        EXPECT_EQ(getDistanceToCenter(box, ProjectionType::Perspective, 45.0f, kFactor), unit);
}

TEST(DistanceToCenter, OfAPointIsAboveZero)
{
    EXPECT_GT(
        getDistanceToCenter(GfRange3f(GfVec3f(5), GfVec3f(5)), ProjectionType::Perspective, 45.0f, kFactor),
        0.0f);
    EXPECT_GT(
        getDistanceToCenter(GfRange3f(GfVec3f(0), GfVec3f(0)), ProjectionType::Perspective, 45.0f, kFactor),
        0.0f);
}

TEST(DistanceToCenter, IsFiniteAndAboveZeroForAnyNumber)
{
    for (const float size : kNastyFloats) {
        const GfRange3f box(GfVec3f(-size), GfVec3f(size));
        for (const float fieldOfView : kNastyFloats) {
            for (const float factor : kNastyFloats) {
                for (const int projection : {0, 1, 2, 7, -1}) {
                    const float distance = getDistanceToCenter(box, static_cast<ProjectionType>(projection),
                                                               fieldOfView, factor);
                    ASSERT_TRUE(std::isfinite(distance) && distance > 0.0f)
                        << size << " " << fieldOfView << " " << factor << " " << projection << ": "
                        << distance;
                }
            }
        }
    }
}

TEST(Framing, KeepsAllCornersOfACubeInEveryWindow)
{
    for (const float fieldOfView : {5.0f, 20.0f, 45.0f, 90.0f, 140.0f})
        EXPECT_LT(worstCorner(kUnitBox, ProjectionType::Perspective, fieldOfView), 1.0) << fieldOfView;
    EXPECT_LT(worstCorner(kUnitBox, ProjectionType::Orthographic, 45.0f), 1.0);
}

TEST(Framing, KeepsAllCornersOfFlatLongAndFarBoxes)
{
    for (const GfRange3f& box : {GfRange3f(GfVec3f(-10, 0, -10), GfVec3f(10, 0, 10)),
                                 GfRange3f(GfVec3f(0, 0, 0), GfVec3f(0.001f, 100, 0.001f)),
                                 GfRange3f(GfVec3f(1000, 2000, 3000), GfVec3f(1001, 2003, 3002)),
                                 GfRange3f(GfVec3f(-1e-7f, 0, 0), GfVec3f(1e-7f, 1e-7f, 1e-7f))}) {
        EXPECT_LT(worstCorner(box, ProjectionType::Perspective, 45.0f), 1.0);
        EXPECT_LT(worstCorner(box, ProjectionType::Orthographic, 45.0f), 1.0);
    }
}

TEST(Framing, FillsTheFrameSensibly)
{
    // The sphere around the subject takes more than half of the height of a landscape window.
    const float distance = getDistanceToCenter(kUnitBox, ProjectionType::Perspective, 45.0f, kFactor);
    const double half = std::tan(std::asin(std::sqrt(3.0) / distance)) / std::tan(22.5 * M_PI / 180.0);
    EXPECT_GT(half, 0.5);
    EXPECT_LT(half, 0.7);
}

TEST(Framing, PutsThePivotOnTheCentre)
{
    const GfRange3f box(GfVec3f(1, 2, 3), GfVec3f(3, 6, 9));
    const GfCamera camera = getFramedBBoxGfCameraWithDirection(
        box, GfCamera(), GfVec3d(1, 2, 3), false, ProjectionType::Perspective, 45.0f, 25.0f, kFactor);
    const GfVec3d pivot = axis(camera, 3) - axis(camera, 2) * 25.0;
    EXPECT_NEAR((pivot - GfVec3d(2, 4, 6)).GetLength(), 0.0, 1e-12);
    EXPECT_EQ(camera.GetFocusDistance(), 25.0f);
}

TEST(Framing, FromTheFrontSeesRightToTheRightAndUpAbove)
{
    struct Row
    {
        bool zUp;
        GfVec3d direction, right, up;
    };
    const Row rows[] = {
        {false, GfVec3d(0, 0, 1), GfVec3d(1, 0, 0), GfVec3d(0, 1, 0)},   // front
        {false, GfVec3d(0, 0, -1), GfVec3d(-1, 0, 0), GfVec3d(0, 1, 0)}, // back
        {false, GfVec3d(1, 0, 0), GfVec3d(0, 0, -1), GfVec3d(0, 1, 0)},  // right
        {false, GfVec3d(0, 1, 0), GfVec3d(1, 0, 0), GfVec3d(0, 0, -1)},  // top
        {false, GfVec3d(0, -1, 0), GfVec3d(1, 0, 0), GfVec3d(0, 0, 1)},  // bottom
        {true, GfVec3d(0, -1, 0), GfVec3d(1, 0, 0), GfVec3d(0, 0, 1)},   // front
        {true, GfVec3d(1, 0, 0), GfVec3d(0, 1, 0), GfVec3d(0, 0, 1)},    // right
        {true, GfVec3d(0, 0, 1), GfVec3d(1, 0, 0), GfVec3d(0, 1, 0)},    // top
        {true, GfVec3d(0, 0, -1), GfVec3d(1, 0, 0), GfVec3d(0, -1, 0)},  // bottom
    };
    for (const Row& row : rows) {
        const GfCamera camera = getFramedBBoxGfCameraWithDirection(
            kUnitBox, GfCamera(), row.direction, row.zUp, ProjectionType::Perspective, 45.0f, 10.0f, kFactor);
        EXPECT_EQ(axis(camera, 0), row.right) << row.direction;
        EXPECT_EQ(axis(camera, 1), row.up) << row.direction;
        EXPECT_EQ(axis(camera, 2), row.direction);
    }
}

TEST(Framing, KeepsTheCurrentDirection)
{
    GfCamera current = getFramedBBoxGfCameraWithDirection(kUnitBox, GfCamera(), GfVec3d(1, 2, 3), true,
                                                          ProjectionType::Perspective, 45.0f, 10.0f, kFactor);
    const GfCamera camera =
        getFramedBBoxGfCamera(kUnitBox, current, ProjectionType::Perspective, 45.0f, 20.0f, kFactor);
    for (int row = 0; row < 3; ++row)
        EXPECT_NEAR((axis(camera, row) - axis(current, row)).GetLength(), 0.0, 1e-12);
    EXPECT_NEAR((axis(camera, 3) - axis(current, 2) * 20.0).GetLength(), 0.0, 1e-12);
}

TEST(Framing, MakesTheCurrentAxesOrthonormal)
{
    GfCamera current;
    current.SetTransform(GfMatrix4d(3, 0.5, 0, 0, 0, 7, 1, 0, 0, 0, 0.01, 0, 1, 2, 3, 1));
    const GfCamera camera =
        getFramedBBoxGfCamera(kUnitBox, current, ProjectionType::Perspective, 45.0f, 20.0f, kFactor);
    for (int row = 0; row < 3; ++row) {
        EXPECT_NEAR(axis(camera, row).GetLength(), 1.0, 1e-12);
        EXPECT_NEAR(GfDot(axis(camera, row), axis(camera, (row + 1) % 3)), 0.0, 1e-12);
    }
    EXPECT_NEAR((GfCross(axis(camera, 0), axis(camera, 1)) - axis(camera, 2)).GetLength(), 0.0, 1e-12);
    EXPECT_EQ(axis(camera, 2), GfVec3d(0, 0, 1));
}

TEST(Framing, TakesOrKeepsTheProjection)
{
    const GfCamera perspective = cameraWithAspect(1.5f, false);
    const GfCamera orthographic = cameraWithAspect(1.5f, true);
    const auto framed = [](const GfCamera& current, ProjectionType projection) {
        return getFramedBBoxGfCamera(kUnitBox, current, projection, 45.0f, 10.0f, kFactor).GetProjection();
    };
    EXPECT_EQ(framed(orthographic, ProjectionType::Perspective), GfCamera::Perspective);
    EXPECT_EQ(framed(perspective, ProjectionType::Orthographic), GfCamera::Orthographic);
    EXPECT_EQ(framed(perspective, ProjectionType::Keep), GfCamera::Perspective);
    EXPECT_EQ(framed(orthographic, ProjectionType::Keep), GfCamera::Orthographic);
    EXPECT_EQ(framed(orthographic, static_cast<ProjectionType>(9)), GfCamera::Orthographic);
}

TEST(Framing, GivesAPerspectiveCameraTheFieldOfViewAndKeepsItsShape)
{
    GfCamera current = cameraWithAspect(1.6f, false);
    current.SetFStop(5.6f);
    current.SetHorizontalApertureOffset(4.0f);
    current.SetClippingPlanes({GfVec4f(1, 2, 3, 4)});
    const GfCamera camera =
        getFramedBBoxGfCamera(kUnitBox, current, ProjectionType::Perspective, 60.0f, 10.0f, kFactor);
    EXPECT_NEAR(camera.GetFieldOfView(GfCamera::FOVVertical), 60.0f, 1e-4f);
    EXPECT_NEAR(camera.GetAspectRatio(), 1.6f, 1e-5f);
    EXPECT_EQ(camera.GetHorizontalAperture(), current.GetHorizontalAperture());
    EXPECT_EQ(camera.GetFStop(), 5.6f);
    EXPECT_EQ(camera.GetClippingPlanes(), current.GetClippingPlanes());
    EXPECT_EQ(camera.GetHorizontalApertureOffset(), 0.0f);
}

TEST(Framing, GivesAnOrthographicCameraTheDistanceAsItsHeight)
{
    const GfCamera camera = getFramedBBoxGfCamera(kUnitBox, cameraWithAspect(2.0f, true),
                                                  ProjectionType::Orthographic, 45.0f, 12.0f, kFactor);
    EXPECT_NEAR(camera.GetVerticalAperture() * GfCamera::APERTURE_UNIT, 12.0, 1e-5);
    EXPECT_NEAR(camera.GetHorizontalAperture() * GfCamera::APERTURE_UNIT, 24.0, 1e-5);
}

TEST(Framing, AsksForADistanceWhenItIsGivenNone)
{
    const float asked = getDistanceToCenter(kUnitBox, ProjectionType::Perspective, 45.0f, kFactor);
    for (const float none : {0.0f, -3.0f, std::nanf(""), HUGE_VALF}) {
        const GfCamera camera =
            getFramedBBoxGfCamera(kUnitBox, GfCamera(), ProjectionType::Perspective, 45.0f, none, kFactor);
        EXPECT_EQ(axis(camera, 3), GfVec3d(0, 0, static_cast<double>(asked)));
    }
}

TEST(Framing, WithADirectionHealsACameraOfNaNs)
{
    GfCamera broken;
    broken.SetTransform(GfMatrix4d(std::nan("")));
    broken.SetHorizontalAperture(std::nanf(""));
    broken.SetFocusDistance(std::nanf(""));
    broken.SetClippingRange(GfRange1f(std::nanf(""), std::nanf("")));
    for (const ProjectionType projection : {ProjectionType::Perspective, ProjectionType::Orthographic}) {
        const GfCamera camera = getFramedBBoxGfCameraWithDirection(kUnitBox, broken, GfVec3d(1, 1, 1), false,
                                                                   projection, 45.0f, 10.0f, kFactor);
        EXPECT_TRUE(isFiniteCamera(camera));
        EXPECT_LT(largestWindowCoordinate(camera, kUnitBox, 1.0), 1.0);
    }
}

TEST(Framing, LooksFromTheFrontWhenTheDirectionIsNone)
{
    for (const GfVec3d& none : {GfVec3d(0.0), GfVec3d(std::nan(""), 0, 1), GfVec3d(HUGE_VAL, 0, 0)}) {
        const GfCamera camera = getFramedBBoxGfCameraWithDirection(
            kUnitBox, GfCamera(), none, true, ProjectionType::Perspective, 45.0f, 10.0f, kFactor);
        EXPECT_EQ(axis(camera, 2), GfVec3d(0, -1, 0));
    }
}

TEST(Framing, IsFiniteForAnyNumber)
{
    for (const float size : kNastyFloats) {
        const GfRange3f box(GfVec3f(-size), GfVec3f(size));
        for (const float number : kNastyFloats) {
            for (const ProjectionType projection :
                 {ProjectionType::Perspective, ProjectionType::Orthographic}) {
                const GfCamera camera = getFramedBBoxGfCameraWithDirection(
                    box, GfCamera(), GfVec3d(number, 1, number), false, projection, number, number, number);
                ASSERT_TRUE(isFiniteCamera(camera)) << size << " " << number;
            }
        }
    }
}

} // namespace
