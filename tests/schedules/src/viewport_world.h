#pragma once

#include "pool.h"
#include "schedule.h"
#include "test_renderer.h"

#include <tests/support/log_capture.h>

#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/camera.h>
#include <vesk/base/event_bus.h>
#include <vesk/framework/hydra_renderer/frame_rendered_event.h>
#include <vesk/framework/usd_document/stage_changes_event.h>
#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/framework/usd_viewport/viewport_model.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace vesk::tests {

PXR_NAMESPACE_USING_DIRECTIVE
using namespace vesk::framework::usd_viewport;
using vesk::base::Future;
using vesk::framework::hydra_renderer::FrameRenderedEvent;
using vesk::framework::hydra_renderer::RendererCreateInfo;
using vesk::framework::usd_document::DocumentOptions;
using vesk::framework::usd_document::StageChangesEvent;
using vesk::framework::usd_document::UsdDocument;
using vesk::usd::utils::ProjectionType;

inline std::shared_ptr<UsdDocument> newDocument()
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous(".usda");
    EXPECT_TRUE(layer->ImportFromString(R"(#usda 1.0
def Cube "Box"
{
}
def Camera "Cam"
{
    float focusDistance = 5
    double3 xformOp:translate = (0, 0, 20)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)"));
    DocumentOptions options;
    options.manual = true;
    return UsdDocument::attach(UsdStage::Open(layer), options);
}

/// "value", "broken promise", another error, or "open".
template <class T>
std::string endOf(const Future<T>& future)
{
    if (!future.isReady()) return "open";
    try {
        future.get();
        return "value";
    } catch (const std::exception& error) {
        return error.what();
    }
}

inline GfCamera cameraAt(double x)
{
    GfCamera camera;
    GfMatrix4d transform(1.0);
    transform.SetTranslate(GfVec3d(x, 0, 0));
    camera.SetTransform(transform);
    camera.SetFocusDistance(5.0f);
    return camera;
}

inline double placeOf(const GfCamera& camera) { return camera.GetTransform()[3][0]; }

/// A viewport on a manual document; the schedule's threads run its tasks and its pooled work.
class World
{
public:
    explicit World(Schedule& current) : schedule(current), document(newDocument())
    {
        vesk::framework::hydra_renderer::registerRenderer(
            "test", "Test", [log = log](const RendererCreateInfo&) {
                return std::make_unique<vesk::framework::usd_viewport::tests::TestRenderer>(log);
            });
        watch(document);
        model = newModel();
    }

    ~World()
    {
        model.reset();
        log->documents.clear();
        if (document) document->close();
        runPooledWork();
        EXPECT_EQ(log->alive, 0);
    }

    std::unique_ptr<ViewportModel> newModel() const
    {
        const int size[2] = {100, 100};
        return std::make_unique<ViewportModel>(document, nullptr, "test",
                                               std::vector<vesk::usd::utils::Param<VtValue>>(), size, size,
                                               1.0f, true, true, true, nullptr, nullptr);
    }

    void watch(const std::shared_ptr<UsdDocument>& watched)
    {
        watched->getEventBus()->subscribeListener([this](const std::any& event) {
            cameraEvents += std::any_cast<ViewportCameraChangedEvent>(&event) != nullptr;
        });
    }

    void follow()
    {
        model->setActiveCameraPath("/Cam");
        drain();
        EXPECT_EQ(model->activeCameraPath(), "/Cam");
        cameraEvents = 0;
    }

    /// Runs tasks and pooled work until none is left.
    void drain()
    {
        for (int round = 0; document->runPendingTasks() + runPooledWork() != 0; ++round)
            if (round > 20) {
                ADD_FAILURE() << "no rest";
                document->dropPendingTasks();
            }
    }

    /// Where the scene camera stands.
    double cameraOnStage() const
    {
        GfCamera camera;
        document->read("look", [&](const UsdDocument::ExecContext& context) {
            camera = UsdGeomCamera(context.stage()->GetPrimAtPath(SdfPath("/Cam")))
                         .GetCamera(UsdTimeCode::Default());
        });
        document->runPendingTasks();
        return placeOf(camera);
    }

    static StageChangesEvent changeOfTheCamera()
    {
        StageChangesEvent change;
        change.infoChangedPrimPaths.insert(SdfPath("/Cam"));
        return change;
    }

    Schedule& schedule;
    LogCapture records;
    std::vector<std::string> timeline;
    std::shared_ptr<vesk::framework::usd_viewport::tests::RendererLog> log =
        std::make_shared<vesk::framework::usd_viewport::tests::RendererLog>(timeline);
    std::shared_ptr<UsdDocument> document;
    std::unique_ptr<ViewportModel> model;
    int cameraEvents = 0;
};

} // namespace vesk::tests
