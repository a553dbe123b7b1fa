#include "scene.h"

#include <pxr/base/vt/types.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/pointBased.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <limits>

namespace conformance {
namespace {

TEST(Bounds, OfShapesAreThoseOfTheirSizes)
{
    const Scene scene(R"(
        def Cube "Cube" { double size = 4 }
        def Sphere "Sphere" { double radius = 3 }
        def Cone "Cone" { double height = 6
                          double radius = 1
                          uniform token axis = "X" }
        def Cylinder "Cylinder" {}
        def Capsule "Capsule" { double height = 2
                                double radius = 1 }
        def Plane "Plane" { double width = 2
                            double length = 6 })");
    ExpectBox(scene.GetBounds("/Cube"), {-2, -2, -2}, {2, 2, 2});
    ExpectBox(scene.GetBounds("/Sphere"), {-3, -3, -3}, {3, 3, 3});
    ExpectBox(scene.GetBounds("/Cone"), {-3, -1, -1}, {3, 1, 1});
    ExpectBox(scene.GetBounds("/Cylinder"), {-1, -1, -1}, {1, 1, 1});
    ExpectBox(scene.GetBounds("/Capsule"), {-1, -1, -2}, {1, 1, 2});
    ExpectBox(scene.GetBounds("/Plane"), {-1, -3, 0}, {1, 3, 0});
}

TEST(Bounds, OfPointsAreThoseOfTheirExtentsWhereAuthored)
{
    const Scene scene(R"(
        def Mesh "Computed" { point3f[] points = [(0, 0, 0), (1, 2, 3)] }
        def Mesh "Authored" { point3f[] points = [(0, 0, 0), (1, 2, 3)]
                              float3[] extent = [(0, 0, 0), (9, 9, 9)] }
        def Points "Points" { point3f[] points = [(0, 0, 0), (4, 0, 0)]
                              float[] widths = [2, 4] })");
    ExpectBox(scene.GetBounds("/Computed"), {0, 0, 0}, {1, 2, 3});
    ExpectBox(scene.GetBounds("/Authored"), {0, 0, 0}, {9, 9, 9});
    ExpectBox(scene.GetBounds("/Points"), {-1, -2, -2}, {6, 2, 2});
}

TEST(Bounds, JoinWhatIsVisibleOfTheirPurposes)
{
    const Scene scene(R"(
        def Xform "P" {
            def Sphere "A" {}
            def Sphere "Hidden" { double radius = 5
                                  token visibility = "invisible" }
            def Sphere "Guide" { double radius = 7
                                 uniform token purpose = "guide" }
            def Sphere "Render" { double radius = 2
                                  uniform token purpose = "render" }
        })");
    ExpectBox(scene.GetBounds("/P"), {-2, -2, -2}, {2, 2, 2});
    UsdGeomBBoxCache guides(UsdTimeCode::Default(), {UsdGeomTokens->guide});
    EXPECT_EQ(7.0, guides.ComputeWorldBound(scene.GetPrim("/P")).ComputeAlignedRange().GetMax()[0]);
}

TEST(Bounds, AreEmptyWhereNothingIsDrawn)
{
    const Scene scene("def Xform \"P\" {}\ndef Mesh \"M\" {}\ndef \"U\" {}");
    EXPECT_TRUE(scene.GetBounds("/P").IsEmpty());
    EXPECT_TRUE(scene.GetBounds("/M").IsEmpty());
    EXPECT_TRUE(scene.GetBounds("/U").IsEmpty());
}

TEST(Bounds, OfModelsAreTheirHintsForWhoeverTakesThem)
{
    const Scene scene(R"(
        def Xform "M" ( kind = "component"; prepend apiSchemas = ["GeomModelAPI"] ) {
            float3[] extentsHint = [(-9, -9, -9), (9, 9, 9)]
            def Sphere "S" {}
        })");
    ExpectBox(scene.GetBounds("/M"), {-1, -1, -1}, {1, 1, 1});
    UsdGeomBBoxCache hints(UsdTimeCode::Default(), {UsdGeomTokens->default_}, true);
    ExpectBox(hints.ComputeWorldBound(scene.GetPrim("/M")).ComputeAlignedRange(), {-9, -9, -9}, {9, 9, 9});
}

TEST(Bounds, OfInstancersAreThoseOfTheirVisibleInstances)
{
    const std::string body = R"(
            rel prototypes = </I/Ball>
            int[] protoIndices = [0, 0, 0]
            point3f[] positions = [(0, 0, 0), (10, 0, 0), (100, 0, 0)]
            int64[] ids = [7, 8, 9]
            int64[] invisibleIds = [9]
            def Sphere "Ball" {})";
    const Scene scene("def PointInstancer \"I\" {" + body + "}");
    ExpectBox(scene.GetBounds("/I"), {-1, -1, -1}, {11, 1, 1});
}

TEST(Bounds, OfInstancesAreThoseOfTheirPrototypeWhereTheyStand)
{
    const Scene scene({{"root.usda", R"(
        def Xform "A" ( instanceable = true; prepend references = @a.usda@</R> ) {
            double3 xformOp:translate = (10, 0, 0)
            uniform token[] xformOpOrder = ["xformOp:translate"] }
        def Xform "B" ( instanceable = true; prepend references = @a.usda@</R> ) {})"},
                       {"a.usda", "def Xform \"R\" { def Sphere \"S\" {} }"}});
    ExpectBox(scene.GetBounds("/"), {-1, -1, -1}, {11, 1, 1});
    ExpectBox(scene.GetBounds("/A/S"), {9, -1, -1}, {11, 1, 1});
}

TEST(Bounds, OfLightsThatHaveASizeAreIt)
{
    const Scene scene(R"(
        def SphereLight "Sphere" { float inputs:radius = 2 }
        def RectLight "Rect" { float inputs:width = 2
                               float inputs:height = 4 }
        def DistantLight "Distant" {})");
    ExpectBox(scene.GetBounds("/Sphere"), {-2, -2, -2}, {2, 2, 2});
    ExpectBox(scene.GetBounds("/Rect"), {-1, -2, 0}, {1, 2, 0});
    EXPECT_TRUE(scene.GetBounds("/Distant").IsEmpty());
}

constexpr const char* kSkeleton = R"(
    def SkelRoot "Root" {
        def Skeleton "Skel" ( prepend apiSchemas = ["SkelBindingAPI"] ) {
            uniform token[] joints = ["hip", "hip/knee", "hip/knee/foot"]
            uniform matrix4d[] bindTransforms = [
                ((1,0,0,0),(0,1,0,0),(0,0,1,0),(0,4,0,1)), ((1,0,0,0),(0,1,0,0),(0,0,1,0),(0,2,0,1)),
                ((1,0,0,0),(0,1,0,0),(0,0,1,0),(0,1,0,1))]
            uniform matrix4d[] restTransforms = [
                ((1,0,0,0),(0,1,0,0),(0,0,1,0),(0,4,0,1)), ((1,0,0,0),(0,1,0,0),(0,0,1,0),(0,-2,0,1)),
                ((1,0,0,0),(0,1,0,0),(0,0,1,0),(0,-1,1,1))]
            rel skel:animationSource = </Root/Anim>
        }
        def SkelAnimation "Anim" {
            uniform token[] joints = ["hip"]
            float3[] translations.timeSamples = { 0: [(0, 4, 0)], 10: [(10, 4, 0)] }
            quatf[] rotations = [(1, 0, 0, 0)]
            half3[] scales = [(1, 1, 1)]
        }
        MESH
    })";

std::string SkeletonWith(const std::string& mesh)
{
    std::string text = kSkeleton;
    return text.replace(text.find("MESH"), 4, mesh);
}

TEST(Bounds, OfSkeletonsAreThoseOfTheirMovedJoints)
{
    const Scene scene(SkeletonWith(""));
    ExpectBox(scene.GetBounds("/Root/Skel", 0), {0, 1, 0}, {0, 4, 1});
    ExpectBox(scene.GetBounds("/Root/Skel", 5), {5, 1, 0}, {5, 4, 1});
    ExpectBox(scene.GetBounds("/Root", 10), {10, 1, 0}, {10, 4, 1});
}

TEST(Bounds, OfSkeletonRootsLeaveRoomForWhatTheJointsMove)
{
    const Scene scene(SkeletonWith(R"(
        def Mesh "Body" ( prepend apiSchemas = ["SkelBindingAPI"] ) {
            rel skel:skeleton = </Root/Skel>
            float3[] extent = [(-1, 0, -1), (1, 6, 1)]
        })"));
    // The body stands out by 2 above the hip, which is the most.
    ExpectBox(scene.GetBounds("/Root", 0), {-2, -1, -2}, {2, 6, 3});
}

TEST(Bounds, KeepWhatIsNotFinite)
{
    const Scene scene(R"(
        def Mesh "M" { point3f[] points = [(0, 0, 0), (1, inf, 0), (nan, 2, 3)] }
        def SkelRoot "R" { def Skeleton "S" {} }
    )");
    VtVec3fArray extent;
    ASSERT_TRUE(
        UsdGeomPointBased(scene.GetPrim("/M")).ComputeExtent(scene.Get<VtVec3fArray>("/M.points"), &extent));
    EXPECT_EQ(GfVec3f(0, 0, 0), extent[0]);
    EXPECT_EQ(GfVec3f(1, std::numeric_limits<float>::infinity(), 3), extent[1]);
    const double farthest = std::numeric_limits<float>::max();
    ExpectBox(scene.GetBounds("/R"), GfVec3d(-farthest), GfVec3d(farthest));
}

} // namespace
} // namespace conformance
