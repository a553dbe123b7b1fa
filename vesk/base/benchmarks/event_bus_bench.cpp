// What delivering an event costs, beside a bare loop over the same callables.
#include <functional>
#include <vector>

#include <benchmark/benchmark.h>

#include <vesk/base/event_bus.h>

using vesk::base::EventBus;

namespace {

struct Event
{
    int value = 1;
};

void sendEvent(benchmark::State& state)
{
    EventBus bus;
    long sum = 0;
    for (int i = 0; i < state.range(0); ++i)
        bus.subscribeListener(
            [&sum](const std::any& event) { sum += std::any_cast<const Event&>(event).value; });
    const std::any event = Event{};
    for (auto _ : state)
        bus.sendEvent(event);
    if (sum != static_cast<long>(state.iterations()) * state.range(0))
        state.SkipWithError("an event was lost");
    state.counters["ns/listener"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * static_cast<double>(state.range(0)) * 1e-9,
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(sendEvent)->Arg(1)->Arg(10)->Arg(1000);

void bareLoop(benchmark::State& state)
{
    std::vector<std::function<void(const std::any&)>> listeners;
    long sum = 0;
    for (int i = 0; i < state.range(0); ++i)
        listeners.emplace_back(
            [&sum](const std::any& event) { sum += std::any_cast<const Event&>(event).value; });
    const std::any event = Event{};
    for (auto _ : state) {
        benchmark::DoNotOptimize(listeners.data());
        for (const auto& listener : listeners)
            listener(event);
    }
    if (sum != static_cast<long>(state.iterations()) * state.range(0)) state.SkipWithError("a call was lost");
}
BENCHMARK(bareLoop)->Arg(1)->Arg(10)->Arg(1000);

} // namespace
