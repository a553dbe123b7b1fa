#pragma once

#include <apps/support/json.h>

#include <vesk/framework/usd_document/usd_document.h>

#include <deque>
#include <memory>
#include <mutex>
#include <string>

#include <spdlog/logger.h>

namespace vesk::cli::replay {

/// The tasks of one document that are queued and have not run, in their order.
///
/// Thread: any.
class TaskQueue
{
public:
    void add(apps::Json task);

    /// The task that runs first, as {"type", "label"}; null when there is none.
    apps::Json takeFirst();

private:
    std::mutex m_mutex;
    std::deque<apps::Json> m_tasks;
};

/// Collects what the renderer, the bus, the document and the log see while a session runs.
///
/// Thread: any.
class Observer : public std::enable_shared_from_this<Observer>
{
public:
    /// While it lives, nothing is collected.
    class Pause
    {
    public:
        explicit Pause(Observer& observer) : m_observer(observer) { m_observer._setPaused(true); }
        ~Pause() { m_observer._setPaused(false); }
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        Observer& m_observer;
    };

    /// What came since the last call, under the keys "calls", "events", "tasks" and "log".
    apps::Json take();

    void onCall(const char* operation, apps::Json arguments);
    void onEvent(const std::any& event);
    void onTask(const apps::Json& task);
    void onLog(const std::string& level, const std::string& text);

    /// Watches a document's bus and its queue for as long as the document lives; returns what is queued.
    std::shared_ptr<TaskQueue> watch(framework::usd_document::UsdDocument& document);

private:
    void _setPaused(bool paused);
    void _add(apps::Json& list, apps::Json entry);

    std::mutex m_mutex;
    bool m_paused = false;
    apps::Json m_calls = apps::Json::array();
    apps::Json m_events = apps::Json::array();
    apps::Json m_tasks = apps::Json::array();
    apps::Json m_log = apps::Json::array();
};

/// Tells an observer of every record of the default logger, besides where records go already, while it lives.
class LogObservation
{
public:
    explicit LogObservation(std::shared_ptr<Observer> observer);
    ~LogObservation();
    LogObservation(const LogObservation&) = delete;
    LogObservation& operator=(const LogObservation&) = delete;

private:
    std::shared_ptr<spdlog::logger> m_former;
};

} // namespace vesk::cli::replay
