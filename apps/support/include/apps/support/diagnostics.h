#pragma once

#include <memory>
#include <string>

namespace vesk::apps {

/// Sends log records and OpenUSD's diagnostics to one place, so that stdout carries the result alone and an
/// error stays one line on stderr.
///
/// While it lives, spdlog's default logger and OpenUSD's diagnostics go to the place that was named; it puts
/// the former default logger back. Thread: constructed and destroyed on the main thread.
class Diagnostics
{
public:
    /// \param destination empty: nowhere; "-": stderr; else a file, which is created or replaced
    /// Throws: `JobError` when the file cannot be written.
    explicit Diagnostics(const std::string& destination);
    ~Diagnostics();
    Diagnostics(const Diagnostics&) = delete;
    Diagnostics& operator=(const Diagnostics&) = delete;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace vesk::apps
