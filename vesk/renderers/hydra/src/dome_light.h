#pragma once

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/imaging/hd/sceneDelegate.h>
#include <pxr/usd/sdf/assetPath.h>
#include <vesk/usd/hydra_renderer/lighting.h>

#include <optional>

namespace vesk::renderers::hydra {

/// The light from everywhere that a `LightingInfo` asks for, as Hydra takes it: one textured dome.
struct DomeValues
{
    PXR_NS::GfVec3f color{1.0f};
    PXR_NS::SdfAssetPath texture;
    PXR_NS::GfMatrix4d transform{1.0};

    friend bool operator==(const DomeValues& a, const DomeValues& b)
    {
        return a.color == b.color && a.texture == b.texture && a.transform == b.transform;
    }
    friend bool operator!=(const DomeValues& a, const DomeValues& b) { return !(a == b); }

    /// The dome of a lighting; nothing where it asks for no light from everywhere. Hydra draws with one dome:
    /// a picture of the surroundings comes before colours, whose sum is one dome of their own. \param zUp
    /// whether the stage's up axis is z
    static std::optional<DomeValues> of(const usd::hydra_renderer::LightingInfo& lighting, bool zUp);
};

/// Puts one dome light into a render index, beside those of the stage. Thread: the drawing thread.
class DomeLight final : public PXR_NS::HdSceneDelegate
{
public:
    explicit DomeLight(PXR_NS::HdRenderIndex* index);
    ~DomeLight() override;

    /// Shows another dome, or none.
    void set(const std::optional<DomeValues>& values);

    PXR_NS::GfMatrix4d GetTransform(const PXR_NS::SdfPath& id) override;
    PXR_NS::VtValue GetLightParamValue(const PXR_NS::SdfPath& id, const PXR_NS::TfToken& name) override;
    bool GetVisible(const PXR_NS::SdfPath& id) override;

private:
    std::optional<DomeValues> m_values;
};

} // namespace vesk::renderers::hydra
