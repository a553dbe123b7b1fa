#include <vesk/usd/hydra_renderer/lighting.h>

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::usd::hydra_renderer {
namespace {

std::vector<GlfSimpleLight> makeRig(float rotation, bool shadows = false)
{
    return createDefaultLighting({}, shadows, rotation).takeValue();
}

TEST(DefaultLighting, HoldsThreeDistantLightsOfTheCameraAndOneDomeOfTheWorld)
{
    const std::vector<GlfSimpleLight> lights = makeRig(0.0f);
    ASSERT_EQ(lights.size(), 4u);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(lights[i].IsCameraSpaceLight());
        EXPECT_FALSE(lights[i].IsDomeLight());
        EXPECT_EQ(lights[i].GetPosition()[3], 0.0f);
        const GfVec4f p = lights[i].GetPosition();
        EXPECT_NEAR(std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]), 1.0, 1e-6);
    }
    EXPECT_TRUE(lights[3].IsDomeLight());
    EXPECT_FALSE(lights[3].IsCameraSpaceLight());
}

TEST(DefaultLighting, TurnsCounterClockwiseSeenFromAbove)
{
    // A quarter turn about +Y takes x to -z and z to x.
    const GfVec4f before = makeRig(0.0f)[0].GetPosition();
    const GfVec4f after = makeRig(90.0f)[0].GetPosition();
    EXPECT_NEAR(after[0], before[2], 1e-6);
    EXPECT_NEAR(after[1], before[1], 1e-6);
    EXPECT_NEAR(after[2], -before[0], 1e-6);
    const GfVec3d x = makeRig(90.0f)[3].GetTransform().TransformDir(GfVec3d(1, 0, 0));
    EXPECT_NEAR(x[2], -1.0, 1e-12);
}

TEST(DefaultLighting, TakesARotationThatIsNotFiniteAsNone)
{
    const GfVec4f still = makeRig(0.0f)[0].GetPosition();
    EXPECT_EQ(makeRig(std::numeric_limits<float>::quiet_NaN())[0].GetPosition(), still);
    EXPECT_EQ(makeRig(std::numeric_limits<float>::infinity())[0].GetPosition(), still);
}

TEST(DefaultLighting, LetsOnlyTheKeyLightCastShadowsAndOnlyWhenAsked)
{
    EXPECT_FALSE(makeRig(0.0f, false)[0].HasShadow());
    EXPECT_TRUE(makeRig(0.0f, true)[0].HasShadow());
    EXPECT_FALSE(makeRig(0.0f, true)[1].HasShadow());
}

TEST(DefaultLighting, RefusesATextureThatIsMissing)
{
    auto result = createDefaultLighting("/nowhere/sky.hdr", false, 0.0f);
    ASSERT_FALSE(result.hasValue());
    EXPECT_EQ(result.takeError(), std::errc::no_such_file_or_directory);
}

TEST(DefaultLighting, RefusesAFolderAnUnknownKindAndANameWithANulCharacter)
{
    const auto folder = std::filesystem::temp_directory_path();
    EXPECT_EQ(createDefaultLighting(folder, false, 0.0f).takeError(), std::errc::is_a_directory);
    const auto text = folder / "vesk_lighting_test_sky.txt";
    std::ofstream(text) << "no image";
    EXPECT_EQ(createDefaultLighting(text, false, 0.0f).takeError(), std::errc::not_supported);
    std::filesystem::remove(text);
    EXPECT_EQ(createDefaultLighting(std::string("a\0b.hdr", 7), false, 0.0f).takeError(),
              std::errc::invalid_argument);
}

TEST(DefaultLighting, NamesTheTextureThatItWasGiven)
{
    const auto image = std::filesystem::temp_directory_path() / "vesk_lighting_test_sky.hdr";
    std::ofstream(image) << "#?RADIANCE\n";
    const auto lights = createDefaultLighting(image, false, 0.0f).takeValue();
    std::filesystem::remove(image);
    EXPECT_EQ(lights.at(3).GetDomeLightTextureFile().GetAssetPath(), image.string());
}

TEST(DefaultMaterial, IsANeutralOpaqueGrey)
{
    const GlfSimpleMaterial material = createDefaultSimpleMaterial().takeValue();
    const GfVec4f diffuse = material.GetDiffuse();
    EXPECT_EQ(diffuse[0], diffuse[1]);
    EXPECT_EQ(diffuse[1], diffuse[2]);
    EXPECT_EQ(diffuse[3], 1.0f);
    EXPECT_GT(diffuse[0], 0.0f);
}

TEST(LightingInfo, BeginsWithoutLightsAndWithTheScenesOwn)
{
    const LightingInfo info;
    EXPECT_TRUE(info.lights.empty());
    EXPECT_FALSE(info.domeLightVisible);
    EXPECT_EQ(info.sceneAmbient, GfVec4f(0, 0, 0, 1));
    EXPECT_TRUE(info.sceneLightsEnabled);
}

} // namespace
} // namespace vesk::usd::hydra_renderer
