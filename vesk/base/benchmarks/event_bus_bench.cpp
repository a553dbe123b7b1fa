// What delivering an event costs, beside a bare loop over the same callables.
#include <functional>
#include <vector>

#include <benchmark/benchmark.h>
#include <tests/benchmarking/rounds.h>

#include <vesk/base/event_bus.h>

using vesk::base::EventBus;

namespace {

struct Event
{
    int value = 1;
};

constexpr int kCalls = 20'000; // of listeners in a turn

void sendEvent(benchmark::State& state)
{
    const auto listenerCount = static_cast<int>(state.range(0));
    const int sends = kCalls / listenerCount;
    EventBus bus;
    long busSum = 0;
    long bareSum = 0;
    std::vector<EventBus::Listener> bare;
    for (int i = 0; i < listenerCount; ++i) {
        bus.subscribeListener(
            [&busSum](const std::any& event) { busSum += std::any_cast<const Event&>(event).value; });
        bare.emplace_back(
            [&bareSum](const std::any& event) { bareSum += std::any_cast<const Event&>(event).value; });
    }
    const std::any event = Event{};
    const double goal = 50.0 + 20.0 * listenerCount;
    vesk::tests::compare(
        state, static_cast<std::size_t>(sends), vesk::tests::Goal{0.0, goal},
        [&] {
            for (int i = 0; i < sends; ++i)
                bus.sendEvent(event);
        },
        [&] {
            for (int i = 0; i < sends; ++i) {
                benchmark::DoNotOptimize(bare.data());
                for (const EventBus::Listener& listener : bare)
                    listener(event);
            }
        });
    const long expected = (static_cast<long>(state.iterations()) + 1) * sends * listenerCount;
    if (busSum != expected || bareSum != expected) state.SkipWithError("an event was lost");
}
BENCHMARK(sendEvent)->Arg(1)->Arg(10)->Arg(100)->Arg(1000)->Iterations(300)->UseManualTime();

} // namespace
