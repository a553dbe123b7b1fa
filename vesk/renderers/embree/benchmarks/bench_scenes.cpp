#include "bench_scenes.h"

#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usdGeom/mesh.h>
#include <pxr/usd/usdGeom/pointInstancer.h>
#include <pxr/usd/usdGeom/xform.h>

#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree::bench {
namespace {

void fillSheet(const UsdGeomMesh& mesh, int side)
{
    VtVec3fArray points;
    VtIntArray counts;
    VtIntArray indices;
    for (int y = 0; y <= side; ++y) {
        for (int x = 0; x <= side; ++x) {
            const float u = 2.0f * float(x) / float(side) - 1.0f;
            const float v = 2.0f * float(y) / float(side) - 1.0f;
            points.push_back(GfVec3f(u, v, 0.1f * std::sin(9.0f * u) * std::cos(7.0f * v)));
        }
    }
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const int at = y * (side + 1) + x;
            counts.push_back(4);
            for (const int i : {at, at + 1, at + side + 2, at + side + 1})
                indices.push_back(i);
        }
    }
    mesh.CreatePointsAttr().Set(points);
    mesh.CreateFaceVertexCountsAttr().Set(counts);
    mesh.CreateFaceVertexIndicesAttr().Set(indices);
    mesh.CreateSubdivisionSchemeAttr().Set(TfToken("none"));
}

} // namespace

UsdStageRefPtr makeSheet(int side)
{
    const UsdStageRefPtr stage = UsdStage::CreateInMemory();
    fillSheet(UsdGeomMesh::Define(stage, SdfPath("/Sheet")), side);
    return stage;
}

UsdStageRefPtr makeManyMeshes(int count)
{
    const UsdStageRefPtr stage = UsdStage::CreateInMemory();
    for (int i = 0; i < count; ++i) {
        const UsdGeomMesh mesh = UsdGeomMesh::Define(stage, SdfPath("/World/M" + std::to_string(i)));
        fillSheet(mesh, 4);
        UsdGeomXformable(mesh.GetPrim()).AddTranslateOp().Set(GfVec3d(3.0 * (i % 100), 3.0 * (i / 100), 0.0));
    }
    return stage;
}

UsdStageRefPtr makeCopies(int count)
{
    const UsdStageRefPtr stage = UsdStage::CreateInMemory();
    const UsdGeomPointInstancer instancer = UsdGeomPointInstancer::Define(stage, SdfPath("/Copies"));
    fillSheet(UsdGeomMesh::Define(stage, SdfPath("/Copies/Sheet")), 4);
    VtVec3fArray positions;
    for (int i = 0; i < count; ++i)
        positions.push_back(GfVec3f(3.0f * float(i % 1000), 3.0f * float(i / 1000), 0.0f));
    instancer.CreatePositionsAttr().Set(positions);
    instancer.CreateProtoIndicesAttr().Set(VtIntArray(static_cast<std::size_t>(count), 0));
    instancer.CreatePrototypesRel().AddTarget(SdfPath("/Copies/Sheet"));
    return stage;
}

FrameSettings makeSettings()
{
    FrameSettings settings;
    settings.size = GfVec2i(1280, 720);
    settings.gridEnabled = false;
    settings.lighting.lights = usd::hydra_renderer::createDefaultLighting({}, false, 0.0f).takeValue();
    settings.lighting.material = usd::hydra_renderer::createDefaultSimpleMaterial().takeValue();
    return settings;
}

GfCamera makeCamera(double width)
{
    GfCamera camera;
    camera.SetProjection(GfCamera::Orthographic);
    camera.SetHorizontalAperture(static_cast<float>(width / GfCamera::APERTURE_UNIT));
    camera.SetVerticalAperture(static_cast<float>(width * 9.0 / 16.0 / GfCamera::APERTURE_UNIT));
    camera.SetTransform(GfMatrix4d(1.0).SetTranslate(GfVec3d(0.0, 0.0, 10.0)));
    camera.SetClippingRange(GfRange1f(1.0f, 100.0f));
    return camera;
}

std::unique_ptr<FrameView> makeView(const UsdStageRefPtr& stage, const FrameSettings& settings, double width)
{
    StageMirror mirror;
    BuiltScenes built(std::make_shared<Device>());
    const auto scene = std::make_shared<const TraceScene>(mirror.update(stage, {}, {}), built);
    const auto rays = CameraRays::make(makeCamera(width), settings.fitPolicy, settings.size, scene->origin(),
                                       scene->reach());
    return std::make_unique<FrameView>(scene, settings, *rays);
}

} // namespace vesk::renderers::embree::bench
