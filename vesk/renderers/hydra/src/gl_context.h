#pragma once

#include <vesk/framework/hydra_renderer/hw_context.h>

#include <memory>

namespace vesk::renderers::hydra {

/// Makes an offscreen OpenGL 4.5 context of EGL: on the first device that offers one, else on Mesa's
/// surfaceless platform, which needs neither display nor GPU. Throws: `Exception` with one sentence where
/// there is none. Thread: the drawing thread.
std::shared_ptr<framework::hydra_renderer::HWContext> makeOffscreenContext();

/// Keeps a context current while it lives. Thread: the drawing thread.
class CurrentContext
{
public:
    /// Throws: `Exception` where the context cannot be made current.
    explicit CurrentContext(std::shared_ptr<framework::hydra_renderer::HWContext> context);
    ~CurrentContext();
    CurrentContext(const CurrentContext&) = delete;
    CurrentContext& operator=(const CurrentContext&) = delete;

private:
    std::shared_ptr<framework::hydra_renderer::HWContext> m_context;
};

} // namespace vesk::renderers::hydra
