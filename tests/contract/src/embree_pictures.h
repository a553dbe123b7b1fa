#pragma once

#include "contract_session.h"

#include <png.h>
#include <tests/support/scene_files.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace vesk::tests::contract {

using Pixel = std::array<std::uint8_t, 4>;

inline constexpr Pixel kRed{255, 0, 0, 255};
inline constexpr Pixel kGreen{0, 255, 0, 255};
inline constexpr Pixel kBlue{0, 0, 255, 255};
inline constexpr Pixel kBlack{0, 0, 0, 255};
inline constexpr Pixel kWhite{255, 255, 255, 255};

/// Writes a picture whose pixels a function gives, (0, 0) at the top left. Returns its path.
inline std::string writePng(const TemporaryFolder& folder, const std::string& name, int width, int height,
                            const std::function<Pixel(int, int)>& pixelAt)
{
    std::vector<Pixel> pixels;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            pixels.push_back(pixelAt(x, y));
    }
    const std::string path = (folder.path() / name).string();
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(width);
    png.height = static_cast<png_uint_32>(height);
    png.format = PNG_FORMAT_RGBA;
    EXPECT_TRUE(png_image_write_to_file(&png, path.c_str(), 0, pixels.data(), 0, nullptr));
    return path;
}

/// A picture of one colour.
inline std::string writePng(const TemporaryFolder& folder, const std::string& name, Pixel color)
{
    return writePng(folder, name, 1, 1, [color](int, int) { return color; });
}

inline Pixel pixelOf(const Picture& p, int x, int y)
{
    Pixel pixel;
    for (int c = 0; c < 4; ++c)
        pixel[std::size_t(c)] = static_cast<std::uint8_t>(p.byte(x, y, c));
    return pixel;
}

/// A square in the ground plane from -1 to 1 with texture coordinates from 0 to 1, bound to /Look.
inline std::string square(const std::string& name, const std::string& place = {})
{
    return "def Mesh \"" + name + R"(" ( prepend apiSchemas = ["MaterialBindingAPI"] ) {
    uniform token subdivisionScheme = "none"
    int[] faceVertexCounts = [4]
    int[] faceVertexIndices = [0, 1, 2, 3]
    point3f[] points = [(-1, -1, 0), (1, -1, 0), (1, 1, 0), (-1, 1, 0)]
    normal3f[] normals = [(0, 0, 1), (0, 0, 1), (0, 0, 1), (0, 0, 1)]
    texCoord2f[] primvars:st = [(0, 0), (1, 0), (1, 1), (0, 1)] ( interpolation = "vertex" )
    rel material:binding = </Look>
)" + place +
           "}\n";
}

/// The material /Look: a preview surface with some inputs, beside other nodes.
inline std::string look(const std::string& inputs, const std::string& nodes = {})
{
    return R"(def Material "Look" {
    token outputs:surface.connect = </Look/Surface.outputs:surface>
    def Shader "Surface" {
        uniform token info:id = "UsdPreviewSurface"
)" + inputs +
           "\n        token outputs:surface\n    }\n" + nodes + "}\n";
}

/// A texture node /Look/Image that reads a file by the primvar `st`.
inline std::string imageNode(const std::string& file, const std::string& inputs = {})
{
    return R"(    def Shader "Image" {
        uniform token info:id = "UsdUVTexture"
        asset inputs:file = @)" +
           file + R"(@
        token inputs:wrapS = "clamp"
        token inputs:wrapT = "clamp"
        float2 inputs:st.connect = </Look/Coordinates.outputs:result>
)" + inputs +
           R"(
        float3 outputs:rgb
        float outputs:a
    }
    def Shader "Coordinates" {
        uniform token info:id = "UsdPrimvarReader_float2"
        string inputs:varname = "st"
        float2 outputs:result
    }
)";
}

inline const char* const kImageAsColor = "color3f inputs:diffuseColor.connect = </Look/Image.outputs:rgb>";

/// A surface that reflects evenly and has no highlights.
inline const char* const kDull = R"(
    int inputs:useSpecularWorkflow = 1
    color3f inputs:specularColor = (0, 0, 0)
    float inputs:roughness = 1
)";

/// A picture of the Embree renderer under ambient light alone, of `extent` units across 200 pixels.
inline Picture ambientPicture(const std::string& scene, double extent = 4.0, int samples = 1)
{
    ContractSession session("embree", "#usda 1.0\n" + scene);
    session.lookOrthographic(extent);
    session.useAmbientLightOnly();
    return session.render("color", samples);
}

/// A picture of the Embree renderer under the stage's own lights.
inline Picture litPicture(const std::string& scene, double extent = 4.0, int samples = 16)
{
    ContractSession session("embree", "#usda 1.0\n" + scene);
    session.lookOrthographic(extent);
    session.renderer->setLighting({});
    return session.render("color", samples);
}

} // namespace vesk::tests::contract
