#pragma once

#include <pxr/base/gf/vec2i.h>
#include <pxr/base/vt/value.h>
#include <vesk/framework/hydra_renderer/export.h>
#include <vesk/usd/utils/param.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vesk::base {
class EventBus;
}
namespace vesk::framework::usd_document {
class UsdDocument;
}

namespace vesk::framework::hydra_renderer {

class HydraRenderer;
class HWContext;

/// Everything that a renderer is created with.
struct VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT RendererCreateInfo
{
    /// The document's bus as it was at creation. It dies with the document, so a renderer sends its events on
    /// the bus of the document that it holds locked at that moment.
    vesk::base::EventBus* eventBus = nullptr;
    /// The document to show.
    std::shared_ptr<vesk::framework::usd_document::UsdDocument> document;
    /// The graphics context that the host lends; null without one.
    std::shared_ptr<HWContext> hwContext;
    std::string rendererId; ///< the registered id, never empty
    /// Settings by name; a renderer ignores those that it does not know.
    std::vector<vesk::usd::utils::Param<PXR_NS::VtValue>> settings;
    PXR_NS::GfVec2i renderSize{0, 0};  ///< physical pixels
    unsigned int viewportId = 0;       ///< goes into every FrameRenderedEvent
    bool enableSceneMaterials = true;  ///< whether the scene's own materials are used
    bool enableColorCorrection = true; ///< whether colour is encoded for display
    bool enableAsyncRendering = true;  ///< whether frames are refined after their first image
    /// Called with samples done, fraction done and whether the frame is converged; false cancels the frame.
    std::function<bool(int, float, bool)> progressCallback;
    /// Called after each image with whether it is converged.
    std::function<void(bool)> afterRenderCallback;
};

/// Makes one renderer; throws when it cannot.
using RendererFactory = std::function<std::unique_ptr<HydraRenderer>(const RendererCreateInfo&)>;

/// Registers a renderer under its id; the first one that is registered becomes the default.
/// Registering an id again replaces its factory and keeps its place.
/// \param id not empty
/// \param displayName the name for users
/// Thread: any. Throws: `Exception` with `std::errc::invalid_argument` for an empty id or factory.
VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT void
registerRenderer(const std::string& id, const std::string& displayName, RendererFactory factory);

/// Returns the ids of the registered renderers in the order of their registration.
/// Thread: any.
VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT std::vector<std::string> registeredRendererIds();

/// Returns the name for users of a registered renderer, empty for an unknown id.
/// Thread: any.
VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT std::string rendererDisplayName(const std::string& id);

/// Returns the id that an empty renderer id stands for, empty while nothing is registered.
/// Thread: any.
VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT std::string defaultRendererId();

/// Makes a registered renderer the default.
/// Thread: any. Throws: `Exception` that names the known ids for an unknown one.
VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT void setDefaultRendererId(const std::string& id);

/// Returns the id that `id` stands for: itself, or the default for an empty one.
/// Thread: any. Throws: `Exception` (`std::errc::invalid_argument`) that names the known ids for an unknown
/// one.
VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT std::string resolveRendererId(const std::string& id);

} // namespace vesk::framework::hydra_renderer
