#include "contract_session.h"

#include <tests/support/scene_files.h>

#include <cmath>
#include <string>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

// A square in the ground plane that reflects half of what falls on it evenly and mirrors nothing: looked at
// straight on it shows 0.5 * E / pi, E being the light that falls on it.
std::string litSquare(const std::string& lights)
{
    return R"(#usda 1.0
def Mesh "Square" ( prepend apiSchemas = ["MaterialBindingAPI"] ) {
    uniform token subdivisionScheme = "none"
    int[] faceVertexCounts = [4]
    int[] faceVertexIndices = [0, 1, 2, 3]
    point3f[] points = [(-1, -1, 0), (1, -1, 0), (1, 1, 0), (-1, 1, 0)]
    rel material:binding = </Look>
}
def Material "Look" { token outputs:surface.connect = </Look/S.outputs:surface>
    def Shader "S" { uniform token info:id = "UsdPreviewSurface"
        color3f inputs:diffuseColor = (0.5, 0.5, 0.5)
        int inputs:useSpecularWorkflow = 1
        color3f inputs:specularColor = (0, 0, 0)
        float inputs:roughness = 1
        token outputs:surface
    }
}
)" + lights;
}

Picture render(const std::string& rendererId, const std::string& scene, int samples = 64)
{
    ContractSession session(rendererId, scene, 40, 40);
    session.lookOrthographic(2.0);
    session.renderer->setLighting({}); // no rig, the stage's own lights
    return session.render("color", samples);
}

double middle(const Picture& p, int channel = 0) { return p.byte(20, 20, channel) / 255.0; }

constexpr double kPi = 3.14159265358979;

TEST_P(EveryDrawingRenderer, LightsByADistantLightAsItsNormalisedIntensitySays)
{
    const Picture p = render(GetParam(), litSquare(R"(def DistantLight "Sun" {
    float inputs:intensity = 3.14159265
    bool inputs:normalize = 1
})"));
    EXPECT_NEAR(middle(p), 0.5, 0.01);
}

// E = pi * L * (r / d)^2
TEST_P(EveryDrawingRenderer, LightsByASphereAsItsSizeAndDistanceSay)
{
    const Picture p = render(GetParam(), litSquare(R"(def SphereLight "Bulb" {
    float inputs:intensity = 50
    float inputs:radius = 0.5
    double3 xformOp:translate = (0, 0, 5)
    uniform token[] xformOpOrder = ["xformOp:translate"]
})"));
    EXPECT_NEAR(middle(p), 0.5 * 50 * 0.25 / 25, 0.01);
}

TEST_P(EveryDrawingRenderer, DividesANormalisedLightByItsArea)
{
    const Picture p = render(GetParam(), litSquare(R"(def SphereLight "Bulb" {
    float inputs:intensity = 400
    float inputs:radius = 0.5
    bool inputs:normalize = 1
    double3 xformOp:translate = (0, 0, 5)
    uniform token[] xformOpOrder = ["xformOp:translate"]
})"));
    EXPECT_NEAR(middle(p), 0.5 * 400 / (4 * kPi * 0.25) * 0.25 / 25, 0.02);
}

// What falls on the origin from a flat light at height d that looks down: L cos^2 / distance^2, summed up.
template <class Inside>
double irradiance(double radiance, double d, double half, const Inside& inside)
{
    constexpr int kSteps = 400;
    const double step = 2 * half / kSteps;
    double sum = 0.0;
    for (int i = 0; i < kSteps; ++i) {
        for (int j = 0; j < kSteps; ++j) {
            const double x = -half + (i + 0.5) * step;
            const double y = -half + (j + 0.5) * step;
            if (!inside(x, y)) continue;
            const double r2 = x * x + y * y + d * d;
            sum += radiance * d * d / (r2 * r2) * step * step;
        }
    }
    return sum;
}

TEST_P(EveryDrawingRenderer, LightsByARectangleAndByADiskAsTheirShapesSay)
{
    const char* const place = "double3 xformOp:translate = (0, 0, 2)\n"
                              "uniform token[] xformOpOrder = [\"xformOp:translate\"]\n}";
    const Picture rectangle =
        render(GetParam(), litSquare(std::string("def RectLight \"Panel\" { float inputs:intensity = 2\n"
                                                 "float inputs:width = 2\nfloat inputs:height = 2\n") +
                                     place));
    EXPECT_NEAR(middle(rectangle), 0.5 / kPi * irradiance(2, 2, 1, [](double, double) { return true; }),
                0.015);
    const Picture disk = render(
        GetParam(),
        litSquare(
            std::string("def DiskLight \"Panel\" { float inputs:intensity = 2\nfloat inputs:radius = 1\n") +
            place));
    EXPECT_NEAR(middle(disk),
                0.5 / kPi * irradiance(2, 2, 1, [](double x, double y) { return x * x + y * y < 1; }), 0.015);
}

TEST_P(EveryDrawingRenderer, LightsNothingBehindARectangle)
{
    const Picture p = render(GetParam(), litSquare(R"(def RectLight "Panel" { float inputs:intensity = 10
    double3 xformOp:translate = (0, 0, 2)
    float3 xformOp:rotateXYZ = (180, 0, 0)
    uniform token[] xformOpOrder = ["xformOp:translate", "xformOp:rotateXYZ"]
})"));
    EXPECT_EQ(middle(p), 0.0);
}

// A thin cylinder shows the width 2 r: the sum over its length of L 2 r cos^2 / distance^2, one cosine at the
// square and one at the tube, which turns away along its length.
TEST_P(EveryDrawingRenderer, LightsByACylinderAlongItsLength)
{
    const Picture p = render(GetParam(), litSquare(R"(def CylinderLight "Tube" { float inputs:intensity = 20
    float inputs:radius = 0.05
    float inputs:length = 2
    double3 xformOp:translate = (0, 0, 2)
    uniform token[] xformOpOrder = ["xformOp:translate"]
})"));
    double expected = 0.0;
    for (int i = 0; i < 1000; ++i) {
        const double x = -1 + (i + 0.5) * 0.002;
        const double r2 = x * x + 4;
        const double cosine = 2 / std::sqrt(r2);
        expected += 20 * 2 * 0.05 * cosine * cosine / r2 * 0.002;
    }
    EXPECT_NEAR(middle(p), 0.5 / kPi * expected, 0.01);
}

TEST_P(EveryDrawingRenderer, DoublesALightWithEachStepOfExposureAndTakesItsColour)
{
    const auto sun = [](const char* inputs) {
        return litSquare(std::string("def DistantLight \"Sun\" { bool inputs:normalize = 1\n") + inputs +
                         "\n}\n");
    };
    const Picture p = render(GetParam(), sun("float inputs:intensity = 0.785398\nfloat inputs:exposure = 2\n"
                                             "color3f inputs:color = (1, 0.5, 0)"));
    EXPECT_NEAR(middle(p, 0), 0.5, 0.01);
    EXPECT_NEAR(middle(p, 1), 0.25, 0.01);
    EXPECT_EQ(middle(p, 2), 0.0);
    const Picture warm =
        render(GetParam(), sun("float inputs:intensity = 2\nfloat inputs:colorTemperature = 2500\n"
                               "bool inputs:enableColorTemperature = 1"));
    EXPECT_GT(middle(warm, 0), middle(warm, 1) * 1.2);
    EXPECT_GT(middle(warm, 1), middle(warm, 2) * 1.2);
}

TEST_P(EveryDrawingRenderer, KeepsALightInsideItsShapingCone)
{
    // The cone of 10 degrees reaches 0.35 far around the middle from a height of 2.
    const Picture p = render(GetParam(), litSquare(R"(def SphereLight "Spot" (
    prepend apiSchemas = ["ShapingAPI"] ) {
    float inputs:intensity = 200
    float inputs:radius = 0.05
    float inputs:shaping:cone:angle = 10
    double3 xformOp:translate = (0, 0, 2)
    uniform token[] xformOpOrder = ["xformOp:translate"]
})"));
    EXPECT_NEAR(middle(p), 0.5 * 200 * 0.0025 / 4, 0.01);
    EXPECT_GT(p.byte(25, 20, 0), 5); // 0.27 to the right
    EXPECT_EQ(p.byte(30, 20, 0), 0); // 0.52
}

TEST_P(EveryDrawingRenderer, CastsShadowsUnlessALightSaysNot)
{
    const std::string blocker = R"(def Plane "Blocker" { double width = 0.5
    double length = 0.5
    double3 xformOp:translate = (0.5, 0, 0.5)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)";
    for (const bool shadows : {true, false}) {
        // The light shines from the right at 45 degrees: the blocker's shadow lies half a unit to its left.
        const Picture p = render(GetParam(), litSquare(blocker + R"(def DistantLight "Sun" {
    float inputs:intensity = 3.14159265
    bool inputs:normalize = 1
    float inputs:angle = 0
    float3 xformOp:rotateXYZ = (0, 45, 0)
    uniform token[] xformOpOrder = ["xformOp:rotateXYZ"]
    bool inputs:shadow:enable = )" + std::string(shadows ? "1" : "0") +
                                                       "\n}\n"));
        EXPECT_NEAR(middle(p), shadows ? 0.0 : 0.5 * std::sqrt(0.5), 0.01) << shadows;
        EXPECT_NEAR(p.byte(5, 20, 0) / 255.0, 0.5 * std::sqrt(0.5), 0.01) << shadows;
    }
}

TEST_P(EveryDrawingRenderer, LightsEvenlyFromADomeOfOneColour)
{
    const Picture p =
        render(GetParam(), litSquare("def DomeLight \"Sky\" { color3f inputs:color = (1, 0.5, 0.25)\n}\n"));
    EXPECT_NEAR(middle(p, 0), 0.5, 0.01);
    EXPECT_NEAR(middle(p, 1), 0.25, 0.01);
    EXPECT_NEAR(middle(p, 2), 0.125, 0.01);
}

} // namespace
} // namespace vesk::tests::contract
