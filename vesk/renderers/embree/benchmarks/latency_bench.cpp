#include "bench_scenes.h"

#include <vesk/framework/hydra_renderer/hydra_renderer.h>
#include <vesk/framework/hydra_renderer/renderer_registry.h>
#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/renderers/embree/embree_renderer.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>

PXR_NAMESPACE_USING_DIRECTIVE

// From a new camera to its images, through the public interface: 1280 x 720 pixels, 10^6 triangles.

namespace vesk::renderers::embree::bench {
namespace {

using framework::hydra_renderer::HydraRenderer;
using framework::hydra_renderer::RenderParameters;
using framework::usd_document::UsdDocument;
using Clock = std::chrono::steady_clock;

/// Remembers when the first image of a frame came.
class ImageWatch
{
public:
    void begin()
    {
        const std::lock_guard lock(m_mutex);
        m_start = Clock::now();
        m_first = 0.0;
    }
    void onImage()
    {
        const std::lock_guard lock(m_mutex);
        if (m_first == 0.0) m_first = std::chrono::duration<double>(Clock::now() - m_start).count();
    }
    double first() const
    {
        const std::lock_guard lock(m_mutex);
        return m_first;
    }

private:
    mutable std::mutex m_mutex;
    Clock::time_point m_start;
    double m_first = 0.0;
};

struct Session
{
    Session()
    {
        registerEmbreeRenderer();
        file = std::filesystem::temp_directory_path() / "vesk_latency_bench.usda";
        makeSheet(707)->GetRootLayer()->Export(file.string());
        document = UsdDocument::open(file);
        renderer = HydraRenderer::create(document->getEventBus().get(), document, nullptr, kRendererId, {},
                                         GfVec2i(1280, 720), 1, true, true, true, {},
                                         [this](bool) { watch.onImage(); });
        renderer->setCamera(makeCamera(1.9));
        renderer->renderFrame({}).wait();
    }
    ~Session()
    {
        renderer.reset();
        document.reset();
        std::filesystem::remove(file);
    }

    std::filesystem::path file;
    ImageWatch watch;
    std::shared_ptr<UsdDocument> document;
    std::unique_ptr<HydraRenderer> renderer;
};

Session& session()
{
    static Session made;
    return made;
}

void BM_CameraToFirstImage(benchmark::State& state)
{
    Session& s = session();
    std::vector<double> seconds;
    double width = 1.9;
    for (auto _ : state) {
        RenderParameters parameters;
        parameters.untilConverged = false;
        s.watch.begin();
        s.renderer->setCamera(makeCamera(width *= 0.999));
        s.renderer->renderFrame(parameters).wait();
        seconds.push_back(s.watch.first());
        state.SetIterationTime(seconds.back());
        if (seconds.back() <= 0.0) state.SkipWithError("no image came");
    }
    std::sort(seconds.begin(), seconds.end());
    state.counters["median_ms"] = 1000.0 * seconds[seconds.size() / 2];
}
BENCHMARK(BM_CameraToFirstImage)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(2.0);

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

void BM_PickThroughItsFuture(benchmark::State& state)
{
    Session& s = session();
    unsigned i = 0;
    for (auto _ : state) {
        const float x = static_cast<float>(++i * 7919u % 1280u) + 0.5f;
        if (!s.renderer->singlePointPicking(x, 360.5f, 0.0f).get().hit)
            state.SkipWithError("a pick on the sheet misses it");
    }
}
BENCHMARK(BM_PickThroughItsFuture)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace
} // namespace vesk::renderers::embree::bench
