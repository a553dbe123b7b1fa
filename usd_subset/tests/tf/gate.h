#pragma once

#include <future>
#include <thread>
#include <vector>

/// Runs one function on several threads, all let go at once; returns when all are done.
/// \param run gets the number of its thread
template <class Fn>
void runTogether(int threads, Fn const& run)
{
    std::promise<void> gate;
    const std::shared_future<void> open = gate.get_future().share();
    std::vector<std::thread> workers;
    for (int i = 0; i != threads; ++i) {
        workers.emplace_back([&run, open, i] {
            open.wait();
            run(i);
        });
    }
    gate.set_value();
    for (std::thread& worker : workers) {
        worker.join();
    }
}
