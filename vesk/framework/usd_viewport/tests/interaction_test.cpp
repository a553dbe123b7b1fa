#include "viewport_fixture.h"

namespace vesk::framework::usd_viewport::tests {
namespace {

class InteractionTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        forget();
    }

    void change() { model->setGfCamera(cameraAt(GfVec3d(0, 0, ++m_place)), "label"); }

    std::vector<std::pair<spdlog::level::level_enum, std::string>> takeLog()
    {
        std::vector<std::pair<spdlog::level::level_enum, std::string>> all;
        for (const vesk::tests::LogRecord& record : log.take())
            all.emplace_back(record.level, record.text);
        return all;
    }

private:
    int m_place = 0;
};

TEST_F(InteractionTest, OpensAndClosesSilently)
{
    model->beginCameraInteraction();
    model->endCameraInteraction();
    expectSilence();
}

TEST_F(InteractionTest, HoldsTheAnnouncementBackUntilItsEnd)
{
    model->beginCameraInteraction();
    change();
    change();
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    EXPECT_EQ(renderer->take().size(), 2u);
    model->endCameraInteraction();
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
}

TEST_F(InteractionTest, WithoutAChangeAnnouncesNothingAfterOneThatDid)
{
    model->beginCameraInteraction();
    change();
    model->endCameraInteraction();
    forget();
    model->beginCameraInteraction();
    model->endCameraInteraction();
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
}

TEST_F(InteractionTest, OpenedTwiceWarnsOnceAndStaysOpen)
{
    model->beginCameraInteraction();
    model->beginCameraInteraction();
    EXPECT_EQ(takeLog(), (std::vector<std::pair<spdlog::level::level_enum, std::string>>{
                             {spdlog::level::warn, "ViewportModel beginCameraInteraction: already active"}}));
    model->notifyCameraChanged();
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    model->endCameraInteraction();
}

TEST_F(InteractionTest, OpenedTwiceStillAnnouncesAChangeBetween)
{
    model->beginCameraInteraction();
    change();
    model->beginCameraInteraction();
    model->endCameraInteraction();
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
    log.takeTexts();
}

TEST_F(InteractionTest, ClosedWithoutBeingOpenWarns)
{
    model->endCameraInteraction();
    EXPECT_EQ(takeLog(), (std::vector<std::pair<spdlog::level::level_enum, std::string>>{
                             {spdlog::level::warn, "ViewportModel endCameraInteraction: already inactive"}}));
    expectSilence();
}

TEST_F(InteractionTest, ASecondOneWithoutAChangeAddsNothingToTheFirst)
{
    model->beginCameraInteraction();
    change();
    model->endCameraInteraction();
    model->beginCameraInteraction();
    model->endCameraInteraction();
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
}

TEST_F(InteractionTest, IsClosedByTheTimeItsChangeIsAnnounced)
{
    int closings = 0;
    const std::uint32_t listener =
        watched.document->getEventBus()->subscribeListener([&](const std::any& event) {
            if (!std::any_cast<ViewportCameraChangedEvent>(&event)) return;
            model->endCameraInteraction();
            ++closings;
        });
    model->beginCameraInteraction();
    change();
    model->endCameraInteraction();
    watched.document->getEventBus()->unsubscribeListener(listener);
    EXPECT_EQ(closings, 1);
    EXPECT_EQ(log.takeTexts(),
              std::vector<std::string>{"ViewportModel endCameraInteraction: already inactive"});
}

TEST_F(InteractionTest, ClosedTwiceAnnouncesOnce)
{
    model->beginCameraInteraction();
    change();
    model->endCameraInteraction();
    model->endCameraInteraction();
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
    EXPECT_EQ(log.takeTexts(),
              std::vector<std::string>{"ViewportModel endCameraInteraction: already inactive"});
}

TEST_F(InteractionTest, OutlivingItsDocumentEndsInSilence)
{
    model->beginCameraInteraction();
    change();
    watched.document->getEventBus()->unsubscribeListener(watched.listener);
    watched.document.reset();
    model->endCameraInteraction();
    EXPECT_TRUE(watched.cameraEvents.empty());
}

TEST_F(InteractionTest, RecordsNameTheModelsFileAndModule)
{
    model->endCameraInteraction();
    model->beginCameraInteraction();
    model->beginCameraInteraction();
    const std::vector<vesk::tests::LogRecord> records = log.take();
    ASSERT_EQ(records.size(), 2u);
    for (const vesk::tests::LogRecord& record : records) {
        EXPECT_EQ(record.file, "vesk/framework/usd_viewport/src/viewport_model.cpp");
        EXPECT_EQ(record.function, "vesk_framework_usd_viewport");
        EXPECT_GT(record.line, 0);
    }
    EXPECT_NE(records[0].line, records[1].line);
    model->endCameraInteraction();
}

TEST_F(InteractionTest, WorksWithoutADefaultLogger)
{
    const auto former = spdlog::default_logger();
    spdlog::set_default_logger(nullptr);
    model->endCameraInteraction();
    spdlog::set_default_logger(former);
}

TEST_F(InteractionTest, TheEventNamesDocumentAndViewport)
{
    model->notifyCameraChanged();
    ASSERT_EQ(watched.cameraEvents.size(), 1u);
    EXPECT_EQ(watched.cameraEvents[0].documentId, watched.document->getId());
    EXPECT_EQ(watched.cameraEvents[0].viewportId, model->viewportId());
}

TEST_F(InteractionTest, EachCallOfNotifyPostsOneEvent)
{
    for (int count = 0; count < 3; ++count)
        model->notifyCameraChanged();
    EXPECT_EQ(watched.takeCameraEvents(), 3u);
    EXPECT_TRUE(watched.tasks.empty());
}

TEST_F(InteractionTest, TwoViewportsOfOneDocumentTellThemselvesApart)
{
    const auto second = makeModel();
    model->notifyCameraChanged();
    second->notifyCameraChanged();
    ASSERT_EQ(watched.cameraEvents.size(), 2u);
    EXPECT_EQ(watched.cameraEvents[0].documentId, watched.cameraEvents[1].documentId);
    EXPECT_NE(watched.cameraEvents[0].viewportId, watched.cameraEvents[1].viewportId);
}

TEST_F(InteractionTest, AThrowingListenerDoesNotReachTheGesture)
{
    const std::uint32_t thrower = watched.document->getEventBus()->subscribeListener(
        [](const std::any&) { throw std::runtime_error("listener"); });
    EXPECT_NO_THROW(model->notifyCameraChanged());
    watched.document->getEventBus()->unsubscribeListener(thrower);
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
    log.takeTexts();
}

TEST(CameraChangedEvent, StartsWithoutADocument)
{
    const ViewportCameraChangedEvent event;
    EXPECT_EQ(event.documentId, "");
    EXPECT_EQ(event.viewportId, 0u);
    static_assert(std::is_same_v<decltype(ViewportCameraChangedEvent::viewportId), std::uint32_t>);
}

TEST(CameraChangedEvent, IsCopiedAndMoved)
{
    const ViewportCameraChangedEvent event("a document with a long id", 7);
    ViewportCameraChangedEvent copy = event;
    const ViewportCameraChangedEvent moved = std::move(copy);
    ViewportCameraChangedEvent assigned;
    assigned = moved;
    EXPECT_EQ(assigned.documentId, "a document with a long id");
    EXPECT_EQ(assigned.viewportId, 7u);
    EXPECT_EQ(event.documentId, moved.documentId);
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
