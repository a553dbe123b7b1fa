#include "bench_scenes.h"

#include <pxr/base/gf/vec3d.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>

#include <tests/benchmarking/rounds.h>

#include <algorithm>
#include <chrono>
#include <malloc.h>
#include <numeric>

PXR_NAMESPACE_USING_DIRECTIVE

// What one edit costs against reading the whole stage, and what a copy costs in memory.

namespace vesk::renderers::embree::bench {
namespace {

using tests::Goal;
using tests::Nanoseconds;
using tests::Rounds;

constexpr int kMeshes = 10000;
const SdfPath kMoved("/World/M5000");

const UsdStageRefPtr& manyMeshes()
{
    static const UsdStageRefPtr stage = makeManyMeshes(kMeshes);
    return stage;
}

// Of the calling thread: what other programs take is nobody's cost.
template <class F>
Nanoseconds timeOf(const F& f)
{
    const double begin = threadSeconds();
    f();
    return std::chrono::duration<double>(threadSeconds() - begin);
}

// One reading of the whole stage is what the other figures are compared with.
Nanoseconds timeOfFullExtraction(benchmark::State& state)
{
    StageMirror mirror;
    std::shared_ptr<const SceneSnapshot> snapshot;
    const Nanoseconds time = timeOf([&] { snapshot = mirror.update(manyMeshes(), {}, {}); });
    if (snapshot->chunks.size() != kMeshes) state.SkipWithError("not all meshes were read");
    return time;
}

void BM_FullExtraction(benchmark::State& state)
{
    manyMeshes();
    std::vector<Nanoseconds> times;
    for (auto _ : state) {
        times.push_back(timeOfFullExtraction(state));
        state.SetIterationTime(times.back().count() * 1e-9);
    }
    tests::reportMedian(state, times, Nanoseconds(0));
}
BENCHMARK(BM_FullExtraction)->Unit(benchmark::kMillisecond)->UseManualTime();

/// A stage with all that a renderer keeps of it.
struct Kept
{
    Kept() : snapshot(mirror.update(manyMeshes(), {}, {})) { build(); }

    void build() { scene = std::make_shared<const TraceScene>(snapshot, built, scene.get()); }

    StageMirror mirror;
    BuiltScenes built{std::make_shared<Device>()};
    std::shared_ptr<const SceneSnapshot> snapshot;
    std::shared_ptr<const TraceScene> scene;
};

// Everything that a change in a row of changes costs the next frame against reading the whole stage: reading
// it, the new snapshot, the new scene. The commit is Embree's and stated apart.
template <class Update>
void compareWithFull(benchmark::State& state, Goal goal, Kept& kept, const Update& update)
{
    Nanoseconds bestFull = timeOfFullExtraction(state);
    for (int i = 0; i < 4; ++i)
        bestFull = std::min(bestFull, timeOfFullExtraction(state));
    Nanoseconds bestOwn = std::chrono::hours(1);
    double bestCommit = 3600.0;
    for (auto _ : state) {
        Nanoseconds own = timeOf([&] {
            update();
            kept.build();
        });
        own -= std::chrono::duration<double>(kept.scene->commitThreadSeconds());
        bestCommit = std::min(bestCommit, kept.scene->commitSeconds());
        bestOwn = std::min(bestOwn, own);
        state.SetIterationTime(own.count() * 1e-9);
        if (kept.mirror.visitedPrims() != 1) state.SkipWithError("not just the changed prim was read");
    }
    Rounds rounds(1, goal);
    rounds.add(bestOwn, bestFull);
    rounds.report(state);
    state.counters["commit_ms"] = 1000.0 * bestCommit;
    state.counters["percent_of_full"] = 100.0 * state.counters["ratio"];
}

void BM_OneMovedPrim(benchmark::State& state)
{
    const UsdAttribute place = manyMeshes()->GetPrimAtPath(kMoved).GetAttribute(TfToken("xformOp:translate"));
    Kept kept;
    double height = 1.0;
    StageChanges changes;
    changes.places = {kMoved};
    compareWithFull(state, Goal{0.02}, kept, [&] {
        place.Set(GfVec3d(0.0, 150.0, height += 1.0));
        kept.snapshot = kept.mirror.update(manyMeshes(), {}, changes);
    });
    if (kept.snapshot->chunks.at(5000)->placements.at(0).rows[3][2] != height &&
        kept.snapshot->bounds.GetMax()[2] < height)
        state.SkipWithError("the moved prim is not where it was moved to");
}
BENCHMARK(BM_OneMovedPrim)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(40);

// Playback of a stage on which one prim of all moves.
void BM_NewTimeOfOneMovingPrim(benchmark::State& state)
{
    const UsdPrim prim = manyMeshes()->GetPrimAtPath(kMoved);
    const UsdAttribute place = prim.GetAttribute(TfToken("xformOp:translate"));
    place.Set(GfVec3d(0.0, 150.0, 0.0), UsdTimeCode(0.0));
    place.Set(GfVec3d(0.0, 150.0, 1000.0), UsdTimeCode(1000.0));
    Kept kept;
    ExtractionRequest request;
    const auto next = [&] {
        request.time += 1.0;
        kept.snapshot = kept.mirror.update(manyMeshes(), request, {});
    };
    next(); // finds out what moves
    compareWithFull(state, Goal{0.02}, kept, next);
    place.Clear();
    place.Set(GfVec3d(0.0, 150.0, 0.0));
}
BENCHMARK(BM_NewTimeOfOneMovingPrim)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(40);

std::size_t allocated() { return mallinfo2().uordblks + mallinfo2().hblkhd; }

// A bare scene of as many Embree instances of one shape is the rival: what is above it is ours.
std::size_t bytesOfBareInstances(int count)
{
    const std::size_t before = allocated();
    const Device device;
    RTCScene shape = rtcNewScene(device.get());
    RTCGeometry triangle = rtcNewGeometry(device.get(), RTC_GEOMETRY_TYPE_TRIANGLE);
    auto* points = static_cast<float*>(rtcSetNewGeometryBuffer(triangle, RTC_BUFFER_TYPE_VERTEX, 0,
                                                               RTC_FORMAT_FLOAT3, 3 * sizeof(float), 3));
    const float corners[9] = {-1, -1, 0, 1, -1, 0, 0, 1, 0};
    std::copy(corners, corners + 9, points);
    auto* indices = static_cast<unsigned*>(rtcSetNewGeometryBuffer(
        triangle, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, 3 * sizeof(unsigned), 1));
    std::iota(indices, indices + 3, 0u);
    rtcCommitGeometry(triangle);
    rtcAttachGeometry(shape, triangle);
    rtcReleaseGeometry(triangle);
    rtcCommitScene(shape);
    RTCScene scene = rtcNewScene(device.get());
    rtcSetSceneFlags(scene, RTC_SCENE_FLAG_ROBUST);
    for (int i = 0; i < count; ++i) {
        RTCGeometry instance = rtcNewGeometry(device.get(), RTC_GEOMETRY_TYPE_INSTANCE);
        rtcSetGeometryInstancedScene(instance, shape);
        const float x = 3.0f * static_cast<float>(i % 1000);
        const float y = 3.0f * static_cast<float>(i / 1000);
        const float columns[12] = {1, 0, 0, 0, 1, 0, 0, 0, 1, x, y, 0};
        rtcSetGeometryTransform(instance, 0, RTC_FORMAT_FLOAT3X4_COLUMN_MAJOR, columns);
        rtcCommitGeometry(instance);
        rtcAttachGeometryByID(scene, instance, static_cast<unsigned>(i));
        rtcReleaseGeometry(instance);
    }
    rtcCommitScene(scene);
    const std::size_t used = allocated() - before;
    rtcReleaseScene(scene);
    rtcReleaseScene(shape);
    return used;
}

void BM_MemoryOfCopies(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    const UsdStageRefPtr stage = makeCopies(count);
    for (auto _ : state) {
        const std::size_t bare = bytesOfBareInstances(count);
        const std::size_t before = allocated();
        auto mirror = std::make_unique<StageMirror>();
        const auto snapshot = mirror->update(stage, {}, {});
        const std::size_t read = allocated() - before;
        BuiltScenes built(std::make_shared<Device>());
        const TraceScene scene(snapshot, built);
        const std::size_t all = allocated() - before;
        if (snapshot->chunks.at(0)->placements.size() != static_cast<std::size_t>(count))
            state.SkipWithError("not all copies were read");
        const auto perCopy = [count](std::size_t bytes) { return static_cast<double>(bytes) / count; };
        const double above = perCopy(all) - perCopy(bare);
        state.counters["snapshot_bytes"] = perCopy(read);
        state.counters["bare_embree_bytes"] = perCopy(bare);
        state.counters["above_embree_bytes"] = above;
        if (above > 200.0) {
            const std::string text = "a copy takes " + std::to_string(above) +
                                     " bytes above Embree's own, which are " + std::to_string(perCopy(bare));
            state.SkipWithError(text.c_str());
        }
    }
}
BENCHMARK(BM_MemoryOfCopies)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
} // namespace vesk::renderers::embree::bench
