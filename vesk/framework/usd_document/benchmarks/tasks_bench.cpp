// What a task through the document costs, beside a locked deque of standard packaged tasks with a thread of
// its own; and what undo costs beside the edit that it takes back.
#include <condition_variable>
#include <deque>
#include <future>
#include <mutex>
#include <thread>

#include <benchmark/benchmark.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>
#include <tests/benchmarking/rounds.h>

#include <vesk/framework/usd_document/usd_document.h>

PXR_NAMESPACE_USING_DIRECTIVE
using namespace vesk::framework::usd_document;

namespace {

constexpr int kTasks = 100'000;
using Context = UsdDocument::ExecContext;

class BareQueue
{
public:
    ~BareQueue()
    {
        {
            std::lock_guard lock(m_mutex);
            m_closed = true;
        }
        m_added.notify_one();
        m_thread.join();
    }
    void push(std::packaged_task<int()> task)
    {
        {
            std::lock_guard lock(m_mutex);
            m_tasks.push_back(std::move(task));
        }
        m_added.notify_one();
    }

private:
    void run()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_added.wait(lock, [this] { return m_closed || !m_tasks.empty(); });
            if (m_tasks.empty()) return;
            std::packaged_task<int()> task = std::move(m_tasks.front());
            m_tasks.pop_front();
            lock.unlock();
            task();
            lock.lock();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_added;
    std::deque<std::packaged_task<int()>> m_tasks;
    bool m_closed = false;
    std::thread m_thread{[this] { run(); }};
};

void documentTasks(benchmark::State& state)
{
    const auto document = UsdDocument::create();
    BareQueue queue;
    bool complete = true;
    vesk::tests::compare(
        state, kTasks, vesk::tests::Goal{2.0, 0.0},
        [&] {
            std::vector<vesk::base::Future<int>> futures;
            futures.reserve(kTasks);
            for (int i = 0; i < kTasks; ++i)
                futures.push_back(document->read("computeBBox", [i](const Context&) { return i; }));
            for (int i = 0; i < kTasks; ++i)
                complete = futures[static_cast<std::size_t>(i)].get() == i && complete;
        },
        [&] {
            std::vector<std::future<int>> futures;
            futures.reserve(kTasks);
            for (int i = 0; i < kTasks; ++i) {
                std::packaged_task<int()> task([i] { return i; });
                futures.push_back(task.get_future());
                queue.push(std::move(task));
            }
            for (int i = 0; i < kTasks; ++i)
                complete = futures[static_cast<std::size_t>(i)].get() == i && complete;
        });
    if (!complete) state.SkipWithError("a task was lost");
}
BENCHMARK(documentTasks)->Iterations(25)->UseManualTime();

/// One attribute of one of many prims: an edit task, and the same call on the stage.
UsdStageRefPtr stageWithPrims(std::int64_t count)
{
    const UsdStageRefPtr stage = UsdStage::CreateInMemory();
    for (std::int64_t i = 0; i < count; ++i)
        stage->DefinePrim(SdfPath("/World/Prim" + std::to_string(i)));
    stage->GetPrimAtPath(SdfPath("/World/Prim0"))
        .CreateAttribute(TfToken("size"), SdfValueTypeNames->Double)
        .Set(0.0);
    return stage;
}

void editAndUndo(benchmark::State& state)
{
    constexpr int kEdits = 50; // in a turn
    DocumentOptions options;
    options.manual = true;
    const UsdStageRefPtr stage = stageWithPrims(state.range(0));
    const auto document = UsdDocument::attach(stage, options);
    const UsdAttribute size = stage->GetAttributeAtPath(SdfPath("/World/Prim0.size"));
    double value = 0.0;
    vesk::tests::compare(
        state, kEdits, vesk::tests::Goal{},
        [&] {
            for (int i = 0; i < kEdits; ++i) {
                value += 1.0;
                document->edit("set size", [&](const Context&) { size.Set(value); });
                document->undo();
                document->runPendingTasks();
            }
        },
        [&] {
            for (int i = 0; i < kEdits; ++i) {
                value += 1.0;
                size.Set(value);
                size.Set(0.0);
            }
        });
    double end = -1.0;
    size.Get(&end);
    if (end != 0.0) state.SkipWithError("undo did not bring the value back");
}
BENCHMARK(editAndUndo)->Arg(1)->Arg(1000)->Arg(10000)->Iterations(300)->UseManualTime();

} // namespace
