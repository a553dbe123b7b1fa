#include "contract_session.h"

#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

/// Two squares side by side: x from -1 to 0 and from 0 to 1, y from -1 to 1.
std::string twoSquares(const std::string& colors)
{
    return R"(#usda 1.0
def Mesh "Sheet" {
    uniform token subdivisionScheme = "none"
    int[] faceVertexCounts = [4, 4]
    int[] faceVertexIndices = [0, 1, 4, 3, 1, 2, 5, 4]
    point3f[] points = [(-1, -1, 0), (0, -1, 0), (1, -1, 0), (-1, 1, 0), (0, 1, 0), (1, 1, 0)]
    )" + colors +
           "\n}\n";
}

Picture renderSquares(const std::string& rendererId, const std::string& colors)
{
    ContractSession session(rendererId, twoSquares(colors));
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    return session.render("color");
}

// Without colour correction and under white ambient light alone, a byte is the colour times 255, rounded.
TEST_P(EveryDrawingRenderer, ShowsAConstantDisplayColourAsItIs)
{
    const Picture p = renderSquares(GetParam(), "color3f[] primvars:displayColor = [(1, 0.4, 0.2)]");
    EXPECT_EQ(p.byte(75, 100, 0), 255);
    EXPECT_EQ(p.byte(75, 100, 1), 102);
    EXPECT_EQ(p.byte(75, 100, 2), 51);
    EXPECT_EQ(p.byte(75, 100, 3), 255);
}

TEST_P(EveryDrawingRenderer, ShowsUniformDisplayColoursFaceByFaceThroughTheirIndices)
{
    const Picture p = renderSquares(GetParam(), R"(color3f[] primvars:displayColor = [(1, 0, 0), (0, 0, 1)] (
        interpolation = "uniform" )
    int[] primvars:displayColor:indices = [1, 0])");
    EXPECT_EQ(p.byte(75, 100, 2), 255);
    EXPECT_EQ(p.byte(75, 100, 0), 0);
    EXPECT_EQ(p.byte(125, 100, 0), 255);
}

// Black at the left edge, red in the middle, black at the right edge: a quarter of the way in it is half red.
TEST_P(EveryDrawingRenderer, BlendsVertexDisplayColoursAcrossFaces)
{
    const Picture p = renderSquares(GetParam(), R"(color3f[] primvars:displayColor = [
        (0, 0, 0), (1, 0, 0), (0, 0, 0), (0, 0, 0), (1, 0, 0), (0, 0, 0)] ( interpolation = "vertex" ))");
    EXPECT_NEAR(p.byte(75, 100, 0), 255 * 0.51, 1.0); // pixel 75 has its centre at x = -0.49
    EXPECT_NEAR(p.byte(99, 100, 0), 255 * 0.99, 1.0);
}

TEST_P(EveryDrawingRenderer, KeepsFaceVaryingDisplayColoursApartAtASharedEdge)
{
    const Picture p = renderSquares(GetParam(), R"(color3f[] primvars:displayColor = [
        (1, 0, 0), (1, 0, 0), (1, 0, 0), (1, 0, 0), (0, 1, 0), (0, 1, 0), (0, 1, 0), (0, 1, 0)] (
        interpolation = "faceVarying" ))");
    EXPECT_EQ(p.byte(99, 100, 0), 255);
    EXPECT_EQ(p.byte(99, 100, 1), 0);
    EXPECT_EQ(p.byte(100, 100, 0), 0);
    EXPECT_EQ(p.byte(100, 100, 1), 255);
}

TEST_P(EveryDrawingRenderer, InheritsAConstantDisplayColourFromAbove)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Xform "Group" {
    color3f[] primvars:displayColor = [(0, 1, 0)] ( interpolation = "constant" )
    def Sphere "Ball" { double radius = 1
}
}
)");
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    const Picture p = session.render("color");
    EXPECT_EQ(p.byte(100, 100, 0), 0);
    EXPECT_EQ(p.byte(100, 100, 1), 255);
}

TEST_P(EveryDrawingRenderer, LetsWhatLiesBehindShineThroughATransparentSurface)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Plane "Front" { color3f[] primvars:displayColor = [(1, 0, 0)]
    float[] primvars:displayOpacity = [0.25]
    double3 xformOp:translate = (0, 0, 1)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
def Plane "Back" { color3f[] primvars:displayColor = [(0, 0, 1)]
}
)");
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    const Picture p = session.render("color");
    EXPECT_NEAR(p.byte(100, 100, 0), 64, 1);  // a quarter of red
    EXPECT_NEAR(p.byte(100, 100, 2), 191, 1); // three quarters of the blue behind it
}

TEST_P(EveryDrawingRenderer, LightsWhatFacesALightAndNotWhatTurnsAway)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Sphere "Ball" { double radius = 1
}
def DistantLight "Sun" { float inputs:intensity = 3.14159265
    bool inputs:normalize = 1
    double3 xformOp:rotateXYZ = (0, 90, 0)
    uniform token[] xformOpOrder = ["xformOp:rotateXYZ"]
}
)");
    session.lookOrthographic(4.0);
    session.renderer->setLighting({}); // no rig, the stage's own lights
    const Picture p = session.render("color");
    EXPECT_GT(p.byte(145, 100, 0), 60); // the light shines from +x
    EXPECT_EQ(p.byte(55, 100, 0), 0);
}

TEST_P(EveryDrawingRenderer, ShowsTheClearColourWhereNothingIsAndKeepsItsBytes)
{
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    session.renderer->setClearColor(GfVec4f(0.2f, 0.4f, 0.6f, 1.0f));
    for (const char* mode : {"disabled", "sRGB"}) {
        session.renderer->setColorCorrectionMode(TfToken(mode));
        const Picture p = session.render("color");
        EXPECT_EQ(p.byte(2, 2, 0), 51) << mode;
        EXPECT_EQ(p.byte(2, 2, 1), 102) << mode;
        EXPECT_EQ(p.byte(2, 2, 2), 153) << mode;
        EXPECT_EQ(p.byte(2, 2, 3), 255) << mode;
    }
}

// 0.5 encoded is 1.055 * 0.5^(1/2.4) - 0.055 = 0.7354, times 255 is 187.5.
TEST_P(EveryDrawingRenderer, EncodesTheSceneForDisplayWhereColourCorrectionIsOn)
{
    ContractSession session(
        GetParam(), "#usda 1.0\ndef Plane \"P\" { color3f[] primvars:displayColor = [(0.5, 0.5, 0.5)]\n}\n");
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    EXPECT_EQ(session.render("color").byte(100, 100, 0), 128);
    session.renderer->setColorCorrectionMode(TfToken("sRGB"));
    EXPECT_NEAR(session.render("color").byte(100, 100, 0), 187.5, 0.6);
}

// The edge of a cube at x = 1 lies on a pixel's edge; half a pixel further out half a pixel is covered.
TEST_P(EveryDrawingRenderer, CoversAnEdgePixelByItsShareWhenItTakesManySamples)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Plane "P" { double width = 2.02
    color3f[] primvars:displayColor = [(1, 1, 1)]
}
)");
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    // The edge at x = 1.01 is at pixel 150.5: pixel 150 is half covered.
    EXPECT_NEAR(session.render("color", 64).byte(150, 100, 0), 127.5, 12.0);
}

TEST_P(EveryDrawingRenderer, DrawsTheSamePictureAgain)
{
    ContractSession first(GetParam(), kSphereScene);
    ContractSession second(GetParam(), kSphereScene);
    first.lookPerspective(4.0);
    second.lookPerspective(4.0);
    EXPECT_EQ(*first.render("color", 4).buffer().bytes, *second.render("color", 4).buffer().bytes);
}

TEST_P(EveryDrawingRenderer, DrawsASceneWithoutGeometryAsItsBackground)
{
    ContractSession session(GetParam(), "#usda 1.0\n");
    session.lookPerspective(4.0);
    session.renderer->setClearColor(GfVec4f(1.0f, 0.0f, 0.0f, 1.0f));
    const Picture p = session.render("color");
    EXPECT_EQ(p.byte(100, 100, 0), 255);
    EXPECT_EQ(p.byte(100, 100, 1), 0);
}

} // namespace
} // namespace vesk::tests::contract
