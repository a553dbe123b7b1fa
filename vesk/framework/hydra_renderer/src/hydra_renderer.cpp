#include <vesk/framework/hydra_renderer/hydra_renderer.h>

#include <vesk/framework/hydra_renderer/renderer_registry.h>

#include "registry_storage.h"

namespace vesk::framework::hydra_renderer {

HydraRenderer::HydraRenderer() = default;
HydraRenderer::~HydraRenderer() = default;

std::unique_ptr<HydraRenderer>
HydraRenderer::create(vesk::base::EventBus* eventBus,
                      const std::shared_ptr<vesk::framework::usd_document::UsdDocument>& document,
                      const std::shared_ptr<HWContext>& hwContext, const std::string& rendererId,
                      const std::vector<vesk::usd::utils::Param<PXR_NS::VtValue>>& rendererSettings,
                      const PXR_NS::GfVec2i& renderSize, unsigned int viewportId, bool enableSceneMaterials,
                      bool enableColorCorrection, bool enableAsyncRendering,
                      std::function<bool(int, float, bool)> progressCallback,
                      std::function<void(bool)> afterRenderCallback)
{
    RendererCreateInfo info;
    info.eventBus = eventBus;
    info.document = document;
    info.hwContext = hwContext;
    info.rendererId = resolveRendererId(rendererId);
    info.settings = rendererSettings;
    info.renderSize = renderSize;
    info.viewportId = viewportId;
    info.enableSceneMaterials = enableSceneMaterials;
    info.enableColorCorrection = enableColorCorrection;
    info.enableAsyncRendering = enableAsyncRendering;
    info.progressCallback = std::move(progressCallback);
    info.afterRenderCallback = std::move(afterRenderCallback);
    return registeredFactory(info.rendererId)(info);
}

} // namespace vesk::framework::hydra_renderer
