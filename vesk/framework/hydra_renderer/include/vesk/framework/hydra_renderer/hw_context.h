#pragma once

#include <vesk/framework/hydra_renderer/export.h>

namespace vesk::framework::hydra_renderer {

/// The graphics context that a host lends to its renderers.
///
/// A renderer that draws on a graphics device makes the context current around its device calls; a renderer
/// that draws on the CPU ignores it, so a host without a device passes a null pointer.
/// The host implements the class and keeps the context alive for as long as a renderer holds it.
class VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT HWContext
{
public:
    HWContext();
    virtual ~HWContext();
    HWContext(const HWContext&) = delete;
    HWContext& operator=(const HWContext&) = delete;

    /// Binds the context to the calling thread and returns whether that succeeded.
    /// Thread: the renderer's drawing thread.
    virtual bool makeCurrent() = 0;

    /// Releases the context from the calling thread.
    /// Thread: the thread that made it current.
    virtual void doneCurrent() = 0;
};

} // namespace vesk::framework::hydra_renderer
