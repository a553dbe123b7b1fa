#include <vesk/usd/hydra_renderer/lighting.h>

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/usd/sdf/assetPath.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <fstream>
#include <string>
#include <system_error>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::usd::hydra_renderer {
namespace {

/// A distant light of the rig: where it stands as seen from the camera's target, and its colour.
struct RigLight
{
    const char* id;
    GfVec3d toLight; ///< camera space: x right, y up, z towards the viewer
    GfVec3f color;   ///< linear
    bool shadow;
};

// A warm key from the upper left, a cool and weaker fill from the right, a rim from behind.
const std::array<RigLight, 3>& rigLights()
{
    static const std::array<RigLight, 3> lights = {{
        {"/DefaultLighting/Key", GfVec3d(-0.55, 0.75, 0.85), GfVec3f(0.68f, 0.66f, 0.63f), true},
        {"/DefaultLighting/Fill", GfVec3d(0.95, 0.10, 0.60), GfVec3f(0.12f, 0.135f, 0.16f), false},
        {"/DefaultLighting/Rim", GfVec3d(0.25, 0.70, -0.90), GfVec3f(0.22f, 0.22f, 0.24f), false},
    }};
    return lights;
}

const GfVec3f kDomeColor(0.31f, 0.32f, 0.335f);

GfVec4f withAlpha(const GfVec3f& color) { return {color[0], color[1], color[2], 1.0f}; }

GlfSimpleLight makeDistantLight(const RigLight& rig, const GfMatrix4d& rotation, bool castShadows)
{
    const GfVec3d direction = rotation.TransformDir(rig.toLight.GetNormalized());
    GlfSimpleLight light;
    light.SetID(SdfPath(rig.id));
    light.SetIsCameraSpaceLight(true);
    light.SetPosition(GfVec4f(static_cast<float>(direction[0]), static_cast<float>(direction[1]),
                              static_cast<float>(direction[2]), 0.0f));
    light.SetAmbient(GfVec4f(0.0f, 0.0f, 0.0f, 1.0f));
    light.SetDiffuse(withAlpha(rig.color));
    light.SetSpecular(withAlpha(rig.color));
    light.SetHasShadow(castShadows && rig.shadow);
    return light;
}

GlfSimpleLight makeDomeLight(const std::filesystem::path& texture, const GfMatrix4d& rotation)
{
    GlfSimpleLight light;
    light.SetID(SdfPath("/DefaultLighting/Dome"));
    light.SetIsDomeLight(true);
    light.SetTransform(rotation);
    light.SetAmbient(GfVec4f(0.0f, 0.0f, 0.0f, 1.0f));
    light.SetDiffuse(withAlpha(kDomeColor));
    light.SetSpecular(withAlpha(kDomeColor));
    if (!texture.empty()) light.SetDomeLightTextureFile(SdfAssetPath(texture.string(), texture.string()));
    return light;
}

bool isKnownImageKind(const std::filesystem::path& path)
{
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    static const std::array<const char*, 6> known = {".hdr", ".exr", ".png", ".jpg", ".jpeg", ".tga"};
    return std::any_of(known.begin(), known.end(), [&](const char* k) { return extension == k; });
}

std::error_code checkTexture(const std::filesystem::path& path)
{
    if (path.native().find('\0') != std::filesystem::path::string_type::npos) {
        return std::make_error_code(std::errc::invalid_argument);
    }
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (error) return error;
    if (std::filesystem::is_directory(status)) return std::make_error_code(std::errc::is_a_directory);
    if (!std::filesystem::is_regular_file(status)) return std::make_error_code(std::errc::invalid_argument);
    if (!isKnownImageKind(path)) return std::make_error_code(std::errc::not_supported);
    if (!std::ifstream(path, std::ios::binary)) return std::make_error_code(std::errc::permission_denied);
    return {};
}

} // namespace

LightingInfo::LightingInfo() = default;
LightingInfo::LightingInfo(const LightingInfo&) = default;
LightingInfo::LightingInfo(LightingInfo&&) noexcept = default;
LightingInfo& LightingInfo::operator=(const LightingInfo&) = default;
LightingInfo& LightingInfo::operator=(LightingInfo&&) noexcept = default;
LightingInfo::~LightingInfo() = default;

base::result::Result<std::vector<GlfSimpleLight>>
createDefaultLighting(const std::filesystem::path& domeLightTexture, bool castShadows, float rotationDegrees)
{
    if (!domeLightTexture.empty()) {
        if (const std::error_code error = checkTexture(domeLightTexture)) return error;
    }
    const double degrees = std::isfinite(rotationDegrees) ? static_cast<double>(rotationDegrees) : 0.0;
    GfMatrix4d rotation(1.0);
    rotation.SetRotate(GfRotation(GfVec3d(0.0, 1.0, 0.0), degrees));

    std::vector<GlfSimpleLight> lights;
    lights.reserve(rigLights().size() + 1);
    for (const RigLight& rig : rigLights()) {
        lights.push_back(makeDistantLight(rig, rotation, castShadows));
    }
    lights.push_back(makeDomeLight(domeLightTexture, rotation));
    return lights;
}

base::result::Result<GlfSimpleMaterial> createDefaultSimpleMaterial()
{
    GlfSimpleMaterial material;
    material.SetAmbient(GfVec4f(0.18f, 0.18f, 0.18f, 1.0f));
    material.SetDiffuse(GfVec4f(0.5f, 0.5f, 0.5f, 1.0f));
    material.SetSpecular(GfVec4f(0.08f, 0.08f, 0.08f, 1.0f));
    material.SetEmission(GfVec4f(0.0f, 0.0f, 0.0f, 1.0f));
    material.SetShininess(24.0);
    return material;
}

} // namespace vesk::usd::hydra_renderer
