#include "bench_scenes.h"
#include "picking.h"

#include <benchmark/benchmark.h>

#include <chrono>

// Primary rays through the renderer against the same rays in a bare loop over the same scene, on one thread.

namespace vesk::renderers::embree::bench {
namespace {

constexpr int kSide = 707; // 10^6 triangles
constexpr int kTile = 16;

const FrameView& view()
{
    static const std::unique_ptr<FrameView> made = makeView(makeSheet(kSide), makeSettings(), 1.9);
    return *made;
}

template <class F>
void forEachTile(const F& f)
{
    const auto& size = view().settings.size;
    for (int y = 0; y < size[1]; y += kTile) {
        for (int x = 0; x < size[0]; x += kTile)
            f(Tile{x, y, std::min(x + kTile, size[0]), std::min(y + kTile, size[1])});
    }
}

// Makes the rays and intersects them: nothing is written but the number of hits.
std::size_t traceBare()
{
    std::size_t hits = 0;
    std::vector<RTCRayHit> rays;
    forEachTile([&](const Tile& tile) {
        rays.clear();
        for (int y = tile.y0; y < tile.y1; ++y) {
            for (int x = tile.x0; x < tile.x1; ++x)
                rays.push_back(toRay(view().camera.at(float(x) + 0.5f, float(y) + 0.5f)));
        }
        view().scene->intersect(rays.data(), static_cast<unsigned>(rays.size()), true);
        for (const RTCRayHit& ray : rays)
            hits += ray.hit.geomID != RTC_INVALID_GEOMETRY_ID;
    });
    return hits;
}

void BM_BareRays(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(traceBare());
}
BENCHMARK(BM_BareRays)->Unit(benchmark::kMillisecond);

template <class Trace>
void compare(benchmark::State& state, const Trace& trace, std::size_t hits, std::size_t expected)
{
    if (hits != expected) {
        state.SkipWithError("the renderer hits other pixels than the bare loop");
        return;
    }
    double own = 0.0;
    double bare = 0.0;
    using Clock = std::chrono::steady_clock;
    for (auto _ : state) {
        const auto start = Clock::now();
        benchmark::DoNotOptimize(traceBare());
        const auto between = Clock::now();
        trace();
        const auto end = Clock::now();
        bare += std::chrono::duration<double>(between - start).count();
        own += std::chrono::duration<double>(end - between).count();
        state.SetIterationTime(std::chrono::duration<double>(end - between).count());
    }
    state.counters["ratio"] = own / bare;
}

void BM_PrimIdOutput(benchmark::State& state)
{
    Film film(view().settings.size);
    film.addGeometry();
    const auto trace = [&] { forEachTile([&](const Tile& tile) { traceGeometry(view(), film, tile); }); };
    trace();
    std::size_t hits = 0;
    for (std::size_t i = 0; i < film.pixelCount(); ++i)
        hits += film.geometry(i).prim >= 0;
    compare(state, trace, hits, traceBare());
}
BENCHMARK(BM_PrimIdOutput)->Unit(benchmark::kMillisecond)->UseManualTime();

void BM_ShadedColour(benchmark::State& state)
{
    Film film(view().settings.size);
    const auto trace = [&] { forEachTile([&](const Tile& tile) { traceColor(view(), film, tile, 0, 1); }); };
    trace();
    std::size_t hits = 0;
    for (std::size_t i = 0; i < film.pixelCount(); ++i)
        hits += film.pixel(i).alpha > 0.0f;
    compare(state, trace, hits, traceBare());
}
BENCHMARK(BM_ShadedColour)->Unit(benchmark::kMillisecond)->UseManualTime();

// The point of a pick goes around the picture, so that no answer stays in a cache.
std::pair<float, float> pointOf(unsigned i)
{
    return {static_cast<float>(i * 7919u % 1280u) + 0.5f, static_cast<float>(i * 104729u % 720u) + 0.5f};
}

void BM_BarePick(benchmark::State& state)
{
    unsigned i = 0;
    for (auto _ : state) {
        const auto [x, y] = pointOf(++i);
        RTCRayHit ray = toRay(view().camera.at(x, y));
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        rtcIntersect1(view().scene->handle(), &context, &ray);
        benchmark::DoNotOptimize(ray);
    }
}
BENCHMARK(BM_BarePick);

// Tracing of a pick alone: without the names that its answer is made of.
void BM_PickTracing(benchmark::State& state)
{
    unsigned i = 0;
    for (auto _ : state) {
        const auto [x, y] = pointOf(++i);
        RTCRayHit ray = toRay(view().camera.at(x, y));
        view().scene->intersect(&ray, 1, true);
        if (ray.hit.geomID == RTC_INVALID_GEOMETRY_ID) state.SkipWithError("a pick on the sheet misses it");
    }
}
BENCHMARK(BM_PickTracing);

void BM_Pick(benchmark::State& state)
{
    unsigned i = 0;
    for (auto _ : state) {
        const auto [x, y] = pointOf(++i);
        const auto result = pickAt(view(), x, y, 0.0f);
        if (result.primPath != "/Sheet") state.SkipWithError("a pick on the sheet misses it");
    }
}
BENCHMARK(BM_Pick);

// Around a point where nothing lies: every pixel within the radius is looked at.
void BM_PickWithRadius(benchmark::State& state)
{
    static const std::unique_ptr<FrameView> far = makeView(makeSheet(kSide), makeSettings(), 200.0);
    for (auto _ : state) {
        if (pickAt(*far, 100.0f, 100.0f, static_cast<float>(state.range(0))).hit)
            state.SkipWithError("a pick beside the sheet hits it");
    }
}
BENCHMARK(BM_PickWithRadius)->Arg(4)->Arg(16)->Arg(64)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace vesk::renderers::embree::bench
