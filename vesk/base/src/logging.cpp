#include <vesk/base/logging.h>

#include <atomic>
#include <cstdlib>

namespace vesk::base::logging {

namespace {
std::atomic<bool> s_exiting{false};
} // namespace

std::shared_ptr<spdlog::logger> defaultLogger()
{
    // The logging library's registry is a static. Having used it first, this handler runs before it is
    // destroyed, and threads that still work while the process exits find no logger instead of a dead one.
    static const bool hooked = [] {
        spdlog::default_logger();
        return std::atexit([] { s_exiting.store(true); }) == 0;
    }();
    if (!hooked || s_exiting.load()) return nullptr;
    return spdlog::default_logger();
}

} // namespace vesk::base::logging
