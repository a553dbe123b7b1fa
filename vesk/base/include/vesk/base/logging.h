#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include <spdlog/spdlog.h>

#include <vesk/base/export.h>

/// The module tag that log records carry in their function-name field. The build defines it for each library
/// of vesk; code outside vesk that instantiates our templates logs on behalf of the viewport.
#ifndef VESK_LOG_TAG
#define VESK_LOG_TAG "vesk_framework_usd_viewport"
#endif

namespace vesk::base::logging {

/// The process-wide default logger, or null when the host removed it or shut logging down. The first call
/// pins the logging library's registry, so that worker threads may log while the process ends. Thread: any.
VESK_BASE_EXPORT std::shared_ptr<spdlog::logger> defaultLogger();

/// Writes one record to the process-wide default logger; does nothing when there is none. The text of a user
/// belongs in the arguments, never in the format.
template <class... Args>
void write(spdlog::source_loc location, spdlog::level::level_enum level,
           spdlog::format_string_t<Args...> format, Args&&... args)
{
    if (const std::shared_ptr<spdlog::logger> logger = defaultLogger())
        logger->log(location, level, format, std::forward<Args>(args)...);
}

} // namespace vesk::base::logging

/// Logs with the file and line of the caller and the module tag of the library that is being compiled.
#define VESK_LOG(level, ...)                                                                                 \
    ::vesk::base::logging::write(spdlog::source_loc{__FILE__, __LINE__, VESK_LOG_TAG}, level, __VA_ARGS__)
#define VESK_LOG_DEBUG(...) VESK_LOG(spdlog::level::debug, __VA_ARGS__)
#define VESK_LOG_WARN(...) VESK_LOG(spdlog::level::warn, __VA_ARGS__)
#define VESK_LOG_ERROR(...) VESK_LOG(spdlog::level::err, __VA_ARGS__)
