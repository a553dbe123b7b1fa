// What a link of a chain and a packaged task cost, beside the plainest way to do the same.
#include <deque>
#include <future>
#include <mutex>

#include <benchmark/benchmark.h>

#include <vesk/base/future.h>

using namespace vesk::base;

namespace {

constexpr int kLinks = 100'000;
constexpr int kTasks = 100'000;

/// A chain of continuations on the default pool: made, then run from end to end.
void chainLink(benchmark::State& state)
{
    for (auto _ : state) {
        Promise<int> promise;
        Future<int> future = promise.getFuture();
        for (int i = 0; i < kLinks; ++i)
            future = future.then([](int value) { return value + 1; });
        promise.setValue(0);
        if (future.get() != kLinks) state.SkipWithError("a link was lost");
    }
    state.SetItemsProcessed(state.iterations() * kLinks);
}
BENCHMARK(chainLink)->Unit(benchmark::kMillisecond)->UseRealTime();

/// The same callables as bare work: made, then posted to the same pool, each when the one before has run.
struct BareChain
{
    std::vector<Work> links;
    std::size_t next = 0;
    int value = 0;
    Promise<void> end;

    void postNext()
    {
        if (next == links.size())
            end.setValue();
        else
            defaultExecutor()->post(std::move(links[next++]));
    }
};

void barePost(benchmark::State& state)
{
    for (auto _ : state) {
        BareChain chain;
        chain.links.reserve(kLinks);
        for (int i = 0; i < kLinks; ++i)
            chain.links.emplace_back([&chain] {
                chain.value = chain.value + 1;
                chain.postNext();
            });
        chain.postNext();
        chain.end.getFuture().get();
        if (chain.value != kLinks) state.SkipWithError("a link was lost");
    }
    state.SetItemsProcessed(state.iterations() * kLinks);
}
BENCHMARK(barePost)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Tasks queued under a lock, run, and their futures read.
template <class Task>
class LockedDeque
{
public:
    void push(Task task)
    {
        std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    bool runOne()
    {
        Task task;
        {
            std::lock_guard lock(m_mutex);
            if (m_tasks.empty()) return false;
            task = std::move(m_tasks.front());
            m_tasks.pop_front();
        }
        task();
        return true;
    }

private:
    std::mutex m_mutex;
    std::deque<Task> m_tasks;
};

void packagedTask(benchmark::State& state)
{
    for (auto _ : state) {
        LockedDeque<PackagedTask<int()>> deque;
        std::vector<Future<int>> futures;
        futures.reserve(kTasks);
        for (int i = 0; i < kTasks; ++i) {
            PackagedTask<int()> task([i] { return i; });
            futures.push_back(task.getFuture());
            deque.push(std::move(task));
        }
        while (deque.runOne()) {
        }
        for (int i = 0; i < kTasks; ++i)
            if (futures[i].get() != i) state.SkipWithError("a task was lost");
    }
    state.SetItemsProcessed(state.iterations() * kTasks);
}
BENCHMARK(packagedTask)->Unit(benchmark::kMillisecond);

void standardPackagedTask(benchmark::State& state)
{
    for (auto _ : state) {
        LockedDeque<std::packaged_task<int()>> deque;
        std::vector<std::future<int>> futures;
        futures.reserve(kTasks);
        for (int i = 0; i < kTasks; ++i) {
            std::packaged_task<int()> task([i] { return i; });
            futures.push_back(task.get_future());
            deque.push(std::move(task));
        }
        while (deque.runOne()) {
        }
        for (int i = 0; i < kTasks; ++i)
            if (futures[i].get() != i) state.SkipWithError("a task was lost");
    }
    state.SetItemsProcessed(state.iterations() * kTasks);
}
BENCHMARK(standardPackagedTask)->Unit(benchmark::kMillisecond);

} // namespace
