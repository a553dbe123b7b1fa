#pragma once

#include "test_renderer.h"

#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/camera.h>
#include <tests/support/log_capture.h>
#include <vesk/base/event_bus.h>
#include <vesk/base/thread_pool.h>
#include <vesk/framework/hydra_renderer/frame_rendered_event.h>
#include <vesk/framework/usd_document/stage_changes_event.h>
#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/framework/usd_viewport/errors.h>
#include <vesk/framework/usd_viewport/viewport_model.h>
#include <vesk/usd/utils/camera_utils.h>

#include <gtest/gtest.h>

namespace vesk::framework::usd_viewport::tests {

using usd_document::DocumentOptions;
using usd_document::StageChangesEvent;
using usd_document::UsdDocument;
using vesk::base::Future;
using vesk::usd::utils::Param;
using vesk::usd::utils::ProjectionType;

/// A box of edge 2 around the origin, two cameras, one of them below a moved parent, and a mesh.
inline const char* const kScene = R"(#usda 1.0
(
    upAxis = "Y"
)

def Cube "Box"
{
    double size = 2
}

def Cube "ProxyBox"
{
    double size = 8
    uniform token purpose = "proxy"
}

def Camera "Cam"
{
    float focalLength = 35
    float focusDistance = 5
    double3 xformOp:translate = (0, 0, 20)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}

def Xform "Rig"
{
    double3 xformOp:translate = (100, 0, 0)
    uniform token[] xformOpOrder = ["xformOp:translate"]

    def Camera "Cam"
    {
    }
}

def Camera "Moving"
{
    float focalLength.timeSamples = { 0: 20, 10: 80 }
}

def Mesh "Mesh"
{
}
)";

inline UsdStageRefPtr stageFrom(const std::string& text)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous(".usda");
    if (!layer->ImportFromString(text)) return UsdStageRefPtr();
    return UsdStage::Open(layer);
}

/// What a document was told about one task that was queued.
struct QueuedTask
{
    usd_document::TaskType type;
    std::string label;
    UsdStagePtr stage;
    std::variant<UsdEditTarget, std::string> editTarget;
};

inline std::vector<std::string> labelsOf(const std::vector<QueuedTask>& tasks)
{
    std::vector<std::string> labels;
    for (const QueuedTask& task : tasks)
        labels.push_back(task.label);
    return labels;
}

/// A document in manual mode with what is queued on it and what is sent on its bus written down.
///
/// The bus listener ignores nothing: stage changes and camera events stand in the common timeline.
class WatchedDocument
{
public:
    WatchedDocument(std::vector<std::string>& timeline, const std::string& scene, std::string name)
        : stage(stageFrom(scene))
    {
        DocumentOptions options;
        options.manual = true;
        options.contextFilter = [this](const UsdDocument::ExecContext& context) {
            ++contextCount;
            return withoutStage ? UsdDocument::ExecContext() : context;
        };
        document = UsdDocument::attach(stage, options);
        document->setTaskObserver([this, &timeline, name](const UsdDocument::TaskRecord& record) {
            const std::lock_guard<std::mutex> lock(mutex);
            tasks.push_back({record.type, record.label, record.stage, record.editTarget});
            timeline.push_back(name + " task " + record.label);
        });
        listener = document->getEventBus()->subscribeListener([this, &timeline, name](const std::any& event) {
            const std::lock_guard<std::mutex> lock(mutex);
            if (const auto* camera = std::any_cast<ViewportCameraChangedEvent>(&event)) {
                cameraEvents.push_back(*camera);
                timeline.push_back(name + " camera event");
            } else if (std::any_cast<StageChangesEvent>(&event)) {
                ++stageChanges;
            }
        });
    }

    std::vector<QueuedTask> takeTasks() { return std::exchange(tasks, {}); }
    std::size_t takeCameraEvents() { return std::exchange(cameraEvents, {}).size(); }

    UsdStageRefPtr stage;
    std::shared_ptr<UsdDocument> document;
    std::vector<QueuedTask> tasks;
    std::vector<ViewportCameraChangedEvent> cameraEvents;
    int stageChanges = 0;
    int contextCount = 0;
    bool withoutStage = false;
    std::uint32_t listener = 0;
    std::mutex mutex;
};

/// A viewport on a manual document with a renderer that writes down its calls.
///
/// When a test ends, nothing may be left: no log record that the test has not taken, no listener, no
/// renderer.
class ViewportTest : public ::testing::Test
{
protected:
    static constexpr int kRenderSize[2] = {1000, 500};
    static constexpr int kViewportSize[2] = {800, 400};

    explicit ViewportTest(const std::string& scene = kScene) : watched(timeline, scene, "A")
    {
        registerRenderer("test", "Test", [this](const RendererCreateInfo& info) {
            timeline.push_back("renderer create");
            // The document is named once and let go, as a renderer of ours would.
            renderer->created.push_back(info);
            createdDocument = info.document.get();
            renderer->created.back().document.reset();
            return std::make_unique<TestRenderer>(renderer);
        });
    }

    void SetUp() override { model = makeModel(); }

    void TearDown() override
    {
        model.reset();
        vesk::base::ThreadPool::defaultPool().waitUntilIdle();
        if (watched.document) {
            watched.document->dropPendingTasks();
            EXPECT_EQ(watched.document->getEventBus()->listenerCount(), 1u) << "a listener was left behind";
        }
        vesk::base::ThreadPool::defaultPool().waitUntilIdle();
        EXPECT_EQ(renderer->alive, 0) << "a renderer was left behind";
        ViewportModel::setDefaultVerticalFieldOfView(45.0f);
        ViewportModel::setDefaultCameraFitPolicy(CameraUtilFit);
        LightingModel::setDefaultDomeLightTexture("");
    }

    std::unique_ptr<ViewportModel> makeModel(const std::shared_ptr<UsdDocument>& document)
    {
        return std::make_unique<ViewportModel>(document, nullptr, "test", std::vector<Param<VtValue>>(),
                                               kRenderSize, kViewportSize, 1.0f, true, true, true, nullptr,
                                               nullptr);
    }
    std::unique_ptr<ViewportModel> makeModel() { return makeModel(watched.document); }

    /// Runs what is queued, and what that queues, until nothing is left anywhere.
    void run()
    {
        do {
            watched.document->runPendingTasks();
            vesk::base::ThreadPool::defaultPool().waitUntilIdle();
        } while (watched.document->pendingTaskCount() != 0);
    }

    /// Follows a scene camera from now on, and forgets what that took.
    void follow(const std::string& path)
    {
        model->setActiveCameraPath(path);
        run();
        ASSERT_EQ(model->activeCameraPath(), path);
        forget();
    }

    /// Lets the model compute its bounds, and forgets what that took.
    void cacheBounds()
    {
        model->recomputeCachedSceneBounds();
        run();
        forget();
    }

    void forget()
    {
        watched.takeTasks();
        watched.takeCameraEvents();
        renderer->take();
        renderer->cameras.clear();
        timeline.clear();
    }

    /// Nothing was queued, sent or told to the renderer since the last look.
    void expectSilence()
    {
        EXPECT_EQ(labelsOf(watched.takeTasks()), std::vector<std::string>());
        EXPECT_EQ(watched.takeCameraEvents(), 0u);
        EXPECT_EQ(renderer->take(), std::vector<std::string>());
    }

    GfCamera stageCamera(const std::string& path) const
    {
        return UsdGeomCamera(watched.stage->GetPrimAtPath(SdfPath(path))).GetCamera(UsdTimeCode::Default());
    }

    vesk::tests::LogCapture log;
    std::vector<std::string> timeline;
    std::shared_ptr<RendererLog> renderer = std::make_shared<RendererLog>(timeline);
    UsdDocument* createdDocument = nullptr;
    WatchedDocument watched;
    std::unique_ptr<ViewportModel> model;
};

inline GfVec3d row(const GfCamera& camera, int index)
{
    const GfMatrix4d transform = camera.GetTransform();
    return GfVec3d(transform[index][0], transform[index][1], transform[index][2]);
}

inline GfCamera cameraAt(const GfVec3d& position, float focalLength = 50.0f)
{
    GfCamera camera;
    GfMatrix4d transform(1.0);
    transform.SetTranslate(position);
    camera.SetTransform(transform);
    camera.SetFocalLength(focalLength);
    return camera;
}

/// Expects an exception of the library with that code.
template <class Call>
void expectError(ErrEnum code, Call&& call)
{
    try {
        call();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const vesk::base::error_handling::Exception& error) {
        EXPECT_EQ(error.code(), vesk::base::error_handling::makeErrorCode(code));
    }
}

} // namespace vesk::framework::usd_viewport::tests
