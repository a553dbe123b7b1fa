#pragma once

#include <apps/support/json.h>

#include <vesk/framework/hydra_renderer/hydra_render_job_result.h>
#include <vesk/framework/hydra_renderer/picking_result.h>
#include <vesk/framework/usd_viewport/lighting_model.h>
#include <vesk/framework/usd_viewport/viewport_model.h>
#include <vesk/usd/hydra_renderer/lighting.h>

#include <pxr/base/gf/matrix4f.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4i.h>
#include <pxr/base/tf/token.h>
#include <pxr/usd/sdf/path.h>

#include <any>
#include <exception>
#include <string>
#include <vector>

/// \file
/// What a replayed session prints, as JSON: numbers in full precision, enumerations as integers, paths and
/// tokens as text, vectors and matrices as arrays.
namespace vesk::cli::replay {

apps::Json toJson(const PXR_NS::GfVec4f& value);
apps::Json toJson(const PXR_NS::GfVec4i& value);
apps::Json toJson(const PXR_NS::GfMatrix4f& value);
apps::Json toJson(const PXR_NS::SdfPath& value);
apps::Json toJson(const PXR_NS::TfToken& value);
apps::Json toJson(const std::vector<PXR_NS::SdfPath>& value);
apps::Json toJson(const std::vector<usd::utils::Param<PXR_NS::VtValue>>& settings);
apps::Json toJson(const usd::hydra_renderer::LightingInfo& value);
apps::Json toJson(const framework::usd_viewport::LightingModel& value);
apps::Json toJson(const framework::hydra_renderer::PickingResult& value);
apps::Json toJson(const framework::hydra_renderer::HydraRenderJobResult& value);
apps::Json toJson(const framework::usd_viewport::PrimPathPickingResult& value);
apps::Json toJson(const PXR_NS::GfRange3f& value);
apps::Json toJson(bool value);

/// {"type", fields} of an event of the bus; null for a type that is not one of ours.
apps::Json eventJson(const std::any& event);

/// {"category", "code", "message"}; an exception without a code has category "" and code 0.
apps::Json errorJson(const std::exception_ptr& error);

} // namespace vesk::cli::replay
