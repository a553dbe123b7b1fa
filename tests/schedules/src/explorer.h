#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace vesk::tests {

/// Runs threads one at a time and, from run to run, decides in each possible way who goes on.
///
/// The decisions of a run are a path in a tree; the next run repeats the path up to the last decision that
/// could be made otherwise. A thread that waits for a condition is no choice before its condition holds; it
/// is asked on its own thread.
class Explorer
{
public:
    /// \param points where a step ends, see everySchedule()
    explicit Explorer(std::vector<std::string> points);
    ~Explorer();
    Explorer(const Explorer&) = delete;
    Explorer& operator=(const Explorer&) = delete;

    /// Runs the threads to their ends.
    void run(std::vector<std::function<void()>> threads);

    /// Prepares the next run; false when there is none.
    bool next();

    /// What the thread that calls has reached; threads of no explorer pass. Thread: any.
    static void reach(const char* point, const std::function<bool()>* condition);

    /// Which thread went on from which point in the last run, in order.
    std::string trace() const;

private:
    static constexpr std::size_t kMaxThreads = 3;
    static constexpr int kNobody = -1;

    struct Decision
    {
        std::vector<int> choices;
        std::size_t chosen = 0;
    };

    /// A thread that serves run after run.
    struct Worker
    {
        std::thread thread;
        std::condition_variable wake;
        std::function<void()> work;
        const char* point = nullptr;
        const std::function<bool()>* condition = nullptr;
        bool alive = false;
        bool asked = false;
        bool mayGoOn = true;
    };

    using Lock = std::unique_lock<std::mutex>;

    void _serve(int self);
    void _reach(int self, const char* point, const std::function<bool()>* condition);
    bool _endsStep(const char* point) const;
    void _waitForTurn(Lock& lock, int self);
    /// Gives the turn to whom the path says; called by the thread that has it.
    void _passTurn(Lock& lock, int self);
    std::vector<int> _choices(Lock& lock, int self);
    bool _mayGoOn(Lock& lock, int worker, int self);
    [[noreturn]] void _giveUp(const char* what) const;

    const std::vector<std::string> m_points;
    std::mutex m_mutex;
    std::condition_variable m_answered;
    std::condition_variable m_allEnded;
    Worker m_workers[kMaxThreads];
    std::vector<Decision> m_path;
    std::size_t m_depth = 0;
    std::size_t m_running = 0;
    int m_turn = kNobody;
    bool m_stopped = false;
    std::vector<std::pair<int, const char*>> m_trace;
};

} // namespace vesk::tests
