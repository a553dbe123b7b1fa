#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4i.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>
#include <pxr/usd/sdf/path.h>
#include <vesk/framework/hydra_renderer/aov_capture_request.h>
#include <vesk/framework/hydra_renderer/render_parameters.h>
#include <vesk/usd/hydra_renderer/lighting.h>
#include <vesk/usd/utils/param.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <variant>
#include <vector>

namespace vesk::renderers::recording {

/// The operations of the renderer interface in the order of its declaration, and a renderer's birth and
/// death.
enum class Operation : int
{
    Create = 0,
    Destroy,
    SetDocument,
    SwitchRenderer,
    SetPresentationModeEnabled,
    SetRenderSize,
    SetCamera,
    SetCameraFitPolicy,
    SetLighting,
    SetTiledRenderWindow,
    SetCurrentTime,
    SetRenderProxyGeometry,
    SetRenderSelectionVisualization,
    SetSelectionPaths,
    SetSelectionColor,
    SetHighlightedPaths,
    SetHighlightColor,
    SetGridAboveColor,
    SetGridBelowColor,
    SetGridThickness,
    SetGridEnabled,
    SetOutlineThickness,
    SetClearColor,
    SetColorCorrectionMode,
    SetDrawMode,
    SetPostProcessingDebugMode,
    SetAfterRenderCallback,
    SinglePointPicking,
    ColorPicking,
    CaptureFrame,
    CaptureFrames,
    RenderFrame
};
inline constexpr int kOperationCount = 32;

/// One value that an operation was given. A document is its id (text, empty for none), a callback whether it
/// is set, an enumeration its number.
using RecordedValue = std::variant<
    bool, int, float, double, std::string, PXR_NS::TfToken, PXR_NS::SdfPath, std::vector<PXR_NS::SdfPath>,
    PXR_NS::GfVec2i, PXR_NS::GfVec4i, PXR_NS::GfVec4f, PXR_NS::GfCamera, std::filesystem::path,
    std::optional<PXR_NS::GfVec4f>, std::vector<vesk::usd::utils::Param<PXR_NS::VtValue>>,
    vesk::usd::hydra_renderer::LightingInfo, std::vector<vesk::framework::hydra_renderer::AovCaptureRequest>,
    vesk::framework::hydra_renderer::RenderParameters>;

/// One argument of a recorded call by its name in the interface.
struct RecordedArgument
{
    const char* name;    ///< its name in the interface
    RecordedValue value; ///< what was given
};

/// One call of a renderer's operation.
struct RecordedCall
{
    Operation operation = Operation::Create; ///< which operation it was
    const char* op = ""; ///< the operation's name: "create", "destroy", "setDocument", ...
    std::vector<RecordedArgument> arguments; ///< in the order of the declaration
    std::thread::id thread;                  ///< the thread that called
    std::uint64_t sequence = 0;              ///< its place in the log's sequence
    unsigned int viewportId = 0;             ///< the viewport whose renderer was called

    /// The value of an argument. Throws: `std::out_of_range` for an unknown name, `std::bad_variant_access`
    /// for another type.
    template <class T>
    const T& get(const std::string& name) const
    {
        for (const RecordedArgument& argument : arguments) {
            if (name == argument.name) return std::get<T>(argument.value);
        }
        throw std::out_of_range("no argument '" + name + "' in the recorded call");
    }
};

} // namespace vesk::renderers::recording
