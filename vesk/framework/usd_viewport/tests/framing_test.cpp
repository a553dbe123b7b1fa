#include "viewport_fixture.h"

#include <climits>
#include <cmath>

namespace vesk::framework::usd_viewport::tests {
namespace {

using namespace vesk::usd::utils;

const GfRange3f kBox(GfVec3f(-1), GfVec3f(1));
const GfRange3f kProxyBox(GfVec3f(-4), GfVec3f(4));

class FramingTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        model->setGfCamera(cameraAt(GfVec3d(0, 0, 30)), "");
        forget();
    }

    void frame(ProjectionType projection, ViewDirection direction, const std::vector<SdfPath>& paths = {})
    {
        const Future<void> framed = model->frameScene(projection, direction, paths);
        EXPECT_FALSE(framed.isReady());
        run();
        ASSERT_TRUE(framed.isReady());
        EXPECT_EQ(framed.error(), nullptr);
    }

    /// The camera that the utilities and the rules of framing give for a box.
    GfCamera expectedCamera(const GfRange3f& box, const GfCamera& current, ProjectionType projection,
                            const std::optional<GfVec3d>& direction, float fieldOfView,
                            const GfRange3f& sceneBounds = kBox)
    {
        const float distance = getDistanceToCenter(box, projection, fieldOfView, 1.5f);
        GfCamera camera = direction
                              ? getFramedBBoxGfCameraWithDirection(box, current, *direction, model->zUp(),
                                                                   projection, fieldOfView, distance, 1.5f)
                              : getFramedBBoxGfCamera(box, current, projection, fieldOfView, distance, 1.5f);
        updateGfCameraNearFar(camera, model->zUp(), distance, distance, sceneBounds);
        const float aspect = camera.GetAspectRatio();
        if (camera.GetProjection() == GfCamera::Perspective)
            camera.SetPerspectiveFromAspectRatioAndFieldOfView(
                aspect, camera.GetFieldOfView(GfCamera::FOVVertical), GfCamera::FOVVertical,
                current.GetHorizontalAperture());
        else
            camera.SetOrthographicFromAspectRatioAndSize(aspect, distance, GfCamera::FOVVertical);
        EXPECT_EQ(model->distanceToCenter(), distance);
        return camera;
    }

    GfVec3d backward() const { return row(model->getGfCamera(), 2); }
};

TEST_F(FramingTest, KeepsTheDirectionWhenAskedTo)
{
    model->orbitCameraUsingDeltaAngles(20, 10, "");
    const GfCamera current = model->getGfCamera();
    frame(ProjectionType::Perspective, ViewDirection::Current);
    EXPECT_EQ(model->getGfCamera(), expectedCamera(kBox, current, ProjectionType::Perspective, {}, 45.0f));
    EXPECT_NEAR((backward() - row(current, 2)).GetLength(), 0.0, 1e-12);
}

TEST_F(FramingTest, LooksFromEachDirection)
{
    const std::pair<ViewDirection, GfVec3d> rows[] = {
        {ViewDirection::Front, GfVec3d(0, 0, 1)},
        {ViewDirection::Back, GfVec3d(0, 0, -1)},
        {ViewDirection::Left, GfVec3d(-1, 0, 0)},
        {ViewDirection::Right, GfVec3d(1, 0, 0)},
        {ViewDirection::Top, GfVec3d(0, 1, 0)},
        {ViewDirection::Bottom, GfVec3d(0, -1, 0)},
        {ViewDirection::ThreeQuarters, GfVec3d(threeQuartersViewDirection(false))}};
    for (const auto& [direction, expected] : rows) {
        const GfCamera current = model->getGfCamera();
        frame(ProjectionType::Perspective, direction);
        EXPECT_NEAR((backward() - expected).GetLength(), 0.0, 1e-6) << static_cast<int>(direction);
        EXPECT_EQ(model->getGfCamera(),
                  expectedCamera(kBox, current, ProjectionType::Perspective, expected, 45.0f));
    }
}

TEST_F(FramingTest, LooksFromTheFrontOfAZUpScene)
{
    model->setZUp(true);
    frame(ProjectionType::Perspective, ViewDirection::Front);
    EXPECT_EQ(backward(), GfVec3d(0, -1, 0));
    frame(ProjectionType::Perspective, ViewDirection::Back);
    EXPECT_EQ(backward(), GfVec3d(0, 1, 0));
    frame(ProjectionType::Perspective, ViewDirection::Top);
    EXPECT_EQ(backward(), GfVec3d(0, 0, 1));
}

TEST_F(FramingTest, TreatsAnUnknownDirectionAsTheCameras)
{
    for (const int direction : {-1, 8, 300, INT_MAX, INT_MIN}) {
        frame(ProjectionType::Perspective, static_cast<ViewDirection>(direction));
        EXPECT_EQ(backward(), GfVec3d(0, 0, 1));
    }
}

TEST_F(FramingTest, NumbersItsDirections)
{
    const ViewDirection all[] = {ViewDirection::Current, ViewDirection::Front,        ViewDirection::Back,
                                 ViewDirection::Left,    ViewDirection::Right,        ViewDirection::Top,
                                 ViewDirection::Bottom,  ViewDirection::ThreeQuarters};
    for (int number = 0; number < 8; ++number)
        EXPECT_EQ(static_cast<int>(all[number]), number);
    static_assert(sizeof(ViewDirection) == 4);
}

TEST_F(FramingTest, FramesTheSceneForNoPathAndForTheRoot)
{
    for (const std::vector<SdfPath>& paths : {std::vector<SdfPath>{}, std::vector<SdfPath>{SdfPath("/")},
                                              std::vector<SdfPath>{SdfPath("/"), SdfPath("/ProxyBox")}}) {
        const GfCamera current = model->getGfCamera();
        frame(ProjectionType::Perspective, ViewDirection::Front, paths);
        EXPECT_EQ(model->getGfCamera(),
                  expectedCamera(kBox, current, ProjectionType::Perspective, GfVec3d(0, 0, 1), 45.0f));
    }
}

TEST_F(FramingTest, FramesThePathsWhenTheFirstIsNotTheRoot)
{
    model->setRenderProxyGeometry(true);
    const GfCamera current = model->getGfCamera();
    frame(ProjectionType::Perspective, ViewDirection::Front, {SdfPath("/Box"), SdfPath("/")});
    // Only the box of edge 2 is framed, or "/" would bring in the one of edge 8.
    EXPECT_EQ(model->distanceToCenter(),
              getDistanceToCenter(kProxyBox, ProjectionType::Perspective, 45.0f, 1.5f));
    frame(ProjectionType::Perspective, ViewDirection::Front, {SdfPath("/Box")});
    EXPECT_EQ(model->getGfCamera(),
              expectedCamera(kBox, current, ProjectionType::Perspective, GfVec3d(0, 0, 1), 45.0f, kProxyBox));
}

TEST_F(FramingTest, KeepsTheScenesBoundsWhenItFramesAPart)
{
    model->setRenderProxyGeometry(true);
    frame(ProjectionType::Perspective, ViewDirection::Front, {SdfPath("/Box")});
    GfCamera fitted = GfCamera();
    updateGfCameraNearFar(fitted, false, 10.0f, 10.0f, kProxyBox);
    model->setDistanceToCenter(10.0f);
    EXPECT_EQ(model->adjustGfCamera(GfCamera()).GetClippingRange(), fitted.GetClippingRange());
}

TEST_F(FramingTest, FramesTheUnitBoxWhereThereIsNothing)
{
    const GfCamera current = model->getGfCamera();
    frame(ProjectionType::Perspective, ViewDirection::Front, {SdfPath("/Nowhere")});
    EXPECT_EQ(model->getGfCamera(),
              expectedCamera(kBox, current, ProjectionType::Perspective, GfVec3d(0, 0, 1), 45.0f));
}

TEST_F(FramingTest, CountsProxyGeometryWhenItIsShown)
{
    const GfCamera current = model->getGfCamera();
    const Future<void> framed = model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {});
    model->setRenderProxyGeometry(true);
    run();
    EXPECT_EQ(model->getGfCamera(), expectedCamera(kProxyBox, current, ProjectionType::Perspective,
                                                   GfVec3d(0, 0, 1), 45.0f, kProxyBox));
}

TEST_F(FramingTest, GivesAPerspectiveViewTheDefaultFieldOfView)
{
    ViewportModel::setDefaultVerticalFieldOfView(60.0f);
    frame(ProjectionType::Perspective, ViewDirection::Front);
    EXPECT_NEAR(model->getGfCamera().GetFieldOfView(GfCamera::FOVVertical), 60.0f, 1e-4f);
}

TEST_F(FramingTest, KeepsTheFieldOfViewOfACameraThatKeepsItsProjection)
{
    const float own = model->getGfCamera().GetFieldOfView(GfCamera::FOVVertical);
    EXPECT_GT(std::abs(own - 45.0f), 10.0f);
    frame(ProjectionType::Keep, ViewDirection::Front);
    EXPECT_NEAR(model->getGfCamera().GetFieldOfView(GfCamera::FOVVertical), own, 1e-4f);
    frame(static_cast<ProjectionType>(77), ViewDirection::Front);
    EXPECT_NEAR(model->getGfCamera().GetFieldOfView(GfCamera::FOVVertical), own, 1e-4f);
}

TEST_F(FramingTest, ShowsTheDistanceInAnOrthographicView)
{
    frame(ProjectionType::Orthographic, ViewDirection::Front);
    EXPECT_EQ(model->getGfCamera().GetProjection(), GfCamera::Orthographic);
    EXPECT_FLOAT_EQ(model->getGfCamera().GetVerticalAperture() * 0.1f, model->distanceToCenter());
}

TEST_F(FramingTest, UsesTheDefaultFieldOfViewForAnOrthographicCameraThatKeepsItsProjection)
{
    frame(ProjectionType::Orthographic, ViewDirection::Front);
    const GfCamera current = model->getGfCamera();
    frame(ProjectionType::Keep, ViewDirection::Front);
    EXPECT_EQ(model->getGfCamera(),
              expectedCamera(kBox, current, ProjectionType::Keep, GfVec3d(0, 0, 1), 45.0f));
}

TEST_F(FramingTest, KeepsTheHorizontalApertureOfTheViewport)
{
    GfCamera camera = model->getViewportCamera();
    camera.SetHorizontalAperture(36.0f);
    model->setGfCamera(camera, "");
    frame(ProjectionType::Perspective, ViewDirection::Front);
    EXPECT_EQ(model->getGfCamera().GetHorizontalAperture(), 36.0f);
}

TEST_F(FramingTest, TellsTheRendererAndTheBusOfAFreeCamera)
{
    frame(ProjectionType::Perspective, ViewDirection::Front);
    EXPECT_EQ(timeline,
              (std::vector<std::string>{"A task frame scene", "renderer setCamera", "A camera event"}));
    EXPECT_EQ(renderer->lastCamera(), model->getGfCamera());
}

TEST_F(FramingTest, WritesAFollowedCamera)
{
    follow("/Cam");
    frame(ProjectionType::Perspective, ViewDirection::Front);
    EXPECT_TRUE(renderer->take().empty());
    EXPECT_NEAR((row(stageCamera("/Cam"), 3) - row(model->getGfCamera(), 3)).GetLength(), 0.0, 1e-9);
    EXPECT_GE(watched.takeCameraEvents(), 1u);
}

TEST_F(FramingTest, IsUndoneAsOneEdit)
{
    follow("/Cam");
    frame(ProjectionType::Perspective, ViewDirection::Front);
    EXPECT_EQ(watched.document->undoLabels(), std::vector<std::string>{"frame scene"});
    watched.document->undo();
    run();
    EXPECT_EQ(row(stageCamera("/Cam"), 3), GfVec3d(0, 0, 20));
}

TEST_F(FramingTest, InsideAnInteractionIsAnnouncedAtItsEnd)
{
    model->beginCameraInteraction();
    frame(ProjectionType::Perspective, ViewDirection::Front);
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    model->endCameraInteraction();
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
}

TEST_F(FramingTest, NamesItsTaskTheSameForEveryDirection)
{
    for (int direction = 0; direction < 8; ++direction) {
        model->frameScene(ProjectionType::Perspective, static_cast<ViewDirection>(direction), {});
        EXPECT_EQ(labelsOf(watched.takeTasks()), std::vector<std::string>{"frame scene"}) << direction;
    }
    watched.document->dropPendingTasks();
}

TEST_F(FramingTest, WithoutAStageFailsAndChangesNothing)
{
    const GfCamera before = model->getGfCamera();
    watched.withoutStage = true;
    const Future<void> framed = model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {});
    run();
    EXPECT_THROW(framed.get(), vesk::base::error_handling::Exception);
    EXPECT_EQ(log.takeTexts(),
              std::vector<std::string>{
                  "CheckResult: error There is no stage (category: UtilsError, code: 1) in result of type " +
                  std::string(typeid(GfRange3f).name())});
    EXPECT_EQ(model->getGfCamera(), before);
    EXPECT_EQ(model->distanceToCenter(), 0.0f);
    EXPECT_TRUE(watched.cameraEvents.empty());
}

TEST_F(FramingTest, ReadsTheUpAxisWhenItRuns)
{
    model->frameScene(ProjectionType::Perspective, ViewDirection::Top, {});
    model->setZUp(true);
    run();
    EXPECT_EQ(backward(), GfVec3d(0, 0, 1));
}

TEST_F(FramingTest, OwnsTheCallersPaths)
{
    model->setRenderProxyGeometry(true);
    {
        std::vector<SdfPath> paths{SdfPath("/Box")};
        model->frameScene(ProjectionType::Perspective, ViewDirection::Front, paths);
        paths[0] = SdfPath("/ProxyBox");
    }
    run();
    EXPECT_EQ(model->distanceToCenter(), getDistanceToCenter(kBox, ProjectionType::Perspective, 45.0f, 1.5f));
}

TEST_F(FramingTest, OfAnEmptySceneFramesTheUnitBox)
{
    watched.document->edit("clear", [](const UsdDocument::ExecContext& context) {
        context.stage()->RemovePrim(SdfPath("/Box"));
        context.stage()->RemovePrim(SdfPath("/ProxyBox"));
    });
    run();
    forget();
    const GfCamera current = model->getGfCamera();
    frame(ProjectionType::Perspective, ViewDirection::Front);
    EXPECT_EQ(model->getGfCamera(), expectedCamera(kBox, current, ProjectionType::Perspective,
                                                   GfVec3d(0, 0, 1), 45.0f, GfRange3f()));
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
