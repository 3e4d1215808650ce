#include "minihost/view/GLContext.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstring>
#include <vector>

namespace minihost {
namespace {

class EGLContextHolder : public GLContext {
  public:
    EGLContextHolder(EGLDisplay display, EGLContext context)
        : display_(display), context_(context) {}
    // The display stays: it is the process's, and drivers start threads that outlive a context.
    ~EGLContextHolder() override {
        eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(display_, context_);
    }

    bool MakeCurrent() override {
        return eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_) == EGL_TRUE;
    }

  private:
    EGLDisplay display_;
    EGLContext context_;
};

bool Has(const char* extensions, const char* name) {
    return extensions && std::strstr(extensions, name) != nullptr;
}

/// The displays that could do, the likeliest first.
std::vector<EGLDisplay> Displays() {
    std::vector<EGLDisplay> displays;
    const char* known = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    const auto open = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
        eglGetProcAddress("eglGetPlatformDisplayEXT"));
    const auto list =
        reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    // Mesa's own takes a graphics card where there is one, and draws in software elsewhere.
    if (open && Has(known, "EGL_MESA_platform_surfaceless"))
        displays.push_back(open(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr));
    if (open && list && Has(known, "EGL_EXT_platform_device")) {
        EGLDeviceEXT devices[16];
        EGLint count = 0;
        if (list(16, devices, &count))
            for (EGLint i = 0; i < count; ++i)
                displays.push_back(open(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr));
    }
    displays.push_back(eglGetDisplay(EGL_DEFAULT_DISPLAY));
    return displays;
}

EGLContext ContextOf(EGLDisplay display) {
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr) ||
        !Has(eglQueryString(display, EGL_EXTENSIONS), "EGL_KHR_surfaceless_context") ||
        !eglBindAPI(EGL_OPENGL_API))
        return EGL_NO_CONTEXT;
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, EGL_PBUFFER_BIT,
                             EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(display, wanted, &config, 1, &count) || count == 0) return EGL_NO_CONTEXT;
    // Without attributes the profile is the compatible one.
    return eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
}

}  // namespace

std::unique_ptr<GLContext> GLContext::MakeOffscreen(std::string& error) {
    for (const EGLDisplay display : Displays()) {
        const EGLContext context = ContextOf(display);
        if (context == EGL_NO_CONTEXT) continue;
        auto made = std::make_unique<EGLContextHolder>(display, context);
        if (made->MakeCurrent()) return made;
    }
    error =
        "there is no OpenGL that draws without a display; "
        "install a driver with EGL (Debian: libegl1, libgl1-mesa-dri)";
    return nullptr;
}

}  // namespace minihost
