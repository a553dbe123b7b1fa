#include "viewport_fixture.h"

#include <cmath>
#include <limits>

namespace vesk::framework::usd_viewport::tests {
namespace {

class RenderSettingsTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        forget();
    }

    /// Expects that a call reaches the renderer as that line, each time that it is made, on this thread.
    void expectForward(const std::string& line, const std::function<void()>& call)
    {
        call();
        call();
        EXPECT_EQ(renderer->take(), (std::vector<std::string>{line, line}));
        EXPECT_EQ(renderer->threads.back(), std::this_thread::get_id());
        expectSilence();
    }
};

TEST_F(RenderSettingsTest, ModesReachTheRenderer)
{
    expectForward("setDrawMode wireframe", [this] { model->setDrawMode(TfToken("wireframe")); });
    expectForward("setColorCorrectionMode sRGB", [this] { model->setColorCorrectionMode(TfToken("sRGB")); });
    expectForward("setPostProcessingDebugMode depth",
                  [this] { model->setPostProcessingDebugMode(TfToken("depth")); });
}

TEST_F(RenderSettingsTest, ColoursReachTheRendererEachUnderItsName)
{
    expectForward("setClearColor 1,2,3,4", [this] { model->setClearColor(GfVec4f(1, 2, 3, 4)); });
    expectForward("setGridAboveColor 2,0,0,1", [this] { model->setGridAboveColor(GfVec4f(2, 0, 0, 1)); });
    expectForward("setGridBelowColor 3,0,0,1", [this] { model->setGridBelowColor(GfVec4f(3, 0, 0, 1)); });
    expectForward("setHighlightColor 4,0,0,1", [this] { model->setHighlightColor(GfVec4f(4, 0, 0, 1)); });
    expectForward("setSelectionColor 5,0,0,1", [this] { model->setSelectionColor(GfVec4f(5, 0, 0, 1)); });
}

TEST_F(RenderSettingsTest, SwitchesReachTheRenderer)
{
    for (const bool on : {true, false}) {
        const std::string value = on ? " 1" : " 0";
        expectForward("setPresentationModeEnabled" + value, [&] { model->setPresentationModeEnabled(on); });
        expectForward("setGridEnabled" + value, [&] { model->setGridEnabled(on); });
        expectForward("setRenderProxyGeometry" + value, [&] { model->setRenderProxyGeometry(on); });
        expectForward("setRenderSelectionVisualization" + value,
                      [&] { model->setRenderSelectionVisualization(on); });
    }
}

TEST_F(RenderSettingsTest, NumbersReachTheRenderer)
{
    expectForward("setGridThickness -2", [this] { model->setGridThickness(-2.0f); });
    expectForward("setGridThickness nan", [this] { model->setGridThickness(std::nanf("")); });
    expectForward("setOutlineThickness 3", [this] { model->setOutlineThickness(3.0f); });
    expectForward("setTiledRenderWindow 1 2 3 4",
                  [this] { model->setTiledRenderWindow(GfVec4i(1, 2, 3, 4)); });
}

TEST_F(RenderSettingsTest, PathsReachTheRendererInOrderWithDuplicates)
{
    const std::vector<SdfPath> paths{SdfPath("/B"), SdfPath("/A"), SdfPath("/B")};
    model->setSelectionPaths(paths);
    model->setHighlightedPaths(paths);
    model->setSelectionPaths({});
    EXPECT_EQ(renderer->take(), (std::vector<std::string>{"setSelectionPaths 3", "setHighlightedPaths 3",
                                                          "setSelectionPaths 0"}));
    EXPECT_EQ(renderer->paths[0], paths);
    EXPECT_EQ(renderer->paths[1], paths);
}

TEST_F(RenderSettingsTest, TheAfterRenderCallbackIsTheHostsOwn)
{
    int calls = 0;
    model->setAfterRenderCallback([&calls](bool converged) { calls += converged ? 1 : 10; });
    renderer->afterRenderCallback(true);
    renderer->afterRenderCallback(false);
    EXPECT_EQ(calls, 11);
    model->setAfterRenderCallback(nullptr);
    EXPECT_FALSE(renderer->afterRenderCallback);
}

TEST_F(RenderSettingsTest, TheFitPolicyIsNotKept)
{
    model->setCameraFitPolicy(CameraUtilCrop);
    EXPECT_EQ(renderer->take(),
              std::vector<std::string>{"setCameraFitPolicy " + std::to_string(CameraUtilCrop)});
    EXPECT_EQ(ViewportModel::defaultCameraFitPolicy(), CameraUtilFit);
}

TEST_F(RenderSettingsTest, TheOutlineNeedsNoRenderer)
{
    const_cast<std::unique_ptr<HydraRenderer>&>(model->getRenderer()).reset();
    EXPECT_NO_THROW(model->setOutlineThickness(2.0f));
}

TEST_F(RenderSettingsTest, AFailureOfTheRendererReachesTheCallerAfterTheValueIsKept)
{
    renderer->onCall = [](const std::string&) { throw std::runtime_error("device lost"); };
    const int size[2] = {7, 8};
    EXPECT_THROW(model->setRenderSize(size, 2.0f), std::runtime_error);
    EXPECT_THROW(model->setClearColor(GfVec4f(0)), std::runtime_error);
    renderer->onCall = nullptr;
    EXPECT_EQ(model->renderSize()[0], 7);
    EXPECT_EQ(model->devicePixelRatio(), 2.0f);
    // The same again is no change any more.
    forget();
    model->setRenderSize(size, 2.0f);
    expectSilence();
}

TEST_F(RenderSettingsTest, ARenderSizeThatIsSetAlreadyIsNotSentAgain)
{
    model->setRenderSize(kRenderSize, 1.0f);
    expectSilence();
}

TEST_F(RenderSettingsTest, ARenderSizeIsSentInPhysicalPixelsRoundedTowardsZero)
{
    const int size[2] = {101, 33};
    model->setRenderSize(size, 1.5f);
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setRenderSize 151 49"});
    EXPECT_EQ(model->renderSize()[0], 101);
    EXPECT_EQ(model->renderSize()[1], 33);
    EXPECT_EQ(model->devicePixelRatio(), 1.5f);
    EXPECT_EQ(model->viewportSize()[0], 800);
}

TEST_F(RenderSettingsTest, EachPartOfTheRenderSizeCounts)
{
    const int wider[2] = {1001, 500};
    const int higher[2] = {1001, 501};
    model->setRenderSize(wider, 1.0f);
    model->setRenderSize(higher, 1.0f);
    model->setRenderSize(higher, std::nextafter(1.0f, 2.0f));
    EXPECT_EQ(renderer->take().size(), 3u);
}

TEST_F(RenderSettingsTest, ANaNRatioIsAlwaysAChange)
{
    model->setRenderSize(kRenderSize, std::nanf(""));
    model->setRenderSize(kRenderSize, std::nanf(""));
    EXPECT_EQ(renderer->take(), (std::vector<std::string>{"setRenderSize 0 0", "setRenderSize 0 0"}));
}

TEST_F(RenderSettingsTest, TheRenderSizeIsKeptBeforeTheRendererIsTold)
{
    std::vector<float> kept;
    renderer->onCall = [&](const std::string&) {
        kept = {static_cast<float>(model->renderSize()[0]), static_cast<float>(model->renderSize()[1]),
                model->devicePixelRatio()};
    };
    const int size[2] = {101, 33};
    model->setRenderSize(size, 1.5f);
    renderer->onCall = nullptr;
    EXPECT_EQ(kept, (std::vector<float>{101.0f, 33.0f, 1.5f}));
}

TEST_F(RenderSettingsTest, TheRenderSizeLeavesTheCameraAlone)
{
    const GfCamera before = model->getGfCamera();
    const int size[2] = {101, 33};
    model->setRenderSize(size, 1.5f);
    EXPECT_EQ(model->getGfCamera(), before);
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    EXPECT_TRUE(watched.takeTasks().empty());
}

TEST_F(RenderSettingsTest, TheViewportSizeIsTheModelsOwn)
{
    const int size[2] = {5, 6};
    model->setViewportSize(size);
    EXPECT_EQ(model->viewportSize()[0], 5);
    EXPECT_EQ(model->viewportSize()[1], 6);
    EXPECT_EQ(&model->viewportSize(), &std::as_const(*model).viewportSize());
    expectSilence();
}

TEST_F(RenderSettingsTest, ViewportPointsScaleToTheRenderSize)
{
    const int viewport[2] = {800, 600};
    const int render[2] = {1600, 1200};
    model->setViewportSize(viewport);
    model->setRenderSize(render, 1.0f);
    EXPECT_EQ(model->viewportToRenderCoordinates(400, 300), (std::array<float, 2>{800, 600}));
    const int none[2] = {0, 600};
    model->setViewportSize(none);
    EXPECT_TRUE(std::isinf(model->viewportToRenderCoordinates(400, 300)[0]));
    EXPECT_TRUE(std::isnan(model->viewportToRenderCoordinates(0, 300)[0]));
}

TEST_F(RenderSettingsTest, ViewportPointsAreDividedBeforeTheyAreMultiplied)
{
    const int viewport[2] = {3, 7};
    const int render[2] = {10, 10};
    model->setViewportSize(viewport);
    model->setRenderSize(render, 1.0f);
    EXPECT_EQ(model->viewportToRenderCoordinates(1, 1)[0], (1.0f / 3.0f) * 10.0f);
    EXPECT_EQ(model->viewportToRenderCoordinates(1, 1)[1], (1.0f / 7.0f) * 10.0f);
}

TEST_F(RenderSettingsTest, AFrameIsTheRenderersOwnFuture)
{
    RenderParameters parameters;
    parameters.samples = 12;
    parameters.untilConverged = false;
    const Future<HydraRenderJobResult> frame = model->renderHydraFrame(parameters);
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"renderFrame 12 0"});
    EXPECT_FALSE(frame.isReady());
    HydraRenderJobResult result;
    result.samples = 12;
    renderer->frames.back().setValue(result);
    EXPECT_EQ(frame.get().samples, 12);
}

TEST_F(RenderSettingsTest, ACaptureGetsItsArgumentsInOrder)
{
    const Future<void> with =
        model->captureHydraFrame("/tmp/a.png", TfToken("color"), true, GfVec4f(1, 2, 3, 4), 5);
    const Future<void> without =
        model->captureHydraFrame("/tmp/b.exr", TfToken("depth"), false, std::nullopt, 0);
    EXPECT_EQ(renderer->take(), (std::vector<std::string>{"captureFrame /tmp/a.png color 1 1,2,3,4 5",
                                                          "captureFrame /tmp/b.exr depth 0 none 0"}));
    renderer->captures[0].setValue();
    renderer->captures[1].setError(std::make_exception_ptr(std::runtime_error("disk full")));
    EXPECT_EQ(with.error(), nullptr);
    EXPECT_THROW(without.get(), std::runtime_error);
}

TEST_F(RenderSettingsTest, ACaptureOfSeveralOutputsKeepsTheirOrder)
{
    AovCaptureRequest color;
    color.path = "a.png";
    AovCaptureRequest depth;
    depth.path = "b.exr";
    const Future<void> capture = model->captureHydraFrames({color, depth}, true);
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"captureFrames 2 1"});
    EXPECT_EQ(renderer->captureRequests[0].path, "a.png");
    EXPECT_EQ(renderer->captureRequests[1].path, "b.exr");
    renderer->captures.back().setValue();
    EXPECT_TRUE(capture.isReady());
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
