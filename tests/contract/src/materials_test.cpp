#include "contract_session.h"

#include <png.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/usd/attribute.h>
#include <tests/support/log_capture.h>
#include <tests/support/scene_files.h>

#include <array>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

using Pixel = std::array<std::uint8_t, 4>;

/// Writes a picture, the top row first.
std::string writeTexture(const TemporaryFolder& folder, int width, const std::vector<Pixel>& pixels)
{
    const std::string path = (folder.path() / "texture.png").string();
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(width);
    png.height = static_cast<png_uint_32>(pixels.size()) / png.width;
    png.format = PNG_FORMAT_RGBA;
    EXPECT_TRUE(png_image_write_to_file(&png, path.c_str(), 0, pixels.data(), 0, nullptr));
    return path;
}

constexpr Pixel kRed{255, 0, 0, 255};
constexpr Pixel kGreen{0, 255, 0, 255};
constexpr Pixel kBlue{0, 0, 255, 255};
constexpr Pixel kWhite{255, 255, 255, 255};

// A square from -1 to 1 that the texture covers once; 200 pixels show 4 units: it spans pixels 50 to 150.
std::string texturedSquare(const std::string& texture, const std::string& textureInputs,
                           const std::string& surfaceInputs, const std::string& more = {})
{
    return R"(#usda 1.0
def Mesh "Square" ( prepend apiSchemas = ["MaterialBindingAPI"] ) {
    uniform token subdivisionScheme = "none"
    int[] faceVertexCounts = [4]
    int[] faceVertexIndices = [0, 1, 2, 3]
    point3f[] points = [(-1, -1, 0), (1, -1, 0), (1, 1, 0), (-1, 1, 0)]
    texCoord2f[] primvars:st = [(0, 0), (1, 0), (1, 1), (0, 1)] ( interpolation = "vertex" )
    rel material:binding = </Look>
}
def Material "Look" {
    token outputs:surface.connect = </Look/Surface.outputs:surface>
    def Shader "Surface" {
        uniform token info:id = "UsdPreviewSurface"
        )" +
           surfaceInputs +
           R"(
        token outputs:surface
    }
    def Shader "Image" {
        uniform token info:id = "UsdUVTexture"
        asset inputs:file = @)" +
           texture + R"(@
        float2 inputs:st.connect = </Look/Coordinates.outputs:result>
        )" +
           textureInputs +
           R"(
        float3 outputs:rgb
        float outputs:r
        float outputs:a
    }
    def Shader "Coordinates" {
        uniform token info:id = "UsdPrimvarReader_float2"
        string inputs:varname = "st"
        float2 outputs:result
    }
    )" + more +
           "\n}\n";
}

const char* const kDiffuseFromImage = "color3f inputs:diffuseColor.connect = </Look/Image.outputs:rgb>";

Picture render(const std::string& rendererId, const std::string& scene)
{
    ContractSession session(rendererId, scene);
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    return session.render("color");
}

Pixel at(const Picture& p, int x, int y)
{
    Pixel pixel;
    for (int c = 0; c < 4; ++c)
        pixel[std::size_t(c)] = static_cast<std::uint8_t>(p.byte(x, y, c));
    return pixel;
}

// Pixel 74 has its centre at x = -0.51; a quarter of the way is s = 0.245, just beside the middle of a texel.
TEST_P(EveryDrawingRenderer, ShowsATextureWithItsFirstRowOnTop)
{
    const TemporaryFolder folder;
    const std::string texture = writeTexture(folder, 2, {kRed, kGreen, kBlue, kWhite});
    const Picture p = render(GetParam(), texturedSquare(texture,
                                                        "token inputs:sourceColorSpace = \"raw\"\n"
                                                        "token inputs:wrapS = \"clamp\"\n"
                                                        "token inputs:wrapT = \"clamp\"",
                                                        kDiffuseFromImage));
    EXPECT_EQ(at(p, 60, 60), kRed);
    EXPECT_EQ(at(p, 140, 60), kGreen);
    EXPECT_EQ(at(p, 60, 140), kBlue);
    EXPECT_EQ(at(p, 140, 140), kWhite);
    // Halfway between red and green both are half there.
    EXPECT_NEAR(p.byte(100, 60, 0), 127, 4);
    EXPECT_NEAR(p.byte(100, 60, 1), 128, 4);
}

struct WrapCase
{
    const char* mode;
    Pixel outside; ///< what lies right of the picture, which covers the left half
};

// The coordinates go to 2: the right half lies outside. Its first quarter would show the picture's left, or
// its right once more where it is mirrored.
TEST_P(EveryDrawingRenderer, ContinuesATextureBeyondItsBordersAsItsWrapModeSays)
{
    const TemporaryFolder folder;
    const std::string texture = writeTexture(folder, 2, {kRed, kGreen});
    for (const WrapCase& c : {WrapCase{"repeat", kRed}, WrapCase{"mirror", kGreen}, WrapCase{"clamp", kGreen},
                              WrapCase{"black", {0, 0, 0, 255}}}) {
        const std::string inputs = std::string("token inputs:sourceColorSpace = \"raw\"\n"
                                               "token inputs:wrapT = \"clamp\"\ntoken inputs:wrapS = \"") +
                                   c.mode + "\"";
        std::string scene = texturedSquare(texture, inputs, kDiffuseFromImage, R"(def Shader "Twice" {
        uniform token info:id = "UsdTransform2d"
        float2 inputs:in.connect = </Look/Coordinates.outputs:result>
        float2 inputs:scale = (2, 1)
        float2 outputs:result
    })");
        const std::string direct = "inputs:st.connect = </Look/Coordinates.outputs:result>";
        scene.replace(scene.find(direct), direct.size(), "inputs:st.connect = </Look/Twice.outputs:result>");
        const Picture p = render(GetParam(), scene);
        EXPECT_EQ(at(p, 62, 100), kRed) << c.mode;       // s = 0.25
        EXPECT_EQ(at(p, 112, 100), c.outside) << c.mode; // s = 1.25
    }
}

TEST_P(EveryDrawingRenderer, ScalesAndShiftsWhatATextureSays)
{
    const TemporaryFolder folder;
    const std::string texture = writeTexture(folder, 1, {{102, 102, 102, 255}}); // 0.4
    const Picture p = render(GetParam(), texturedSquare(texture,
                                                        "token inputs:sourceColorSpace = \"raw\"\n"
                                                        "token inputs:wrapS = \"repeat\"\n"
                                                        "token inputs:wrapT = \"repeat\"\n"
                                                        "float4 inputs:scale = (2, 1, 0.5, 1)\n"
                                                        "float4 inputs:bias = (0, 0.2, 0, 0)",
                                                        kDiffuseFromImage));
    EXPECT_EQ(at(p, 100, 100), (Pixel{204, 153, 51, 255}));
}

// The display value 188 is 0.5029 in linear light: ((188 / 255 + 0.055) / 1.055) ^ 2.4, as a byte 128.
TEST_P(EveryDrawingRenderer, DecodesColourTexturesAndLeavesDataAsItIs)
{
    const TemporaryFolder folder;
    const std::string texture = writeTexture(folder, 1, {{188, 188, 188, 255}});
    const std::string wrap = "token inputs:wrapS = \"repeat\"\ntoken inputs:wrapT = \"repeat\"\n";
    for (const auto& [space, byte] :
         {std::pair("auto", 128), std::pair("sRGB", 128), std::pair("raw", 188)}) {
        const Picture p = render(
            GetParam(), texturedSquare(texture, wrap + "token inputs:sourceColorSpace = \"" + space + "\"",
                                       kDiffuseFromImage));
        EXPECT_NEAR(p.byte(100, 100, 0), byte, 1) << space;
    }
}

TEST_P(EveryDrawingRenderer, ShowsTheFallbackOfATextureThatCannotBeReadAndSaysSoOnce)
{
    LogCapture log;
    const Picture p =
        render(GetParam(), texturedSquare("/nowhere/at/all.png", "float4 inputs:fallback = (0, 1, 0, 1)",
                                          kDiffuseFromImage));
    EXPECT_EQ(at(p, 100, 100), kGreen);
    EXPECT_EQ(log.takeTexts(),
              std::vector<std::string>{"Texture /nowhere/at/all.png is not shown: it cannot be opened"});
}

TEST_P(EveryDrawingRenderer, CutsOutWhatATexturesOpacityLeavesBelowTheThreshold)
{
    const TemporaryFolder folder;
    const std::string texture = writeTexture(folder, 2, {{255, 255, 255, 255}, {255, 255, 255, 40}});
    const Picture p = render(
        GetParam(),
        texturedSquare(texture, "token inputs:wrapS = \"clamp\"\ntoken inputs:wrapT = \"clamp\"",
                       "color3f inputs:diffuseColor = (1, 0, 0)\n float inputs:opacityThreshold = 0.5\n"
                       "float inputs:opacity.connect = </Look/Image.outputs:a>"));
    EXPECT_EQ(at(p, 60, 100), kRed);
    EXPECT_EQ(at(p, 140, 100), (Pixel{0, 0, 0, 255})); // the background
}

TEST_P(EveryDrawingRenderer, ShowsEmissionWithoutAnyLight)
{
    ContractSession session(GetParam(),
                            texturedSquare("", "", "color3f inputs:emissiveColor = (0.2, 0.6, 1)"));
    session.lookOrthographic(4.0);
    session.renderer->setLighting({});
    EXPECT_EQ(at(session.render("color"), 100, 100), (Pixel{51, 153, 255, 255}));
}

TEST_P(EveryDrawingRenderer, ReadsAValueThroughTheInterfaceOfItsMaterial)
{
    std::string scene = texturedSquare("", "", "color3f inputs:diffuseColor.connect = </Look.inputs:tint>",
                                       "color3f inputs:tint = (0, 0, 1)");
    EXPECT_EQ(at(render(GetParam(), scene), 100, 100), kBlue);
}

TEST_P(EveryDrawingRenderer, GivesSubsetsOfFacesTheirOwnMaterials)
{
    const Picture p = render(GetParam(), R"(#usda 1.0
def Mesh "Sheet" ( prepend apiSchemas = ["MaterialBindingAPI"] ) {
    uniform token subdivisionScheme = "none"
    int[] faceVertexCounts = [4, 4]
    int[] faceVertexIndices = [0, 1, 4, 3, 1, 2, 5, 4]
    point3f[] points = [(-1, -1, 0), (0, -1, 0), (1, -1, 0), (-1, 1, 0), (0, 1, 0), (1, 1, 0)]
    rel material:binding = </Red>
    def GeomSubset "Right" ( prepend apiSchemas = ["MaterialBindingAPI"] ) {
        uniform token elementType = "face"
        uniform token familyName = "materialBind"
        int[] indices = [1]
        rel material:binding = </Blue>
    }
}
def Material "Red" { token outputs:surface.connect = </Red/S.outputs:surface>
    def Shader "S" { uniform token info:id = "UsdPreviewSurface"
        color3f inputs:diffuseColor = (1, 0, 0)
        token outputs:surface
    }
}
def Material "Blue" { token outputs:surface.connect = </Blue/S.outputs:surface>
    def Shader "S" { uniform token info:id = "UsdPreviewSurface"
        color3f inputs:diffuseColor = (0, 0, 1)
        token outputs:surface
    }
}
)");
    EXPECT_EQ(at(p, 75, 100), kRed);
    EXPECT_EQ(at(p, 125, 100), kBlue);
}

TEST_P(EveryDrawingRenderer, DrawsWithoutTheScenesMaterialsInTheGeometryModes)
{
    ContractSession session(GetParam(), texturedSquare("", "", "color3f inputs:diffuseColor = (1, 0, 0)"));
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    for (const char* mode : {"geomOnly", "geomFlat", "geomSmooth"}) {
        session.renderer->setDrawMode(TfToken(mode));
        const Picture p = session.render("color");
        EXPECT_EQ(p.byte(100, 100, 0), p.byte(100, 100, 1)) << mode; // the grey of the default material
        EXPECT_GT(p.byte(100, 100, 0), 0) << mode;
    }
    session.renderer->setDrawMode(TfToken("shadedSmooth"));
    EXPECT_EQ(at(session.render("color"), 100, 100), kRed);
}

TEST_P(EveryDrawingRenderer, ShowsAnEditedShaderOnAllThatItIsBoundTo)
{
    ContractSession session(GetParam(), texturedSquare("", "", "color3f inputs:diffuseColor = (1, 0, 0)"));
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    EXPECT_EQ(at(session.render("color"), 100, 100), kRed);
    session.document
        ->edit("edit",
               [](const auto& context) {
                   return context.stage()
                       ->GetPrimAtPath(SdfPath("/Look/Surface"))
                       .GetAttribute(TfToken("inputs:diffuseColor"))
                       .Set(GfVec3f(0, 1, 0));
               })
        .get();
    session.document->waitUntilIdle();
    EXPECT_EQ(at(session.render("color"), 100, 100), kGreen);
}

} // namespace
} // namespace vesk::tests::contract
