#include "embree_pictures.h"

#include <tests/support/log_capture.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

// A strip from (-1, -0.5) to (1, 0.5) of two squares: its left edge is held by joint A, its right one by
// joint B, its middle by both. Both rest where they are bound; the animation moves B.
std::string strip(const std::string& animation, const std::string& mesh = {},
                  const std::string& skeleton = {})
{
    return R"(def SkelRoot "Root" {
    def Skeleton "Skeleton" ( prepend apiSchemas = ["SkelBindingAPI"] ) {
        uniform token[] joints = ["A", "A/B"]
        uniform matrix4d[] bindTransforms = [
            ((1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (-1, 0, 0, 1)),
            ((1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (1, 0, 0, 1))]
        uniform matrix4d[] restTransforms = [
            ((1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (-1, 0, 0, 1)),
            ((1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (2, 0, 0, 1))]
        rel skel:animationSource = </Root/Animation>
)" + skeleton +
           R"(
    }
    def SkelAnimation "Animation" {
)" + animation +
           R"(
    }
    def Mesh "Strip" ( prepend apiSchemas = ["SkelBindingAPI"] ) {
        uniform token subdivisionScheme = "none"
        int[] faceVertexCounts = [4, 4]
        int[] faceVertexIndices = [0, 1, 4, 3, 1, 2, 5, 4]
        point3f[] points = [(-1, -0.5, 0), (0, -0.5, 0), (1, -0.5, 0), (-1, 0.5, 0), (0, 0.5, 0), (1, 0.5, 0)]
        color3f[] primvars:displayColor = [(1, 0, 0)]
        int[] primvars:skel:jointIndices = [0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1] (
            elementSize = 2
            interpolation = "vertex"
        )
        float[] primvars:skel:jointWeights = [1, 0, 0.5, 0.5, 0, 1, 1, 0, 0.5, 0.5, 0, 1] (
            elementSize = 2
            interpolation = "vertex"
        )
        rel skel:skeleton = </Root/Skeleton>
)" + mesh + R"(
    }
}
)";
}

// B rests 2 to the right of A; the animation lifts it by 1.
const char* const kLifted = R"(
        uniform token[] joints = ["A/B"]
        float3[] translations = [(2, 1, 0)]
        quatf[] rotations = [(1, 0, 0, 0)]
        half3[] scales = [(1, 1, 1)]
)";

// 200 pixels show 4 units: x pixels to the right of the middle and y above it.
Pixel at(const Picture& p, double x, double y)
{
    return pixelOf(p, static_cast<int>(100 + x * 50), static_cast<int>(100 - y * 50));
}

TEST(EmbreeSkeletons, LeavesAMeshWhereItsSkeletonRests)
{
    const Picture p = ambientPicture(strip(""));
    EXPECT_EQ(at(p, -0.9, 0.0), kRed);
    EXPECT_EQ(at(p, 0.9, 0.4), kRed);
    EXPECT_EQ(at(p, 0.9, 0.6), kBlack);
}

// The right edge rises by 1, the middle by a half, the left one stays.
TEST(EmbreeSkeletons, MovesPointsByTheirWeightsOfTheJoints)
{
    const Picture p = ambientPicture(strip(kLifted));
    EXPECT_EQ(at(p, -0.98, 0.4), kRed);
    EXPECT_EQ(at(p, 0.0, 0.9), kRed);
    EXPECT_EQ(at(p, 0.0, -0.1), kBlack);
    EXPECT_EQ(at(p, 0.98, 1.4), kRed);
    EXPECT_EQ(at(p, 0.98, 0.4), kBlack);
}

// Held by B alone as a whole and turned with it by a quarter about (1, 0), the strip hangs down from there:
// from 0.5 to 1.5 and from 0 to -2.
TEST(EmbreeSkeletons, TurnsAMeshThatOneJointHoldsAsAWhole)
{
    std::string scene = strip(R"(
        uniform token[] joints = ["A", "A/B"]
        float3[] translations = [(-1, 0, 0), (2, 0, 0)]
        quatf[] rotations = [(1, 0, 0, 0), (0.70710678, 0, 0, 0.70710678)]
        half3[] scales = [(1, 1, 1), (1, 1, 1)]
)");
    const std::size_t indices = scene.find("int[] primvars:skel:jointIndices");
    scene.replace(indices, scene.find("rel skel:skeleton") - indices,
                  "int[] primvars:skel:jointIndices = [1] ( interpolation = \"constant\" )\n"
                  "float[] primvars:skel:jointWeights = [1] ( interpolation = \"constant\" )\n");
    const Picture p = ambientPicture(scene);
    EXPECT_EQ(at(p, 1.0, -1.5), kRed);
    EXPECT_EQ(at(p, 1.4, -0.1), kRed);
    EXPECT_EQ(at(p, 1.0, 0.3), kBlack);
    EXPECT_EQ(at(p, -0.5, 0.0), kBlack);
}

TEST(EmbreeSkeletons, PosesTheMeshAtTheCurrentTime)
{
    ContractSession session("embree", "#usda 1.0\n" + strip(R"(
        uniform token[] joints = ["A/B"]
        float3[] translations.timeSamples = { 0: [(2, 0, 0)], 10: [(2, 2, 0)] }
        quatf[] rotations = [(1, 0, 0, 0)]
        half3[] scales = [(1, 1, 1)]
)"));
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    session.renderer->setCurrentTime(0.0);
    EXPECT_EQ(at(session.render("color"), 0.98, 0.0), kRed);
    session.renderer->setCurrentTime(5.0);
    EXPECT_EQ(at(session.render("color"), 0.98, 1.0), kRed);
    EXPECT_EQ(at(session.render("color"), 0.98, 0.0), kBlack);
}

TEST(EmbreeSkeletons, ShowsAnEditedAnimation)
{
    ContractSession session("embree", "#usda 1.0\n" + strip(kLifted));
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    EXPECT_EQ(at(session.render("color"), 0.98, 1.2), kRed);
    session.document
        ->edit("edit",
               [](const auto& context) {
                   return context.stage()
                       ->GetPrimAtPath(SdfPath("/Root/Animation"))
                       .GetAttribute(TfToken("translations"))
                       .Set(VtVec3fArray{GfVec3f(2, -1, 0)});
               })
        .get();
    session.document->waitUntilIdle();
    EXPECT_EQ(at(session.render("color"), 0.98, 1.2), kBlack);
    EXPECT_EQ(at(session.render("color"), 0.98, -1.2), kRed);
}

// The shape lifts the two points of the right edge by 2; its weight is a half.
TEST(EmbreeSkeletons, AddsBlendShapesByTheirWeights)
{
    const Picture p = ambientPicture(strip(R"(
        uniform token[] blendShapes = ["Up"]
        float[] blendShapeWeights = [0.5]
)",
                                           R"(
        uniform token[] skel:blendShapes = ["Up"]
        rel skel:blendShapeTargets = </Root/Strip/Up>
        def BlendShape "Up" {
            uniform vector3f[] offsets = [(0, 2, 0), (0, 2, 0)]
            uniform int[] pointIndices = [2, 5]
        }
)"));
    EXPECT_EQ(at(p, -0.9, 0.0), kRed);
    EXPECT_EQ(at(p, 0.98, 1.2), kRed);
    EXPECT_EQ(at(p, 0.98, 0.3), kBlack);
}

// The skeleton stands 1 higher than it was bound: all that it holds is there too.
TEST(EmbreeSkeletons, CarriesTheMeshToWhereTheSkeletonIs)
{
    const Picture p = ambientPicture(strip("", "", R"(
        double3 xformOp:translate = (0, 1, 0)
        uniform token[] xformOpOrder = ["xformOp:translate"]
)"));
    EXPECT_EQ(at(p, 0.0, 1.2), kRed);
    EXPECT_EQ(at(p, 0.0, 0.2), kBlack);
}

TEST(EmbreeSkeletons, LetsAMeshRestWhoseBindingIsBrokenAndSaysSoOnce)
{
    LogCapture log;
    std::string scene = strip(kLifted);
    const std::string weights = "[1, 0, 0.5, 0.5, 0, 1, 1, 0, 0.5, 0.5, 0, 1]";
    scene.replace(scene.find(weights), weights.size(), "[1, 0]");
    EXPECT_EQ(at(ambientPicture(scene), 0.9, 0.4), kRed);
    EXPECT_EQ(log.takeTexts(),
              std::vector<std::string>{"Mesh /Root/Strip has not as many joint weights as joint "
                                       "indices and rests"});
}

} // namespace
} // namespace vesk::tests::contract
