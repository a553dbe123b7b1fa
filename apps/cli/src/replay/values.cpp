#include "values.h"

#include <vesk/framework/hydra_renderer/frame_rendered_event.h>
#include <vesk/framework/usd_document/stage_changes_event.h>

#include <algorithm>
#include <system_error>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli::replay {
namespace {

using apps::Json;
using apps::jsonNumber;
using framework::hydra_renderer::FrameRenderedEvent;
using framework::usd_document::StageChangesEvent;
using framework::usd_viewport::ViewportCameraChangedEvent;

/// A hashed set in the paths' own order, so that a session prints the same each time.
Json sorted(const StageChangesEvent::PathSet& paths)
{
    std::vector<SdfPath> ordered(paths.begin(), paths.end());
    std::sort(ordered.begin(), ordered.end());
    return toJson(ordered);
}

Json lightJson(const GlfSimpleLight& light)
{
    return {{"position", toJson(light.GetPosition())},
            {"ambient", toJson(light.GetAmbient())},
            {"diffuse", toJson(light.GetDiffuse())},
            {"specular", toJson(light.GetSpecular())},
            {"transform", apps::jsonMatrix(light.GetTransform())},
            {"hasShadow", light.HasShadow()},
            {"isDomeLight", light.IsDomeLight()},
            {"domeLightTextureFile", light.GetDomeLightTextureFile().GetAssetPath()}};
}

Json materialJson(const GlfSimpleMaterial& material)
{
    return {{"ambient", toJson(material.GetAmbient())},
            {"diffuse", toJson(material.GetDiffuse())},
            {"specular", toJson(material.GetSpecular())},
            {"emission", toJson(material.GetEmission())},
            {"shininess", jsonNumber(material.GetShininess())}};
}

Json settingJson(const VtValue& value)
{
    if (value.IsHolding<bool>()) return value.UncheckedGet<bool>();
    if (value.IsHolding<int>()) return value.UncheckedGet<int>();
    if (value.IsHolding<double>()) return jsonNumber(value.UncheckedGet<double>());
    if (value.IsHolding<std::string>()) return value.UncheckedGet<std::string>();
    return nullptr;
}

} // namespace

Json toJson(bool value) { return value; }

Json toJson(const GfVec4f& value)
{
    return Json::array(
        {jsonNumber(value[0]), jsonNumber(value[1]), jsonNumber(value[2]), jsonNumber(value[3])});
}

Json toJson(const GfVec4i& value) { return Json::array({value[0], value[1], value[2], value[3]}); }

Json toJson(const GfMatrix4f& value) { return apps::jsonMatrix(GfMatrix4d(value)); }

Json toJson(const SdfPath& value) { return value.GetAsString(); }

Json toJson(const TfToken& value) { return value.GetString(); }

Json toJson(const std::vector<SdfPath>& value)
{
    Json paths = Json::array();
    for (const SdfPath& path : value)
        paths.push_back(path.GetAsString());
    return paths;
}

Json toJson(const std::vector<usd::utils::Param<VtValue>>& settings)
{
    Json list = Json::array();
    for (const auto& setting : settings)
        list.push_back({{"name", setting.name}, {"value", settingJson(setting.value)}});
    return list;
}

Json toJson(const usd::hydra_renderer::LightingInfo& value)
{
    Json lights = Json::array();
    for (const GlfSimpleLight& light : value.lights)
        lights.push_back(lightJson(light));
    return {{"lights", std::move(lights)},
            {"domeLightVisible", value.domeLightVisible},
            {"material", materialJson(value.material)},
            {"sceneAmbient", toJson(value.sceneAmbient)},
            {"sceneLightsEnabled", value.sceneLightsEnabled}};
}

Json toJson(const framework::usd_viewport::LightingModel& value)
{
    return {{"domeLightTexturePath", value.domeLightTexturePath()},
            {"lightingRotationDegrees", jsonNumber(value.lightingRotationDegrees())},
            {"lightingExposure", jsonNumber(value.lightingExposure())},
            {"defaultLightingEnabled", value.defaultLightingEnabled()},
            {"sceneLightingEnabled", value.sceneLightingEnabled()}};
}

Json toJson(const framework::hydra_renderer::PickingResult& value)
{
    return {{"hit", value.hit},
            {"primPath", value.primPath},
            {"secondaryPath", value.secondaryPath},
            {"instanceIndex", value.instanceIndex},
            {"tertiaryPath", value.tertiaryPath},
            {"point", apps::jsonVector(value.point)},
            {"normal", apps::jsonVector(value.normal)},
            {"depth", jsonNumber(value.depth)}};
}

Json toJson(const framework::hydra_renderer::HydraRenderJobResult& value)
{
    return {{"frameIndex", value.frameIndex},
            {"converged", value.converged},
            {"samples", value.samples},
            {"size", Json::array({value.size[0], value.size[1]})}};
}

Json toJson(const framework::usd_viewport::PrimPathPickingResult& value)
{
    return {{"primPaths", value.primPaths}, {"pickingResult", toJson(value.pickingResult)}};
}

Json toJson(const GfRange3f& value) { return apps::jsonBounds(value); }

Json eventJson(const std::any& event)
{
    if (const auto* camera = std::any_cast<ViewportCameraChangedEvent>(&event)) {
        return {{"type", "ViewportCameraChangedEvent"},
                {"documentId", camera->documentId},
                {"viewportId", camera->viewportId}};
    }
    if (const auto* stage = std::any_cast<StageChangesEvent>(&event)) {
        return {{"type", "StageChangesEvent"},
                {"resyncedPrimPaths", sorted(stage->resyncedPrimPaths)},
                {"changedPropertyPaths", toJson(stage->changedPropertyPaths)},
                {"infoChangedPrimPaths", sorted(stage->infoChangedPrimPaths)},
                {"resyncedPropertyPaths", toJson(stage->resyncedPropertyPaths)}};
    }
    if (const auto* frame = std::any_cast<FrameRenderedEvent>(&event)) {
        return {{"type", "FrameRenderedEvent"},
                {"documentId", frame->documentId},
                {"viewportId", frame->viewportId},
                {"frameIndex", frame->frameIndex},
                {"converged", frame->converged}};
    }
    return nullptr;
}

Json errorJson(const std::exception_ptr& error)
{
    try {
        std::rethrow_exception(error);
    } catch (const std::system_error& failure) {
        return {{"category", failure.code().category().name()},
                {"code", failure.code().value()},
                {"message", failure.what()}};
    } catch (const std::exception& failure) {
        return {{"category", ""}, {"code", 0}, {"message", failure.what()}};
    } catch (...) {
        return {{"category", ""}, {"code", 0}, {"message", "an exception of unknown type"}};
    }
}

} // namespace vesk::cli::replay
