#include "viewport_fixture.h"

#include <pxr/base/gf/rotation.h>

#include <cmath>
#include <random>

namespace vesk::framework::usd_viewport::tests {
namespace {

/// A followed camera and the stage changes that its own writes cause: everything must come to rest.
class FollowingTest : public ViewportTest
{
protected:
    /// Runs what is queued until nothing is left, and returns how many tasks that took; far too many is a
    /// failure.
    std::size_t tasksUntilRest(std::size_t limit = 50)
    {
        std::size_t count = 0;
        while (watched.document->runNextTask()) {
            vesk::base::ThreadPool::defaultPool().waitUntilIdle();
            if (++count > limit) {
                ADD_FAILURE() << "the document does not come to rest";
                watched.document->dropPendingTasks();
                break;
            }
        }
        return count;
    }

    void editFocalLength(const std::string& path, float focalLength)
    {
        watched.document->edit("edit", [path, focalLength](const UsdDocument::ExecContext& context) {
            UsdGeomCamera(context.stage()->GetPrimAtPath(SdfPath(path)))
                .GetFocalLengthAttr()
                .Set(focalLength);
        });
    }

    void setParent(const GfMatrix4d& matrix)
    {
        watched.document->edit("parent", [matrix](const UsdDocument::ExecContext& context) {
            UsdGeomXformable(context.stage()->GetPrimAtPath(SdfPath("/Rig"))).MakeMatrixXform().Set(matrix);
        });
    }
};

TEST_F(FollowingTest, AnEditComesToRestUnderAnyParent)
{
    follow("/Rig/Cam");
    std::mt19937 random(11);
    std::uniform_real_distribution<double> number(-2.0, 2.0);
    for (int round = 0; round < 100; ++round) {
        GfMatrix4d parent(
            GfRotation(GfVec3d(number(random), number(random), number(random)), number(random) * 90.0),
            GfVec3d(number(random), number(random), number(random)));
        parent =
            GfMatrix4d(GfVec4d(0.1 + std::abs(number(random)), 0.1 + std::abs(number(random)), 1.0, 1.0)) *
            parent;
        setParent(parent);
        tasksUntilRest();
        editFocalLength("/Rig/Cam", 20.0f + static_cast<float>(round));
        // The edit, the copy that it causes, and one more where the copied camera had to be cleaned.
        ASSERT_LE(tasksUntilRest(), 3u) << round;
        ASSERT_EQ(model->getGfCamera().GetFocalLength(), 20.0f + static_cast<float>(round));
    }
}

TEST_F(FollowingTest, AMovedParentMovesTheViewport)
{
    follow("/Rig/Cam");
    GfMatrix4d parent(1.0);
    parent.SetTranslate(GfVec3d(1, 2, 3));
    setParent(parent);
    tasksUntilRest();
    EXPECT_EQ(row(model->getGfCamera(), 3), GfVec3d(1, 2, 3));
}

TEST_F(FollowingTest, ACameraOfNaNsComesToRest)
{
    follow("/Cam");
    const int none[2] = {0, 500};
    model->setRenderSize(none, 1.0f);
    model->orbitCamera(1, 0, "orbit");
    EXPECT_LE(tasksUntilRest(), 3u);
    EXPECT_TRUE(std::isnan(row(model->getGfCamera(), 3)[0]));
}

TEST_F(FollowingTest, TwoViewportsWithDifferentBoundsComeToRest)
{
    follow("/Rig/Cam");
    const auto second = makeModel();
    second->setRenderProxyGeometry(true);
    second->setActiveCameraPath("/Rig/Cam");
    tasksUntilRest();
    editFocalLength("/Rig/Cam", 77.0f);
    EXPECT_LE(tasksUntilRest(), 8u);
    EXPECT_EQ(second->getGfCamera().GetFocalLength(), 77.0f);
}

TEST_F(FollowingTest, AnUndoneEditCanBeRedone)
{
    follow("/Cam");
    editFocalLength("/Cam", 77.0f);
    tasksUntilRest();
    watched.document->undo();
    tasksUntilRest();
    EXPECT_EQ(model->getGfCamera().GetFocalLength(), 35.0f);
    EXPECT_EQ(watched.document->redoLabels(), std::vector<std::string>{"edit"});
    watched.document->redo();
    tasksUntilRest();
    EXPECT_EQ(model->getGfCamera().GetFocalLength(), 77.0f);
}

TEST_F(FollowingTest, AGestureIsOneUndoneEdit)
{
    follow("/Cam");
    model->moveCamera(1, 0, 0, ViewportModel::m_cameraMoveUndoLabel);
    tasksUntilRest();
    EXPECT_EQ(watched.document->undoLabels(), std::vector<std::string>{"camera move"});
    watched.document->undo();
    tasksUntilRest();
    EXPECT_EQ(row(model->getGfCamera(), 3), GfVec3d(0, 0, 20));
}

TEST_F(FollowingTest, AWriteBelowAParentThatCannotBeInvertedFailsAndIsForgotten)
{
    follow("/Rig/Cam");
    setParent(GfMatrix4d(GfVec4d(1, 0, 1, 1)));
    tasksUntilRest();
    forget();
    model->moveCamera(1, 0, 0, "move");
    tasksUntilRest();
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    EXPECT_TRUE(watched.document->undoLabels().empty() || watched.document->undoLabels().front() != "move");
}

TEST_F(FollowingTest, ACameraThatWasDeletedSwallowsTheWrite)
{
    follow("/Cam");
    model->moveCamera(1, 0, 0, "move");
    watched.document->dropPendingTasks();
    watched.document->edit("delete", [](const UsdDocument::ExecContext& context) {
        context.stage()->RemovePrim(SdfPath("/Cam"));
    });
    model->moveCamera(1, 0, 0, "move");
    tasksUntilRest();
    EXPECT_EQ(log.takeTexts(),
              std::vector<std::string>{
                  "Camera path /Cam for copying to viewport camera is not a valid UsdGeomCamera"});
    EXPECT_EQ(model->activeCameraPath(), "/Cam");
}

TEST_F(FollowingTest, PlayingATimeWhileFollowingQueuesAnUpdateForEachTick)
{
    follow("/Cam");
    model->setCurrentTime(1.0);
    tasksUntilRest();
    EXPECT_EQ(labelsOf(watched.tasks)[0], "computeBBox");
    EXPECT_EQ(labelsOf(watched.tasks)[1], "camera update");
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
