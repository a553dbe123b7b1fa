#pragma once

#include <vesk/renderers/picture/export.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace vesk::renderers::picture {

/// The host's callbacks. None runs any more once `close` has returned, the one that called it excepted.
class VESK_RENDERERS_PICTURE_EXPORT HostCallbacks
{
public:
    explicit HostCallbacks(std::function<bool(int, float, bool)> progress) : m_progress(std::move(progress))
    {}

    void setAfterRender(const std::function<void(bool)>& callback);

    /// Returns false when the host wants the frame cancelled.
    bool progress(int samples, float fraction, bool converged);
    void afterRender(bool converged);

    /// Waits for a callback that runs on another thread and lets none begin.
    void close();

private:
    template <class F>
    void _run(F&& call);

    std::mutex m_mutex;
    std::condition_variable m_idle;
    std::function<bool(int, float, bool)> m_progress;
    std::function<void(bool)> m_afterRender;
    std::vector<std::thread::id> m_running;
    bool m_closed = false;
};

} // namespace vesk::renderers::picture
