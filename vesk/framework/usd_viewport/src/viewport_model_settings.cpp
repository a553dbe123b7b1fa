#include "sizes.h"

#include <vesk/framework/usd_viewport/viewport_model.h>

PXR_NAMESPACE_USING_DIRECTIVE

// Settings, sizes and frames: stored where a getter or a task needs them, and given on to the renderer.
namespace vesk::framework::usd_viewport {

using namespace vesk::framework::hydra_renderer;

void ViewportModel::setDrawMode(const TfToken& mode) { m_renderer->setDrawMode(mode); }

void ViewportModel::setClearColor(const GfVec4f& color) { m_renderer->setClearColor(color); }

void ViewportModel::setColorCorrectionMode(const TfToken& mode) { m_renderer->setColorCorrectionMode(mode); }

void ViewportModel::setPostProcessingDebugMode(const TfToken& mode)
{
    m_renderer->setPostProcessingDebugMode(mode);
}

void ViewportModel::setPresentationModeEnabled(bool enabled)
{
    m_renderer->setPresentationModeEnabled(enabled);
}

void ViewportModel::setTiledRenderWindow(const GfVec4i& window) { m_renderer->setTiledRenderWindow(window); }

void ViewportModel::setGridEnabled(bool enabled) { m_renderer->setGridEnabled(enabled); }

void ViewportModel::setGridThickness(float thickness) { m_renderer->setGridThickness(thickness); }

void ViewportModel::setGridAboveColor(const GfVec4f& color) { m_renderer->setGridAboveColor(color); }

void ViewportModel::setGridBelowColor(const GfVec4f& color) { m_renderer->setGridBelowColor(color); }

void ViewportModel::setHighlightColor(const GfVec4f& color) { m_renderer->setHighlightColor(color); }

void ViewportModel::setHighlightedPaths(const std::vector<SdfPath>& paths)
{
    m_renderer->setHighlightedPaths(paths);
}

void ViewportModel::setSelectionColor(const GfVec4f& color) { m_renderer->setSelectionColor(color); }

void ViewportModel::setSelectionPaths(const std::vector<SdfPath>& paths)
{
    m_renderer->setSelectionPaths(paths);
}

void ViewportModel::setAfterRenderCallback(const std::function<void(bool)>& callback)
{
    m_renderer->setAfterRenderCallback(callback);
}

void ViewportModel::setOutlineThickness(float thickness)
{
    if (m_renderer) m_renderer->setOutlineThickness(thickness);
}

void ViewportModel::setCameraFitPolicy(CameraUtilConformWindowPolicy policy)
{
    m_renderer->setCameraFitPolicy(policy);
}

void ViewportModel::setRenderProxyGeometry(bool enabled)
{
    m_renderProxyGeometry.store(enabled, std::memory_order_relaxed);
    m_renderer->setRenderProxyGeometry(enabled);
}

void ViewportModel::setRenderSelectionVisualization(bool enabled)
{
    m_renderSelectionVisualization = enabled;
    m_renderer->setRenderSelectionVisualization(enabled);
}

void ViewportModel::setRenderSize(const int (&size)[2], float devicePixelRatio)
{
    if (devicePixelRatio == m_devicePixelRatio && size[0] == m_renderSize[0] && size[1] == m_renderSize[1])
        return;
    m_renderSize[0] = size[0];
    m_renderSize[1] = size[1];
    m_devicePixelRatio = devicePixelRatio;
    m_renderer->setRenderSize(physicalPixels(size[0], devicePixelRatio),
                              physicalPixels(size[1], devicePixelRatio));
}

const int (&ViewportModel::renderSize() const)[2] { return m_renderSize; }

void ViewportModel::setViewportSize(const int (&size)[2])
{
    m_viewportSize[0] = size[0];
    m_viewportSize[1] = size[1];
}

const int (&ViewportModel::viewportSize() const)[2] { return m_viewportSize; }

const int (&ViewportModel::viewportSize())[2] { return m_viewportSize; }

float ViewportModel::devicePixelRatio() const { return m_devicePixelRatio; }

float ViewportModel::getRenderAspectRatio() const { return aspectRatio(m_renderSize); }

std::array<float, 2> ViewportModel::viewportToRenderCoordinates(float x, float y)
{
    return {x / static_cast<float>(m_viewportSize[0]) * static_cast<float>(m_renderSize[0]),
            y / static_cast<float>(m_viewportSize[1]) * static_cast<float>(m_renderSize[1])};
}

vesk::base::Future<HydraRenderJobResult> ViewportModel::renderHydraFrame(const RenderParameters& parameters)
{
    return m_renderer->renderFrame(parameters);
}

vesk::base::Future<void> ViewportModel::captureHydraFrame(const std::filesystem::path& path,
                                                          const TfToken& aov, bool transparentBackground,
                                                          std::optional<GfVec4f> clearColor, int samples)
{
    return m_renderer->captureFrame(path, aov, transparentBackground, clearColor, samples);
}

vesk::base::Future<void> ViewportModel::captureHydraFrames(const std::vector<AovCaptureRequest>& requests,
                                                           bool transparentBackground)
{
    return m_renderer->captureFrames(requests, transparentBackground);
}

} // namespace vesk::framework::usd_viewport
