#include "frame_lights.h"

#include <pxr/usd/sdf/assetPath.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

constexpr float kPi = 3.14159265f;
constexpr float kGroundBrightness = 0.55f;

Vec3 rgb(const GfVec4f& c) { return {c[0], c[1], c[2]}; }

// A dome stands on +y; where the stage's up is z it is laid over.
Mat3 toRigDome(const GfMatrix4d& transform, bool zUp)
{
    Mat3 upright;
    if (zUp) {
        upright.row1 = Vec3(0, 0, -1);
        upright.row2 = Vec3(0, 1, 0);
    }
    const Mat3 back = Mat3::of(transform.GetTranspose());
    Mat3 both;
    both.row0 = back.apply(upright.row0);
    both.row1 = back.apply(upright.row1);
    both.row2 = back.apply(upright.row2);
    return both;
}

void addRigDome(FrameLights& out, const GlfSimpleLight& light, bool zUp)
{
    const SdfAssetPath& file = light.GetDomeLightTextureFile();
    const std::string& path = file.GetResolvedPath().empty() ? file.GetAssetPath() : file.GetResolvedPath();
    if (!path.empty()) {
        static TextureStore textures; // every frame asks again: the image stays while one is drawn
        static std::mutex mutex;
        static std::shared_ptr<const Texture> latest;
        std::shared_ptr<const Texture> texture = textures.at(path);
        {
            const std::lock_guard lock(mutex);
            latest = texture;
        }
        Dome dome(Vec3(1.0f), std::move(texture), toRigDome(light.GetTransform(), zUp));
        if (dome.isTextured()) {
            out.domes.push_back(std::move(dome));
            return;
        }
    }
    out.dome += rgb(light.GetDiffuse());
    out.gradedDome = true;
}

void addRigLight(FrameLights& out, const GlfSimpleLight& light, const CameraRays& camera,
                 const GfVec3d& origin)
{
    out.ambient += rgb(light.GetAmbient());
    const GfVec4f p = light.GetPosition();
    const Vec3 v(p[0], p[1], p[2]);
    const bool cameraSpace = light.IsCameraSpaceLight();
    const Vec3 turned = cameraSpace ? camera.right() * v.x + camera.up() * v.y + camera.backward() * v.z : v;
    FrameLight added;
    added.shadows = light.HasShadow();
    added.color = rgb(light.GetDiffuse());
    // The highlight of this classic model has a colour of its own: its share of the light is kept.
    const float whole = added.color.x + added.color.y + added.color.z;
    const Vec3 highlight = rgb(light.GetSpecular());
    if (whole > 0.0f) added.specular = (highlight.x + highlight.y + highlight.z) / whole;
    if (p[3] == 0.0f) {
        added.toLight = normalized(turned);
        added.spread = 0.05f;
    } else {
        // Positional lights of this classic model do not fade: only their direction matters.
        added.toLight = normalized(cameraSpace ? turned + camera.at(0.0f, 0.0f).origin
                                               : Vec3(GfVec3d(v.x, v.y, v.z) - origin));
    }
    out.lights.push_back(added);
}

void setDistant(FrameLight& added, const StageLight& light)
{
    const float half = 0.5f * light.angleDegrees * kPi / 180.0f;
    const float solidAngle = 2.0f * kPi * (1.0f - std::cos(half));
    added.spread = std::tan(std::min(half, 1.5f));
    added.color = light.color * ((light.normalize ? 1.0f : std::max(solidAngle, 1e-9f)) / kPi);
}

// Sets the shape of a light and returns the area that it shines from.
float setShape(FrameLight& added, const StageLight& light, const Mat3& m)
{
    switch (light.kind) {
    case StageLightKind::Disk:
        added.edgeX = m.row0 * light.radius;
        added.edgeY = m.row1 * light.radius;
        return kPi * length(cross(added.edgeX, added.edgeY));
    case StageLightKind::Rectangle:
        added.edgeX = m.row0 * (0.5f * light.width);
        added.edgeY = m.row1 * (0.5f * light.height);
        return 4.0f * length(cross(added.edgeX, added.edgeY));
    case StageLightKind::Cylinder:
        added.edgeX = m.row0 * (0.5f * light.length);
        added.edgeY = m.row1 * light.radius;
        added.radius = light.radius * 0.5f * (length(m.row1) + length(m.row2));
        return 4.0f * kPi * added.radius * length(added.edgeX);
    default:
        added.radius = light.radius * length(m.row0);
        return 4.0f * kPi * added.radius * added.radius;
    }
}

void setShaping(FrameLight& added, const StageLight& light)
{
    added.focus = light.focus;
    if (light.coneDegrees >= 90.0f && light.coneSoftness <= 0.0f) return;
    const float outer = std::clamp(light.coneDegrees, 0.0f, 180.0f) * kPi / 180.0f;
    added.coneCosine = std::cos(outer);
    added.innerCosine = std::cos(outer * (1.0f - std::clamp(light.coneSoftness, 0.0f, 1.0f)));
}

void addStageLight(FrameLights& out, const StageLight& light, const GfVec3d& origin)
{
    if (light.kind == StageLightKind::Dome) {
        Mat3 rotation = Mat3::of(light.localToWorld.GetOrthonormalized(false).GetTranspose());
        Dome dome(light.color, light.texture, rotation);
        if (dome.isTextured()) {
            out.domes.push_back(std::move(dome));
        } else {
            out.dome += light.color;
        }
        return;
    }
    const Mat3 m = Mat3::of(light.localToWorld);
    FrameLight added;
    added.kind = light.kind;
    added.center = Vec3(light.localToWorld.ExtractTranslation() - origin);
    added.toLight = normalized(m.row2);
    added.diffuse = light.diffuse;
    added.specular = light.specular;
    added.shadows = light.castsShadows;
    if (light.kind == StageLightKind::Rectangle) added.texture = light.texture;
    if (light.kind == StageLightKind::Distant) {
        setDistant(added, light);
    } else {
        const float area = setShape(added, light, m);
        setShaping(added, light);
        added.color = light.normalize && area > 0.0f ? light.color * (1.0f / area) : light.color;
        added.isPoint = light.kind == StageLightKind::Sphere && (light.treatAsPoint || area <= 0.0f);
        // A point has no area: its power is what a sphere of area 1 would have.
        if (added.isPoint) {
            added.color = light.color * (light.normalize || area <= 0.0f ? 1.0f / (4.0f * kPi)
                                                                         : added.radius * added.radius);
            added.radius = 0.0f;
        }
    }
    if (isFinite(added.color) && isFinite(added.center)) out.lights.push_back(added);
}

} // namespace

FrameLights FrameLights::gather(const vesk::usd::hydra_renderer::LightingInfo& info,
                                const SceneSnapshot& scene, const CameraRays& camera,
                                const GfVec3d& sceneOrigin)
{
    FrameLights out;
    if (scene.zUp) out.up = Vec3(0.0f, 0.0f, 1.0f);
    out.ambient = rgb(info.sceneAmbient);
    for (const GlfSimpleLight& light : info.lights) {
        if (light.IsDomeLight()) {
            addRigDome(out, light, scene.zUp);
        } else {
            addRigLight(out, light, camera, sceneOrigin);
        }
    }
    if (!info.sceneLightsEnabled) return out;
    for (const StageLight& light : scene.lights) {
        addStageLight(out, light, sceneOrigin);
    }
    return out;
}

Vec3 FrameLights::surroundings(Vec3 direction) const
{
    const float height = 0.5f + 0.5f * dot(direction, up);
    Vec3 sum = dome * (gradedDome ? kGroundBrightness + (1.0f - kGroundBrightness) * height : 1.0f);
    for (const Dome& textured : domes)
        sum += textured.radiance(direction);
    return sum;
}

} // namespace vesk::renderers::embree
