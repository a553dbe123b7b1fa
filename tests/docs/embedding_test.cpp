// The snippets of docs/embedding.md, compiled and run. What stands between two lines `// [name]` stands in
// the document word for word; tests/docs/check_snippets.py compares them.
#include <vesk/base/event_bus.h>
#include <vesk/base/executor.h>
#include <vesk/framework/hydra_renderer/hw_context.h>
#include <vesk/framework/usd_document/stage_changes_event.h>
#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/framework/usd_viewport/errors.h>
#include <vesk/framework/usd_viewport/viewport_model.h>
#include <vesk/renderers/embree/embree_renderer.h>
#include <vesk/renderers/recording/recording_renderer.h>

#include <pxr/base/tf/token.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/camera.h>
#include <pxr/usd/usdGeom/cube.h>
#include <pxr/usd/usdGeom/imageable.h>

#include <spdlog/sinks/ostream_sink.h>

#include <gtest/gtest.h>

#include <any>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

using vesk::framework::hydra_renderer::HydraRenderJobResult;
using vesk::framework::hydra_renderer::RenderParameters;
using vesk::framework::usd_document::DocumentException;
using vesk::framework::usd_document::DocumentOptions;
using vesk::framework::usd_document::LoadProgress;
using vesk::framework::usd_document::OpenOptions;
using vesk::framework::usd_document::StageChangesEvent;
using vesk::framework::usd_document::UsdDocument;
using vesk::framework::usd_viewport::LightingModel;
using vesk::framework::usd_viewport::PrimPathPickingResult;
using vesk::framework::usd_viewport::ViewDirection;
using vesk::framework::usd_viewport::ViewportCameraChangedEvent;
using vesk::framework::usd_viewport::ViewportModel;
using vesk::usd::utils::ProjectionType;

namespace {

// [loop]
/// Runs continuations on the host's own thread.
class HostLoop final : public vesk::base::Executor
{
public:
    void post(vesk::base::Work work) override
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_queue.push_back(std::move(work));
        }
        m_posted.notify_one(); // a toolkit's event loop is woken here instead
    }

    /// Waits for work and runs it. Thread: the host's.
    void runOnce()
    {
        std::deque<vesk::base::Work> queue;
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_posted.wait(lock, [this] { return !m_queue.empty(); });
            queue.swap(m_queue);
        }
        for (vesk::base::Work& work : queue)
            work.run(); // with no lock held: it may post again
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_posted;
    std::deque<vesk::base::Work> m_queue;
};
// [loop]

// [context]
/// Lends the window's graphics context to a renderer that draws on the GPU.
class WindowContext final : public vesk::framework::hydra_renderer::HWContext
{
public:
    bool makeCurrent() override { return true; /* for example: return window.makeContextCurrent(); */ }
    void doneCurrent() override
    { /* window.releaseContext(); */
    }
};
// [context]

constexpr const char* kScene = R"(#usda 1.0
(
    upAxis = "Y"
)
def Xform "World"
{
    def Cube "Box"
    {
    }
    def Camera "Camera"
    {
        double3 xformOp:translate = (0, 0, 12)
        uniform token[] xformOpOrder = ["xformOp:translate"]
    }
}
)";

class Embedding : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "vesk-embedding-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        path = (folder / "scene.usda").string();
        std::ofstream(path) << kScene;
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    /// Runs the host's loop until a condition holds that the answers bring about.
    template <class F>
    static void runUntil(HostLoop& loop, F holds)
    {
        while (!holds())
            loop.runOnce();
    }

    static std::unique_ptr<ViewportModel> makeViewport(const std::shared_ptr<UsdDocument>& document)
    {
        vesk::renderers::embree::registerEmbreeRenderer();
        const int size[2] = {64, 48};
        auto viewport =
            std::make_unique<ViewportModel>(document, nullptr, vesk::renderers::embree::kRendererId,
                                            std::vector<vesk::usd::utils::Param<VtValue>>{}, size, size, 1.0f,
                                            true, true, true, nullptr, nullptr);
        viewport->frameScene(ProjectionType::Perspective, ViewDirection::Front, {}).get();
        return viewport;
    }

    std::filesystem::path folder;
    std::string path;
};

TEST_F(Embedding, MakesAViewport)
{
    // [viewport]
    vesk::renderers::embree::registerEmbreeRenderer(); // once in a process
    std::shared_ptr<UsdDocument> document = UsdDocument::open(path);

    const int size[2] = {640, 360}; // logical pixels
    const float pixelRatio = 2.0f;  // physical pixels per logical one
    ViewportModel viewport(document, nullptr, vesk::renderers::embree::kRendererId, {}, size, size,
                           pixelRatio,
                           /*enableSceneMaterials*/ true, /*enableColorCorrection*/ true,
                           /*enableAsyncRendering*/ true, nullptr, nullptr);

    LightingModel lighting;
    lighting.setDefaultLightingEnabled(true);
    viewport.setLighting(lighting);

    viewport.checkCameraUpAxis(); // Z-up stages turn the camera
    vesk::base::Future<void> framed =
        viewport.frameScene(ProjectionType::Perspective, ViewDirection::ThreeQuarters, {});
    // [viewport]
    framed.get();
    EXPECT_EQ(viewport.document(), document);
    EXPECT_GT(viewport.distanceToCenter(), 0.0f);
}

TEST_F(Embedding, OpensInTheBackground)
{
    const auto loop = std::make_shared<HostLoop>();
    std::shared_ptr<UsdDocument> shown;
    std::string message;
    // [open]
    OpenOptions how;
    how.progress = [](const LoadProgress& progress) {
        // Called on the loading thread: hand the numbers on, do not draw here.
        static_cast<void>(progress.total);
    };
    vesk::framework::usd_document::LoadCancellation stop = how.cancellation; // stop.cancel() ends the load

    UsdDocument::openAsync(path, how).recover(
        loop, [&](const vesk::base::Future<std::shared_ptr<UsdDocument>>& opened) {
            try {
                shown = opened.get();
            } catch (const DocumentException& error) {
                message = error.what(); // one sentence: the file, what is wrong, what to do
            }
        });
    // [open]
    runUntil(*loop, [&] { return shown || !message.empty(); });
    EXPECT_TRUE(shown) << message;
    EXPECT_FALSE(stop.isCancelled());
}

TEST_F(Embedding, ReadsAndEdits)
{
    const auto document = UsdDocument::open(path);
    // [edit]
    vesk::base::Future<int> cameras =
        document->read("count cameras", [](const UsdDocument::ExecContext& context) {
            int count = 0;
            for (const UsdPrim& prim : context.stage()->Traverse())
                count += prim.IsA<UsdGeomCamera>() ? 1 : 0;
            return count;
        });

    document->edit("Hide box", [](const UsdDocument::ExecContext& context) {
        UsdGeomImageable(context.stage()->GetPrimAtPath(SdfPath("/World/Box"))).MakeInvisible();
    });

    document->undo(); // queued behind the edit, like everything else
    // [edit]
    EXPECT_EQ(cameras.get(), 1);
    document->waitUntilIdle();
    EXPECT_EQ(document->redoLabels(), std::vector<std::string>{"Hide box"});
}

TEST_F(Embedding, BringsAnswersToTheHostsThread)
{
    const auto document = UsdDocument::open(path);
    const auto viewport = makeViewport(document);
    double shown = 0.0;
    // [then]
    const auto loop = std::make_shared<HostLoop>();

    viewport->getSceneBounds()
        .then(loop, [&shown](const GfRange3f& bounds) { shown = bounds.GetSize()[0]; })
        .recover(loop, [](const vesk::base::Future<void>& end) {
            if (end.error()) { /* tell the user; end.get() would throw it */
            }
        });
    // [then]
    runUntil(*loop, [&] { return shown > 0.0; });
    EXPECT_DOUBLE_EQ(shown, 2.0); // a cube's size is 2
}

TEST_F(Embedding, HearsOfChanges)
{
    const auto document = UsdDocument::open(path);
    const auto viewport = makeViewport(document);
    const auto loop = std::make_shared<HostLoop>();
    int redraws = 0;
    const auto redraw = [&redraws] { ++redraws; };
    // [events]
    const std::uint32_t listener = document->getEventBus()->subscribeListener([&](const std::any& event) {
        // On whichever thread sends: only carry it over.
        if (const auto* change = std::any_cast<StageChangesEvent>(&event)) {
            if (!change->isEmpty()) loop->post(vesk::base::Work(redraw));
        } else if (std::any_cast<ViewportCameraChangedEvent>(&event)) {
            loop->post(vesk::base::Work(redraw));
        }
    });
    // [events]
    viewport->orbitCamera(10.0f, 0.0f, "");
    loop->runOnce();
    EXPECT_EQ(redraws, 1);
    document->edit("add", [](const UsdDocument::ExecContext& context) {
        UsdGeomCube::Define(context.stage(), SdfPath("/World/Other"));
    });
    document->waitUntilIdle();
    loop->runOnce();
    EXPECT_EQ(redraws, 2);
    // [unsubscribe]
    document->getEventBus()->unsubscribeListener(listener); // on return it is not running and will not run
    // [unsubscribe]
}

TEST_F(Embedding, TurnsADragIntoOneChange)
{
    const auto document = UsdDocument::open(path);
    const auto viewport = makeViewport(document);
    int events = 0;
    const std::uint32_t listener = document->getEventBus()->subscribeListener([&](const std::any& event) {
        if (std::any_cast<ViewportCameraChangedEvent>(&event)) ++events;
    });
    // [drag]
    // button down
    viewport->beginCameraInteraction();
    document->beginUndoGroup(ViewportModel::m_cameraOrbitUndoLabel);
    // each movement, in logical pixels since the one before
    viewport->orbitCamera(12.0f, -3.0f, ViewportModel::m_cameraOrbitUndoLabel);
    viewport->orbitCamera(8.0f, 0.0f, ViewportModel::m_cameraOrbitUndoLabel);
    // button up
    document->endUndoGroup();
    viewport->endCameraInteraction();
    // [drag]
    EXPECT_EQ(events, 1);
    document->getEventBus()->unsubscribeListener(listener);
}

TEST_F(Embedding, ShowsAFrame)
{
    const auto document = UsdDocument::open(path);
    const auto viewport = makeViewport(document);
    const auto loop = std::make_shared<HostLoop>();
    std::size_t shown = 0;
    // [frame]
    RenderParameters first;
    first.untilConverged = false; // a first image, as fast as the renderer can
    first.aovs = {TfToken("color")};

    viewport->renderHydraFrame(first).then(loop, [&shown](const HydraRenderJobResult& frame) {
        const auto& picture = frame.aovs.at(0).second; // rows from the top, RGBA, 8 bits a channel
        shown = picture.bytes->size();                 // give size and bytes to the toolkit
    });
    // [frame]
    runUntil(*loop, [&] { return shown > 0; });
    EXPECT_EQ(shown, 64u * 48u * 4u);
}

TEST_F(Embedding, SelectsWhatIsClicked)
{
    const auto document = UsdDocument::open(path);
    const auto viewport = makeViewport(document);
    const auto loop = std::make_shared<HostLoop>();
    SdfPathVector selection;
    // [pick]
    viewport
        ->getPrimPathsFromPointPicking(32.0f, 24.0f, /*pickRadius*/ 2.0f, /*preferTertiaryPath*/ false,
                                       /*preferSecondaryPath*/ true, /*expandToSelectors*/ false, {})
        .then(loop, [&](const PrimPathPickingResult& picked) {
            selection.clear(); // empty when nothing was hit
            for (const std::string& primPath : picked.primPaths)
                selection.emplace_back(primPath);
            viewport->setSelectionPaths(selection);
        });
    // [pick]
    runUntil(*loop, [&] { return !selection.empty(); });
    EXPECT_EQ(selection, SdfPathVector{SdfPath("/World/Box")});
}

TEST_F(Embedding, FollowsACameraOfTheStage)
{
    const auto document = UsdDocument::open(path);
    const auto viewport = makeViewport(document);
    // [follow]
    vesk::base::Future<void> follows = viewport->setActiveCameraPath("/World/Camera");
    follows.get();

    viewport->panCamera(5.0f, 0.0f, ViewportModel::m_cameraPanUndoLabel); // edits the prim, by a task
    document->undo();                                                     // and the viewport follows back

    viewport->setActiveCameraPath(""); // free again, where the camera was
    // [follow]
    document->waitUntilIdle();
    EXPECT_EQ(viewport->activeCameraPath(), "");
    EXPECT_EQ(document->redoLabels(), std::vector<std::string>{ViewportModel::m_cameraPanUndoLabel});
}

TEST_F(Embedding, TellsErrorsApart)
{
    const auto document = UsdDocument::open(path);
    const auto viewport = makeViewport(document);
    bool wasNoCamera = false;
    // [errors]
    using vesk::base::error_handling::Exception;
    using vesk::base::error_handling::makeErrorCode;
    using vesk::framework::usd_viewport::ErrEnum;

    try {
        viewport->copyCameraFromPath("/World/Box", true, "").get();
    } catch (const Exception& error) {
        wasNoCamera = error.code() == makeErrorCode(ErrEnum::InvalidCamera);
    }
    // [errors]
    EXPECT_TRUE(wasNoCamera);
}

TEST_F(Embedding, RunsOnOneThread)
{
    // [manual]
    DocumentOptions options;
    options.manual = true; // no thread of its own: the host says when
    const auto document = UsdDocument::open(path, OpenOptions(), options);

    auto prims = document->read("count", [](const UsdDocument::ExecContext& context) {
        const auto range = context.stage()->Traverse();
        return std::distance(range.begin(), range.end());
    });
    document->runPendingTasks(); // never wait for a future before this
    const auto count = prims.get();
    // [manual]
    EXPECT_EQ(count, 3);
}

TEST_F(Embedding, TestsAHostWithoutDrawing)
{
    const auto document = UsdDocument::open(path);
    // [recording]
    const auto log = std::make_shared<vesk::renderers::recording::RecordingLog>();
    vesk::renderers::recording::registerRecordingRenderer(log);
    const int size[2] = {640, 360};
    ViewportModel viewport(document, nullptr, vesk::renderers::recording::kRendererId, {}, size, size, 1.0f,
                           true, true, false, nullptr, nullptr);
    log->clear();

    viewport.setGridEnabled(false);

    EXPECT_EQ(log->operations(), std::vector<std::string>{"setGridEnabled"});
    // [recording]
}

TEST_F(Embedding, SendsLogRecordsWhereTheHostWants)
{
    const std::shared_ptr<spdlog::logger> former = spdlog::default_logger();
    std::ostringstream text;
    // [log]
    auto sink = std::make_shared<spdlog::sinks::ostream_sink_mt>(text); // or a sink of the host's own
    spdlog::set_default_logger(std::make_shared<spdlog::logger>("host", sink));
    // [log]
    const auto document = UsdDocument::create();
    document->endUndoGroup();
    spdlog::set_default_logger(former);
    EXPECT_NE(text.str().find("UsdDocument endUndoGroup: no group is open"), std::string::npos);
}

TEST_F(Embedding, LendsAContext)
{
    const std::shared_ptr<vesk::framework::hydra_renderer::HWContext> context =
        std::make_shared<WindowContext>();
    EXPECT_TRUE(context->makeCurrent());
    context->doneCurrent();
}

TEST_F(Embedding, ClosesInOrder)
{
    std::shared_ptr<UsdDocument> document = UsdDocument::open(path);
    auto viewport = makeViewport(document);
    const std::uint32_t listener = document->getEventBus()->subscribeListener([](const std::any&) {});
    std::weak_ptr<UsdDocument> watched = document;
    // [close]
    document->getEventBus()->unsubscribeListener(listener); // 1. nobody is told any more
    viewport.reset();  // 2. waits for its running work; what has not begun ends with "broken promise"
    document->close(); // 3. drops queued tasks, waits for the running one
    document.reset();
    // [close]
    EXPECT_TRUE(watched.expired());
}

} // namespace
