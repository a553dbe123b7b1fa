#include "embree_pictures.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

// The light comes from the right at 45 degrees: what floats at height 1 throws its shadow 1 to the left.
std::string floorBelow(const std::string& blocker)
{
    return R"(def Mesh "Floor" ( prepend apiSchemas = ["MaterialBindingAPI"] ) {
    uniform token subdivisionScheme = "none"
    int[] faceVertexCounts = [4]
    int[] faceVertexIndices = [0, 1, 2, 3]
    point3f[] points = [(-4, -4, 0), (4, -4, 0), (4, 4, 0), (-4, 4, 0)]
    rel material:binding = </Look>
}
def DistantLight "Sun" {
    float inputs:intensity = 3.14159265
    float inputs:angle = 0
    bool inputs:normalize = 1
    float xformOp:rotateY = 45
    uniform token[] xformOpOrder = ["xformOp:rotateY"]
}
)" + look(std::string(kDull) + "color3f inputs:diffuseColor = (0.8, 0.8, 0.8)") +
           blocker;
}

std::string blocker(const std::string& name, const std::string& opacity, double height)
{
    return "def Plane \"" + name + R"(" { double width = 1
    double length = 1
    float[] primvars:displayOpacity = [)" +
           opacity + R"(]
    double3 xformOp:translate = ()" +
           std::to_string(height) + ", 0, " + std::to_string(height) + R"()
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)";
}

// Pixels are a twentieth of a unit wide: the shadow spans pixels 90 to 110.
TEST(EmbreeLight, PassesATransparentSurfaceByWhatItsOpacityLeaves)
{
    for (const auto& [opacity, passes] :
         {std::pair("1", 0.0), std::pair("0.75", 0.25), std::pair("0.5", 0.5)}) {
        const Picture p = litPicture(floorBelow(blocker("Pane", opacity, 2.0)), 10.0);
        const double lit = p.byte(40, 100, 0);
        EXPECT_NEAR(lit / 255.0, 0.8 * 0.7071, 0.01);
        EXPECT_NEAR(p.byte(100, 100, 0) / lit, passes, 0.02) << opacity;
    }
}

TEST(EmbreeLight, IsDimmedByEachOfSeveralTransparentSurfaces)
{
    const Picture p = litPicture(floorBelow(blocker("Low", "0.5", 2.0) + blocker("High", "0.5", 3.0)), 10.0);
    EXPECT_NEAR(p.byte(100, 100, 0) / double(p.byte(40, 100, 0)), 0.25, 0.02);
}

// A mirror at 45 degrees shows to the viewer what lies to its right.
TEST(EmbreeLight, ShowsTheSceneInAMirror)
{
    const std::string mirror = square("Mirror", R"(
    float xformOp:rotateY = 45
    uniform token[] xformOpOrder = ["xformOp:rotateY"]
)") + look("color3f inputs:diffuseColor = (1, 1, 1)\nfloat inputs:metallic = 1\nfloat inputs:roughness = 0");
    const std::string wall = R"(def Mesh "Wall" ( prepend apiSchemas = ["MaterialBindingAPI"] ) {
    uniform token subdivisionScheme = "none"
    int[] faceVertexCounts = [4]
    int[] faceVertexIndices = [0, 1, 2, 3]
    point3f[] points = [(5, -3, -3), (5, -3, 3), (5, 3, 3), (5, 3, -3)]
    rel material:binding = </Glow>
}
def Material "Glow" {
    token outputs:surface.connect = </Glow/Surface.outputs:surface>
    def Shader "Surface" {
        uniform token info:id = "UsdPreviewSurface"
        color3f inputs:diffuseColor = (0, 0, 0)
        color3f inputs:emissiveColor = (0, 0.5, 0)
        token outputs:surface
    }
})";
    const Picture without = litPicture(mirror);
    EXPECT_EQ(pixelOf(without, 100, 100), kBlack);
    const Picture with = litPicture(mirror + wall);
    EXPECT_EQ(with.byte(100, 100, 0), 0);
    EXPECT_NEAR(with.byte(100, 100, 1), 128, 2);
}

// The picture's left half is red, its right half green; the half on the dome's own +x is the left one. The
// square faces +z: turned by a quarter about y, the dome shows it its -x.
TEST(EmbreeLight, ComesFromTheTextureOfADomeOfTheStage)
{
    const TemporaryFolder folder;
    const std::string file =
        writePng(folder, "dome.png", 64, 32, [](int x, int) { return x < 32 ? kRed : kGreen; });
    for (const auto& [degrees, channel] : {std::pair("90", 1), std::pair("-90", 0)}) {
        const Picture p =
            litPicture(square("S") + look(std::string(kDull) + "color3f inputs:diffuseColor = (1, 1, 1)") +
                           "def DomeLight \"Sky\" { asset inputs:texture:file = @" + file +
                           "@\nfloat xformOp:rotateY = " + degrees +
                           "\nuniform token[] xformOpOrder = [\"xformOp:rotateY\"]\n}",
                       4.0, 256);
        EXPECT_GT(p.byte(100, 100, channel), 200) << degrees;
        EXPECT_LT(p.byte(100, 100, 1 - channel), 40) << degrees;
    }
}

} // namespace
} // namespace vesk::tests::contract
