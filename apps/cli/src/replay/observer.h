#pragma once

#include <apps/support/json.h>

#include <vesk/framework/usd_document/usd_document.h>

#include <memory>
#include <mutex>
#include <string>

#include <spdlog/logger.h>

namespace vesk::cli::replay {

/// Collects what the renderer, the bus, the document and the log see while a session runs.
///
/// Thread: any.
class Observer : public std::enable_shared_from_this<Observer>
{
public:
    /// What came since the last call, under the keys "calls", "events", "tasks" and "log".
    apps::Json take();

    void onCall(const char* operation, apps::Json arguments);
    void onEvent(const std::any& event);
    void onTask(const framework::usd_document::UsdDocument::TaskRecord& task);
    void onLog(const std::string& level, const std::string& text);

    /// Watches a document's bus and its queue for as long as the document lives.
    void watch(framework::usd_document::UsdDocument& document);

private:
    std::mutex m_mutex;
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
