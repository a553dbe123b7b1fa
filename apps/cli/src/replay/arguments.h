#pragma once

#include <apps/support/json.h>

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4i.h>
#include <pxr/base/vt/value.h>
#include <pxr/usd/sdf/path.h>

#include <vesk/framework/hydra_renderer/aov_capture_request.h>
#include <vesk/framework/hydra_renderer/render_parameters.h>
#include <vesk/framework/usd_viewport/lighting_model.h>
#include <vesk/usd/model/selector.h>
#include <vesk/usd/utils/param.h>

#include <array>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace vesk::cli::replay {

/// The arguments of one step, read by name and type.
///
/// Numbers may be the texts "nan", "inf" and "-inf". Every read throws `vesk::apps::UsageError` with a
/// sentence that names the argument and what it should be. A script is checked by reading each step's
/// arguments once before anything runs.
class Arguments
{
public:
    explicit Arguments(const apps::Json& step) : m_step(step) {}

    double number(const char* name) const;
    float floatNumber(const char* name) const { return static_cast<float>(number(name)); }
    int integer(const char* name) const;
    bool flag(const char* name, bool otherwise = false) const;
    std::string text(const char* name) const;
    std::string optionalText(const char* name) const;
    std::optional<double> optionalNumber(const char* name) const;
    std::array<int, 2> size(const char* name) const;
    std::vector<std::string> texts(const char* name) const;
    std::vector<PXR_NS::SdfPath> paths(const char* name) const;
    PXR_NS::GfVec4f color(const char* name) const;
    std::optional<PXR_NS::GfVec4f> optionalColor(const char* name) const;
    PXR_NS::GfVec4i window(const char* name) const;
    /// Missing keys keep the defaults of `GfCamera`; "clippingPlanes" are four numbers each.
    PXR_NS::GfCamera camera(const char* name) const;
    /// Missing keys keep the defaults of `LightingModel`.
    framework::usd_viewport::LightingModel lighting(const char* name) const;
    std::vector<framework::hydra_renderer::AovCaptureRequest> captureRequests(const char* name) const;
    /// Missing keys keep the defaults of `RenderParameters`.
    framework::hydra_renderer::RenderParameters renderParameters(const char* name) const;
    std::unordered_set<usd::model::Selector, usd::model::SelectorHash> selectors(const char* name) const;
    /// An array of {"name", "value"}; a value is a boolean, a number or a text.
    std::vector<usd::utils::Param<PXR_NS::VtValue>> settings(const char* name) const;
    const apps::Json& value(const char* name) const { return _require(name); }
    bool has(const char* name) const { return m_step.contains(name); }

private:
    const apps::Json& _require(const char* name) const;

    const apps::Json& m_step;
};

/// Reads a JSON number, or "nan", "inf", "-inf".
/// Throws: `UsageError` that names `what`.
double readNumber(const apps::Json& value, const std::string& what);

/// Reads a JSON array of exactly `count` numbers.
std::vector<double> readNumbers(const apps::Json& value, std::size_t count, const std::string& what);

} // namespace vesk::cli::replay
