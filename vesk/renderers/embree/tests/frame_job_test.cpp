#include "frame_job.h"

#include <tests/support/gate.h>
#include <vesk/base/thread_pool.h>

#include <gtest/gtest.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

using framework::hydra_renderer::RenderParameters;
using tests::Gate;

GfCamera cameraOf(double distance)
{
    GfCamera camera;
    camera.SetTransform(GfMatrix4d(1.0).SetTranslate(GfVec3d(0.0, 0.0, distance)));
    return camera;
}

/// A renderer's core that shows an empty scene.
std::shared_ptr<RendererCore> makeCore(const GfVec2i& size, int samples,
                                       std::function<bool(int, float, bool)> progress = {})
{
    auto core = std::make_shared<RendererCore>(1, std::move(progress));
    core->state.change([&](FrameSettings& s) {
        s.size = size;
        s.samples = samples;
        s.camera = cameraOf(10.0);
    });
    core->setDocument(nullptr);
    return core;
}

/// A frame whose decisions the test makes.
class ProbeFrame : public FrameJob
{
public:
    explicit ProbeFrame(std::shared_ptr<RendererCore> core) : FrameJob(std::move(core)) {}

    void abandon() override { ended.open(); }

    std::function<void()> whenItBegins = [] {};
    std::function<void(int)> whenImage = [](int) {};
    std::function<bool()> isOutdated = [] { return false; };
    bool coarse = false;
    std::vector<int> images;             ///< samples per pixel of each
    std::vector<std::int64_t> imageSize; ///< samples of its pass
    std::vector<float> samples;          ///< of each pixel at the end
    GfCamera camera;                     ///< that the last image shows
    bool converged = false;
    bool failed = false;
    Gate ended;

protected:
    RendererState::Copy _settings() override
    {
        whenItBegins();
        return core()->state.copy();
    }
    FilmParts _wantedParts(const FrameSettings& settings) const override { return partsFor({}, settings); }
    bool _isUrgent() const override { return true; }
    bool _mayBeginCoarse() const override { return coarse; }
    bool _isOutdated() const override { return isOutdated(); }
    bool _goesOn() override { return false; }
    bool _onImage(bool) override
    {
        images.push_back(samplesDone());
        imageSize.push_back(passSamples());
        whenImage(samplesDone());
        return true;
    }
    void _finish(bool isConverged) override
    {
        const auto film = finishedFilm();
        for (std::size_t i = 0; i < film->pixelCount(); ++i)
            samples.push_back(film->pixel(i).samples);
        camera = std::get<GfCamera>(frameSettings().camera);
        converged = isConverged;
        ended.open();
    }
    void _fail(std::exception_ptr) override
    {
        failed = true;
        ended.open();
    }
};

TEST(FrameJob, LeavesAPassAfterTheTilesInHandAndKeepsAWholeImage)
{
    const auto core = makeCore(GfVec2i(320, 160), 4);
    const auto frame = std::make_shared<ProbeFrame>(core);
    std::atomic<int> asked{0};
    frame->isOutdated = [&asked] { return ++asked > 5; }; // not asked before there is an image
    core->addFrame(frame);
    frame->ended.wait();
    EXPECT_EQ(frame->images, std::vector<int>{1});
    EXPECT_FALSE(frame->converged);
    // Five tiles of 16 x 16 pixels got their second sample, no pixel lost its first one.
    EXPECT_EQ(std::count(frame->samples.begin(), frame->samples.end(), 2.0f), 5 * 256);
    EXPECT_EQ(std::count(frame->samples.begin(), frame->samples.end(), 1.0f), 320 * 160 - 5 * 256);
}

TEST(FrameJob, MakesTheFirstImageOfNoMoreSamplesThanTheMachineCanAfford)
{
    const auto core = makeCore(GfVec2i(1280, 720), 1);
    for (int i = 0; i < 60; ++i)
        core->sampleRate(true).note(1.0, 1000); // a slow machine
    const auto frame = std::make_shared<ProbeFrame>(core);
    frame->coarse = true;
    core->addFrame(frame);
    frame->ended.wait();
    EXPECT_EQ(frame->images, (std::vector<int>{0, 1}));
    EXPECT_EQ(frame->imageSize, (std::vector<std::int64_t>{3600, 1280 * 720}));
    EXPECT_TRUE(frame->converged);
}

TEST(FrameJob, NeverMakesTheFirstImageOfALargePictureOfMoreThanSixtyThousandSamples)
{
    const auto core = makeCore(GfVec2i(1280, 720), 1);
    for (int i = 0; i < 60; ++i)
        core->sampleRate(true).note(1e-9, 1000);
    const auto frame = std::make_shared<ProbeFrame>(core);
    frame->coarse = true;
    core->addFrame(frame);
    frame->ended.wait();
    ASSERT_EQ(frame->imageSize.size(), 2u);
    EXPECT_EQ(frame->imageSize[0], 320 * 180);
}

TEST(FrameJob, BeginsTheNextFrameOnlyWhenTheDrawnOneHasEnded)
{
    const auto core = makeCore(GfVec2i(16, 16), 1);
    Gate drawing;
    Gate release;
    const auto drawn = std::make_shared<ProbeFrame>(core);
    drawn->whenImage = [&](int) {
        drawing.open();
        release.wait();
    };
    const auto next = std::make_shared<ProbeFrame>(core);
    std::atomic<bool> begun{false};
    next->whenItBegins = [&begun] { begun = true; };
    core->addFrame(drawn);
    core->addFrame(next);
    drawing.wait();
    const ProbeFrame other(core);
    core->frameEnded(&other);
    Gate othersHadTheirTurn; // what a wrong start would have posted runs before it
    base::defaultExecutor(base::Priority::Low)->post(base::Work([&] { othersHadTheirTurn.open(); }));
    othersHadTheirTurn.wait();
    EXPECT_FALSE(begun);
    release.open();
    next->ended.wait();
    EXPECT_TRUE(begun);
    EXPECT_TRUE(drawn->converged);
}

// A frame that begins again finds that the next one has come: it ends with what it had shown, so that the
// next one waits for no second picture of the same camera.
TEST(FrameJob, EndsWithItsFormerImageWhereTheNextFrameHasComeMeanwhile)
{
    const auto core = makeCore(GfVec2i(16, 16), 64);
    class Restarting final : public ProbeFrame
    {
    public:
        using ProbeFrame::ProbeFrame;

    protected:
        bool _onImage(bool) override
        {
            images.push_back(samplesDone());
            core()->state.change([](FrameSettings& s) { s.camera = cameraOf(20.0); });
            restart();
            return false;
        }
    };
    const auto frame = std::make_shared<Restarting>(core);
    const auto next = std::make_shared<ProbeFrame>(core);
    frame->isOutdated = [&core] { return core->frameIsWaiting(); };
    int begins = 0;
    frame->whenItBegins = [&] {
        if (++begins == 2) core->addFrame(next);
    };
    core->addFrame(frame);
    next->ended.wait();
    EXPECT_EQ(frame->images, std::vector<int>{1});
    EXPECT_EQ(frame->camera.GetTransform(), cameraOf(10.0).GetTransform());
    EXPECT_EQ(next->camera.GetTransform(), cameraOf(20.0).GetTransform());
    EXPECT_TRUE(next->converged);
}

TEST(FrameJob, EndsARefinementForTheNextFrameOfTheWindow)
{
    Gate drawing;
    Gate release;
    const auto core = makeCore(GfVec2i(64, 64), 4096, [&](int samples, float, bool) {
        if (samples == 1) drawing.open();
        release.wait();
        return true;
    });
    const auto refined = std::make_shared<WindowFrame>(core, RenderParameters(), true);
    core->addFrame(refined);
    drawing.wait();
    RenderParameters fast;
    fast.untilConverged = false;
    fast.aovs = {TfToken("color")};
    const auto next = std::make_shared<WindowFrame>(core, fast, true);
    core->addFrame(next);
    release.open();
    EXPECT_EQ(refined->future().get().samples, 1);
    EXPECT_FALSE(refined->future().get().converged);
    EXPECT_EQ(next->future().get().samples, 1);
    EXPECT_EQ(next->future().get().aovs.at(0).second.bytes->size(), 64u * 64u * 4u);
}

// Ids alone need one look at each pixel, whatever the samples of a converged colour are.
TEST(FrameJob, ConvergesWithoutShadingWhereNoColourIsAskedFor)
{
    std::atomic<int> passes{0};
    const auto core = makeCore(GfVec2i(64, 64), 4096, [&passes](int, float, bool) {
        ++passes;
        return true;
    });
    RenderParameters parameters;
    parameters.aovs = {TfToken("primId")};
    const auto frame = std::make_shared<WindowFrame>(core, parameters, true);
    core->addFrame(frame);
    const auto result = frame->future().get();
    EXPECT_TRUE(result.converged);
    EXPECT_EQ(result.samples, 4096);
    EXPECT_EQ(passes, 1);
}

} // namespace
} // namespace vesk::renderers::embree
