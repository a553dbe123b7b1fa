#include "bench_scenes.h"

#include <pxr/base/gf/vec3d.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <malloc.h>

PXR_NAMESPACE_USING_DIRECTIVE

// What one edit costs against reading the whole stage, and what a copy costs in memory.

namespace vesk::renderers::embree::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kMeshes = 10000;

const UsdStageRefPtr& manyMeshes()
{
    static const UsdStageRefPtr stage = makeManyMeshes(kMeshes);
    return stage;
}

void BM_FullExtraction(benchmark::State& state)
{
    for (auto _ : state) {
        StageMirror mirror;
        if (mirror.update(manyMeshes(), {}, {})->chunks.size() != kMeshes)
            state.SkipWithError("not all meshes were read");
    }
}
BENCHMARK(BM_FullExtraction)->Unit(benchmark::kMillisecond);

// Everything that a moved prim costs the next frame: reading it, the new snapshot, the new scene. The commit
// is Embree's and stated apart.
void BM_OneMovedPrim(benchmark::State& state)
{
    StageMirror mirror;
    BuiltScenes built(std::make_shared<Device>());
    const auto start = Clock::now();
    auto snapshot = mirror.update(manyMeshes(), {}, {});
    const double full = std::chrono::duration<double>(Clock::now() - start).count();
    auto scene = std::make_shared<const TraceScene>(snapshot, built);
    const SdfPath path("/World/M5000");
    const UsdAttribute place = manyMeshes()->GetPrimAtPath(path).GetAttribute(TfToken("xformOp:translate"));
    double own = 0.0;
    double commit = 0.0;
    double height = 1.0;
    for (auto _ : state) {
        place.Set(GfVec3d(0.0, 150.0, height += 1.0));
        const auto begin = Clock::now();
        StageChanges changes;
        changes.places = {path};
        snapshot = mirror.update(manyMeshes(), {}, changes);
        scene = std::make_shared<const TraceScene>(snapshot, built, scene->origin());
        built.dropUnused();
        const double all = std::chrono::duration<double>(Clock::now() - begin).count();
        own += all - scene->commitSeconds();
        commit += scene->commitSeconds();
        state.SetIterationTime(all);
        if (mirror.visitedPrims() != 1) state.SkipWithError("more than the moved prim was read");
    }
    const double n = static_cast<double>(state.iterations());
    state.counters["own_ms"] = 1000.0 * own / n;
    state.counters["commit_ms"] = 1000.0 * commit / n;
    state.counters["percent_of_full"] = 100.0 * own / n / full;
}
BENCHMARK(BM_OneMovedPrim)->Unit(benchmark::kMillisecond)->UseManualTime();

std::size_t allocated() { return mallinfo2().uordblks + mallinfo2().hblkhd; }

// A bare scene of as many Embree instances of one shape is the rival: what is above it is ours.
std::size_t bytesOfBareInstances(int count)
{
    const std::size_t before = allocated();
    const Device device;
    RTCScene shape = rtcNewScene(device.get());
    rtcCommitScene(shape);
    std::vector<RTCGeometry> instances;
    for (int i = 0; i < count; ++i) {
        instances.push_back(rtcNewGeometry(device.get(), RTC_GEOMETRY_TYPE_INSTANCE));
        rtcSetGeometryInstancedScene(instances.back(), shape);
        rtcCommitGeometry(instances.back());
    }
    const std::size_t used = allocated() - before - instances.capacity() * sizeof(RTCGeometry);
    for (RTCGeometry instance : instances)
        rtcReleaseGeometry(instance);
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
        const auto instances = built.instancesOf(snapshot->chunks.at(0), GfVec3d(0.0));
        const std::size_t all = allocated() - before;
        if (snapshot->chunks.at(0)->placements.size() != static_cast<std::size_t>(count))
            state.SkipWithError("not all copies were read");
        const auto perCopy = [count](std::size_t bytes) { return static_cast<double>(bytes) / count; };
        state.counters["snapshot_bytes"] = perCopy(read);
        state.counters["bare_embree_bytes"] = perCopy(bare);
        // The scene keeps four bytes more a placement.
        state.counters["above_embree_bytes"] = perCopy(all) - perCopy(bare) + 4.0;
    }
}
BENCHMARK(BM_MemoryOfCopies)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
} // namespace vesk::renderers::embree::bench
