#include "bench_scenes.h"

#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/types.h>
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

struct SheetArrays
{
    explicit SheetArrays(int side)
    {
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
    }
    VtVec3fArray points;
    VtIntArray counts;
    VtIntArray indices;
};

void addAttribute(const SdfPrimSpecHandle& prim, const std::string& name, const SdfValueTypeName& type,
                  const VtValue& value)
{
    SdfAttributeSpec::New(prim, name, type)->SetDefaultValue(value);
}

void addSheet(const SdfPrimSpecHandle& mesh, int side)
{
    const SheetArrays arrays(side);
    addAttribute(mesh, "points", SdfValueTypeNames->Point3fArray, VtValue(arrays.points));
    addAttribute(mesh, "faceVertexCounts", SdfValueTypeNames->IntArray, VtValue(arrays.counts));
    addAttribute(mesh, "faceVertexIndices", SdfValueTypeNames->IntArray, VtValue(arrays.indices));
    addAttribute(mesh, "subdivisionScheme", SdfValueTypeNames->Token, VtValue(TfToken("none")));
}

void fillSheet(const UsdGeomMesh& mesh, int side)
{
    const SheetArrays arrays(side);
    mesh.CreatePointsAttr().Set(arrays.points);
    mesh.CreateFaceVertexCountsAttr().Set(arrays.counts);
    mesh.CreateFaceVertexIndicesAttr().Set(arrays.indices);
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
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous(".usda");
    {
        const SdfChangeBlock block; // one composition, not one a mesh
        const SdfPrimSpecHandle world = SdfPrimSpec::New(layer, "World", SdfSpecifierDef, "Xform");
        for (int i = 0; i < count; ++i) {
            const SdfPrimSpecHandle mesh =
                SdfPrimSpec::New(world, "M" + std::to_string(i), SdfSpecifierDef, "Mesh");
            addSheet(mesh, 4);
            addAttribute(mesh, "xformOp:translate", SdfValueTypeNames->Double3,
                         VtValue(GfVec3d(3.0 * (i % 100), 3.0 * (i / 100), 0.0)));
            addAttribute(mesh, "xformOpOrder", SdfValueTypeNames->TokenArray,
                         VtValue(VtTokenArray(1, TfToken("xformOp:translate"))));
        }
    }
    return UsdStage::Open(layer);
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
