#include <vesk/renderers/recording/recording_renderer.h>

#include <vesk/framework/hydra_renderer/hydra_renderer.h>
#include <vesk/framework/usd_document/usd_document.h>

#include <gtest/gtest.h>

#include <stdexcept>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::recording {
namespace {

using namespace framework::hydra_renderer;

class RecordingRendererTest : public testing::Test
{
protected:
    RecordingRendererTest() { registerRecordingRenderer(log); }

    std::unique_ptr<HydraRenderer> make()
    {
        return HydraRenderer::create(nullptr, nullptr, nullptr, kRendererId, {}, GfVec2i(151, 49), 5, true,
                                     false, true, {},
                                     [this](bool converged) { rendered.push_back(converged); });
    }

    std::shared_ptr<RecordingLog> log = std::make_shared<RecordingLog>();
    std::vector<bool> rendered;
};

TEST_F(RecordingRendererTest, RemembersItsBirthWithWhatItWasGivenAndItsDeath)
{
    make().reset();
    const std::vector<RecordedCall> calls = log->calls();
    ASSERT_EQ(log->operations(), (std::vector<std::string>{"create", "destroy"}));
    EXPECT_EQ(calls[0].get<GfVec2i>("renderSize"), GfVec2i(151, 49));
    EXPECT_EQ(calls[0].get<std::string>("rendererId"), "recording");
    EXPECT_EQ(calls[0].get<int>("viewportId"), 5);
    EXPECT_TRUE(calls[0].get<bool>("enableSceneMaterials"));
    EXPECT_FALSE(calls[0].get<bool>("enableColorCorrection"));
    EXPECT_FALSE(calls[0].get<bool>("progressCallback"));
    EXPECT_TRUE(calls[0].get<bool>("afterRenderCallback"));
}

TEST_F(RecordingRendererTest, NamesEveryOperationAsTheInterfaceDoes)
{
    const auto r = make();
    log->clear();
    r->setDocument(nullptr);
    r->switchRenderer("x", {});
    r->setPresentationModeEnabled(true);
    r->setRenderSize(3, 4);
    r->setCamera(SdfPath("/Cam"));
    r->setCameraFitPolicy(CameraUtilCrop);
    r->setLighting({});
    r->setTiledRenderWindow(GfVec4i(1, 2, 3, 4));
    r->setCurrentTime(7.5);
    r->setRenderProxyGeometry(true);
    r->setRenderSelectionVisualization(false);
    r->setSelectionPaths({SdfPath("/A")});
    r->setSelectionColor(GfVec4f(1.0f));
    r->setHighlightedPaths({});
    r->setHighlightColor(GfVec4f(1.0f));
    r->setGridAboveColor(GfVec4f(1.0f));
    r->setGridBelowColor(GfVec4f(1.0f));
    r->setGridThickness(2.0f);
    r->setGridEnabled(false);
    r->setOutlineThickness(3.0f);
    r->setClearColor(GfVec4f(0.5f));
    r->setColorCorrectionMode(TfToken("sRGB"));
    r->setDrawMode(TfToken("points"));
    r->setPostProcessingDebugMode(TfToken("depth"));
    r->setAfterRenderCallback({});
    r->singlePointPicking(1.0f, 2.0f, 3.0f);
    r->colorPicking({1.0f, 2.0f}, TfToken("color"));
    r->captureFrame("a.png", TfToken("color"), true, GfVec4f(1.0f), 4);
    r->captureFrames({}, false);
    r->renderFrame({});
    std::vector<std::string> expected;
    for (int i = static_cast<int>(Operation::SetDocument); i < kOperationCount; ++i) {
        expected.emplace_back(operationName(static_cast<Operation>(i)));
    }
    EXPECT_EQ(log->operations(), expected);
}

TEST_F(RecordingRendererTest, KeepsWhichAlternativeOfTheCameraItWasGiven)
{
    const auto r = make();
    log->clear();
    GfCamera camera;
    camera.SetFocalLength(35.0f);
    r->setCamera(camera);
    r->setCamera(SdfPath("/Cam"));
    EXPECT_EQ(log->calls()[0].get<GfCamera>("camera").GetFocalLength(), 35.0f);
    EXPECT_EQ(log->calls()[1].get<SdfPath>("camera"), SdfPath("/Cam"));
    EXPECT_THROW(log->calls()[1].get<SdfPath>("path"), std::out_of_range);
}

TEST_F(RecordingRendererTest, AnswersAtOnceUnlessItIsHandFed)
{
    const auto r = make();
    EXPECT_FALSE(r->singlePointPicking(0, 0, 0).get().hit);
    EXPECT_TRUE(r->renderFrame({}).get().converged);
    EXPECT_TRUE(r->captureFrames({}, false).isReady());
    EXPECT_EQ(r->colorPicking({0, 0}, TfToken("color")).get(), GfVec4f(0, 0, 0, 1));
    EXPECT_EQ(log->openCount(), 0u);
}

TEST_F(RecordingRendererTest, EndsHandFedFuturesOldestFirst)
{
    log->setHandFed(true);
    const auto r = make();
    const auto first = r->singlePointPicking(0, 0, 0);
    const auto second = r->singlePointPicking(1, 1, 0);
    PickingResult result;
    result.hit = true;
    result.primPath = "/A";
    EXPECT_TRUE(log->answerPick(result));
    EXPECT_TRUE(first.isReady());
    EXPECT_FALSE(second.isReady());
    EXPECT_EQ(first.get().primPath, "/A");
    EXPECT_TRUE(log->failPick(std::make_exception_ptr(std::runtime_error("lost"))));
    EXPECT_THROW(second.get(), std::runtime_error);
    EXPECT_FALSE(log->answerPick(result));
}

TEST_F(RecordingRendererTest, BreaksItsOwnOpenFuturesWhenItDies)
{
    log->setHandFed(true);
    auto dying = make();
    const auto living = make();
    const auto lost = dying->captureFrames({}, false);
    const auto kept = living->captureFrames({}, false);
    dying.reset();
    EXPECT_TRUE(lost.isReady());
    EXPECT_THROW(lost.get(), base::FutureError);
    EXPECT_FALSE(kept.isReady());
    EXPECT_EQ(log->openCount(), 1u);
    EXPECT_TRUE(log->answerCapture());
    EXPECT_NO_THROW(kept.get());
}

TEST_F(RecordingRendererTest, SharesItsSequenceWithOtherObservers)
{
    auto sequence = std::make_shared<std::atomic<std::uint64_t>>(40);
    log->setSequence(sequence);
    const auto r = make();
    const std::uint64_t between = sequence->fetch_add(1);
    r->setGridEnabled(true);
    const auto calls = log->calls();
    EXPECT_EQ(calls[0].sequence, 40u);
    EXPECT_EQ(between, 41u);
    EXPECT_EQ(calls[1].sequence, 42u);
}

TEST_F(RecordingRendererTest, LetsWhatItsObserverThrowsLeaveTheOperation)
{
    const auto r = make();
    log->setObserver([](const RecordedCall& call) {
        if (call.operation == Operation::SetGridEnabled) throw std::runtime_error("no grid");
    });
    EXPECT_NO_THROW(r->setGridThickness(1.0f));
    EXPECT_THROW(r->setGridEnabled(true), std::runtime_error);
    EXPECT_EQ(log->operations().back(), "setGridEnabled");
}

TEST_F(RecordingRendererTest, CountsAndKeepsNothingWhileOnlyCounting)
{
    const auto r = make();
    log->clear();
    log->setCountOnly(true);
    for (int i = 0; i < 10; ++i) {
        r->setCurrentTime(i);
    }
    EXPECT_TRUE(log->calls().empty());
    EXPECT_EQ(log->count(Operation::SetCurrentTime), 10u);
    log->setCountOnly(false);
    r->setCurrentTime(11);
    EXPECT_EQ(log->calls().size(), 1u);
}

TEST_F(RecordingRendererTest, CallsTheNewestAfterRenderCallback)
{
    const auto r = make();
    EXPECT_TRUE(log->callAfterRender(true));
    EXPECT_EQ(rendered, std::vector<bool>{true});
    r->setAfterRenderCallback({});
    EXPECT_FALSE(log->callAfterRender(true));
}

TEST_F(RecordingRendererTest, KeepsNoReferenceToTheDocument)
{
    const auto document = framework::usd_document::UsdDocument::create();
    const auto r = make();
    const long before = document.use_count();
    r->setDocument(document);
    EXPECT_EQ(document.use_count(), before);
    EXPECT_EQ(log->calls().back().get<std::string>("document"), document->getId());
}

} // namespace
} // namespace vesk::renderers::recording
