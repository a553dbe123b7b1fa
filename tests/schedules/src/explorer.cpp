#include "explorer.h"

#include <vesk/base/sync_point.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace vesk::tests {

namespace {

// Far more than any run takes: a thread waits where no point says so.
constexpr std::chrono::seconds kPatience(30);

thread_local Explorer* t_explorer = nullptr;
thread_local int t_self = 0;

} // namespace

Explorer::Explorer(std::vector<std::string> points) : m_points(std::move(points))
{
    for (std::size_t index = 0; index < kMaxThreads; ++index)
        m_workers[index].thread = std::thread([this, index] { _serve(static_cast<int>(index)); });
}

Explorer::~Explorer()
{
    {
        const Lock lock(m_mutex);
        m_stopped = true;
    }
    for (Worker& worker : m_workers) {
        worker.wake.notify_one();
        worker.thread.join();
    }
}

void Explorer::run(std::vector<std::function<void()>> threads)
{
    Lock lock(m_mutex);
    if (threads.size() > kMaxThreads) _giveUp("there are too many threads");
    m_depth = 0;
    m_trace.clear();
    m_running = threads.size();
    for (std::size_t index = 0; index < threads.size(); ++index) {
        m_workers[index].work = std::move(threads[index]);
        m_workers[index].point = "begin";
        m_workers[index].alive = true;
    }
    _passTurn(lock, kNobody);
    if (!m_allEnded.wait_for(lock, kPatience, [this] { return m_running == 0; }))
        _giveUp("a thread waits where no point says so");
}

bool Explorer::next()
{
    while (!m_path.empty() && m_path.back().chosen + 1 == m_path.back().choices.size())
        m_path.pop_back();
    if (m_path.empty()) return false;
    ++m_path.back().chosen;
    return true;
}

void Explorer::reach(const char* point, const std::function<bool()>* condition)
{
    if (t_explorer) t_explorer->_reach(t_self, point, condition);
}

std::string Explorer::trace() const
{
    std::string text;
    for (const auto& [worker, point] : m_trace)
        text += (text.empty() ? "" : ", ") + std::to_string(worker) + " " + point;
    return text;
}

void Explorer::_serve(int self)
{
    t_explorer = this;
    t_self = self;
    Worker& worker = m_workers[self];
    Lock lock(m_mutex);
    for (;;) {
        worker.wake.wait(lock, [&] { return m_stopped || m_turn == self; });
        if (m_stopped) return;
        m_trace.emplace_back(self, worker.point);
        lock.unlock();
        try {
            std::exchange(worker.work, nullptr)();
        } catch (const std::exception& error) {
            ADD_FAILURE() << "thread " << self << " threw: " << error.what();
        } catch (...) {
            ADD_FAILURE() << "thread " << self << " threw";
        }
        lock.lock();
        worker.alive = false;
        m_turn = kNobody;
        if (--m_running == 0)
            m_allEnded.notify_one();
        else
            _passTurn(lock, self);
    }
}

void Explorer::_reach(int self, const char* point, const std::function<bool()>* condition)
{
    const bool endsStep = _endsStep(point);
    const bool mayGoOn = !condition || (*condition)();
    if (!endsStep && mayGoOn) return;
    Lock lock(m_mutex);
    Worker& worker = m_workers[self];
    worker.point = point;
    worker.condition = condition;
    _passTurn(lock, self);
    _waitForTurn(lock, self);
    worker.condition = nullptr;
    m_trace.emplace_back(self, point);
}

bool Explorer::_endsStep(const char* point) const
{
    for (const std::string& name : m_points) {
        if (name == point) return true;
        if (name.back() == '.' && std::strncmp(name.c_str(), point, name.size()) == 0) return true;
    }
    return false;
}

void Explorer::_waitForTurn(Lock& lock, int self)
{
    Worker& worker = m_workers[self];
    while (m_turn != self) {
        worker.wake.wait(lock, [&] { return m_turn == self || worker.asked; });
        if (!worker.asked) continue;
        worker.mayGoOn = (*worker.condition)();
        worker.asked = false;
        m_answered.notify_one();
    }
}

void Explorer::_passTurn(Lock& lock, int self)
{
    if (m_depth == m_path.size()) m_path.push_back(Decision{_choices(lock, self), 0});
    const Decision& decision = m_path[m_depth++];
    if (decision.choices.empty()) _giveUp("no thread can go on");
    m_turn = decision.choices[decision.chosen];
    if (m_turn != self) m_workers[m_turn].wake.notify_one();
}

// Whoever has the turn comes first: then most runs differ from the one before in one step.
std::vector<int> Explorer::_choices(Lock& lock, int self)
{
    std::vector<int> choices;
    if (self != kNobody && _mayGoOn(lock, self, self)) choices.push_back(self);
    for (int worker = 0; worker < static_cast<int>(kMaxThreads); ++worker)
        if (worker != self && _mayGoOn(lock, worker, self)) choices.push_back(worker);
    return choices;
}

bool Explorer::_mayGoOn(Lock& lock, int index, int self)
{
    Worker& worker = m_workers[index];
    if (!worker.alive) return false;
    if (!worker.condition) return true;
    if (index == self) return (*worker.condition)();
    worker.asked = true;
    worker.wake.notify_one();
    m_answered.wait(lock, [&] { return !worker.asked; });
    return worker.mayGoOn;
}

void Explorer::_giveUp(const char* what) const
{
    std::fprintf(stderr, "%s, in the order: %s\n", what, trace().c_str());
    for (std::size_t index = 0; index < kMaxThreads; ++index)
        if (m_workers[index].alive)
            std::fprintf(stderr, "thread %zu stands at %s\n", index, m_workers[index].point);
    std::abort();
}

} // namespace vesk::tests

namespace vesk::base::detail {

void reachSyncPoint(const char* name) { vesk::tests::Explorer::reach(name, nullptr); }

void awaitAtSyncPoint(const char* name, const std::function<bool()>& condition)
{
    vesk::tests::Explorer::reach(name, &condition);
}

} // namespace vesk::base::detail
