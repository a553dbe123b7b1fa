#include "gl_context.h"

#include <vesk/base/error_handling.h>

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <system_error>
#include <vector>

namespace vesk::renderers::hydra {
namespace {

using framework::hydra_renderer::HWContext;

[[noreturn]] void fail(const char* text)
{
    throw base::error_handling::Exception(std::make_error_code(std::errc::no_such_device), text);
}

template <class F>
F eglFunction(const char* name)
{
    return reinterpret_cast<F>(eglGetProcAddress(name));
}

// Displays that need no window system, the ones of devices first: there a GPU is found before software.
std::vector<EGLDisplay> offscreenDisplays()
{
    std::vector<EGLDisplay> displays;
    const auto getDisplay = eglFunction<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT");
    if (!getDisplay) return displays;
    if (const auto queryDevices = eglFunction<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT")) {
        EGLint count = 0;
        queryDevices(0, nullptr, &count);
        std::vector<EGLDeviceEXT> devices(static_cast<std::size_t>(count > 0 ? count : 0));
        if (!devices.empty() && queryDevices(count, devices.data(), &count)) {
            for (EGLDeviceEXT device : devices)
                displays.push_back(getDisplay(EGL_PLATFORM_DEVICE_EXT, device, nullptr));
        }
    }
    displays.push_back(getDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr));
    return displays;
}

/// An OpenGL context with a window of one pixel: Storm culls with draws that need a complete framebuffer,
/// though they leave nothing in it.
class OffscreenContext final : public HWContext
{
public:
    /// Returns null where the display offers no such context.
    static std::shared_ptr<OffscreenContext> make(EGLDisplay display);

    ~OffscreenContext() override
    {
        if (m_surface != EGL_NO_SURFACE) eglDestroySurface(m_display, m_surface);
        if (m_context != EGL_NO_CONTEXT) eglDestroyContext(m_display, m_context);
    }

    bool makeCurrent() override
    {
        return eglBindAPI(EGL_OPENGL_API) && eglMakeCurrent(m_display, m_surface, m_surface, m_context);
    }
    void doneCurrent() override { eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT); }

private:
    explicit OffscreenContext(EGLDisplay display) : m_display(display) {}

    EGLDisplay m_display;
    EGLContext m_context = EGL_NO_CONTEXT;
    EGLSurface m_surface = EGL_NO_SURFACE;
};

// The compatibility profile: Storm leaves errors behind in a core profile.
std::shared_ptr<OffscreenContext> OffscreenContext::make(EGLDisplay display)
{
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr)) return nullptr;
    if (!eglBindAPI(EGL_OPENGL_API)) return nullptr;
    const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
                             EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(display, wanted, &config, 1, &count) || count < 1) return nullptr;
    const EGLint attributes[] = {EGL_CONTEXT_MAJOR_VERSION,
                                 4,
                                 EGL_CONTEXT_MINOR_VERSION,
                                 5,
                                 EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                 EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT,
                                 EGL_NONE};
    const EGLint onePixel[] = {EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE};
    const std::shared_ptr<OffscreenContext> made(new OffscreenContext(display));
    made->m_context = eglCreateContext(display, config, EGL_NO_CONTEXT, attributes);
    if (made->m_context == EGL_NO_CONTEXT) return nullptr;
    made->m_surface = eglCreatePbufferSurface(display, config, onePixel);
    if (made->m_surface == EGL_NO_SURFACE || !made->makeCurrent()) return nullptr;
    made->doneCurrent();
    return made;
}

} // namespace

std::shared_ptr<HWContext> makeOffscreenContext()
{
    for (EGLDisplay display : offscreenDisplays()) {
        if (auto context = OffscreenContext::make(display)) return context;
    }
    fail("Hydra cannot draw: EGL offers no OpenGL 4.5 context; install a driver (Debian: libegl1 and "
         "libgl1-mesa-dri draw without a GPU) or give the renderer a context of the host");
}

CurrentContext::CurrentContext(std::shared_ptr<HWContext> context) : m_context(std::move(context))
{
    if (m_context && !m_context->makeCurrent()) {
        m_context.reset();
        fail("Hydra cannot draw: the graphics context cannot be made current");
    }
}

CurrentContext::~CurrentContext()
{
    if (m_context) m_context->doneCurrent();
}

} // namespace vesk::renderers::hydra
