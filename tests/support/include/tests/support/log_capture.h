#pragma once

#include <spdlog/common.h>
#include <spdlog/logger.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace vesk::tests {

/// One log record as it reached the process-wide default logger.
struct LogRecord
{
    spdlog::level::level_enum level;
    std::string text;
    std::string file;
    int line = 0;
    std::string function;
};

/// Replaces the default logger by one that remembers every record at level debug and above, and puts the
/// former one back when it dies.
///
/// Records that nobody has taken when it dies fail the test: an unexpected record is a fault.
/// Thread: constructed and destroyed on one thread; records may arrive from any.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// Takes all records that have arrived since the last call, oldest first.
    std::vector<LogRecord> take();

    /// Takes all records and returns their texts.
    std::vector<std::string> takeTexts();

    /// Lets the capture die with records that nobody has taken.
    void allowUntaken();

private:
    class Sink;
    std::shared_ptr<Sink> m_sink;
    std::shared_ptr<spdlog::logger> m_former;
    bool m_allowUntaken = false;
};

} // namespace vesk::tests
