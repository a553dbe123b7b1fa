// What framing asks of the utilities, in which order, and what it holds meanwhile.
#include "observed_fixture.h"

#include <vesk/usd/utils/utils_error.h>

namespace vesk::framework::usd_viewport::tests {
namespace {

using vesk::base::error_handling::makeErrorCode;
using vesk::usd::utils::UtilsError;

const GfRange3f kScene8(GfVec3f(-8), GfVec3f(8));
const GfRange3f kPart2(GfVec3f(-2), GfVec3f(2));

class FramingOrderTest : public ObservedTest
{
protected:
    void SetUp() override
    {
        ObservedTest::SetUp();
        utils.sceneBounds = kScene8;
        utils.partBounds = kPart2;
        utils.framedDistance = 6.0f;
        utils.framedCamera = cameraAt(GfVec3d(0, 0, 60));
        forgetAll();
    }

    Future<void> frame(ViewDirection direction, const std::vector<SdfPath>& paths = {},
                       ProjectionType projection = ProjectionType::Perspective)
    {
        Future<void> framed = model->frameScene(projection, direction, paths);
        run();
        return framed;
    }

    /// The call of that name, which must have been made once.
    static UtilityCall callOf(const std::vector<UtilityCall>& calls, const std::string& name)
    {
        std::vector<UtilityCall> found;
        for (const UtilityCall& call : calls)
            if (call.name == name) found.push_back(call);
        EXPECT_EQ(found.size(), 1u) << name;
        return found.empty() ? UtilityCall("none") : found.front();
    }
};

TEST_F(FramingOrderTest, MeasuresTheSceneThenThePartThenTheDistanceThenFramesFitsFocusesShowsAndAnnounces)
{
    model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {SdfPath("/Box")});
    timeline.clear();
    run();
    EXPECT_EQ(timeline, (Names{"utils computeAlignedGeometryBounds", "utils getSubSceneBounds",
                               "utils getDistanceToCenter", "utils getFramedBBoxGfCameraWithDirection",
                               "utils updateGfCameraNearFar", "utils checkGfCameraFocusDistance",
                               "renderer setCamera", "A camera event"}));
}

TEST_F(FramingOrderTest, AsksForNoPartWhereTheWholeSceneIsFramedAndForNoDirectionOfTheCamerasOwn)
{
    const Names expected{"computeAlignedGeometryBounds", "getDistanceToCenter", "getFramedBBoxGfCamera",
                         "updateGfCameraNearFar", "checkGfCameraFocusDistance"};
    frame(ViewDirection::Current);
    EXPECT_EQ(namesOfCalls(), expected);
    frame(ViewDirection::Current, {SdfPath("/"), SdfPath("/Box")});
    EXPECT_EQ(namesOfCalls(), expected);
}

TEST_F(FramingOrderTest, FramesThePartsWhenTheRootIsAmongThemButNotTheFirst)
{
    const std::vector<SdfPath> paths{SdfPath("/Box"), SdfPath("/")};
    frame(ViewDirection::Current, paths);
    const std::vector<UtilityCall> calls = utils.take();
    EXPECT_EQ(callOf(calls, "getSubSceneBounds").paths, paths);
    EXPECT_EQ(callOf(calls, "getFramedBBoxGfCamera").bounds, kPart2);
}

TEST_F(FramingOrderTest, HoldsTheBoundsCacheForBothMeasurementsAndNoLonger)
{
    watchBoundsCache();
    frame(ViewDirection::Top, {SdfPath("/Box")});
    EXPECT_EQ(namesOfHolders(utils.take()), (Names{"computeAlignedGeometryBounds", "getSubSceneBounds"}));
}

TEST_F(FramingOrderTest, LetsGoOfTheBoundsCacheWhenAMeasurementFails)
{
    watchBoundsCache();
    utils.boundsError = makeErrorCode(UtilsError::InvalidStage);
    EXPECT_TRUE(frame(ViewDirection::Top).error());
    EXPECT_FALSE(holdsBoundsCache());
    EXPECT_EQ(namesOfCalls(), Names{"computeAlignedGeometryBounds"});
    log.take();
}

TEST_F(FramingOrderTest, MeasuresWithTheDocumentsCacheAtTheModelsTimeAndPurpose)
{
    const UsdGeomBBoxCache* const cache = watchBoundsCache();
    const std::vector<SdfPath> paths{SdfPath("/Box"), SdfPath("/"), SdfPath("/Mesh")};
    model->frameScene(ProjectionType::Perspective, ViewDirection::Current, paths);
    model->setRenderProxyGeometry(true);
    run();
    const std::vector<UtilityCall> calls = utils.take();
    const UtilityCall scene = callOf(calls, "computeAlignedGeometryBounds");
    EXPECT_EQ(scene.stage, watched.stage);
    EXPECT_EQ(scene.path, SdfPath::AbsoluteRootPath());
    EXPECT_EQ(scene.time, 0.0);
    EXPECT_TRUE(scene.proxyGeometry);
    EXPECT_EQ(scene.cache, cache);
    const UtilityCall part = callOf(calls, "getSubSceneBounds");
    EXPECT_EQ(part.stage, watched.stage);
    EXPECT_EQ(part.paths, paths);
    EXPECT_TRUE(part.proxyGeometry);
    EXPECT_EQ(part.cache, cache);
}

TEST_F(FramingOrderTest, KeepsTheNewDistanceBeforeTheCameraIsBuilt)
{
    float seen = 0.0f;
    utils.onEntry = [&](UtilityCall& call) {
        if (call.name == "getFramedBBoxGfCamera") seen = model->distanceToCenter();
    };
    frame(ViewDirection::Current);
    EXPECT_EQ(seen, 6.0f);
    EXPECT_EQ(model->distanceToCenter(), 6.0f);
}

TEST_F(FramingOrderTest, PassesTheRangeTheCameraTheProjectionTheFieldOfViewTheDistanceAndTheFactor)
{
    ViewportModel::setDefaultVerticalFieldOfView(33.0f);
    const GfCamera current = cameraAt(GfVec3d(1, 2, 3));
    model->setGfCamera(current, "");
    model->setZUp(true);
    utils.take();
    frame(ViewDirection::Left, {SdfPath("/Box")});
    const std::vector<UtilityCall> calls = utils.take();
    const UtilityCall distance = callOf(calls, "getDistanceToCenter");
    EXPECT_EQ(distance.bounds, kPart2);
    EXPECT_EQ(distance.projection, ProjectionType::Perspective);
    EXPECT_EQ(distance.fieldOfView, 33.0f);
    EXPECT_EQ(distance.factor, 1.5f);
    const UtilityCall framing = callOf(calls, "getFramedBBoxGfCameraWithDirection");
    EXPECT_EQ(framing.bounds, kPart2);
    EXPECT_EQ(framing.camera, current);
    EXPECT_EQ(framing.direction, -GfVec3d(vesk::usd::utils::rightViewDirection(true)));
    EXPECT_TRUE(framing.zUp);
    EXPECT_EQ(framing.projection, ProjectionType::Perspective);
    EXPECT_EQ(framing.fieldOfView, 33.0f);
    EXPECT_EQ(framing.distanceToCenter, 6.0f);
    EXPECT_EQ(framing.factor, 1.5f);
}

TEST_F(FramingOrderTest, PassesAnyProjectionOnAndTellsOnlyZeroFromTheOthers)
{
    GfCamera current = cameraAt(GfVec3d(0));
    current.SetPerspectiveFromAspectRatioAndFieldOfView(1.0f, 60.0f, GfCamera::FOVVertical);
    const float own = current.GetFieldOfView(GfCamera::FOVVertical);
    model->setGfCamera(current, "");
    for (const int number : {1, 2, 7, -1}) {
        utils.take();
        frame(ViewDirection::Current, {}, static_cast<ProjectionType>(number));
        const std::vector<UtilityCall> calls = utils.take();
        // The framed camera of the time before is the viewport's by now.
        const float expected = number == 1 ? own : GfCamera().GetFieldOfView(GfCamera::FOVVertical);
        EXPECT_EQ(static_cast<int>(callOf(calls, "getDistanceToCenter").projection), number);
        EXPECT_EQ(static_cast<int>(callOf(calls, "getFramedBBoxGfCamera").projection), number);
        EXPECT_EQ(callOf(calls, "getFramedBBoxGfCamera").fieldOfView, expected) << number;
    }
}

TEST_F(FramingOrderTest, FramesTheUnitBoxForARangeThatIsEmptyOnOneAxisAlone)
{
    const GfRange3f unit(GfVec3f(-1), GfVec3f(1));
    for (int axis = 0; axis < 3; ++axis) {
        GfVec3f low(-2);
        low[axis] = 3;
        utils.partBounds = GfRange3f(low, GfVec3f(2));
        utils.take();
        frame(ViewDirection::Current, {SdfPath("/Box")});
        EXPECT_EQ(callOf(utils.take(), "getDistanceToCenter").bounds, unit) << axis;
    }
    utils.partBounds = GfRange3f(GfVec3f(2), GfVec3f(2));
    frame(ViewDirection::Current, {SdfPath("/Box")});
    EXPECT_EQ(callOf(utils.take(), "getDistanceToCenter").bounds, utils.partBounds) << "a point is a range";
}

TEST_F(FramingOrderTest, FitsTheFramedCameraToTheScenesBoundsAtTheNewDistance)
{
    utils.framedCamera.SetHorizontalAperture(30.0f);
    utils.framedCamera.SetVerticalAperture(10.0f);
    frame(ViewDirection::Current, {SdfPath("/Box")});
    const UtilityCall fit = callOf(utils.take(), "updateGfCameraNearFar");
    // Still with the apertures of the framing; the viewport's own come later.
    EXPECT_EQ(fit.camera, utils.framedCamera);
    EXPECT_EQ(fit.distanceToCenter, 6.0f);
    EXPECT_EQ(fit.distance, 6.0f);
    EXPECT_EQ(fit.bounds, kScene8);
}

TEST_F(FramingOrderTest, GivesTheFramedCameraTheViewportsHorizontalApertureAndItsOwnAngleAndAspect)
{
    GfCamera current;
    current.SetHorizontalAperture(36.0f);
    model->setGfCamera(current, "");
    utils.framedCamera.SetHorizontalAperture(30.0f);
    utils.framedCamera.SetVerticalAperture(10.0f);
    utils.framedCamera.SetFocalLength(20.0f);
    frame(ViewDirection::Current);
    const GfCamera camera = model->getGfCamera();
    EXPECT_EQ(camera.GetHorizontalAperture(), 36.0f);
    // Aspect 3, and the angle of an aperture of 10 at 20: of 12 at 24.
    EXPECT_FLOAT_EQ(camera.GetVerticalAperture(), 12.0f);
    EXPECT_NEAR(camera.GetFocalLength(), 24.0f, 1e-4f);
}

TEST_F(FramingOrderTest, KeepsTheNewBoundsAndDistanceWhenTheFramingFails)
{
    const GfCamera before = model->getViewportCamera();
    utils.onEntry = [](UtilityCall& call) {
        if (call.name == "getFramedBBoxGfCamera") throw std::runtime_error("cannot frame");
    };
    const Future<void> framed = frame(ViewDirection::Current);
    EXPECT_THROW(framed.get(), std::runtime_error);
    EXPECT_EQ(model->getViewportCamera(), before);
    EXPECT_EQ(model->distanceToCenter(), 6.0f);
    utils.onEntry = nullptr;
    utils.take();
    model->adjustGfCamera(GfCamera());
    EXPECT_EQ(utils.take().at(0).bounds, kScene8);
}

TEST_F(FramingOrderTest, AnAnswerThatIsAnErrorLeavesOneRecordAndChangesNothing)
{
    const GfCamera before = model->getViewportCamera();
    utils.boundsError = makeErrorCode(UtilsError::InvalidPrim);
    const Future<void> framed = frame(ViewDirection::Current);
    try {
        framed.get();
        ADD_FAILURE() << "the future holds no error";
    } catch (const vesk::base::error_handling::Exception& error) {
        EXPECT_EQ(error.code(), makeErrorCode(UtilsError::InvalidPrim));
    }
    const auto records = log.take();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].level, spdlog::level::err);
    EXPECT_EQ(records[0].text, "CheckResult: error " + makeErrorCode(UtilsError::InvalidPrim).message() +
                                   " (category: UtilsError, code: 2) in result of type " +
                                   typeid(GfRange3f).name());
    EXPECT_EQ(model->getViewportCamera(), before);
    EXPECT_EQ(model->distanceToCenter(), 0.0f);
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    EXPECT_EQ(renderer->take(), Names());
}

TEST_F(FramingOrderTest, WritesAFollowedCameraOnceOnTheStageOfTheTask)
{
    followCamera();
    frame(ViewDirection::Current);
    const UtilityCall write = callOf(utils.take(), "setGfCameraForCameraPath");
    EXPECT_EQ(write.stage, watched.stage);
    EXPECT_EQ(write.path, SdfPath("/Cam"));
    EXPECT_EQ(renderer->take(), Names());
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
    EXPECT_EQ(labelsOf(watched.takeTasks()), Names{"<frame scene>"});
}

struct LabelOfDirection
{
    ViewDirection direction;
    const char* label;
};

class FramingLabelTest : public FramingOrderTest, public ::testing::WithParamInterface<LabelOfDirection>
{};

TEST_P(FramingLabelTest, NamesTheWriteOfAFollowedCameraThatHasNoStage)
{
    followCamera();
    model->frameScene(ProjectionType::Perspective, GetParam().direction, {});
    watched.withoutStage = true;
    run();
    watched.withoutStage = false;
    EXPECT_EQ(labelsOf(watched.takeTasks()), (Names{"<frame scene>", GetParam().label}));
}

INSTANTIATE_TEST_SUITE_P(Directions, FramingLabelTest,
                         ::testing::Values(LabelOfDirection{ViewDirection::Current, "<frame scene>"},
                                           LabelOfDirection{ViewDirection::Front, "<frame front view>"},
                                           LabelOfDirection{ViewDirection::Back, "<frame back view>"},
                                           LabelOfDirection{ViewDirection::Left, "<frame left view>"},
                                           LabelOfDirection{ViewDirection::Right, "<frame right view>"},
                                           LabelOfDirection{ViewDirection::Top, "<frame top view>"},
                                           LabelOfDirection{ViewDirection::Bottom, "<frame bottom view>"},
                                           LabelOfDirection{ViewDirection::ThreeQuarters, "<reset view>"},
                                           LabelOfDirection{static_cast<ViewDirection>(8), "<frame scene>"}));

} // namespace
} // namespace vesk::framework::usd_viewport::tests
