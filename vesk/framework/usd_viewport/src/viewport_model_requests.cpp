#include "picked_paths.h"

#include <vesk/base/result.h>
#include <vesk/framework/usd_viewport/viewport_model.h>
#include <vesk/usd/hydra_renderer/lighting.h>

PXR_NAMESPACE_USING_DIRECTIVE

// What is asked of the renderer beyond settings: picks and lighting.
namespace vesk::framework::usd_viewport {

using vesk::base::Future;
using vesk::base::result::checkResult;
using vesk::framework::hydra_renderer::PickingResult;

std::array<float, 2> ViewportModel::_physicalPoint(float x, float y)
{
    const std::array<float, 2> point = viewportToRenderCoordinates(x, y);
    return {point[0] * m_devicePixelRatio, point[1] * m_devicePixelRatio};
}

Future<PickingResult> ViewportModel::singlePointPicking(float x, float y, float pickRadius)
{
    const std::array<float, 2> point = _physicalPoint(x, y);
    return m_renderer->singlePointPicking(point[0], point[1], m_devicePixelRatio * pickRadius);
}

Future<GfVec4f> ViewportModel::colorPicking(float x, float y, const TfToken& aovName)
{
    const std::array<float, 2> point = _physicalPoint(x, y);
    return m_renderer->colorPicking(std::pair<float, float>(point[0], point[1]), aovName);
}

Future<PrimPathPickingResult> ViewportModel::getPrimPathsFromPointPicking(
    float x, float y, float pickRadius, bool preferTertiaryPath, bool preferSecondaryPath,
    bool expandToSelectors,
    std::unordered_set<vesk::usd::model::Selector, vesk::usd::model::SelectorHash> selectors)
{
    PickingRules rules{preferTertiaryPath, preferSecondaryPath, expandToSelectors, std::move(selectors)};
    // The rules are all that the continuation knows: the model may be gone when the pick ends.
    return singlePointPicking(x, y, pickRadius).then([rules = std::move(rules)](const PickingResult& picked) {
        PrimPathPickingResult result;
        result.pickingResult = picked;
        result.primPaths = pickedPaths(picked, rules);
        return result;
    });
}

const LightingModel& ViewportModel::lighting() const { return m_lighting; }

void ViewportModel::setLighting(const LightingModel& lighting)
{
    using namespace vesk::usd::hydra_renderer;
    m_lighting = lighting;
    LightingInfo info;
    info.sceneLightsEnabled = m_lighting.sceneLightingEnabled();
    info.material = checkResult(createDefaultSimpleMaterial());
    info.domeLightVisible = false;
    if (m_lighting.defaultLightingEnabled()) {
        const std::filesystem::path texture(m_lighting.domeLightTexturePath());
        info.lights =
            checkResult(createDefaultLighting(texture, false, m_lighting.lightingRotationDegrees()));
        info.sceneAmbient = GfVec4f(0.01f, 0.01f, 0.01f, 1.0f);
    } else {
        info.sceneAmbient = GfVec4f(0.0f, 0.0f, 0.0f, 1.0f);
    }
    m_renderer->setLighting(info);
}

void ViewportModel::resetLighting() { setLighting(m_lighting); }

} // namespace vesk::framework::usd_viewport
