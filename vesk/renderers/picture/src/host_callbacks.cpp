#include <vesk/renderers/picture/host_callbacks.h>

#include <vesk/base/logging.h>

#include <algorithm>

namespace vesk::renderers::picture {

void HostCallbacks::setAfterRender(const std::function<void(bool)>& callback)
{
    std::function<void(bool)> replaced = callback; // destroyed after the lock: its captures are the host's
    const std::lock_guard lock(m_mutex);
    std::swap(m_afterRender, replaced);
}

// The callable is copied under the lock and called without it; what it throws is nobody's to handle.
template <class F>
void HostCallbacks::_run(F&& call)
{
    const std::thread::id self = std::this_thread::get_id();
    {
        const std::lock_guard lock(m_mutex);
        if (m_closed) return;
        m_running.push_back(self);
    }
    try {
        call();
    } catch (const std::exception& error) {
        VESK_LOG_WARN("A render callback threw: {}", error.what());
    } catch (...) {
        VESK_LOG_WARN("A render callback threw: {}", "an unknown exception");
    }
    const std::lock_guard lock(m_mutex);
    m_running.erase(std::find(m_running.begin(), m_running.end(), self));
    m_idle.notify_all();
}

bool HostCallbacks::progress(int samples, float fraction, bool converged)
{
    bool goOn = true;
    _run([&] {
        // Never replaced after construction, so no lock is needed to read it.
        if (m_progress) goOn = m_progress(samples, fraction, converged);
    });
    return goOn;
}

void HostCallbacks::afterRender(bool converged)
{
    _run([&] {
        std::function<void(bool)> callback;
        {
            const std::lock_guard lock(m_mutex);
            callback = m_afterRender;
        }
        if (callback) callback(converged);
    });
}

void HostCallbacks::close()
{
    const std::thread::id self = std::this_thread::get_id();
    std::unique_lock lock(m_mutex);
    m_closed = true;
    m_idle.wait(lock, [&] {
        return std::all_of(m_running.begin(), m_running.end(),
                           [&](std::thread::id id) { return id == self; });
    });
}

} // namespace vesk::renderers::picture
