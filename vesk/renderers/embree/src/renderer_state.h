#pragma once

#include "document_scene.h"
#include "frame_settings.h"

#include <vesk/framework/hydra_renderer/renderer_registry.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace vesk::renderers::embree {

/// The settings of a renderer: setters write here and return, frames copy from here. Thread: any.
class RendererState
{
public:
    /// A copy of the settings with the number of changes that made them.
    struct Copy
    {
        FrameSettings settings;
        std::uint64_t serial = 0;
        std::shared_ptr<DocumentScene> document;
    };

    Copy copy() const
    {
        const std::lock_guard lock(m_mutex);
        return {m_settings, m_serial, m_document};
    }

    /// Changes the settings under the lock.
    template <class F>
    void change(F&& f)
    {
        const std::lock_guard lock(m_mutex);
        f(m_settings);
        ++m_serial;
    }

    std::uint64_t serial() const
    {
        const std::lock_guard lock(m_mutex);
        return m_serial;
    }

    /// Sets what is shown and returns what was.
    std::shared_ptr<DocumentScene> exchangeDocument(std::shared_ptr<DocumentScene> document)
    {
        const std::lock_guard lock(m_mutex);
        std::swap(m_document, document);
        ++m_serial;
        return document;
    }

private:
    mutable std::mutex m_mutex;
    FrameSettings m_settings;
    std::uint64_t m_serial = 0;
    std::shared_ptr<DocumentScene> m_document;
};

/// The host's callbacks. None runs any more once `close` has returned, the one that called it excepted.
class HostCallbacks
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

} // namespace vesk::renderers::embree
