#include "bench_scenes.h"

#include <tests/benchmarking/rounds.h>
#include <vesk/base/thread_pool.h>
#include <vesk/framework/hydra_renderer/hydra_renderer.h>
#include <vesk/framework/hydra_renderer/renderer_registry.h>
#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/renderers/embree/embree_renderer.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <unistd.h>

PXR_NAMESPACE_USING_DIRECTIVE

// What a host waits for, through the public interface: 1280 x 720 pixels, 10^6 triangles.

namespace vesk::renderers::embree::bench {
namespace {

using framework::hydra_renderer::HydraRenderer;
using framework::hydra_renderer::HydraRenderJobResult;
using framework::hydra_renderer::RenderParameters;
using framework::usd_document::UsdDocument;
using tests::compare;
using tests::Goal;
using tests::Nanoseconds;
using tests::reportMedian;
using Clock = std::chrono::steady_clock;

/// A document with the sheet and a renderer that shows it.
struct Session
{
    explicit Session(bool refines)
    {
        registerEmbreeRenderer();
        file = std::filesystem::temp_directory_path() /
               ("vesk_latency_bench_" + std::to_string(::getpid()) + (refines ? "_a" : "_b") + ".usdc");
        makeSheet(kMillionSide)->GetRootLayer()->Export(file.string());
        document = UsdDocument::open(file);
        renderer =
            HydraRenderer::create(document->getEventBus().get(), document, nullptr, kRendererId, {},
                                  GfVec2i(1280, 720), 1, true, true, refines, {}, [this](bool) { ++images; });
        renderer->setCamera(makeCamera(1.9));
        renderer->setGridEnabled(false);
        RenderParameters once;
        once.samples = 1;
        renderer->renderFrame(once).wait();
    }
    ~Session()
    {
        renderer.reset();
        document.reset();
        std::error_code ignored;
        std::filesystem::remove(file, ignored);
    }

    std::filesystem::path file;
    std::atomic<int> images{0};
    std::shared_ptr<UsdDocument> document;
    std::unique_ptr<HydraRenderer> renderer;
};

Session& session()
{
    static Session made(true);
    return made;
}

// The renderer's frame takes what a host does with the outputs' pixels in its hands; the rival is a bare loop
// on the same threads.
void BM_PrimIdFrame(benchmark::State& state)
{
    static Session s(false);
    static const std::unique_ptr<FrameView> view = makeView(makeSheet(kMillionSide), makeSettings(), 1.9);
    RenderParameters parameters;
    parameters.aovs = {TfToken("primId")};
    std::size_t others = 0;
    const auto frame = [&] {
        const auto result = s.renderer->renderFrame(parameters).get();
        for (const std::size_t pixel : {std::size_t(0), std::size_t(1280 * 720 - 1)}) {
            std::int32_t id = -1;
            std::memcpy(&id, result.aovs.at(0).second.bytes->data() + pixel * sizeof(id), sizeof(id));
            others += id != 0;
        }
    };
    const auto bare = [&] {
        std::atomic<std::size_t> hits{0};
        base::parallelFor(720 / 16, 1, [&](std::size_t first, std::size_t last) {
            for (std::size_t row = first; row < last; ++row) {
                for (int x = 0; x < 1280; x += 16)
                    hits += traceBarePackets(*view, {x, int(row) * 16, x + 16, int(row) * 16 + 16});
            }
        });
        others += hits != 1280 * 720;
    };
    compare(state, 1, Goal{1.6}, frame, bare);
    if (others > 0) state.SkipWithError("not every pixel shows the sheet");
}
BENCHMARK(BM_PrimIdFrame)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(2.0);

// Begins to refine a picture of a new camera; there is a first image of it on return.
base::Future<HydraRenderJobResult> beginToRefine(Session& s, double width)
{
    const int images = s.images;
    s.renderer->setCamera(makeCamera(width));
    const auto frame = s.renderer->renderFrame({});
    while (s.images == images)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return frame;
}

// What a viewport does in a bracket: a new camera, a fast frame, its pixels. \param refining whether a frame
// of the former camera is being refined then
void measureFirstImages(benchmark::State& state, bool refining)
{
    Session& s = session();
    std::vector<Nanoseconds> times;
    RenderParameters fast;
    fast.untilConverged = false;
    fast.aovs = {TfToken("color")};
    double width = 1.9;
    for (auto _ : state) {
        const auto former = beginToRefine(s, width *= 0.999);
        if (!refining) {
            s.renderer->renderFrame(fast).wait();
            former.wait();
        }
        const auto begin = Clock::now();
        s.renderer->setCamera(makeCamera(width *= 0.999));
        const auto result = s.renderer->renderFrame(fast).get();
        times.push_back(Clock::now() - begin);
        state.SetIterationTime(times.back().count() * 1e-9);
        if (result.aovs.at(0).second.bytes->at(4 * (360 * 1280 + 640)) == 0)
            state.SkipWithError("the image does not show the sheet");
        former.wait();
    }
    reportMedian(state, times, std::chrono::milliseconds(50));
}
void BM_CameraToFirstImage(benchmark::State& state) { measureFirstImages(state, false); }
BENCHMARK(BM_CameraToFirstImage)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(1.0);
void BM_CameraToFirstImageWhileRefining(benchmark::State& state) { measureFirstImages(state, true); }
BENCHMARK(BM_CameraToFirstImageWhileRefining)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(1.0);

void BM_CameraToConvergedImage(benchmark::State& state)
{
    Session& s = session();
    double width = 1.9;
    for (auto _ : state) {
        s.renderer->setCamera(makeCamera(width *= 0.999));
        const auto result = s.renderer->renderFrame({}).get();
        if (!result.converged || result.samples != 16) state.SkipWithError("the image is not converged");
    }
}
BENCHMARK(BM_CameraToConvergedImage)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

void measurePicks(benchmark::State& state, bool refining)
{
    Session& s = session();
    std::vector<Nanoseconds> times;
    unsigned i = 0;
    base::Future<HydraRenderJobResult> former = beginToRefine(s, 1.85);
    if (!refining) former.wait();
    for (auto _ : state) {
        if (refining) std::this_thread::sleep_for(std::chrono::milliseconds(3)); // somewhere in a pass
        if (refining && former.isReady()) former = beginToRefine(s, i % 2 ? 1.9 : 1.8);
        const float x = static_cast<float>(++i * 7919u % 1280u) + 0.5f;
        const auto begin = Clock::now();
        if (!s.renderer->singlePointPicking(x, 360.5f, 0.0f).get().hit)
            state.SkipWithError("a pick on the sheet misses it");
        times.push_back(Clock::now() - begin);
        state.SetIterationTime(times.back().count() * 1e-9);
    }
    reportMedian(state, times, refining ? Nanoseconds(0) : std::chrono::milliseconds(1));
    former.wait();
}
void BM_PickThroughItsFuture(benchmark::State& state) { measurePicks(state, false); }
BENCHMARK(BM_PickThroughItsFuture)->Unit(benchmark::kMicrosecond)->UseManualTime();
void BM_PickWhileRefining(benchmark::State& state) { measurePicks(state, true); }
BENCHMARK(BM_PickWhileRefining)->Unit(benchmark::kMicrosecond)->UseManualTime()->Iterations(300);

} // namespace
} // namespace vesk::renderers::embree::bench
