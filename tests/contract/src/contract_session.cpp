#include "contract_session.h"
#include "hydra_delegates.h"
#include "shown_for_hydra.h"

#include <pxr/base/gf/matrix4d.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/stage.h>
#include <vesk/renderers/embree/embree_renderer.h>
#include <vesk/renderers/recording/recording_renderer.h>

#include <stdexcept>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

/// Registers the renderers that this build has and returns the ids of those that draw.
std::vector<std::string> registerDrawingRenderers()
{
    renderers::recording::registerRecordingRenderer();
    renderers::embree::registerEmbreeRenderer();
    std::vector<std::string> ids = {"embree"};
    for (const std::string& id : registerHydraDelegates())
        ids.push_back(id);
    return ids;
}

const std::vector<std::string>& drawingRenderers()
{
    static const std::vector<std::string> ids = registerDrawingRenderers();
    return ids;
}

std::vector<std::string> allRenderers()
{
    std::vector<std::string> ids = drawingRenderers();
    ids.insert(ids.begin(), "recording");
    return ids;
}

} // namespace

std::shared_ptr<UsdDocument> openText(const std::string& text, bool manual)
{
    const UsdStageRefPtr stage = UsdStage::CreateInMemory();
    if (!stage->GetRootLayer()->ImportFromString(text))
        throw std::runtime_error("the test's scene is malformed");
    framework::usd_document::DocumentOptions options;
    options.manual = manual;
    return UsdDocument::attach(stage, options);
}

ContractSession::ContractSession(const std::string& rendererId, const std::string& scene, int width,
                                 int height, bool manual)
    : document(openText(scene, manual))
{
    renderer = HydraRenderer::create(document->getEventBus().get(), document, nullptr, rendererId, {},
                                     GfVec2i(width, height), 1, true, false, true, {}, {});
    renderer->setGridEnabled(false);
    renderer->setClearColor(GfVec4f(0.0f, 0.0f, 0.0f, 1.0f));
}

void EveryRenderer::SetUp()
{
    if (GetParam() == "recording" || GetParam() == "embree") return;
    const std::string test = testing::UnitTest::GetInstance()->current_test_info()->name();
    if (shownForHydra().count(test.substr(0, test.find('/'))) == 0)
        GTEST_SKIP() << "not shown to hold for Hydra's delegates";
}

GfCamera makeOrthographicCamera(double extent, double ratio, double distance)
{
    GfCamera camera;
    camera.SetProjection(GfCamera::Orthographic);
    // Apertures of orthographic cameras are tenths of a stage unit.
    camera.SetHorizontalAperture(static_cast<float>(extent / GfCamera::APERTURE_UNIT));
    camera.SetVerticalAperture(static_cast<float>(extent / ratio / GfCamera::APERTURE_UNIT));
    camera.SetTransform(GfMatrix4d(1.0).SetTranslate(GfVec3d(0.0, 0.0, distance)));
    camera.SetClippingRange(GfRange1f(1.0f, 100.0f));
    return camera;
}

void ContractSession::lookOrthographic(double extent, double distance)
{
    renderer->setCamera(makeOrthographicCamera(extent, 1.0, distance));
}

void ContractSession::lookPerspective(double distance)
{
    GfCamera camera;
    camera.SetHorizontalAperture(20.0f);
    camera.SetVerticalAperture(20.0f);
    camera.SetFocalLength(20.0f);
    camera.SetTransform(GfMatrix4d(1.0).SetTranslate(GfVec3d(0.0, 0.0, distance)));
    camera.SetClippingRange(GfRange1f(1.0f, 100.0f));
    renderer->setCamera(camera);
}

void ContractSession::useAmbientLightOnly()
{
    usd::hydra_renderer::LightingInfo lighting;
    lighting.sceneAmbient = GfVec4f(1.0f);
    lighting.sceneLightsEnabled = false;
    renderer->setLighting(lighting);
}

Picture ContractSession::render(const char* aov, int samples)
{
    RenderParameters parameters;
    parameters.samples = samples;
    parameters.aovs = {TfToken(aov)};
    const auto future = renderer->renderFrame(parameters);
    finish(future);
    return Picture(future.get().aovs.at(0).second);
}

namespace {
std::string rendererOf(const testing::TestParamInfo<std::string>& parameter) { return parameter.param; }
} // namespace

INSTANTIATE_TEST_SUITE_P(Contract, EveryRenderer, testing::ValuesIn(allRenderers()), rendererOf);
INSTANTIATE_TEST_SUITE_P(Contract, EveryDrawingRenderer, testing::ValuesIn(drawingRenderers()), rendererOf);

} // namespace vesk::tests::contract
