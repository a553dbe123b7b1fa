// What a link of a chain and a packaged task cost, beside the plainest way to do the same.
#include <deque>
#include <future>
#include <mutex>

#include <benchmark/benchmark.h>
#include <tests/benchmarking/rounds.h>

#include <vesk/base/future.h>

using namespace vesk::base;

namespace {

constexpr int kLinks = 1'000'000;
constexpr int kTasks = 100'000;

/// A chain of continuations on the default pool: made, then run from end to end. True when no link was lost.
bool runChain()
{
    Promise<int> promise;
    Future<int> future = promise.getFuture();
    for (int i = 0; i < kLinks; ++i)
        future = future.then([](int value) { return value + 1; });
    promise.setValue(0);
    return future.get() == kLinks;
}

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

bool runBareChain()
{
    BareChain chain;
    chain.links.reserve(kLinks);
    for (int i = 0; i < kLinks; ++i)
        chain.links.emplace_back([&chain] {
            chain.value = chain.value + 1;
            chain.postNext();
        });
    const Future<void> end = chain.end.getFuture();
    chain.postNext();
    end.get();
    return chain.value == kLinks;
}

void chainLink(benchmark::State& state)
{
    bool complete = true;
    vesk::tests::compare(
        state, kLinks, vesk::tests::Goal{2.0, 0.0}, [&] { complete = runChain() && complete; },
        [&] { complete = runBareChain() && complete; });
    if (!complete) state.SkipWithError("a link was lost");
}
BENCHMARK(chainLink)->Iterations(12)->UseManualTime();

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

/// Makes tasks with their futures, runs them and reads the futures. True when each gave its number.
template <class Task, class FutureOf>
bool runTasks(FutureOf futureOf)
{
    LockedDeque<Task> deque;
    std::vector<decltype(futureOf(std::declval<Task&>()))> futures;
    futures.reserve(kTasks);
    for (int i = 0; i < kTasks; ++i) {
        Task task([i] { return i; });
        futures.push_back(futureOf(task));
        deque.push(std::move(task));
    }
    while (deque.runOne()) {
    }
    bool complete = true;
    for (int i = 0; i < kTasks; ++i)
        complete = futures[static_cast<std::size_t>(i)].get() == i && complete;
    return complete;
}

void packagedTask(benchmark::State& state)
{
    bool complete = true;
    vesk::tests::compare(
        state, kTasks, vesk::tests::Goal{2.0, 0.0},
        [&] {
            const auto futureOf = [](PackagedTask<int()>& task) { return task.getFuture(); };
            complete = runTasks<PackagedTask<int()>>(futureOf) && complete;
        },
        [&] {
            const auto futureOf = [](std::packaged_task<int()>& task) { return task.get_future(); };
            complete = runTasks<std::packaged_task<int()>>(futureOf) && complete;
        });
    if (!complete) state.SkipWithError("a task was lost");
}
BENCHMARK(packagedTask)->Iterations(40)->UseManualTime();

} // namespace
