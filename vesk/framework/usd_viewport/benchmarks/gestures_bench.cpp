// What a gesture costs on a free camera and on a followed one, beside its bare arithmetic.
#include "bare_viewport.h"
#include "bench_viewport.h"

#include <tests/benchmarking/heap.h>
#include <tests/benchmarking/rounds.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_viewport::benchmarks {
namespace {

using vesk::tests::compare;
using vesk::tests::Goal;
using vesk::tests::heapAllocations;

constexpr int kGestures = 100; // of one kind in a turn, half of them back
constexpr int kTurns = 1500;

/// Each gesture there and back, so that the camera stays near its place.
struct Gesture
{
    void (*model)(ViewportModel&, float sign, const std::string& label);
    void (*bare)(BareViewport&, float sign);
};

const Gesture kOrbit{[](ViewportModel& m, float s, const std::string& l) { m.orbitCamera(3 * s, 2 * s, l); },
                     [](BareViewport& b, float s) { b.orbit(3 * s, 2 * s); }};
const Gesture kOrbitAngles{
    [](ViewportModel& m, float s, const std::string& l) { m.orbitCameraUsingDeltaAngles(3 * s, 2 * s, l); },
    [](BareViewport& b, float s) { b.orbitBy(3 * s, 2 * s); }};
const Gesture kOrbitByMatrices{
    [](ViewportModel& m, float s, const std::string& l) { m.orbitCameraUsingDeltaAngles(3 * s, 2 * s, l); },
    [](BareViewport& b, float s) { b.orbitByMatrices(3 * s, 2 * s); }};
const Gesture kRotate{
    [](ViewportModel& m, float s, const std::string& l) { m.rotateCamera(3 * s, 2 * s, l); },
    [](BareViewport& b, float s) { b.rotate(3 * s, 2 * s); }};
const Gesture kPan{[](ViewportModel& m, float s, const std::string& l) { m.panCamera(3 * s, 2 * s, l); },
                   [](BareViewport& b, float s) { b.pan(3 * s, 2 * s); }};
const Gesture kZoom{[](ViewportModel& m, float s, const std::string& l) { m.zoomCamera(3 * s, 2 * s, l); },
                    [](BareViewport& b, float s) { b.zoom(3 * s, 2 * s); }};
const Gesture kMove{
    [](ViewportModel& m, float s, const std::string& l) { m.moveCamera(0.3f * s, 0.2f * s, 0.1f * s, l); },
    [](BareViewport& b, float s) { b.move(0.3f * s, 0.2f * s, 0.1f * s); }};

void drag(ViewportModel& model, const Gesture& gesture)
{
    for (int i = 0; i < kGestures; ++i)
        gesture.model(model, i % 2 == 0 ? 1.0f : -1.0f, ViewportModel::m_cameraOrbitUndoLabel);
}

void drag(BareViewport& bare, const Gesture& gesture)
{
    for (int i = 0; i < kGestures; ++i)
        gesture.bare(bare, i % 2 == 0 ? 1.0f : -1.0f);
}

BareViewport bareTwin(BenchViewport& viewport)
{
    return BareViewport(viewport.model->getGfCamera(), viewport.model->distanceToCenter(),
                        BenchViewport::kSize, viewport.sceneBounds());
}

void checkTwins(benchmark::State& state, const ViewportModel& model, const BareViewport& bare)
{
    if (model.getGfCamera() != bare.camera || model.distanceToCenter() != bare.distance)
        state.SkipWithError("the model's camera is not the bare one");
}

/// On a free camera inside a bracket, the renderer only counting.
void freeCamera(benchmark::State& state, const Gesture& gesture, double goalRatio)
{
    BenchViewport viewport;
    BareViewport bare = bareTwin(viewport);
    ViewportModel& model = *viewport.model;
    model.beginCameraInteraction();
    const std::uint64_t drawnBefore = viewport.camerasDrawn();
    std::uint64_t allocations = 0;
    compare(
        state, kGestures, Goal{goalRatio, 150.0},
        [&] {
            const std::uint64_t before = heapAllocations();
            drag(model, gesture);
            allocations += heapAllocations() - before;
        },
        [&] { drag(bare, gesture); });
    checkTwins(state, model, bare);
    if (viewport.camerasDrawn() - drawnBefore !=
        static_cast<std::uint64_t>(state.iterations() + 1) * kGestures)
        state.SkipWithError("a gesture did not reach the renderer");
    if (allocations != 0) state.SkipWithError("a gesture allocated");
    model.endCameraInteraction();
}

/// The same while the viewport follows a scene camera, beside the free one: a drag queues one write.
void followedCamera(benchmark::State& state, const Gesture& gesture)
{
    BenchViewport followed;
    followed.model->setActiveCameraPath("/Cam");
    followed.settle();
    followed.place();
    BenchViewport free;
    followed.model->beginCameraInteraction();
    free.model->beginCameraInteraction();
    compare(
        state, kGestures, Goal{2.5, 0.0}, [&] { drag(*followed.model, gesture); },
        [&] { drag(*free.model, gesture); });
    if (followed.document->pendingTaskCount() != 1) state.SkipWithError("the drag did not queue one write");
    followed.document->runPendingTasks();
    const GfCamera& camera = followed.model->getGfCamera();
    if (camera.GetTransform() != free.model->getGfCamera().GetTransform())
        state.SkipWithError("the followed camera is not the free one");
    if (camera.GetTransform() != followed.stageCamera("/Cam").GetTransform())
        state.SkipWithError("the newest camera was not written");
    followed.model->endCameraInteraction();
}

BENCHMARK_CAPTURE(freeCamera, orbit, kOrbit, 1.5)->Iterations(kTurns)->UseManualTime();
BENCHMARK_CAPTURE(freeCamera, orbitAngles, kOrbitAngles, 1.5)->Iterations(kTurns)->UseManualTime();
// For information: a rival that saves what GfRotation repeats, as the model does.
BENCHMARK_CAPTURE(freeCamera, orbitByMatrices, kOrbitByMatrices, 0.0)->Iterations(kTurns)->UseManualTime();
BENCHMARK_CAPTURE(freeCamera, rotate, kRotate, 1.5)->Iterations(kTurns)->UseManualTime();
BENCHMARK_CAPTURE(freeCamera, pan, kPan, 0.0)->Iterations(kTurns)->UseManualTime();
BENCHMARK_CAPTURE(freeCamera, zoom, kZoom, 0.0)->Iterations(kTurns)->UseManualTime();
BENCHMARK_CAPTURE(freeCamera, move, kMove, 0.0)->Iterations(kTurns)->UseManualTime();

BENCHMARK_CAPTURE(followedCamera, orbit, kOrbit)->Iterations(kTurns)->UseManualTime();
BENCHMARK_CAPTURE(followedCamera, orbitAngles, kOrbitAngles)->Iterations(kTurns)->UseManualTime();
BENCHMARK_CAPTURE(followedCamera, rotate, kRotate)->Iterations(kTurns)->UseManualTime();
BENCHMARK_CAPTURE(followedCamera, pan, kPan)->Iterations(kTurns)->UseManualTime();
BENCHMARK_CAPTURE(followedCamera, zoom, kZoom)->Iterations(kTurns)->UseManualTime();
BENCHMARK_CAPTURE(followedCamera, move, kMove)->Iterations(kTurns)->UseManualTime();

/// Outside a bracket a gesture may allocate its event, and nothing else.
void outsideBracket(benchmark::State& state)
{
    BenchViewport viewport;
    int events = 0;
    viewport.document->getEventBus()->subscribeListener([&events](const std::any& event) {
        if (std::any_cast<ViewportCameraChangedEvent>(&event)) ++events;
    });
    BareViewport bare = bareTwin(viewport);
    std::uint64_t allocations = 0;
    compare(
        state, kGestures, Goal{0.0, 0.0},
        [&] {
            const std::uint64_t before = heapAllocations();
            drag(*viewport.model, kOrbit);
            allocations += heapAllocations() - before;
        },
        [&] { drag(bare, kOrbit); });
    checkTwins(state, *viewport.model, bare);
    if (events != static_cast<int>(state.iterations() + 1) * kGestures)
        state.SkipWithError("a change was not announced");
    if (allocations > static_cast<std::uint64_t>(events))
        state.SkipWithError("more than the event was allocated");
}
BENCHMARK(outsideBracket)->Iterations(kTurns)->UseManualTime();

} // namespace
} // namespace vesk::framework::usd_viewport::benchmarks
