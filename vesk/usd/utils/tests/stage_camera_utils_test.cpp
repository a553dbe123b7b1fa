#include "camera_check.h"
#include "stage_check.h"

#include <pxr/base/gf/rotation.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/usd/usd/editContext.h>
#include <pxr/usd/usdGeom/camera.h>
#include <pxr/usd/usdGeom/metrics.h>
#include <pxr/usd/usdGeom/tokens.h>
#include <vesk/usd/utils/camera_utils.h>
#include <vesk/usd/utils/utils_error.h>

#include <cmath>
#include <limits>
#include <random>

using namespace vesk::usd::utils;
using namespace vesk::usd::utils::tests;
using vesk::base::error_handling::Exception;
using vesk::base::error_handling::makeErrorCode;
PXR_NAMESPACE_USING_DIRECTIVE

namespace {

constexpr double kDefaultTime = std::numeric_limits<double>::quiet_NaN();
const SdfPath kCamera("/Rig/Cam");

const char* const kRig = R"(
def Xform "Rig"
{
    double3 xformOp:translate = (10, 20, 30)
    uniform token[] xformOpOrder = ["xformOp:translate"]

    def Camera "Cam"
    {
    }

    def Mesh "Mesh"
    {
    }
}
)";

GfCamera someCamera()
{
    GfCamera camera;
    camera.SetTransform(GfMatrix4d(GfRotation(GfVec3d(0, 1, 0), 30.0), GfVec3d(1, 2, 3)));
    camera.SetFocalLength(35.0f);
    camera.SetClippingRange(GfRange1f(0.5f, 500.0f));
    camera.SetClippingPlanes({GfVec4f(1, 0, 0, 2)});
    camera.SetFocusDistance(12.5f);
    camera.SetFStop(2.8f);
    return camera;
}

std::error_code codeOf(const std::function<void()>& call)
{
    try {
        call();
    } catch (const Exception& error) {
        return error.code();
    }
    return {};
}

TEST(ReadingACamera, GivesItInWorldSpace)
{
    const UsdStageRefPtr stage = stageFrom(kRig);
    const GfCamera camera = getGfCameraFromCameraPath(stage, kCamera, kDefaultTime).takeValue();
    EXPECT_EQ(getCameraPosition(camera.GetTransform()), GfVec3d(10, 20, 30));
}

TEST(ReadingACamera, FailsWhereThereIsNone)
{
    const UsdStageRefPtr stage = stageFrom(kRig);
    for (const char* path : {"/Rig/Mesh", "/Nowhere", "/Rig/Cam.focalLength"})
        EXPECT_EQ(getGfCameraFromCameraPath(stage, SdfPath(path), kDefaultTime).code(),
                  makeErrorCode(UtilsError::InvalidCameraPrim))
            << path;
    EXPECT_EQ(getGfCameraFromCameraPath(stage, SdfPath(), kDefaultTime).code(),
              makeErrorCode(UtilsError::InvalidCameraPrim));
}

TEST(ReadingACamera, FailsWithoutAStage)
{
    EXPECT_EQ(getGfCameraFromCameraPath(UsdStageRefPtr(), kCamera, kDefaultTime).code(),
              makeErrorCode(UtilsError::InvalidStage));
}

TEST(ReadingACamera, TakesTheTime)
{
    const UsdStageRefPtr stage = stageFrom(R"(
def Camera "Cam"
{
    float focalLength.timeSamples = { 1: 20, 2: 40 }
}
)");
    EXPECT_EQ(getGfCameraFromCameraPath(stage, SdfPath("/Cam"), 2.0).takeValue().GetFocalLength(), 40.0f);
}

TEST(WritingACamera, MakesThePrimThatCamera)
{
    const UsdStageRefPtr stage = stageFrom(kRig);
    setGfCameraForCameraPath(stage, kCamera, someCamera(), kDefaultTime);
    const GfCamera read = getGfCameraFromCameraPath(stage, kCamera, kDefaultTime).takeValue();
    for (int row = 0; row < 4; ++row)
        EXPECT_NEAR((axis(read, row) - axis(someCamera(), row)).GetLength(), 0.0, 1e-12);
    GfCamera expected = someCamera();
    expected.SetTransform(read.GetTransform());
    EXPECT_EQ(read, expected);
}

TEST(WritingACamera, AuthorsNothingWhenItIsThatCameraAlready)
{
    const UsdStageRefPtr stage = stageFrom(kRig);
    setGfCameraForCameraPath(stage, kCamera, someCamera(), kDefaultTime);
    const std::string before = rootText(stage);
    const GfCamera read = getGfCameraFromCameraPath(stage, kCamera, kDefaultTime).takeValue();
    const UsdEditContext refusing(stage, stage->GetSessionLayer());
    setGfCameraForCameraPath(stage, kCamera, read, kDefaultTime);
    EXPECT_EQ(rootText(stage), before);
    EXPECT_TRUE(stage->GetSessionLayer()->IsEmpty());
}

TEST(WritingACamera, SettlesUnderAnyParentAfterOneWrite)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> number(-2.0, 2.0);
    for (int round = 0; round < 200; ++round) {
        const UsdStageRefPtr stage = stageFrom(kRig);
        GfMatrix4d parent(
            GfRotation(GfVec3d(number(random), number(random), number(random)), number(random) * 90),
            GfVec3d(number(random), number(random), number(random)));
        parent = GfMatrix4d(GfVec4d(0.5 + std::abs(number(random)), 1.0, 3.0, 1.0)) * parent;
        UsdGeomXformable(stage->GetPrimAtPath(SdfPath("/Rig"))).MakeMatrixXform().Set(parent);
        setGfCameraForCameraPath(stage, kCamera, someCamera(), kDefaultTime);
        // What a viewport that follows the camera does next: it reads the camera and writes it back.
        const GfCamera read = getGfCameraFromCameraPath(stage, kCamera, kDefaultTime).takeValue();
        const std::string settled = rootText(stage);
        setGfCameraForCameraPath(stage, kCamera, read, kDefaultTime);
        ASSERT_EQ(rootText(stage), settled) << round;
    }
}

// The layer's text before and after a second write, of a camera that was moved by so much, below a parent
// that is turned and unevenly scaled.
bool isAuthoredAgain(double moved)
{
    const UsdStageRefPtr stage = stageFrom(kRig);
    UsdGeomXformable(stage->GetPrimAtPath(SdfPath("/Rig")))
        .MakeMatrixXform()
        .Set(GfMatrix4d(GfVec4d(0.3, 7.0, 1.1, 1.0)) *
             GfMatrix4d(GfRotation(GfVec3d(1, 2, 3), 40.0), GfVec3d(5, 6, 7)));
    setGfCameraForCameraPath(stage, kCamera, someCamera(), kDefaultTime);
    GfCamera camera = getGfCameraFromCameraPath(stage, kCamera, kDefaultTime).takeValue();
    std::string before, after;
    stage->GetRootLayer()->ExportToString(&before);
    GfMatrix4d transform = camera.GetTransform();
    transform[3][0] += moved;
    camera.SetTransform(transform);
    setGfCameraForCameraPath(stage, kCamera, camera, kDefaultTime);
    stage->GetRootLayer()->ExportToString(&after);
    return before != after;
}

TEST(WritingACamera, HappensForTheSmallestMoveThatTheWayThroughTheParentKeeps)
{
    EXPECT_TRUE(isAuthoredAgain(1.0));
    EXPECT_TRUE(isAuthoredAgain(1e-9));
    EXPECT_FALSE(isAuthoredAgain(1e-15));
    EXPECT_FALSE(isAuthoredAgain(0.0));
}

TEST(WritingACamera, HappensForASingleBitWhenNoParentRounds)
{
    const UsdStageRefPtr stage = stageFrom("def Camera \"Cam\"\n{\n}\n");
    const SdfPath path("/Cam");
    setGfCameraForCameraPath(stage, path, someCamera(), kDefaultTime);
    GfCamera camera = getGfCameraFromCameraPath(stage, path, kDefaultTime).takeValue();
    GfMatrix4d transform = camera.GetTransform();
    transform[3][0] = std::nextafter(transform[3][0], 10.0);
    camera.SetTransform(transform);
    setGfCameraForCameraPath(stage, path, camera, kDefaultTime);
    EXPECT_EQ(getGfCameraFromCameraPath(stage, path, kDefaultTime).takeValue().GetTransform(), transform);
}

TEST(WritingACamera, OfNaNsHappensOnce)
{
    const UsdStageRefPtr stage = stageFrom("def Camera \"Cam\"\n{\n}\n");
    GfCamera broken = someCamera();
    broken.SetTransform(GfMatrix4d(std::nan("")));
    setGfCameraForCameraPath(stage, SdfPath("/Cam"), broken, kDefaultTime);
    const GfCamera read = getGfCameraFromCameraPath(stage, SdfPath("/Cam"), kDefaultTime).takeValue();
    const std::string before = rootText(stage);
    const UsdEditContext refusing(stage, stage->GetSessionLayer());
    setGfCameraForCameraPath(stage, SdfPath("/Cam"), read, kDefaultTime);
    EXPECT_EQ(rootText(stage), before);
    EXPECT_TRUE(stage->GetSessionLayer()->IsEmpty());
}

TEST(WritingACamera, RefusesAParentThatCannotBeInverted)
{
    for (const GfMatrix4d& parent :
         {GfMatrix4d(GfVec4d(1, 0, 1, 1)), GfMatrix4d(GfVec4d(0, 0, 0, 1)), GfMatrix4d(std::nan("")),
          GfMatrix4d(1, 2, 3, 0, 2, 4, 6, 0, 0, 0, 1, 0, 0, 0, 0, 1)}) {
        const UsdStageRefPtr stage = stageFrom(kRig);
        UsdGeomXformable(stage->GetPrimAtPath(SdfPath("/Rig"))).MakeMatrixXform().Set(parent);
        const std::string before = rootText(stage);
        try {
            setGfCameraForCameraPath(stage, kCamera, someCamera(), kDefaultTime);
            FAIL() << "a singular parent was accepted";
        } catch (const Exception& error) {
            EXPECT_EQ(error.code(), makeErrorCode(UtilsError::SingularParentTransform));
            EXPECT_EQ(
                std::string(error.what()),
                "Cannot write the camera </Rig/Cam>: the transform of its parent cannot be inverted; give "
                "every "
                "prim above it a scale that is not 0: A transform above the camera prim cannot be inverted");
        }
        EXPECT_EQ(rootText(stage), before);
    }
}

TEST(WritingACamera, AcceptsATinyParent)
{
    const UsdStageRefPtr stage = stageFrom(kRig);
    UsdGeomXformable(stage->GetPrimAtPath(SdfPath("/Rig")))
        .MakeMatrixXform()
        .Set(GfMatrix4d(GfVec4d(1e-8, 1e-8, 1e-8, 1)));
    setGfCameraForCameraPath(stage, kCamera, someCamera(), kDefaultTime);
    const GfCamera read = getGfCameraFromCameraPath(stage, kCamera, kDefaultTime).takeValue();
    EXPECT_NEAR((axis(read, 3) - GfVec3d(1, 2, 3)).GetLength(), 0.0, 1e-9);
}

TEST(WritingACamera, FailsWhereThereIsNone)
{
    const UsdStageRefPtr stage = stageFrom(kRig);
    const std::string before = rootText(stage);
    for (const char* path : {"/Rig/Mesh", "/Nowhere"})
        EXPECT_EQ(codeOf([&] { setGfCameraForCameraPath(stage, SdfPath(path), someCamera(), kDefaultTime); }),
                  makeErrorCode(UtilsError::InvalidCameraPrim));
    EXPECT_EQ(rootText(stage), before);
}

TEST(WritingACamera, FailsWithoutAStage)
{
    EXPECT_EQ(
        codeOf([&] { setGfCameraForCameraPath(UsdStageRefPtr(), kCamera, someCamera(), kDefaultTime); }),
        makeErrorCode(UtilsError::InvalidStage));
}

TEST(WritingACamera, SaysWhenAStrongerLayerHidesIt)
{
    const UsdStageRefPtr stage = stageFrom(kRig);
    {
        const UsdEditContext session(stage, stage->GetSessionLayer());
        UsdGeomCamera(stage->GetPrimAtPath(kCamera)).GetFocalLengthAttr().Set(99.0f);
    }
    EXPECT_EQ(codeOf([&] { setGfCameraForCameraPath(stage, kCamera, someCamera(), kDefaultTime); }),
              makeErrorCode(UtilsError::AuthoringFailed));
}

TEST(WritingACamera, SaysWhenTheLayerCannotBeEdited)
{
    const UsdStageRefPtr stage = stageFrom(kRig);
    stage->GetRootLayer()->SetPermissionToEdit(false);
    TfErrorMark mark;
    EXPECT_EQ(codeOf([&] { setGfCameraForCameraPath(stage, kCamera, someCamera(), kDefaultTime); }),
              makeErrorCode(UtilsError::AuthoringFailed));
    EXPECT_TRUE(mark.IsClean());
    stage->GetRootLayer()->SetPermissionToEdit(true);
}

TEST(UpAxis, IsZOnlyWhereTheStageSaysSo)
{
    EXPECT_TRUE(stageIsZUp(stageFrom("(\n    upAxis = \"Z\"\n)\n")).takeValue());
    EXPECT_FALSE(stageIsZUp(stageFrom("(\n    upAxis = \"Y\"\n)\n")).takeValue());
    EXPECT_FALSE(stageIsZUp(stageFrom("(\n    upAxis = \"X\"\n)\n")).takeValue());
    EXPECT_FALSE(stageIsZUp(stageFrom("")).takeValue());
}

TEST(UpAxis, IsAnErrorWithoutAStage)
{
    EXPECT_EQ(stageIsZUp(UsdStageRefPtr()).code(), makeErrorCode(UtilsError::InvalidStage));
}

TEST(UtilsErrors, HaveTheirTexts)
{
    EXPECT_STREQ(makeErrorCode(UtilsError::InvalidStage).category().name(), "UtilsError");
    EXPECT_EQ(makeErrorCode(UtilsError::InvalidStage).message(), "There is no stage");
    EXPECT_EQ(makeErrorCode(UtilsError::InvalidPrim).message(), "There is no prim at the path");
    EXPECT_EQ(makeErrorCode(UtilsError::InvalidCameraPrim).message(), "There is no camera prim at the path");
    EXPECT_EQ(makeErrorCode(UtilsError::SingularParentTransform).message(),
              "A transform above the camera prim cannot be inverted");
    EXPECT_EQ(makeErrorCode(UtilsError::AuthoringFailed).message(), "The camera could not be authored");
    EXPECT_EQ(makeErrorCode(UtilsError::InvalidStage).category().message(99), "Unknown UtilsError error");
}

} // namespace
