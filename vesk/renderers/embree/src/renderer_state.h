#pragma once

#include "document_scene.h"
#include "drawing.h"

#include <memory>
#include <mutex>

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

} // namespace vesk::renderers::embree
