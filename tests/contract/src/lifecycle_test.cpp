#include "contract_session.h"

#include <tests/support/gate.h>
#include <tests/support/scene_files.h>
#include <vesk/base/event_bus.h>
#include <vesk/framework/hydra_renderer/frame_rendered_event.h>

#include <atomic>
#include <thread>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

/// Calls each setter once.
void callEverySetter(HydraRenderer& r)
{
    r.setPresentationModeEnabled(false);
    r.setRenderSize(16, 8);
    r.setCamera(makeOrthographicCamera(4.0, 2.0, 10.0));
    r.setCameraFitPolicy(CameraUtilFit);
    r.setLighting({});
    r.setTiledRenderWindow(GfVec4i(0, 0, 0, 0));
    r.setCurrentTime(1.0);
    r.setRenderProxyGeometry(true);
    r.setRenderSelectionVisualization(true);
    r.setSelectionPaths({SdfPath("/Ball")});
    r.setSelectionColor(GfVec4f(1.0f));
    r.setHighlightedPaths({SdfPath("/Ball")});
    r.setHighlightColor(GfVec4f(1.0f));
    r.setGridAboveColor(GfVec4f(1.0f));
    r.setGridBelowColor(GfVec4f(1.0f));
    r.setGridThickness(1.0f);
    r.setGridEnabled(true);
    r.setOutlineThickness(1.0f);
    r.setClearColor(GfVec4f(1.0f));
    r.setColorCorrectionMode(TfToken("sRGB"));
    r.setDrawMode(TfToken("shadedSmooth"));
    r.setPostProcessingDebugMode(TfToken());
    r.setAfterRenderCallback({});
}

template <class T>
bool endsBroken(const base::Future<T>& future)
{
    try {
        future.get();
    } catch (const base::FutureError& error) {
        return error.code().value() == static_cast<int>(base::FutureErrorCode::BrokenPromise);
    } catch (...) {
        return false;
    }
    return false;
}

// The document never runs a task, so that nothing can be answered from the stage.
TEST_P(EveryRenderer, EndsEveryOpenFutureWhenItIsDestroyed)
{
    const TemporaryFolder folder;
    ContractSession session(GetParam(), kSphereScene, 16, 8, true);
    std::vector<base::Future<HydraRenderJobResult>> frames;
    std::vector<base::Future<PickingResult>> picks;
    std::vector<base::Future<void>> captures;
    for (int i = 0; i < 334; ++i) {
        frames.push_back(session.renderer->renderFrame({}));
        picks.push_back(session.renderer->singlePointPicking(1.0f, 1.0f, 0.0f));
        captures.push_back(
            session.renderer->captureFrame(folder.path() / "a.png", TfToken("color"), false, {}, 1));
    }
    session.renderer.reset();
    const auto ended = [](const auto& future) { return future.isReady(); };
    EXPECT_TRUE(std::all_of(frames.begin(), frames.end(), ended));
    EXPECT_TRUE(std::all_of(picks.begin(), picks.end(), ended));
    EXPECT_TRUE(std::all_of(captures.begin(), captures.end(), ended));
    session.document->runPendingTasks(); // what the renderer had queued finds it gone
}

TEST_P(EveryDrawingRenderer, EndsWhatItCannotAnswerAnyMoreAsBrokenPromise)
{
    ContractSession session(GetParam(), kSphereScene, 16, 8, true);
    const auto frame = session.renderer->renderFrame({});
    const auto pick = session.renderer->singlePointPicking(1.0f, 1.0f, 0.0f);
    EXPECT_FALSE(frame.isReady());
    session.renderer.reset();
    EXPECT_TRUE(endsBroken(frame));
    EXPECT_TRUE(endsBroken(pick));
}

TEST_P(EveryRenderer, TakesEverySetterWhileAFrameWaitsForTheDocument)
{
    ContractSession session(GetParam(), kSphereScene, 16, 8, true);
    const auto frame = session.renderer->renderFrame({});
    callEverySetter(*session.renderer); // would never return if one waited for the frame
    session.finish(frame);
    EXPECT_NO_THROW(frame.get());
}

TEST_P(EveryRenderer, TakesEverySetterFromATaskOfTheDocumentItself)
{
    ContractSession session(GetParam(), kSphereScene);
    const auto frame = session.renderer->renderFrame({});
    session.document
        ->read("setters",
               [&session](const auto&) {
                   callEverySetter(*session.renderer);
                   return true;
               })
        .get();
    EXPECT_NO_THROW(frame.get());
}

TEST_P(EveryRenderer, TakesItsCallsFromSeveralThreadsAtOnce)
{
    ContractSession session(GetParam(), kSphereScene, 16, 8);
    std::vector<base::Future<HydraRenderJobResult>> frames(3);
    std::vector<std::thread> threads;
    for (std::size_t index = 0; index < frames.size(); ++index)
        threads.emplace_back([&session, &frame = frames[index], index] {
            frame = session.renderer->renderFrame({});
            for (int round = 0; round < 20; ++round) {
                if (index == 0) callEverySetter(*session.renderer);
                if (index == 1) session.renderer->setCamera(makeOrthographicCamera(4.0 + round, 2.0, 10.0));
                if (index == 2) session.renderer->setCamera(SdfPath("/Nowhere"));
                session.renderer->singlePointPicking(1.0f, 1.0f, 0.0f).detach();
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& frame : frames)
        frame.wait();
    session.renderer->setCamera(makeOrthographicCamera(4.0, 2.0, 10.0));
    session.renderer->setRenderSize(16, 8);
    EXPECT_NO_THROW(session.renderer->renderFrame({}).get());
}

TEST_P(EveryRenderer, OutlivesItsDocument)
{
    ContractSession session(GetParam(), kSphereScene, 16, 8);
    session.document.reset();
    callEverySetter(*session.renderer);
    session.renderer->renderFrame({}).wait();
    session.renderer->singlePointPicking(1.0f, 1.0f, 0.0f).wait();
    session.renderer->setDocument(nullptr);
    session.renderer->renderFrame({}).wait();
}

TEST_P(EveryDrawingRenderer, EndsItsFuturesWhenTheDocumentDropsItsTasks)
{
    ContractSession session(GetParam(), kSphereScene, 16, 8, true);
    const auto frame = session.renderer->renderFrame({});
    const auto pick = session.renderer->singlePointPicking(1.0f, 1.0f, 0.0f);
    session.document->close();
    EXPECT_TRUE(endsBroken(frame));
    EXPECT_TRUE(endsBroken(pick));
}

TEST_P(EveryDrawingRenderer, ShowsTheDocumentThatItWasGivenLast)
{
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    EXPECT_TRUE(session.renderer->singlePointPicking(100, 100, 0).get().hit);
    const auto other = openText("#usda 1.0\ndef Cube \"Other\" { double size = 2\n}\n", false);
    session.renderer->setDocument(other);
    EXPECT_EQ(session.renderer->singlePointPicking(100, 100, 0).get().primPath, "/Other");
    session.renderer->setDocument(nullptr);
    EXPECT_FALSE(session.renderer->singlePointPicking(100, 100, 0).get().hit);
}

TEST_P(EveryDrawingRenderer, TellsTheDocumentsBusOfEachFrame)
{
    ContractSession session(GetParam(), kSphereScene, 16, 8);
    std::mutex mutex;
    std::vector<FrameRenderedEvent> events;
    const auto id = session.document->getEventBus()->subscribeListener([&](const std::any& event) {
        const std::lock_guard lock(mutex);
        if (const auto* frame = std::any_cast<FrameRenderedEvent>(&event)) events.push_back(*frame);
    });
    RenderParameters parameters;
    parameters.samples = 4;
    session.renderer->renderFrame(parameters).get();
    session.document->getEventBus()->unsubscribeListener(id);
    ASSERT_EQ(events.size(), 2u); // the first image and the converged one
    EXPECT_EQ(events[0].documentId, session.document->getId());
    EXPECT_EQ(events[0].viewportId, 1u);
    EXPECT_FALSE(events[0].converged);
    EXPECT_TRUE(events[1].converged);
    EXPECT_GT(events[1].frameIndex, events[0].frameIndex);
}

TEST_P(EveryDrawingRenderer, CallsTheHostAfterEachImageAndSurvivesWhatItThrows)
{
    ContractSession session(GetParam(), kSphereScene, 16, 8);
    std::vector<bool> images;
    session.renderer->setAfterRenderCallback([&images](bool converged) { images.push_back(converged); });
    RenderParameters parameters;
    parameters.samples = 4;
    session.renderer->renderFrame(parameters).get();
    EXPECT_EQ(images, (std::vector<bool>{false, true}));
    parameters.untilConverged = false;
    EXPECT_FALSE(session.renderer->renderFrame(parameters).get().converged);
    EXPECT_EQ(images.size(), 3u);
}

TEST_P(EveryDrawingRenderer, CancelsTheFrameWhoseProgressTheHostRefuses)
{
    const TemporaryFolder folder;
    ContractSession session(GetParam(), kSphereScene, 16, 8);
    session.renderer =
        HydraRenderer::create(nullptr, session.document, nullptr, GetParam(), {}, GfVec2i(16, 8), 1, true,
                              false, true, [](int samples, float, bool) { return samples < 2; }, {});
    session.lookOrthographic(4.0);
    EXPECT_EQ(
        errorOf(session.renderer->captureFrame(folder.path() / "a.png", TfToken("color"), false, {}, 8)),
        "the frame was cancelled by its progress callback: Operation canceled");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "a.png"));
}

TEST_P(EveryDrawingRenderer, CanBeDestroyedByItsOwnAfterRenderCallback)
{
    ContractSession session(GetParam(), kSphereScene, 16, 8);
    Gate destroyed;
    session.renderer->setAfterRenderCallback([&](bool) {
        session.renderer.reset();
        destroyed.open();
    });
    const auto frame = session.renderer->renderFrame({});
    destroyed.wait();
    frame.wait();
    EXPECT_EQ(session.renderer, nullptr);
}

TEST_P(EveryDrawingRenderer, EndsARowOfFramesThatAllFail)
{
    ContractSession session(GetParam(), kSphereScene, 0, 0);
    std::vector<base::Future<HydraRenderJobResult>> frames;
    for (int i = 0; i < 10000; ++i) {
        frames.push_back(session.renderer->renderFrame({}));
    }
    for (const auto& frame : frames) {
        EXPECT_THROW(frame.get(), std::system_error);
    }
}

TEST_P(EveryDrawingRenderer, StaysWithItselfWhenItIsToldToSwitch)
{
    ContractSession session(GetParam(), kSphereScene, 16, 8);
    EXPECT_NO_THROW(session.renderer->switchRenderer(GetParam(), {{"samples", VtValue(2)}}));
    EXPECT_EQ(session.renderer->renderFrame({}).get().samples, 2);
    EXPECT_THROW(session.renderer->switchRenderer("teapot", {}), std::system_error);
}

} // namespace
} // namespace vesk::tests::contract
