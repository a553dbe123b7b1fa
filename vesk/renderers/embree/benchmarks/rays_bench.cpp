#include "bench_scenes.h"
#include "picking.h"

#include <tests/benchmarking/rounds.h>

// Primary rays and picks through the renderer's parts against the same rays in a bare loop over the same
// scene, on one thread.

namespace vesk::renderers::embree::bench {
namespace {

using tests::compare;
using tests::Goal;

constexpr int kTile = 16;

const FrameView& view()
{
    static const std::unique_ptr<FrameView> made = makeView(makeSheet(kMillionSide), makeSettings(), 1.9);
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

// Two thirds of what single rays and ray streams take here: the rival is the fastest of them.
std::size_t traceBare()
{
    std::size_t hits = 0;
    forEachTile([&](const Tile& tile) { hits += traceBarePackets(view(), tile); });
    return hits;
}

void BM_BareStreams(benchmark::State& state)
{
    std::vector<RTCRayHit> rays;
    const auto streams = [&] {
        std::size_t hits = 0;
        forEachTile([&](const Tile& tile) { hits += traceBareStream(view(), tile, rays); });
        if (hits != view().settings.size[0] * std::size_t(view().settings.size[1]))
            state.SkipWithError("a ray misses the sheet");
    };
    compare(state, 1, Goal(), streams, [] { benchmark::DoNotOptimize(traceBare()); });
}
BENCHMARK(BM_BareStreams)->Unit(benchmark::kMillisecond)->UseManualTime();

template <class Trace, class Holds>
void compareFilms(benchmark::State& state, Goal goal, const FilmParts& parts, Trace trace, Holds holds)
{
    Film film(view().settings.size, parts);
    forEachTile([&](const Tile& tile) { trace(film, tile); });
    std::size_t hits = 0;
    for (std::size_t i = 0; i < film.pixelCount(); ++i)
        hits += holds(film, i);
    if (hits != traceBare()) {
        state.SkipWithError("the renderer hits other pixels than the bare loop");
        return;
    }
    compare(
        state, 1, goal, [&] { forEachTile([&](const Tile& tile) { trace(film, tile); }); },
        [] { benchmark::DoNotOptimize(traceBare()); });
}

void BM_PrimIdOutput(benchmark::State& state)
{
    compareFilms(
        state, Goal{1.6}, {false, true, false, false},
        [](Film& film, const Tile& tile) { traceGeometry(view(), film, tile); },
        [](const Film& film, std::size_t i) { return film.ids(i).prim == 0; });
}
BENCHMARK(BM_PrimIdOutput)->Unit(benchmark::kMillisecond)->UseManualTime();

void BM_DepthOutput(benchmark::State& state)
{
    compareFilms(
        state, Goal(), {false, false, true, false},
        [](Film& film, const Tile& tile) { traceGeometry(view(), film, tile); },
        [](const Film& film, std::size_t i) { return film.depths(i).viewDistance < 11.0f; });
}
BENCHMARK(BM_DepthOutput)->Unit(benchmark::kMillisecond)->UseManualTime();

void BM_NormalOutput(benchmark::State& state)
{
    compareFilms(
        state, Goal(), {false, false, false, true},
        [](Film& film, const Tile& tile) { traceGeometry(view(), film, tile); },
        [](const Film& film, std::size_t i) { return film.normals(i).eye.z > 0.0f; });
}
BENCHMARK(BM_NormalOutput)->Unit(benchmark::kMillisecond)->UseManualTime();

void BM_ShadedColour(benchmark::State& state)
{
    compareFilms(
        state, Goal(), {}, [](Film& film, const Tile& tile) { traceColor(view(), film, tile, 0, 1); },
        [](const Film& film, std::size_t i) { return film.pixel(i).alpha > 0.0f; });
}
BENCHMARK(BM_ShadedColour)->Unit(benchmark::kMillisecond)->UseManualTime();

constexpr unsigned kPicks = 20000; // of one turn

// The point of a pick goes around the picture, so that no answer stays in a cache.
std::pair<float, float> pointOf(unsigned i)
{
    return {static_cast<float>(i * 7919u % 1280u) + 0.5f, static_cast<float>(i * 104729u % 720u) + 0.5f};
}

template <class Pick>
void comparePicks(benchmark::State& state, Goal goal, Pick pick)
{
    unsigned first = 0;
    std::size_t missed = 0;
    const auto picks = [&] {
        for (unsigned i = first; i < first + kPicks; ++i) {
            const auto [x, y] = pointOf(i);
            missed += !pick(x, y);
        }
        first += kPicks;
    };
    unsigned bareFirst = 0;
    const auto bare = [&] {
        for (unsigned i = bareFirst; i < bareFirst + kPicks; ++i) {
            const auto [x, y] = pointOf(i);
            RTCRayHit ray = toBareRay(view().camera.at(x, y));
            RTCIntersectContext context;
            rtcInitIntersectContext(&context);
            rtcIntersect1(view().scene->handle(), &context, &ray);
            missed += ray.hit.geomID == RTC_INVALID_GEOMETRY_ID;
        }
        bareFirst += kPicks;
    };
    compare(state, kPicks, goal, picks, bare);
    if (missed > 0) state.SkipWithError("a pick on the sheet misses it");
}

// Without the names that an answer is made of.
void BM_PickTracing(benchmark::State& state)
{
    comparePicks(state, Goal{1.5}, [](float x, float y) {
        return view().scene->intersect(view().camera.at(x, y)).has_value();
    });
}
BENCHMARK(BM_PickTracing)->UseManualTime();

void BM_Pick(benchmark::State& state)
{
    comparePicks(state, Goal(),
                 [](float x, float y) { return pickAt(view(), x, y, 0.0f).primPath == "/Sheet"; });
}
BENCHMARK(BM_Pick)->UseManualTime();

// Around a point where nothing lies: every pixel within the radius is looked at.
void BM_PickWithRadius(benchmark::State& state)
{
    static const std::unique_ptr<FrameView> far = makeView(makeSheet(kMillionSide), makeSettings(), 200.0);
    for (auto _ : state) {
        if (pickAt(*far, 100.0f, 100.0f, static_cast<float>(state.range(0))).hit)
            state.SkipWithError("a pick beside the sheet hits it");
    }
}
BENCHMARK(BM_PickWithRadius)->Arg(4)->Arg(16)->Arg(64)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace vesk::renderers::embree::bench
