#include <tests/support/log_capture.h>

#include <gtest/gtest.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>

#include <utility>

namespace vesk::tests {

class LogCapture::Sink : public spdlog::sinks::base_sink<std::mutex>
{
public:
    std::vector<LogRecord> take()
    {
        std::lock_guard<std::mutex> lock(mutex_);
        return std::exchange(m_records, {});
    }

protected:
    void sink_it_(const spdlog::details::log_msg& message) override
    {
        LogRecord record;
        record.level = message.level;
        record.text.assign(message.payload.data(), message.payload.size());
        record.file = message.source.filename ? message.source.filename : "";
        record.line = message.source.line;
        record.function = message.source.funcname ? message.source.funcname : "";
        m_records.push_back(std::move(record));
    }
    void flush_() override {}

private:
    std::vector<LogRecord> m_records;
};

LogCapture::LogCapture() : m_sink(std::make_shared<Sink>()), m_former(spdlog::default_logger())
{
    auto logger = std::make_shared<spdlog::logger>("capture", m_sink);
    logger->set_level(spdlog::level::debug);
    spdlog::set_default_logger(std::move(logger));
}

LogCapture::~LogCapture()
{
    spdlog::set_default_logger(m_former);
    if (m_allowUntaken) return;
    for (const LogRecord& record : m_sink->take()) {
        ADD_FAILURE() << "unexpected log record: " << record.text << " (" << record.file << ":" << record.line
                      << ")";
    }
}

std::vector<LogRecord> LogCapture::take() { return m_sink->take(); }

std::vector<std::string> LogCapture::takeTexts()
{
    std::vector<std::string> texts;
    for (LogRecord& record : take())
        texts.push_back(std::move(record.text));
    return texts;
}

void LogCapture::allowUntaken() { m_allowUntaken = true; }

} // namespace vesk::tests
