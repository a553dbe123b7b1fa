#pragma once

#include <cstdint>
#include <unistd.h>

namespace vesk::framework::usd_viewport {

/// Returns the system's number of the calling thread; no two living threads of the process share it.
inline std::uint32_t currentThreadId() { return static_cast<std::uint32_t>(::gettid()); }

} // namespace vesk::framework::usd_viewport
