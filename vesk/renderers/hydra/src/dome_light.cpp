#include "dome_light.h"

#include <vesk/base/logging.h>

#include <pxr/base/gf/rotation.h>
#include <pxr/imaging/hd/changeTracker.h>
#include <pxr/imaging/hd/light.h>
#include <pxr/imaging/hd/renderIndex.h>
#include <pxr/imaging/hd/tokens.h>

#include <dlfcn.h>

#include <filesystem>
#include <mutex>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {
namespace {

const SdfPath& delegateId()
{
    static const SdfPath id("/__veskLighting");
    return id;
}

const SdfPath& domeId()
{
    static const SdfPath id = delegateId().AppendChild(TfToken("Dome"));
    return id;
}

// A picture that lies beside this library: built and installed in the same place relative to it.
SdfAssetPath ownPicture(const char* name)
{
    Dl_info info{};
    if (!dladdr(reinterpret_cast<const void*>(&ownPicture), &info) || !info.dli_fname) return {};
    std::error_code error;
    const std::filesystem::path library = std::filesystem::canonical(info.dli_fname, error);
    const std::filesystem::path path = library.parent_path() / "vesk-hydra" / name;
    if (error || !std::filesystem::is_regular_file(path, error)) {
        static std::once_flag once;
        std::call_once(once, [&path] {
            VESK_LOG_WARN("Light from everywhere is not drawn: {} is missing", path.string());
        });
        return {};
    }
    return SdfAssetPath(path.string(), path.string());
}

// The mean of the graded picture over the sphere: its ground is darker than its sky.
constexpr float kGradedMean = 0.775f;

// A dome stands on +y; where the stage's up is z it is laid over.
GfMatrix4d upright(bool zUp)
{
    GfMatrix4d m(1.0);
    if (zUp) m.SetRotate(GfRotation(GfVec3d(1.0, 0.0, 0.0), 90.0));
    return m;
}

} // namespace

std::optional<DomeValues> DomeValues::of(const usd::hydra_renderer::LightingInfo& lighting, bool zUp)
{
    const auto rgb = [](const GfVec4f& c) { return GfVec3f(c[0], c[1], c[2]); };
    GfVec3f even = rgb(lighting.sceneAmbient);
    GfVec3f graded(0.0f);
    DomeValues values;
    for (const GlfSimpleLight& light : lighting.lights) {
        if (!light.IsDomeLight()) {
            even += rgb(light.GetAmbient());
            continue;
        }
        values.transform = light.GetTransform() * upright(zUp);
        values.texture = light.GetDomeLightTextureFile();
        if (values.texture != SdfAssetPath()) return values;
        graded += rgb(light.GetDiffuse());
    }
    if (even == GfVec3f(0.0f) && graded == GfVec3f(0.0f)) return std::nullopt;
    const bool isGraded = graded != GfVec3f(0.0f);
    values.color = isGraded ? graded + even * (1.0f / kGradedMean) : even;
    values.texture = ownPicture(isGraded ? "graded_dome.hdr" : "even_dome.hdr");
    if (values.texture == SdfAssetPath()) return std::nullopt;
    return values;
}

DomeLight::DomeLight(HdRenderIndex* index) : HdSceneDelegate(index, delegateId()) {}

DomeLight::~DomeLight() { set(std::nullopt); }

void DomeLight::set(const std::optional<DomeValues>& values)
{
    HdRenderIndex& index = GetRenderIndex();
    if (!index.IsSprimTypeSupported(HdPrimTypeTokens->domeLight) || values == m_values) return;
    const bool was = m_values.has_value();
    m_values = values;
    if (was && !values) {
        index.RemoveSprim(HdPrimTypeTokens->domeLight, domeId());
    } else if (!was) {
        index.InsertSprim(HdPrimTypeTokens->domeLight, this, domeId());
    } else {
        index.GetChangeTracker().MarkSprimDirty(domeId(), HdLight::AllDirty);
    }
}

GfMatrix4d DomeLight::GetTransform(const SdfPath&)
{
    return m_values ? m_values->transform : GfMatrix4d(1.0);
}

bool DomeLight::GetVisible(const SdfPath&) { return m_values.has_value(); }

VtValue DomeLight::GetLightParamValue(const SdfPath&, const TfToken& name)
{
    if (name == HdLightTokens->color) return VtValue(m_values ? m_values->color : GfVec3f(0.0f));
    if (name == HdLightTokens->textureFile) return VtValue(m_values ? m_values->texture : SdfAssetPath());
    if (name == HdLightTokens->intensity || name == HdLightTokens->diffuse ||
        name == HdLightTokens->specular) {
        return VtValue(1.0f);
    }
    if (name == HdLightTokens->exposure) return VtValue(0.0f);
    if (name == HdLightTokens->normalize || name == HdLightTokens->enableColorTemperature)
        return VtValue(false);
    return {};
}

} // namespace vesk::renderers::hydra
