#include "embree_pictures.h"

#include <pxr/usd/usd/zipFile.h>
#include <tests/support/log_capture.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

TEST(EmbreeMaterials, ShowsATextureThatLiesInsideAPackage)
{
    const TemporaryFolder folder;
    const std::string picture = writePng(folder, "green.png", kGreen);
    const std::string layer = folder.write("root.usda", "#usda 1.0\n").string();
    const std::string package = (folder.path() / "box.usdz").string();
    UsdZipFileWriter writer = UsdZipFileWriter::CreateNew(package);
    writer.AddFile(layer, "root.usda");
    writer.AddFile(picture, "textures/green.png");
    ASSERT_TRUE(writer.Save());
    const Picture p =
        ambientPicture(square("S") + look(kImageAsColor, imageNode(package + "[textures/green.png]")));
    EXPECT_EQ(pixelOf(p, 100, 100), kGreen);
}

// Two squares of the coordinates, each with a picture of its own; the third has none.
TEST(EmbreeMaterials, ShowsEachTileOfATiledTexture)
{
    const TemporaryFolder folder;
    writePng(folder, "t.1001.png", kRed);
    writePng(folder, "t.1002.png", kBlue);
    writePng(folder, "t.1011.png", kWhite);
    std::string scene = square("S") + look(kImageAsColor, imageNode((folder.path() / "t.<UDIM>.png").string(),
                                                                    "float4 inputs:fallback = (0, 1, 0, 1)"));
    const std::string coordinates = "[(0, 0), (1, 0), (1, 1), (0, 1)]";
    scene.replace(scene.find(coordinates), coordinates.size(), "[(0, 0), (2, 0), (2, 2), (0, 2)]");
    const Picture p = ambientPicture(scene);
    EXPECT_EQ(pixelOf(p, 75, 125), kRed);
    EXPECT_EQ(pixelOf(p, 125, 125), kBlue);
    EXPECT_EQ(pixelOf(p, 75, 75), kWhite);  // the second row
    EXPECT_EQ(pixelOf(p, 125, 75), kGreen); // the fallback
}

TEST(EmbreeMaterials, SaysOnceThatATiledTextureHasNoTiles)
{
    LogCapture log;
    const Picture p =
        ambientPicture(square("S") + look(kImageAsColor, imageNode("/nowhere/at/all.<UDIM>.png",
                                                                   "float4 inputs:fallback = (0, 1, 0, 1)")));
    EXPECT_EQ(pixelOf(p, 100, 100), kGreen);
    EXPECT_EQ(log.takeTexts(), std::vector<std::string>{"Texture /nowhere/at/all.<UDIM>.png is not shown: "
                                                        "none of its tiles exists"});
}

// Black and white by turns, 16 of them below each pixel: a point of the picture shows one of them, an area
// their mean.
TEST(EmbreeMaterials, ShowsTheMeanOfATextureThatIsFinerThanThePicture)
{
    const TemporaryFolder folder;
    const std::string file = writePng(folder, "fine.png", 256, 256,
                                      [](int x, int y) { return (x + y) % 2 == 0 ? kBlack : kWhite; });
    const Picture p = ambientPicture(
        square("S") + look(kImageAsColor, imageNode(file, "token inputs:sourceColorSpace = \"raw\"")), 100.0);
    // The square spans four pixels.
    for (int y = 99; y <= 100; ++y) {
        for (int x = 99; x <= 100; ++x)
            EXPECT_NEAR(p.byte(x, y, 0), 127, 2) << x << " " << y;
    }
}

// The light stands at 45 degrees and shines on the square with half of the root of two; the map leans the
// normal towards it: the square faces it.
TEST(EmbreeMaterials, LeansTheNormalAsItsMapSays)
{
    const TemporaryFolder folder;
    // (sin 45, 0, cos 45) * 0.5 + 0.5 as bytes.
    const std::string leaning = writePng(folder, "leaning.png", {218, 128, 218, 255});
    const std::string straight = writePng(folder, "straight.png", {128, 128, 255, 255});
    const std::string light = R"(def DistantLight "Sun" {
        float inputs:intensity = 3.14159265
        float inputs:angle = 0
        bool inputs:normalize = 1
        float xformOp:rotateY = 45
        uniform token[] xformOpOrder = ["xformOp:rotateY"]
    })";
    const auto brightness = [&](const std::string& map) {
        const std::string inputs = std::string(kDull) + "color3f inputs:diffuseColor = (0.8, 0.8, 0.8)\n" +
                                   "normal3f inputs:normal.connect = </Look/Image.outputs:rgb>";
        const std::string node = imageNode(map, "token inputs:sourceColorSpace = \"raw\"\n"
                                                "float4 inputs:scale = (2, 2, 2, 1)\n"
                                                "float4 inputs:bias = (-1, -1, -1, 0)");
        return litPicture(square("S") + look(inputs, node) + light).byte(100, 100, 0) / 255.0;
    };
    EXPECT_NEAR(brightness(straight), 0.8 * 0.7071, 0.015);
    EXPECT_NEAR(brightness(leaning), 0.8, 0.015);
}

// Viewer, light and normal are one direction: the coat's highlight is F D / 4 with F = 0.04 and
// D = 1 / (pi a^2), a being the roughness squared; the light E = pi makes 0.04 / (4 a^2) of it.
TEST(EmbreeMaterials, PutsAHighlightOfAClearCoatOverABlackSurface)
{
    const auto brightness = [](const std::string& coat) {
        const std::string inputs = std::string(kDull) + "color3f inputs:diffuseColor = (0, 0, 0)\n" + coat;
        return litPicture(square("S") + look(inputs) + R"(def DistantLight "Sun" {
            float inputs:intensity = 3.14159265
            float inputs:angle = 0
            bool inputs:normalize = 1
        })")
                   .byte(100, 100, 0) /
               255.0;
    };
    EXPECT_EQ(brightness(""), 0.0);
    const double expected = 0.04 / (4 * 0.25 * 0.25);
    EXPECT_NEAR(brightness("float inputs:clearcoat = 1\nfloat inputs:clearcoatRoughness = 0.5"), expected,
                0.005);
    EXPECT_NEAR(brightness("float inputs:clearcoat = 0.5\nfloat inputs:clearcoatRoughness = 0.5"),
                expected / 2, 0.005);
}

struct NetworkCase
{
    const char* name;
    const char* output;
    const char* id;
    const char* inputs;
};

TEST(EmbreeMaterials, ReadsSurfacesOfMaterialXThatLieInTheStage)
{
    for (const NetworkCase& c :
         {NetworkCase{"preview", "outputs:mtlx:surface", "ND_UsdPreviewSurface_surfaceshader",
                      "color3f inputs:diffuseColor = (0, 0, 1)"},
          NetworkCase{"standard", "outputs:mtlx:surface", "ND_standard_surface_surfaceshader",
                      "float inputs:base = 1\ncolor3f inputs:base_color = (0, 0, 1)"},
          NetworkCase{"of one renderer", "outputs:arnold:surface", "arnold:standard_surface",
                      "float inputs:base = 1\ncolor3f inputs:base_color = (0, 0, 1)"}}) {
        const std::string scene = square("S") + R"(def Material "Look" {
    token )" + c.output + R"(.connect = </Look/Surface.outputs:out>
    def Shader "Surface" {
        uniform token info:id = ")" +
                                  c.id + "\"\n" + c.inputs + R"(
        token outputs:out
    }
})";
        EXPECT_EQ(pixelOf(ambientPicture(scene), 100, 100), kBlue) << c.name;
    }
}

TEST(EmbreeMaterials, ReadsTheImagesOfAStandardSurface)
{
    const TemporaryFolder folder;
    const std::string file =
        writePng(folder, "two.png", 2, 1, [](int x, int) { return x == 0 ? kRed : kGreen; });
    const Picture p = ambientPicture(square("S") + R"(def Material "Look" {
    token outputs:mtlx:surface.connect = </Look/Surface.outputs:out>
    def Shader "Surface" {
        uniform token info:id = "ND_standard_surface_surfaceshader"
        float inputs:base = 1
        color3f inputs:base_color.connect = </Look/Nodes.outputs:color>
        token outputs:out
    }
    def NodeGraph "Nodes" {
        color3f outputs:color.connect = </Look/Nodes/Image.outputs:out>
        def Shader "Image" {
            uniform token info:id = "ND_image_color3"
            asset inputs:file = @)" + file +
                                     R"(@ ( colorSpace = "srgb_texture" )
            string inputs:uaddressmode = "clamp"
            color3f outputs:out
        }
    }
})");
    EXPECT_EQ(pixelOf(p, 60, 100), kRed);
    EXPECT_EQ(pixelOf(p, 140, 100), kGreen);
}

TEST(EmbreeMaterials, DrawsWithItsDefaultMaterialWhereTheScenesAreSwitchedOff)
{
    const std::string scene = "#usda 1.0\n" + square("S") + look("color3f inputs:diffuseColor = (1, 0, 0)");
    for (const bool enabled : {true, false}) {
        ContractSession session("embree", scene);
        session.renderer =
            HydraRenderer::create(session.document->getEventBus().get(), session.document, nullptr, "embree",
                                  {}, GfVec2i(200, 200), 1, enabled, false, true, {}, {});
        session.renderer->setGridEnabled(false);
        session.lookOrthographic(4.0);
        session.useAmbientLightOnly();
        const Picture p = session.render("color");
        EXPECT_EQ(p.byte(100, 100, 1) > 0, !enabled) << enabled; // grey has green in it
        EXPECT_GT(p.byte(100, 100, 0), 0) << enabled;
    }
}

} // namespace
} // namespace vesk::tests::contract
