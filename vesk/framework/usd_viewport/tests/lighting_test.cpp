#include "viewport_fixture.h"

#include <vesk/usd/hydra_renderer/lighting.h>

#include <cmath>

namespace vesk::framework::usd_viewport::tests {
namespace {

template <class T, class = void>
struct HasEquality : std::false_type
{};
template <class T>
struct HasEquality<T, std::void_t<decltype(std::declval<const T&>() == std::declval<const T&>())>>
    : std::true_type
{};
static_assert(!HasEquality<LightingModel>::value);

// Read by an initialiser of this file.
const std::string textureSeenEarly = LightingModel().domeLightTexturePath();

class LightingTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        forget();
    }

    const vesk::usd::hydra_renderer::LightingInfo& sent() const { return renderer->lightings.back(); }
};

TEST_F(LightingTest, StartsWithItsDefaults)
{
    const LightingModel lighting;
    EXPECT_EQ(lighting.domeLightTexturePath(), "");
    EXPECT_EQ(lighting.lightingRotationDegrees(), 0.0f);
    EXPECT_EQ(lighting.lightingExposure(), 0.0f);
    EXPECT_FALSE(lighting.defaultLightingEnabled());
    EXPECT_TRUE(lighting.sceneLightingEnabled());
}

TEST_F(LightingTest, HasAnEmptyDefaultTextureBeforeAnythingIsInitialised) { EXPECT_EQ(textureSeenEarly, ""); }

TEST_F(LightingTest, StoresWhatItIsGiven)
{
    LightingModel lighting;
    lighting.setLightingRotationDegrees(-1e30f);
    lighting.setLightingExposure(std::nanf(""));
    lighting.setDomeLightTexturePath("a.exr");
    lighting.setDefaultLightingEnabled(true);
    lighting.setSceneLightingEnabled(false);
    const LightingModel copy = lighting;
    EXPECT_EQ(copy.lightingRotationDegrees(), -1e30f);
    EXPECT_TRUE(std::isnan(copy.lightingExposure()));
    EXPECT_EQ(copy.domeLightTexturePath(), "a.exr");
    EXPECT_TRUE(copy.defaultLightingEnabled());
    EXPECT_FALSE(copy.sceneLightingEnabled());
    lighting.setDomeLightTexturePath(lighting.domeLightTexturePath());
    EXPECT_EQ(lighting.domeLightTexturePath(), "a.exr");
}

TEST_F(LightingTest, TakesTheDefaultTextureOfItsMoment)
{
    LightingModel early;
    LightingModel::setDefaultDomeLightTexture("P");
    LightingModel::setDefaultDomeLightTexture(LightingModel::defaultDomeLightTexture());
    EXPECT_EQ(LightingModel().domeLightTexturePath(), "P");
    EXPECT_EQ(makeModel()->lighting().domeLightTexturePath(), "P");
    EXPECT_EQ(early.domeLightTexturePath(), "");
    early.setLightingExposure(3.0f);
    early.setDefaultLightingEnabled(true);
    early.setSceneLightingEnabled(false);
    early.setLightingRotationDegrees(90.0f);
    early.resetLighting();
    EXPECT_EQ(early.domeLightTexturePath(), "P");
    EXPECT_EQ(early.lightingExposure(), 0.0f);
    EXPECT_EQ(early.lightingRotationDegrees(), 0.0f);
    EXPECT_FALSE(early.defaultLightingEnabled());
    EXPECT_TRUE(early.sceneLightingEnabled());
}

TEST_F(LightingTest, WithoutDefaultLightsSendsTheMaterialAlone)
{
    LightingModel lighting;
    lighting.setSceneLightingEnabled(false);
    model->setLighting(lighting);
    EXPECT_TRUE(sent().lights.empty());
    EXPECT_FALSE(sent().domeLightVisible);
    EXPECT_EQ(sent().sceneAmbient, GfVec4f(0, 0, 0, 1));
    EXPECT_FALSE(sent().sceneLightsEnabled);
    EXPECT_EQ(sent().material, vesk::usd::hydra_renderer::createDefaultSimpleMaterial().takeValue());
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setLighting"});
    expectSilence();
}

TEST_F(LightingTest, WithDefaultLightsSendsTheRigTurnedByTheDegreesGiven)
{
    LightingModel lighting;
    lighting.setDefaultLightingEnabled(true);
    lighting.setLightingRotationDegrees(90.0f);
    model->setLighting(lighting);
    EXPECT_EQ(sent().lights, vesk::usd::hydra_renderer::createDefaultLighting("", false, 90.0f).takeValue());
    EXPECT_EQ(sent().sceneAmbient, GfVec4f(0.01f, 0.01f, 0.01f, 1.0f));
    EXPECT_FALSE(sent().domeLightVisible);
    EXPECT_TRUE(sent().sceneLightsEnabled);
}

TEST_F(LightingTest, KeepsTheExposureToItself)
{
    LightingModel lighting;
    model->setLighting(lighting);
    lighting.setLightingExposure(2.0f);
    model->setLighting(lighting);
    ASSERT_EQ(renderer->lightings.size(), 2u);
    EXPECT_EQ(renderer->lightings[0].material, renderer->lightings[1].material);
    EXPECT_EQ(renderer->lightings[0].sceneAmbient, renderer->lightings[1].sceneAmbient);
    EXPECT_EQ(model->lighting().lightingExposure(), 2.0f);
}

TEST_F(LightingTest, ResettingTheViewportSendsTheSameAgain)
{
    LightingModel lighting;
    lighting.setDefaultLightingEnabled(true);
    lighting.setLightingRotationDegrees(30.0f);
    model->setLighting(lighting);
    model->resetLighting();
    ASSERT_EQ(renderer->lightings.size(), 2u);
    EXPECT_EQ(renderer->lightings[0].lights, renderer->lightings[1].lights);
    EXPECT_TRUE(model->lighting().defaultLightingEnabled());
    EXPECT_EQ(model->lighting().lightingRotationDegrees(), 30.0f);
}

TEST_F(LightingTest, ResettingFirstSendsTheDefaults)
{
    model->resetLighting();
    EXPECT_TRUE(sent().lights.empty());
    EXPECT_TRUE(sent().sceneLightsEnabled);
}

TEST_F(LightingTest, AnUnreadableTextureIsLoggedAndThrownAfterTheLightingWasKept)
{
    LightingModel lighting;
    lighting.setDefaultLightingEnabled(true);
    lighting.setDomeLightTexturePath("/nowhere/dome.exr");
    const auto expected =
        vesk::usd::hydra_renderer::createDefaultLighting("/nowhere/dome.exr", false, 0.0f).code();
    try {
        model->setLighting(lighting);
        FAIL();
    } catch (const vesk::base::error_handling::Exception& error) {
        EXPECT_EQ(error.code(), expected);
    }
    EXPECT_EQ(log.takeTexts(),
              std::vector<std::string>{"CheckResult: error " + expected.message() +
                                       " (category: " + expected.category().name() +
                                       ", code: " + std::to_string(expected.value()) +
                                       ") in result of type " + typeid(std::vector<GlfSimpleLight>).name()});
    EXPECT_TRUE(renderer->calls.empty());
    EXPECT_EQ(model->lighting().domeLightTexturePath(), "/nowhere/dome.exr");
    model->setLighting(LightingModel());
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setLighting"});
}

TEST_F(LightingTest, AFailureOfTheRendererReachesTheCallerAfterTheLightingWasKept)
{
    renderer->onCall = [](const std::string&) { throw std::runtime_error("device lost"); };
    LightingModel lighting;
    lighting.setLightingExposure(4.0f);
    EXPECT_THROW(model->setLighting(lighting), std::runtime_error);
    renderer->onCall = nullptr;
    EXPECT_EQ(model->lighting().lightingExposure(), 4.0f);
}

TEST_F(LightingTest, TheModelsOwnLightingCanBeSet)
{
    LightingModel lighting;
    lighting.setDomeLightTexturePath("x.hdr");
    model->setLighting(lighting);
    model->setLighting(model->lighting());
    EXPECT_EQ(model->lighting().domeLightTexturePath(), "x.hdr");
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
