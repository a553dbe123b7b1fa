#include "viewport_fixture.h"

#include <vesk/base/undo_label_registry.h>

#include <algorithm>
#include <set>

namespace vesk::framework::usd_viewport::tests {
namespace {

/// The operations that queue work, with the message that they log when there is no document.
class DocumentTasksTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        forget();
    }

    void destroyDocument()
    {
        watched.document->getEventBus()->unsubscribeListener(watched.listener);
        watched.document.reset();
    }

    struct Operation
    {
        std::function<void()> call;
        spdlog::level::level_enum level;
        std::string text;
    };

    std::vector<Operation> throwingOperations()
    {
        return {{[this] { model->setActiveCameraPath("/Cam"); }, spdlog::level::debug,
                 "setActiveCameraPath called without valid document"},
                {[this] { model->checkCameraUpAxis(); }, spdlog::level::err,
                 "Checking up axis without valid document"},
                {[this] { model->copyCameraFromPath("/Cam", false, ""); }, spdlog::level::err,
                 "Copying camera from path without valid document"},
                {[this] { model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {}); },
                 spdlog::level::err, "Framing without valid document"}};
    }
};

TEST_F(DocumentTasksTest, EachOperationQueuesOneTaskOfItsKind)
{
    const UsdEditTarget target(watched.stage->GetSessionLayer());
    model->setEditTarget(target);
    const Future<GfRange3f> bounds = model->getSceneBounds();
    const Future<void> active = model->setActiveCameraPath("");
    const Future<void> upAxis = model->checkCameraUpAxis();
    const Future<void> copy = model->copyCameraFromPath("/Cam", false, "");
    const Future<void> framed = model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {});
    ASSERT_EQ(watched.tasks.size(), 5u);
    const struct
    {
        int type;
        const char* label;
        UsdEditTarget target;
    } rows[] = {{0, "computeBBox", UsdEditTarget()},
                {0, "setActiveCameraPath", UsdEditTarget()},
                {1, "camera adjust up", target},
                {1, "camera copy from path", target},
                {1, "frame scene", target}};
    for (std::size_t index = 0; index < 5; ++index) {
        const QueuedTask& task = watched.tasks[index];
        EXPECT_EQ(static_cast<int>(task.type), rows[index].type);
        EXPECT_EQ(task.label, rows[index].label);
        EXPECT_EQ(task.editTarget.index(), 0u);
        EXPECT_EQ(std::get<UsdEditTarget>(task.editTarget), rows[index].target);
        EXPECT_EQ(task.stage, UsdStagePtr(watched.stage));
    }
    EXPECT_FALSE(bounds.isReady() || active.isReady() || upAxis.isReady() || copy.isReady() ||
                 framed.isReady());
    EXPECT_EQ(watched.contextCount, 0);
    watched.document->runPendingTasks();
    EXPECT_TRUE(bounds.isReady() && active.isReady() && upAxis.isReady() && copy.isReady() &&
                framed.isReady());
    EXPECT_EQ(watched.contextCount, 5);
}

TEST_F(DocumentTasksTest, WithoutADocumentOperationsLogOnceAndThrow)
{
    destroyDocument();
    for (const Operation& operation : throwingOperations()) {
        expectError(ErrEnum::InvalidDocument, operation.call);
        const std::vector<vesk::tests::LogRecord> records = log.take();
        ASSERT_EQ(records.size(), 1u) << operation.text;
        EXPECT_EQ(records[0].level, operation.level);
        EXPECT_EQ(records[0].text, operation.text);
        EXPECT_EQ(records[0].file, "vesk/framework/usd_viewport/src/viewport_model.cpp");
        EXPECT_EQ(records[0].function, "vesk_framework_usd_viewport");
    }
}

TEST_F(DocumentTasksTest, WithoutADocumentBoundsAreAnEmptyFuture)
{
    destroyDocument();
    EXPECT_FALSE(model->getSceneBounds().valid());
    const std::vector<vesk::tests::LogRecord> records = log.take();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].level, spdlog::level::err);
    EXPECT_EQ(records[0].text, "Getting scene bounds without valid document");
}

TEST_F(DocumentTasksTest, TheThrownErrorIsAStandardSystemError)
{
    destroyDocument();
    try {
        model->checkCameraUpAxis();
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().value(), 1);
        EXPECT_STREQ(error.code().category().name(), "ErrEnum");
        EXPECT_NE(std::string(error.what()).find("Invalid document"), std::string::npos);
    }
    log.takeTexts();
}

TEST_F(DocumentTasksTest, ADebugMessageIsNotSeenAtLevelInfo)
{
    destroyDocument();
    spdlog::default_logger()->set_level(spdlog::level::info);
    expectError(ErrEnum::InvalidDocument, [this] { model->setActiveCameraPath("/Cam"); });
    EXPECT_TRUE(log.takeTexts().empty());
}

TEST_F(DocumentTasksTest, EveryMessageHasALineOfItsOwn)
{
    destroyDocument();
    model->getSceneBounds();
    for (const Operation& operation : throwingOperations())
        EXPECT_ANY_THROW(operation.call());
    std::set<int> lines;
    for (const vesk::tests::LogRecord& record : log.take())
        lines.insert(record.line);
    EXPECT_EQ(lines.size(), 5u);
}

TEST_F(DocumentTasksTest, ADroppedTaskEndsAsBrokenPromise)
{
    const Future<void> framed = model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {});
    watched.document->dropPendingTasks();
    try {
        framed.get();
        FAIL();
    } catch (const vesk::base::FutureError& error) {
        EXPECT_EQ(error.code().value(), 1);
        EXPECT_STREQ(error.what(), "broken promise");
    }
}

TEST_F(DocumentTasksTest, AFutureThatNobodyHoldsStillHasItsEffect)
{
    model->copyCameraFromPath("/Cam", false, "").detach();
    run();
    EXPECT_EQ(model->getGfCamera().GetFocalLength(), 35.0f);
}

TEST_F(DocumentTasksTest, ContinuationsRunOnTheDefaultPool)
{
    std::thread::id thread;
    const Future<void> after =
        model->copyCameraFromPath("/Cam", false, "").then([&thread] { thread = std::this_thread::get_id(); });
    run();
    after.get();
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST_F(DocumentTasksTest, TextWithBracesDoesNotDisturbTheLog)
{
    model->copyCameraFromPath("/{0}{}", false, "");
    run();
    EXPECT_EQ(log.takeTexts(),
              std::vector<std::string>{
                  "Camera path /{0}{} for copying to viewport camera is not a valid UsdGeomCamera"});
}

TEST(UndoLabels, AreRegisteredInTheirOrder)
{
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"cameraAdjustUpDirection", "camera adjust up"},
        {"cameraCopyFromPath", "camera copy from path"},
        {"cameraFrameBackView", "frame back view"},
        {"cameraFrameBottomView", "frame bottom view"},
        {"cameraFrameFrontView", "frame front view"},
        {"cameraFrameLeftView", "frame left view"},
        {"cameraFrameRightView", "frame right view"},
        {"cameraFrameScene", "frame scene"},
        {"cameraFrameTopView", "frame top view"},
        {"cameraMatchPerspectiveAndFrameScene", "match perspective"},
        {"cameraMove", "camera move"},
        {"cameraOrbit", "camera orbit"},
        {"cameraPan", "camera pan"},
        {"cameraResetView", "reset view"},
        {"cameraRotate", "camera rotate"},
        {"cameraSetBlurAmount", "set blur amount"},
        {"cameraSetDepthOfFieldEnabled", "set depth of field enabled"},
        {"cameraSetFStop", "set fstop"},
        {"cameraSetFocalLength", "set focal length"},
        {"cameraSetFocusDistance", "set focus distance"},
        {"cameraSetProjection", "set projection"},
        {"cameraSetVerticalFOV", "set field of view"},
        {"cameraUpdate", "camera update"},
        {"cameraZoom", "camera zoom"},
        {"matchEnvironmentLight", "match environment light"}};
    EXPECT_EQ(vesk::base::UndoLabelRegistry::getInstance().labels(), expected);
}

TEST(UndoLabels, StandInTheStaticsOfTheirKeys)
{
    using Model = ViewportModel;
    const std::pair<const std::string&, const char*> rows[] = {
        {Model::m_cameraAdjustUpDirectionUndoLabel, "camera adjust up"},
        {Model::m_cameraCopyFromPathUndoLabel, "camera copy from path"},
        {Model::m_cameraFrameBackViewUndoLabel, "frame back view"},
        {Model::m_cameraFrameBottomViewUndoLabel, "frame bottom view"},
        {Model::m_cameraFrameFrontViewUndoLabel, "frame front view"},
        {Model::m_cameraFrameLeftViewUndoLabel, "frame left view"},
        {Model::m_cameraFrameRightViewUndoLabel, "frame right view"},
        {Model::m_cameraFrameSceneUndoLabel, "frame scene"},
        {Model::m_cameraFrameTopViewUndoLabel, "frame top view"},
        {Model::m_cameraMatchPerspectiveAndFrameSceneUndoLabel, "match perspective"},
        {Model::m_cameraMoveUndoLabel, "camera move"},
        {Model::m_cameraOrbitUndoLabel, "camera orbit"},
        {Model::m_cameraPanUndoLabel, "camera pan"},
        {Model::m_cameraResetViewUndoLabel, "reset view"},
        {Model::m_cameraRotateUndoLabel, "camera rotate"},
        {Model::m_cameraSetBlurAmountUndoLabel, "set blur amount"},
        {Model::m_cameraSetDepthOfFieldEnabledUndoLabel, "set depth of field enabled"},
        {Model::m_cameraSetFStopUndoLabel, "set fstop"},
        {Model::m_cameraSetFocalLengthUndoLabel, "set focal length"},
        {Model::m_cameraSetFocusDistanceUndoLabel, "set focus distance"},
        {Model::m_cameraSetProjectionUndoLabel, "set projection"},
        {Model::m_cameraSetVerticalFOVUndoLabel, "set field of view"},
        {Model::m_cameraUpdateUndoLabel, "camera update"},
        {Model::m_cameraZoomUndoLabel, "camera zoom"},
        {Model::m_matchEnvironmentLightUndoLabel, "match environment light"}};
    for (const auto& [label, text] : rows)
        EXPECT_EQ(label, text);
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
