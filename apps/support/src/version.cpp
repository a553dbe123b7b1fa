#include <apps/support/version.h>

#include <vesk/framework/hydra_renderer/renderer_registry.h>

namespace vesk::apps {

std::string versionText()
{
    using namespace vesk::framework::hydra_renderer;
    std::string renderers;
    for (const std::string& id : registeredRendererIds()) {
        renderers += (renderers.empty() ? "" : ", ") + id + (id == defaultRendererId() ? " (default)" : "");
    }
    return "vesk " VESK_VERSION_TEXT "\nOpenUSD: " VESK_USD_DESCRIPTION_TEXT "\nrenderers: " + renderers;
}

} // namespace vesk::apps
