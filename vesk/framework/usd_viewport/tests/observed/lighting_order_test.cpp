// What setting the lighting asks of the library that builds lights, and what becomes of its failures.
#include "observed_fixture.h"

#include <vesk/usd/hydra_renderer/lighting.h>
#include <vesk/usd/utils/utils_error.h>

namespace vesk::framework::usd_viewport::tests {
namespace {

using vesk::base::error_handling::Exception;
using vesk::base::error_handling::makeErrorCode;
using vesk::usd::utils::UtilsError;

class LightingOrderTest : public ObservedTest
{
protected:
    static LightingModel rig()
    {
        LightingModel lighting;
        lighting.setDefaultLightingEnabled(true);
        lighting.setDomeLightTexturePath("/textures/sky");
        lighting.setLightingRotationDegrees(90.0f);
        return lighting;
    }

    void expectFailure(const std::error_code& code, const char* type)
    {
        timeline.clear();
        try {
            model->setLighting(rig());
            ADD_FAILURE() << "nothing was thrown";
        } catch (const Exception& error) {
            EXPECT_EQ(error.code(), code);
        }
        EXPECT_EQ(log.takeTexts(), Names{"CheckResult: error " + code.message() +
                                         " (category: UtilsError, code: " + std::to_string(code.value()) +
                                         ") in result of type " + type});
        EXPECT_EQ(renderer->lightings.size(), 0u);
        EXPECT_EQ(model->lighting().domeLightTexturePath(), "/textures/sky");
    }
};

TEST_F(LightingOrderTest, IsKeptThenAMaterialIsMadeThenTheLightsThenTheRendererIsTold)
{
    Names kept;
    utils.onEntry = [&](UtilityCall&) { kept.push_back(model->lighting().domeLightTexturePath()); };
    timeline.clear();
    model->setLighting(rig());
    EXPECT_EQ(timeline, (Names{"utils createDefaultSimpleMaterial", "utils createDefaultLighting",
                               "renderer setLighting"}));
    EXPECT_EQ(kept, (Names{"/textures/sky", "/textures/sky"}));
    const UtilityCall lights = utils.take().back();
    EXPECT_EQ(lights.path.GetString(), "/textures/sky");
    EXPECT_FALSE(lights.proxyGeometry) << "the flag of the rig";
    EXPECT_EQ(lights.factor, 90.0f);
    EXPECT_EQ(renderer->lightings.back().lights.size(), 2u);
}

TEST_F(LightingOrderTest, WithoutTheRigMakesTheMaterialAlone)
{
    timeline.clear();
    model->resetLighting();
    EXPECT_EQ(timeline, (Names{"utils createDefaultSimpleMaterial", "renderer setLighting"}));
}

TEST_F(LightingOrderTest, AMaterialThatFailsIsLoggedAndThrownBeforeAnyLight)
{
    utils.materialError = makeErrorCode(UtilsError::InvalidPrim);
    expectFailure(*utils.materialError, typeid(GlfSimpleMaterial).name());
    EXPECT_EQ(timeline, Names{"utils createDefaultSimpleMaterial"});
}

TEST_F(LightingOrderTest, LightsThatFailAreLoggedAndThrownAndTheNextSuccessCatchesUp)
{
    utils.lightsError = makeErrorCode(UtilsError::InvalidStage);
    expectFailure(*utils.lightsError, typeid(std::vector<GlfSimpleLight>).name());
    EXPECT_EQ(timeline, (Names{"utils createDefaultSimpleMaterial", "utils createDefaultLighting"}));
    utils.lightsError.reset();
    model->resetLighting();
    EXPECT_EQ(renderer->lightings.back().sceneAmbient, GfVec4f(0.01f, 0.01f, 0.01f, 1.0f));
    EXPECT_EQ(renderer->lightings.back().lights.size(), 2u);
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
