// How fast a thread that waits for a frame wakes up, beside one that waits for a bare condition variable.
#include "bench_viewport.h"

#include <tests/benchmarking/rounds.h>
#include <vesk/framework/hydra_renderer/frame_rendered_event.h>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <fstream>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace vesk::framework::usd_viewport::benchmarks {
namespace {

using Clock = std::chrono::steady_clock;
using vesk::tests::Nanoseconds;

/// A thread that waits again and again, and the time at which it last woke up.
class Sleeper
{
public:
    template <class Wait>
    explicit Sleeper(Wait wait)
        : m_thread([this, wait = std::move(wait)] {
              m_id = static_cast<int>(syscall(SYS_gettid));
              while (!m_ends) {
                  wait();
                  m_wokenAt = Clock::now();
                  m_woken.fetch_add(1, std::memory_order_release);
              }
          })
    {}

    /// Makes the thread wake up once more, and that the last time.
    template <class Wake>
    void end(Wake wake)
    {
        sleepTight();
        m_ends = true;
        wake();
        m_thread.join();
    }

    /// Returns how long it took from the call of wake until the thread had come back from its wait.
    template <class Wake>
    Nanoseconds wakeUp(Wake wake)
    {
        sleepTight();
        const int before = m_woken.load();
        const Clock::time_point begin = Clock::now();
        wake();
        while (m_woken.load(std::memory_order_acquire) == before)
            std::this_thread::yield();
        return m_wokenAt - begin;
    }

    int wakeUps() const { return m_woken; }

private:
    /// Returns once the kernel says that the thread sleeps.
    void sleepTight() const
    {
        while (m_id == 0)
            std::this_thread::yield();
        const std::string path = "/proc/self/task/" + std::to_string(m_id) + "/stat";
        for (;;) {
            std::ifstream file(path);
            std::string line;
            std::getline(file, line);
            const std::size_t nameEnd = line.rfind(')');
            if (nameEnd != std::string::npos && line.compare(nameEnd, 3, ") S") == 0) return;
            std::this_thread::yield();
        }
    }

    std::atomic<int> m_id{0};
    std::atomic<bool> m_ends{false};
    std::atomic<int> m_woken{0};
    Clock::time_point m_wokenAt;
    std::thread m_thread;
};

struct BareSignal
{
    void wait()
    {
        std::unique_lock lock(mutex);
        condition.wait(lock, [this] { return released; });
        released = false;
    }
    void release()
    {
        {
            const std::lock_guard lock(mutex);
            released = true;
        }
        condition.notify_all();
    }

    std::mutex mutex;
    std::condition_variable condition;
    bool released = false;
};

constexpr int kWakeUps = 31; // in a turn

/// A wake-up takes a microsecond or thirty, as the scheduler places the threads: single ones compare badly.
template <class Wake>
Nanoseconds medianWakeUp(Sleeper& sleeper, Wake& wake)
{
    std::array<Nanoseconds, kWakeUps> times;
    for (Nanoseconds& time : times)
        time = sleeper.wakeUp(wake);
    std::nth_element(times.begin(), times.begin() + kWakeUps / 2, times.end());
    return times[kWakeUps / 2];
}

void waitForFrameRendered(benchmark::State& state)
{
    BenchViewport viewport;
    const std::any frame = hydra_renderer::FrameRenderedEvent();
    const auto render = [&] { viewport.document->getEventBus()->sendEvent(frame); };
    BareSignal signal;
    const auto release = [&] { signal.release(); };
    Sleeper model([&] { viewport.model->waitForFrameRendered(); });
    Sleeper bare([&] { signal.wait(); });
    vesk::tests::compare(
        state, 1, vesk::tests::Goal{1.5, 0.0}, [&] { return medianWakeUp(model, render); },
        [&] { return medianWakeUp(bare, release); });
    const int expected = (static_cast<int>(state.iterations()) + 1) * kWakeUps;
    if (model.wakeUps() != expected || bare.wakeUps() != expected) state.SkipWithError("a frame woke nobody");
    model.end(render);
    bare.end(release);
}
BENCHMARK(waitForFrameRendered)->Iterations(150)->UseManualTime();

} // namespace
} // namespace vesk::framework::usd_viewport::benchmarks
