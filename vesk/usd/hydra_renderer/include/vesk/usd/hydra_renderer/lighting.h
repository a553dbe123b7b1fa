#pragma once

#include <pxr/base/gf/vec4f.h>
#include <pxr/imaging/glf/simpleLight.h>
#include <pxr/imaging/glf/simpleMaterial.h>
#include <vesk/base/result.h>
#include <vesk/usd/hydra_renderer/export.h>

#include <filesystem>
#include <vector>

namespace vesk::usd::hydra_renderer {

/// How a renderer lights its picture.
struct VESK_USD_HYDRA_RENDERER_EXPORT LightingInfo
{
    LightingInfo();
    LightingInfo(const LightingInfo&);
    LightingInfo(LightingInfo&&) noexcept;
    LightingInfo& operator=(const LightingInfo&);
    LightingInfo& operator=(LightingInfo&&) noexcept;
    ~LightingInfo();

    /// The lights of the default rig, empty when it is off.
    std::vector<PXR_NS::GlfSimpleLight> lights;

    /// Whether the dome light's texture is also seen as the background.
    bool domeLightVisible = false;

    /// The material of everything that has none of its own.
    PXR_NS::GlfSimpleMaterial material;

    /// Light from everywhere, linear colour.
    PXR_NS::GfVec4f sceneAmbient{0.0f, 0.0f, 0.0f, 1.0f};

    /// Whether the stage's own lights are used.
    bool sceneLightsEnabled = true;
};

/// Builds the default light rig: a key, a fill and a rim light, and a dome light.
///
/// The first three are distant lights fixed to the camera (camera space: x right, y up, z towards the
/// viewer), so that shapes read from every side; the dome light stands in the world. The rotation turns the
/// three about the camera's up axis and the dome about the stage's up axis. \param domeLightTexture image of
/// the surroundings (latitude-longitude; hdr, exr, png, jpg, jpeg or tga), empty:
///        a dome without a texture
/// \param castShadows whether the key light casts shadows
/// \param rotationDegrees turn of the rig, counter-clockwise seen from above; a number that is not finite
/// counts as 0 Returns: the lights in the order key, fill, rim, dome; or the file system's error code for a
/// texture that is missing, not a file, of an unknown kind or unreadable. Thread: any.
VESK_USD_HYDRA_RENDERER_EXPORT vesk::base::result::Result<std::vector<PXR_NS::GlfSimpleLight>>
createDefaultLighting(const std::filesystem::path& domeLightTexture, bool domeLightVisible,
                      float rotationDegrees);

/// Builds the default material: a neutral, slightly glossy grey.
/// Thread: any.
VESK_USD_HYDRA_RENDERER_EXPORT vesk::base::result::Result<PXR_NS::GlfSimpleMaterial>
createDefaultSimpleMaterial();

} // namespace vesk::usd::hydra_renderer
