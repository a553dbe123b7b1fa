#pragma once

#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/camera.h>
#include <vesk/base/thread_pool.h>
#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/framework/usd_viewport/viewport_model.h>
#include <vesk/renderers/recording/recording_renderer.h>

#include <memory>
#include <string>

namespace vesk::framework::usd_viewport::benchmarks {

inline const char* const kScene = R"(#usda 1.0
(
    upAxis = "Y"
)

def Cube "Box"
{
    double size = 2
}

def Camera "Cam"
{
    float focusDistance = 5
    double3 xformOp:translate = (0, 0, 20)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)";

/// A viewport on a manual document with a renderer that only counts its calls.
class BenchViewport
{
public:
    static constexpr int kSize[2] = {1280, 720};

    BenchViewport()
    {
        log->setCountOnly(true);
        renderers::recording::registerRecordingRenderer(log);
        const PXR_NS::SdfLayerRefPtr layer = PXR_NS::SdfLayer::CreateAnonymous(".usda");
        layer->ImportFromString(kScene);
        usd_document::DocumentOptions options;
        options.manual = true;
        stage = PXR_NS::UsdStage::Open(layer);
        document = usd_document::UsdDocument::attach(stage, options);
        model = std::make_unique<ViewportModel>(document, nullptr, renderers::recording::kRendererId,
                                                std::vector<usd::utils::Param<PXR_NS::VtValue>>(), kSize,
                                                kSize, 1.0f, true, true, false, nullptr, nullptr);
        model->recomputeCachedSceneBounds();
        settle();
        place();
    }

    /// Lets queued tasks and what follows them on the pool end.
    void settle()
    {
        while (document->runPendingTasks() != 0)
            base::ThreadPool::defaultPool().waitUntilIdle();
        base::ThreadPool::defaultPool().waitUntilIdle();
    }

    /// Puts the camera where every benchmark begins.
    void place()
    {
        PXR_NS::GfCamera camera;
        camera.SetTransform(PXR_NS::GfMatrix4d(1.0).SetTranslate(PXR_NS::GfVec3d(0.0, 0.0, 20.0)));
        camera.SetFocusDistance(5.0f);
        model->setGfCamera(camera, std::string());
        model->setDistanceToCenter(20.0f);
        settle();
    }

    /// The bounds that the model has cached.
    PXR_NS::GfRange3f sceneBounds()
    {
        const base::Future<PXR_NS::GfRange3f> bounds = model->getSceneBounds();
        document->runPendingTasks();
        return bounds.get();
    }

    PXR_NS::GfCamera stageCamera(const char* path) const
    {
        return PXR_NS::UsdGeomCamera(stage->GetPrimAtPath(PXR_NS::SdfPath(path)))
            .GetCamera(PXR_NS::UsdTimeCode::Default());
    }

    std::uint64_t camerasDrawn() const { return log->count(renderers::recording::Operation::SetCamera); }

    std::shared_ptr<renderers::recording::RecordingLog> log =
        std::make_shared<renderers::recording::RecordingLog>();
    PXR_NS::UsdStageRefPtr stage;
    std::shared_ptr<usd_document::UsdDocument> document;
    std::unique_ptr<ViewportModel> model;
};

} // namespace vesk::framework::usd_viewport::benchmarks
