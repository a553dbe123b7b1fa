#include "contract_session.h"

#include <png.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/usd/sdf/assetPath.h>
#include <tests/support/scene_files.h>

#include <algorithm>
#include <cmath>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

constexpr const char* kBox = "#usda 1.0\ndef Xform \"G\" { def Cube \"Box\" { double size = 2\n}\n}\n";

// The box spans the pixels 50 to 150; its outline lies just outside.
TEST_P(EveryDrawingRenderer, DrawsOutlinesAsThickAsItIsTold)
{
    ContractSession session(GetParam(), kBox);
    session.lookOrthographic(4.0);
    session.renderer->setSelectionColor(GfVec4f(0.0f, 1.0f, 0.0f, 1.0f));
    session.renderer->setSelectionPaths({SdfPath("/G/Box")});
    for (const int thickness : {1, 3, 7}) {
        session.renderer->setOutlineThickness(static_cast<float>(thickness));
        const Picture p = session.render("color");
        EXPECT_EQ(p.byte(50 - thickness, 100, 1), 255) << thickness;
        EXPECT_EQ(p.byte(49 - thickness, 100, 1), 0) << thickness;
    }
    session.renderer->setPresentationModeEnabled(true);
    EXPECT_EQ(session.render("color").byte(49, 100, 1), 0);
}

TEST_P(EveryDrawingRenderer, MarksHighlightedPrimsInTheirOwnColourBeforeTheSelection)
{
    ContractSession session(GetParam(), kBox);
    session.lookOrthographic(4.0);
    session.renderer->setOutlineThickness(2.0f);
    session.renderer->setSelectionColor(GfVec4f(0.0f, 1.0f, 0.0f, 1.0f));
    session.renderer->setHighlightColor(GfVec4f(1.0f, 0.0f, 0.0f, 1.0f));
    session.renderer->setSelectionPaths({SdfPath("/G")});
    session.renderer->setHighlightedPaths({SdfPath("/G/Box")});
    const Picture p = session.render("color");
    EXPECT_EQ(p.byte(49, 100, 0), 255);
    EXPECT_EQ(p.byte(49, 100, 1), 0);
    session.renderer->setHighlightedPaths({});
    EXPECT_EQ(session.render("color").byte(49, 100, 1), 255);
}

TEST_P(EveryDrawingRenderer, MarksAllCopiesOfASelectedInstancer)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def PointInstancer "Row" {
    point3f[] positions = [(-1, 0, 0), (1, 0, 0)]
    int[] protoIndices = [0, 0]
    rel prototypes = </Row/Box>
    def Cube "Box" { double size = 1
    }
}
)");
    session.lookOrthographic(4.0);
    session.renderer->setOutlineThickness(2.0f);
    session.renderer->setSelectionColor(GfVec4f(0.0f, 1.0f, 0.0f, 1.0f));
    for (const char* path : {"/Row", "/Row/Box"}) {
        session.renderer->setSelectionPaths({SdfPath(path)});
        const Picture p = session.render("color");
        EXPECT_EQ(p.byte(24, 100, 1), 255) << path;  // the left box begins at x = -1.5, pixel 25
        EXPECT_EQ(p.byte(175, 100, 1), 255) << path; // the right one ends at 175
    }
}

// How many pixels around the line at x = 0 are at least half as bright as the brightest.
int lineWidth(const Picture& p, int channel)
{
    int most = 0;
    for (int x = 90; x < 110; ++x)
        most = std::max(most, p.byte(x, 93, channel));
    int count = 0;
    for (int x = 90; x < 110; ++x)
        count += 2 * p.byte(x, 93, channel) >= most;
    return most > 60 ? count : 0;
}

TEST_P(EveryDrawingRenderer, DrawsTheGridsLinesAsThickAsItIsTold)
{
    ContractSession session(GetParam(), "#usda 1.0\n( upAxis = \"Z\" )\n");
    session.lookOrthographic(4.0);
    session.renderer->setGridAboveColor(GfVec4f(1.0f));
    session.renderer->setGridEnabled(true);
    for (const int thickness : {2, 4, 8}) {
        session.renderer->setGridThickness(static_cast<float>(thickness));
        EXPECT_NEAR(lineWidth(session.render("color"), 0), thickness, 1) << thickness;
    }
}

TEST_P(EveryDrawingRenderer, ColoursTheGridBySideThatItIsSeenFrom)
{
    ContractSession session(GetParam(), "#usda 1.0\n( upAxis = \"Z\" )\n");
    session.renderer->setGridAboveColor(GfVec4f(1.0f, 0.0f, 0.0f, 1.0f));
    session.renderer->setGridBelowColor(GfVec4f(0.0f, 0.0f, 1.0f, 1.0f));
    session.renderer->setGridThickness(4.0f);
    session.renderer->setGridEnabled(true);
    session.lookOrthographic(4.0);
    const Picture above = session.render("color");
    EXPECT_GT(lineWidth(above, 0), 0);
    EXPECT_EQ(lineWidth(above, 2), 0);
    GfCamera camera = makeOrthographicCamera(4.0, 1.0, 10.0);
    camera.SetTransform(GfMatrix4d(1.0).SetRotate(GfRotation(GfVec3d(1, 0, 0), 180.0)) *
                        GfMatrix4d(1.0).SetTranslate(GfVec3d(0.0, 0.0, -10.0)));
    session.renderer->setCamera(camera);
    const Picture below = session.render("color");
    EXPECT_EQ(lineWidth(below, 0), 0);
    EXPECT_GT(lineWidth(below, 2), 0);
}

TEST_P(EveryDrawingRenderer, DrawsEdgesOverTheSurfaceAsAWireframeOnIt)
{
    ContractSession session(GetParam(), kSheetScene);
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    session.renderer->setDrawMode(TfToken("wireframeOnSurface"));
    const Picture p = session.render("color");
    EXPECT_LT(p.byte(100, 100, 0), 128);
    EXPECT_EQ(p.byte(75, 100, 0), 255);
}

// The authored normals lie in the surface: under a light from the viewer only the flat surface is lit.
TEST_P(EveryDrawingRenderer, ShadesByTheFacesOrByTheNormalsAsItsDrawModeSays)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Mesh "Square" {
    uniform token subdivisionScheme = "none"
    int[] faceVertexCounts = [4]
    int[] faceVertexIndices = [0, 1, 2, 3]
    point3f[] points = [(-1, -1, 0), (1, -1, 0), (1, 1, 0), (-1, 1, 0)]
    normal3f[] normals = [(1, 0, 0), (1, 0, 0), (1, 0, 0), (1, 0, 0)] ( interpolation = "vertex" )
}
def DistantLight "Sun" { float inputs:intensity = 3
    bool inputs:normalize = 1
    float inputs:angle = 0
}
)");
    session.lookOrthographic(4.0);
    session.renderer->setLighting({});
    session.renderer->setDrawMode(TfToken("shadedSmooth"));
    EXPECT_LT(session.render("color").byte(100, 100, 0), 10);
    session.renderer->setDrawMode(TfToken("shadedFlat"));
    EXPECT_GT(session.render("color").byte(100, 100, 0), 60);
}

TEST_P(EveryDrawingRenderer, ColoursIdsAndCostsInItsDebugModes)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Plane "A" { double width = 1
    float[] primvars:displayOpacity = [0.5]
    double3 xformOp:translate = (-1, 0, 0)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
def PointInstancer "Two" {
    point3f[] positions = [(1, 0, 0), (1, 0, -1), (-1, 0, -1)]
    int[] protoIndices = [0, 0, 0]
    rel prototypes = </Two/B>
    def Plane "B" { double width = 1
    }
}
)");
    session.lookOrthographic(4.0);
    const auto sameColor = [](const Picture& p, int x1, int x2) {
        return p.byte(x1, 100, 0) == p.byte(x2, 100, 0) && p.byte(x1, 100, 1) == p.byte(x2, 100, 1) &&
               p.byte(x1, 100, 2) == p.byte(x2, 100, 2);
    };
    for (const char* mode : {"primId", "instanceId"}) {
        session.renderer->setPostProcessingDebugMode(TfToken(mode));
        const Picture p = session.render("color");
        EXPECT_FALSE(sameColor(p, 50, 150)) << mode;
        EXPECT_EQ(p.byte(100, 100, 1), 0) << mode; // nothing lies there
    }
    session.renderer->setPostProcessingDebugMode(TfToken("elementId"));
    const Picture elements = session.render("color");
    EXPECT_TRUE(sameColor(elements, 50, 150)); // both are face 0
    EXPECT_FALSE(sameColor(elements, 50, 100));
    // A half transparent surface with another one behind it takes the most rays: white is the dearest.
    session.renderer->setPostProcessingDebugMode(TfToken("cost"));
    const Picture cost = session.render("color");
    EXPECT_EQ(cost.byte(50, 100, 1), 255);
    EXPECT_LT(cost.byte(150, 100, 1), 255);
    EXPECT_LT(cost.byte(100, 100, 0), cost.byte(150, 100, 0) + cost.byte(150, 100, 2));
}

TEST_P(EveryDrawingRenderer, RendersAtTheSizeThatItWasGivenLast)
{
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    session.renderer->setRenderSize(60, 40);
    const Picture p = session.render("primId");
    EXPECT_EQ(p.width(), 60);
    EXPECT_EQ(p.height(), 40);
    EXPECT_GE(p.id(30, 20), 0);
}

// The width of the squares of equal pixels that a picture is made of, as far as one of its rows tells.
int blockOf(const Picture& picture, int row)
{
    for (int block = 64; block > 1; block /= 2) {
        int different = 0;
        for (int x = 0; x < picture.width(); ++x)
            different += picture.byte(x, row, 0) != picture.byte(x / block * block, row / block * block, 0);
        if (different == 0) return block;
    }
    return 1;
}

// How wide the blocks are depends on the machine's speed: so wide that the 800 x 600 pixels are at most
// 60,000 samples, which is 4 or more.
TEST_P(EveryDrawingRenderer, ShowsALargePictureInBlocksFirstAndWholeAtTheEnd)
{
    ContractSession session(GetParam(), kSphereScene, 800, 600);
    session.lookOrthographic(4.0);
    session.renderer->setPostProcessingDebugMode(TfToken("normal"));
    RenderParameters parameters;
    parameters.untilConverged = false;
    parameters.aovs = {TfToken("color")};
    const auto fast = session.renderer->renderFrame(parameters).get();
    EXPECT_FALSE(fast.converged);
    EXPECT_EQ(fast.samples, 0);
    const Picture coarse(fast.aovs.at(0).second);
    const Picture whole = session.render("color");
    EXPECT_EQ(blockOf(whole, 300), 1);
    const int block = blockOf(coarse, 300);
    ASSERT_GE(block, 4);
    // A block shows what its middle shows: the whole picture's pixels beside it differ by one step at most.
    const int middle = 300 / block * block + block / 2;
    for (int x = 256; x < 544; x += block)
        EXPECT_NEAR(coarse.byte(x, 300, 0), whole.byte(x + block / 2, middle, 0), 3) << x;
}

// The picture's middle half is green: the hemisphere around the dome's own +z.
TEST_P(EveryDrawingRenderer, LightsWithTheRigsDomeAndTurnsItWithItsRotation)
{
    const TemporaryFolder folder;
    const std::string path = (folder.path() / "dome.png").string();
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 64; ++x) {
            const bool isFront = x >= 16 && x < 48;
            pixels.insert(pixels.end(),
                          {std::uint8_t(isFront ? 0 : 255), std::uint8_t(isFront ? 255 : 0), 0, 255});
        }
    }
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = 64;
    png.height = 32;
    png.format = PNG_FORMAT_RGBA;
    ASSERT_TRUE(png_image_write_to_file(&png, path.c_str(), 0, pixels.data(), 0, nullptr));
    ContractSession session(GetParam(),
                            "#usda 1.0\ndef Plane \"P\" { color3f[] primvars:displayColor = [(1, 1, 1)]\n}\n",
                            40, 40);
    session.lookOrthographic(1.0);
    for (const double degrees : {0.0, 180.0}) {
        GlfSimpleLight dome;
        dome.SetIsDomeLight(true);
        dome.SetDomeLightTextureFile(SdfAssetPath(path, path));
        dome.SetTransform(GfMatrix4d(1.0).SetRotate(GfRotation(GfVec3d(0, 1, 0), degrees)));
        usd::hydra_renderer::LightingInfo lighting;
        lighting.lights = {dome};
        lighting.sceneLightsEnabled = false;
        session.renderer->setLighting(lighting);
        const Picture p = session.render("color", 256);
        const int lit = degrees == 0.0 ? 1 : 0;
        EXPECT_GT(p.byte(20, 20, lit), 200) << degrees;
        EXPECT_LT(p.byte(20, 20, 1 - lit), 40) << degrees;
    }
}

} // namespace
} // namespace vesk::tests::contract
