#include "minihost/window/XSession.h"

#include <X11/StringDefs.h>
#include <X11/XKBlib.h>
#include <unistd.h>

#include <cstdlib>

#include "minihost/Host.h"

namespace minihost {
namespace {

class WindowContext : public GLContext {
  public:
    WindowContext(Display* display, GLXWindow window, GLXContext context)
        : display_(display), window_(window), context_(context) {}
    ~WindowContext() override {
        glXMakeContextCurrent(display_, 0, 0, nullptr);
        glXDestroyContext(display_, context_);
        glXDestroyWindow(display_, window_);
    }

    bool MakeCurrent() override {
        if (glXGetCurrentContext() == context_ && glXGetCurrentDrawable() == window_) return true;
        return glXMakeContextCurrent(display_, window_, window_, context_);
    }
    void Swap() override { glXSwapBuffers(display_, window_); }

  private:
    Display* display_;
    GLXWindow window_;
    GLXContext context_;
};

/// X tells of a request that failed long after it was made: there is nothing to be done but to say
/// so.
int TellOfError(Display* display, XErrorEvent* event) {
    char text[256];
    XGetErrorText(display, event->error_code, text, sizeof text);
    Host::Get().output().Warning(std::string("the display refused something: ") + text);
    return 0;
}

std::string DisplayName() {
    return XDisplayName(nullptr);
}

}  // namespace

std::unique_ptr<XSession> XSession::Open(std::string& error) {
    std::unique_ptr<XSession> session(new XSession);
    XtToolkitInitialize();
    session->app_ = XtCreateApplicationContext();
    char name[] = "kelmo";
    char* arguments[] = {name, nullptr};
    int count = 1;
    session->display_ =
        XtOpenDisplay(session->app_, nullptr, nullptr, "Kelmo", nullptr, 0, &count, arguments);
    if (!session->display_) {
        error = DisplayName().empty()
                    ? "there is no display: start it in a desktop, or set DISPLAY"
                    : "the display " + DisplayName() +
                          " can't be opened: set DISPLAY to one that this account may use";
        return nullptr;
    }
    Display* display = session->display_;
    XkbSetDetectableAutoRepeat(display, True, nullptr);
    XSetErrorHandler(TellOfError);
    // What there is to say is said by the handler that ends the process.
    XSetIOErrorHandler([](Display*) { return 0; });
    XSetIOErrorExitHandler(display, Lost, session.get());
    int ignored = 0;
    const int wanted[] = {GLX_RENDER_TYPE,
                          GLX_RGBA_BIT,
                          GLX_DRAWABLE_TYPE,
                          GLX_WINDOW_BIT,
                          GLX_DOUBLEBUFFER,
                          True,
                          GLX_RED_SIZE,
                          8,
                          GLX_GREEN_SIZE,
                          8,
                          GLX_BLUE_SIZE,
                          8,
                          GLX_X_RENDERABLE,
                          True,
                          None};
    const bool glx = glXQueryExtension(display, &ignored, &ignored);
    int found = 0;
    GLXFBConfig* configs =
        glx ? glXChooseFBConfig(display, DefaultScreen(display), wanted, &found) : nullptr;
    for (int i = 0; i < found && !session->visual_; ++i) {
        session->config_ = configs[i];
        session->visual_ = glXGetVisualFromFBConfig(display, configs[i]);
    }
    if (configs) XFree(configs);
    if (session->visual_) return session;
    error = "the display " + DisplayName() +
            " shows no OpenGL (it lacks GLX); install a driver with it (Debian: "
            "libgl1-mesa-dri), or work on a display of this machine";
    return nullptr;
}

XSession::~XSession() {
    if (visual_) XFree(visual_);
    if (!display_) {
        XtDestroyApplicationContext(app_);
        return;
    }
    // The connection stays: it is the process's, and a driver that is unloaded with it leaves
    // threads and memory behind. What was asked of it is done.
    XSync(display_, True);
    XSetIOErrorExitHandler(display_, nullptr, nullptr);
}

std::unique_ptr<GLContext> XSession::MakeContext(unsigned long window, std::string& error) {
    const GLXContext context = glXCreateNewContext(display_, config_, GLX_RGBA_TYPE, nullptr, True);
    if (context) {
        auto made = std::make_unique<WindowContext>(
            display_, glXCreateWindow(display_, config_, window, nullptr), context);
        if (made->MakeCurrent()) return made;
    }
    error = "the display's OpenGL makes no context; look what glxinfo tells";
    return nullptr;
}

void XSession::Lost(Display* display, void* session) {
    const std::string message =
        std::string("the display ") + DisplayString(display) +
        " is gone (its server ended, or the connection broke); start again where there is one";
    if (const auto& lost = static_cast<XSession*>(session)->lost_) lost(message);
    // What called Xlib can't go on, and the drivers' clean-up would talk to the display.
    _exit(1);
}

}  // namespace minihost
