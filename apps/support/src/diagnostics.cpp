#include <apps/support/diagnostics.h>

#include <apps/support/errors.h>
#include <apps/support/outputs.h>

#include <pxr/base/tf/diagnosticMgr.h>
#include <pxr/base/tf/error.h>
#include <pxr/base/tf/status.h>
#include <pxr/base/tf/warning.h>

#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/null_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::apps {
namespace {

std::shared_ptr<spdlog::sinks::sink> makeSink(const std::string& destination)
{
    if (destination.empty()) return std::make_shared<spdlog::sinks::null_sink_mt>();
    if (destination == "-") return std::make_shared<spdlog::sinks::stderr_sink_mt>();
    // The sink itself would make the folders that are missing.
    requireWritable(destination);
    try {
        return std::make_shared<spdlog::sinks::basic_file_sink_mt>(destination, true);
    } catch (const spdlog::spdlog_ex& error) {
        throw JobError("cannot write the log '" + destination + "': " + oneLine(error.what()));
    }
}

/// Hands OpenUSD's diagnostics to the logger.
class LoggingDelegate : public TfDiagnosticMgr::Delegate
{
public:
    explicit LoggingDelegate(std::shared_ptr<spdlog::logger> logger) : m_logger(std::move(logger)) {}

    void IssueError(const TfError& error) override { m_logger->error("{}", error.GetCommentary()); }
    void IssueWarning(const TfWarning& warning) override { m_logger->warn("{}", warning.GetCommentary()); }
    void IssueStatus(const TfStatus& status) override { m_logger->info("{}", status.GetCommentary()); }
    void IssueFatalError(const TfCallContext&, const std::string& text) override
    {
        m_logger->critical("{}", text);
        m_logger->flush();
    }

private:
    std::shared_ptr<spdlog::logger> m_logger;
};

} // namespace

struct Diagnostics::State
{
    explicit State(const std::shared_ptr<spdlog::logger>& logger) : delegate(logger) {}

    std::shared_ptr<spdlog::logger> former = spdlog::default_logger();
    LoggingDelegate delegate;
};

Diagnostics::Diagnostics(const std::string& destination)
{
    auto logger = std::make_shared<spdlog::logger>("vesk", makeSink(destination));
    logger->set_level(spdlog::level::debug);
    logger->flush_on(spdlog::level::warn);
    m_state = std::make_unique<State>(logger);
    spdlog::set_default_logger(logger);
    TfDiagnosticMgr::GetInstance().AddDelegate(&m_state->delegate);
    TfDiagnosticMgr::GetInstance().SetQuiet(true);
}

Diagnostics::~Diagnostics()
{
    TfDiagnosticMgr::GetInstance().RemoveDelegate(&m_state->delegate);
    TfDiagnosticMgr::GetInstance().SetQuiet(false);
    spdlog::default_logger()->flush();
    spdlog::set_default_logger(m_state->former);
}

} // namespace vesk::apps
