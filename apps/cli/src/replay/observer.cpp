#include "observer.h"

#include "values.h"

#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>

#include <utility>

namespace vesk::cli::replay {
namespace {

using apps::Json;

const char* levelName(spdlog::level::level_enum level)
{
    switch (level) {
    case spdlog::level::trace:
        return "trace";
    case spdlog::level::debug:
        return "debug";
    case spdlog::level::info:
        return "info";
    case spdlog::level::warn:
        return "warn";
    case spdlog::level::err:
        return "error";
    default:
        return "critical";
    }
}

class ObserverSink : public spdlog::sinks::base_sink<std::mutex>
{
public:
    explicit ObserverSink(std::shared_ptr<Observer> observer) : m_observer(std::move(observer)) {}

protected:
    void sink_it_(const spdlog::details::log_msg& message) override
    {
        m_observer->onLog(levelName(message.level),
                          std::string(message.payload.data(), message.payload.size()));
    }
    void flush_() override {}

private:
    std::shared_ptr<Observer> m_observer;
};

} // namespace

Json Observer::take()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return {{"calls", std::exchange(m_calls, Json::array())},
            {"events", std::exchange(m_events, Json::array())},
            {"tasks", std::exchange(m_tasks, Json::array())},
            {"log", std::exchange(m_log, Json::array())}};
}

void Observer::_setPaused(bool paused)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_paused = paused;
}

void Observer::_add(Json& list, Json entry)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_paused) list.push_back(std::move(entry));
}

void Observer::onCall(const char* operation, Json arguments)
{
    _add(m_calls, {{"op", operation}, {"args", std::move(arguments)}});
}

void Observer::onEvent(const std::any& event)
{
    Json json = eventJson(event);
    if (!json.is_null()) _add(m_events, std::move(json));
}

void Observer::onTask(const Json& task) { _add(m_tasks, task); }

void Observer::onLog(const std::string& level, const std::string& text)
{
    _add(m_log, {{"level", level}, {"text", text}});
}

std::shared_ptr<TaskQueue> Observer::watch(framework::usd_document::UsdDocument& document)
{
    const std::shared_ptr<Observer> self = shared_from_this();
    const auto queue = std::make_shared<TaskQueue>();
    document.getEventBus()->subscribeListener([self](const std::any& event) { self->onEvent(event); });
    document.setTaskObserver([self, queue](const framework::usd_document::UsdDocument::TaskRecord& task) {
        const Json json = {{"type", static_cast<int>(task.type)}, {"label", task.label}};
        self->onTask(json);
        queue->add(json);
    });
    return queue;
}

void TaskQueue::add(Json task)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_tasks.push_back(std::move(task));
}

Json TaskQueue::takeFirst()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_tasks.empty()) return nullptr;
    Json first = std::move(m_tasks.front());
    m_tasks.pop_front();
    return first;
}

LogObservation::LogObservation(std::shared_ptr<Observer> observer) : m_former(spdlog::default_logger())
{
    auto sinks = m_former->sinks();
    sinks.push_back(std::make_shared<ObserverSink>(std::move(observer)));
    auto logger = std::make_shared<spdlog::logger>(m_former->name(), sinks.begin(), sinks.end());
    logger->set_level(spdlog::level::debug);
    spdlog::set_default_logger(std::move(logger));
}

LogObservation::~LogObservation() { spdlog::set_default_logger(m_former); }

} // namespace vesk::cli::replay
