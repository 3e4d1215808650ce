#include "minihost/window/Window.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>

#include "minihost/Host.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/view/GLContext.h"
#include "minihost/view/ViewWindow.h"
#include "minihost/window/ViewPointer.h"

#include "minihost/window/KeyText.h"
#include "minihost/window/ViewWidget.h"
#include "minihost/window/XSession.h"

#include <X11/Composite.h>
#include <X11/IntrinsicP.h>
#include <X11/Shell.h>
#include <X11/StringDefs.h>

namespace minihost {
namespace {

using Clock = std::chrono::steady_clock;

double Since(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

constexpr EventMask kAround = ButtonPressMask | ButtonReleaseMask | PointerMotionMask |
                              EnterWindowMask | LeaveWindowMask | ExposureMask |
                              StructureNotifyMask;
constexpr EventMask kOverView =
    ButtonPressMask | ButtonReleaseMask | PointerMotionMask | EnterWindowMask | LeaveWindowMask;
constexpr EventMask kOfShell = KeyPressMask | KeyReleaseMask | FocusChangeMask;
/// The smallest window that is given out.
constexpr int kLeast = 1;
constexpr int kUsualSamples = 4;

bool SoftwareDraws() {
    const auto* renderer = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    const std::string_view name = renderer ? renderer : "";
    return std::ranges::any_of(std::array{"llvmpipe", "softpipe", "swrast", "Software"},
                               [name](const char* part) { return name.find(part) != name.npos; });
}

}  // namespace

class Window::Impl : public ViewWindow {
  public:
    Impl(const Options& options, Surroundings& surroundings)
        : camera(options.camera), samples(options.samples), surroundings_(surroundings) {}
    ~Impl() override {
        if (context_) Host::Get().views.Forget();
        keys_.reset();
        if (shell_) XtDestroyWidget(shell_);
    }

    std::string Open(const Options& options);
    void Run();
    void Breathe();
    void Frame(bool drawView);

    void Touch() override { dirty_ = true; }
    void Show() override { Frame(true); }
    _WidgetRec* widget() const override { return pad_; }
    _XDisplay* display() const override { return x_->display(); }
    unsigned long window() const override { return XtWindow(pad_); }

    View& view() { return *view_; }
    GLContext& context() { return *context_; }
    int width() const { return std::max(kLeast, static_cast<int>(AreaSize().width)); }
    int height() const { return std::max(kLeast, static_cast<int>(AreaSize().height)); }
    bool isDragging() const { return pointer_ && pointer_->isDragging(); }
    void SetTitle(const std::string& title);
    void SetSamples(int wanted) {
        samples = wanted;
        placed_ = false;
        dirty_ = true;
    }
    void DrawAll(bool drawView);

    std::string camera;
    /// A pixel of the view.
    int samples;
    bool closing = false, redraw = true, measures = false;
    std::function<void(const FrameTimes&)> onFrame;

  private:
    static void Around(Widget, XtPointer self, XEvent* event, Boolean*);
    static void InView(Widget, XtPointer self, XEvent* event, Boolean*);

    void MakeShell(const Options& options);
    WindowPlace AreaSize() const;
    void Handle(const XEvent& event, bool inView);
    void HandleKey(XEvent& event);
    /// Takes the next event from the queue and hands it on.
    void DispatchNext();
    void Dispatch(XEvent& event);
    bool TakesHostTurn();
    void Wait();
    /// Brings the view, its buffer and its pad to where they belong.
    void Arrange();

    Surroundings& surroundings_;
    std::unique_ptr<XSession> x_;
    Widget shell_ = nullptr, area_ = nullptr, pad_ = nullptr;
    Atom deleteWindow_ = 0;
    GLContext* context_ = nullptr;
    View* view_ = nullptr;
    std::optional<ViewPointer> pointer_;
    std::optional<KeyText> keys_;
    WindowPlace place_, size_;
    bool padIsMapped_ = true, placed_ = false, dirty_ = true, drawing_ = false,
         takenFromView_ = false;
    std::uint64_t shown_ = 0;
    FrameTimes times_;
};

std::string Window::Impl::Open(const Options& options) {
    std::string error;
    x_ = XSession::Open(error);
    if (!x_) return error;
    x_->SetLost([this](const std::string& message) { surroundings_.DisplayLost(message); });
    MakeShell(options);
    Host::Get().views.Forget();
    auto context = x_->MakeContext(XtWindow(area_), error);
    if (!context) return error;
    context_ = context.get();
    if (samples < 0) samples = SoftwareDraws() ? 0 : kUsualSamples;
    place_ = surroundings_.ViewPlace(width(), height());
    PictureOptions picture{options.camera, place_.width, place_.height, samples};
    view_ = Host::Get().views.OpenWindow(std::move(context), *this, picture, error);
    if (!view_) return error;
    pointer_.emplace(*view_, pad_, [this] { return surroundings_.TakesAll(); });
    XtAddEventHandler(pad_, kOverView, False, InView, this);
    return {};
}

void Window::Impl::MakeShell(const Options& options) {
    const XVisualInfo& visual = x_->visual();
    Display* display = x_->display();
    const Colormap colors =
        XCreateColormap(display, RootWindow(display, visual.screen), visual.visual, AllocNone);
    // On a small screen all of it is seen.
    const int width = std::min(options.width, DisplayWidth(display, visual.screen)),
              height = std::min(options.height, DisplayHeight(display, visual.screen));
    Arg arguments[12];
    Cardinal n = 0;
    const auto add = [&](const char* name, XtArgVal value) {
        XtSetArg(arguments[n], const_cast<char*>(name), value);
        ++n;
    };
    add(XtNvisual, reinterpret_cast<XtArgVal>(visual.visual));
    add(XtNdepth, visual.depth);
    add(XtNcolormap, static_cast<XtArgVal>(colors));
    add(XtNwidth, width);
    add(XtNheight, height);
    add(XtNinput, True);
    add(XtNborderWidth, 0);
    add(XtNtitle, reinterpret_cast<XtArgVal>(options.title.c_str()));
    shell_ = XtAppCreateShell("kelmo", "Kelmo", applicationShellWidgetClass, display, arguments, n);
    n = 0;
    add(XtNwidth, width);
    add(XtNheight, height);
    add(XtNborderWidth, 0);
    area_ = XtCreateManagedWidget("area", compositeWidgetClass, shell_, arguments, n);
    n = 0;
    add(XtNwidth, 1);
    add(XtNheight, 1);
    add(XtNborderWidth, 0);
    pad_ = XtCreateWidget("view", viewWidgetClass, area_, arguments, n);
    XtAddEventHandler(area_, kAround, True, Around, this);
    XtAddEventHandler(shell_, kOfShell, True, Around, this);
    XtRealizeWidget(shell_);
    XtMapWidget(pad_);
    // Nobody paints under what OpenGL draws.
    XSetWindowBackgroundPixmap(display, XtWindow(area_), 0);
    deleteWindow_ = XInternAtom(display, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(display, XtWindow(shell_), &deleteWindow_, 1);
    keys_.emplace(display, XtWindow(shell_));
}

WindowPlace Window::Impl::AreaSize() const {
    Dimension width = 1, height = 1;
    XtVaGetValues(area_, XtNwidth, &width, XtNheight, &height, nullptr);
    return {0, 0, width, height};
}

void Window::Impl::SetTitle(const std::string& title) {
    XtVaSetValues(shell_, XtNtitle, title.c_str(), nullptr);
}

void Window::Impl::Around(Widget, XtPointer self, XEvent* event, Boolean*) {
    static_cast<Impl*>(self)->Handle(*event, false);
}

void Window::Impl::InView(Widget, XtPointer self, XEvent* event, Boolean*) {
    auto& impl = *static_cast<Impl*>(self);
    // A press that came before the pad was gone is for the surroundings all the same.
    bool& taken = impl.takenFromView_;
    if (event->type == ButtonPress) {
        if (impl.isDragging() || !impl.surroundings_.TakesAll()) return;
        taken = true;
    } else if (event->type == ButtonRelease && !std::exchange(taken, false)) {
        return;
    }
    impl.Handle(*event, true);
}

void Window::Impl::Handle(const XEvent& event, bool inView) {
    WindowEvent told;
    using Kind = WindowEvent::Kind;
    const auto at = [&](int x, int y, unsigned state) {
        told.x = x + (inView ? place_.x : 0);
        told.y = y + (inView ? place_.y : 0);
        told.shift = state & ShiftMask;
        told.control = state & ControlMask;
        told.alt = state & Mod1Mask;
        told.inView = inView;
    };
    redraw = redraw || !inView;
    switch (event.type) {
        case MotionNotify:
            at(event.xmotion.x, event.xmotion.y, event.xmotion.state);
            break;
        case EnterNotify:
            at(event.xcrossing.x, event.xcrossing.y, event.xcrossing.state);
            break;
        case LeaveNotify:
            told.kind = Kind::Leave;
            break;
        case ButtonPress:
        case ButtonRelease: {
            const XButtonEvent& button = event.xbutton;
            at(button.x, button.y, button.state);
            told.kind = event.type == ButtonPress ? Kind::Press : Kind::Release;
            told.button = static_cast<int>(button.button);
            if (button.button < Button4) break;
            if (event.type == ButtonRelease) return;
            told.kind = Kind::Wheel;
            told.wheel = button.button == 4 ? 1 : button.button == 5 ? -1 : 0;
            told.wheelAcross = button.button == 6 ? 1 : button.button == 7 ? -1 : 0;
            break;
        }
        case FocusIn:
            told.kind = Kind::Focus;
            break;
        case FocusOut:
            told.kind = Kind::Unfocus;
            break;
        default:
            return;
    }
    surroundings_.Handle(told);
}

void Window::Impl::HandleKey(XEvent& event) {
    WindowEvent told;
    told.kind = event.type == KeyPress ? WindowEvent::Kind::KeyDown : WindowEvent::Kind::KeyUp;
    const XKeyEvent& key = event.xkey;
    told.inView = key.window == XtWindow(pad_) || key.subwindow == XtWindow(pad_);
    told.x = key.x;
    told.y = key.y;
    told.shift = key.state & ShiftMask;
    told.control = key.state & ControlMask;
    told.alt = key.state & Mod1Mask;
    keys_->Read(event, told.key, told.text);
    redraw = true;
    surroundings_.Handle(told);
}

void Window::Impl::DispatchNext() {
    XEvent event;
    XtAppNextEvent(x_->app(), &event);
    if (event.type == ClientMessage && static_cast<Atom>(event.xclient.data.l[0]) == deleteWindow_)
        return surroundings_.CloseAsked();
    Dispatch(event);
    ++times_.events;
}

void Window::Impl::Dispatch(XEvent& event) {
    const bool key = event.type == KeyPress || event.type == KeyRelease;
    if (key && XFilterEvent(&event, 0)) return;  // a part of what is being typed
    XtDispatchEvent(&event);
    if (key) HandleKey(event);
}

bool Window::Impl::TakesHostTurn() {
    Host& host = Host::Get();
    return host.playback.isPlaying() || !host.idle.IsEmpty() || host.timers.Wait() == 0;
}

void Window::Impl::Wait() {
    Host& host = Host::Get();
    if (TakesHostTurn()) return;
    const double wait = host.timers.Wait();
    XtIntervalId alarm = 0;
    if (wait > 0)
        alarm = XtAppAddTimeOut(
            x_->app(), static_cast<unsigned long>(wait * 1000) + 1,
            [](XtPointer id, XtIntervalId*) { *static_cast<XtIntervalId*>(id) = 0; }, &alarm);
    // Ends with an event, which stays in the queue, or with the alarm.
    if (!(XtAppPending(x_->app()) & XtIMXEvent)) {
        XEvent event;
        if (wait > 0)
            XtAppProcessEvent(x_->app(), XtIMTimer | XtIMXEvent);
        else
            XtAppPeekEvent(x_->app(), &event);
    }
    if (alarm) XtRemoveTimeOut(alarm);
}

void Window::Impl::Run() {
    closing = false;
    while (!closing) {
        // What came until now is done before the next frame, and what comes meanwhile after it:
        // a slow frame neither loses a point of a stroke nor is put off for ever.
        const Clock::time_point start = Clock::now();
        times_ = {};
        for (int waiting = XEventsQueued(x_->display(), QueuedAfterReading);
             waiting > 0 && !closing && XEventsQueued(x_->display(), QueuedAlready) > 0; --waiting)
            DispatchNext();
        Host::Get().Turn();
        times_.dispatch = Since(start);
        if (closing) break;
        if (dirty_ || redraw || shown_ != SceneRevision() || AreaSize() != size_) {
            Frame(false);
            continue;
        }
        Wait();
    }
}

void Window::Impl::Arrange() {
    size_ = AreaSize();
    const bool mapped = !surroundings_.TakesAll();
    if (mapped != padIsMapped_) {
        padIsMapped_ = mapped;
        mapped ? XtMapWidget(pad_) : XtUnmapWidget(pad_);
    }
    const WindowPlace place = surroundings_.ViewPlace(width(), height());
    if (place == place_ && view_->width() == place.width && view_->height() == place.height &&
        placed_)
        return;
    placed_ = true;
    place_ = place;
    dirty_ = true;
    XtConfigureWidget(pad_, static_cast<short>(place.x), static_cast<short>(place.y),
                      static_cast<unsigned short>(place.width),
                      static_cast<unsigned short>(place.height), 0);
    if (const std::string why = view_->Resize(place.width, place.height, samples); !why.empty())
        Host::Get().output().Error(why);
}

void Window::Impl::Frame(bool drawView) {
    if (drawing_) return;  // what is drawn asks to be drawn
    drawing_ = true;
    DrawAll(drawView);
    const Clock::time_point start = Clock::now();
    context_->Swap();
    times_.swap = Since(start);
    drawing_ = false;
    if (onFrame) onFrame(times_);
}

void Window::Impl::DrawAll(bool drawView) {
    Arrange();
    Clock::time_point start = Clock::now();
    if (drawView || dirty_ || shown_ != SceneRevision()) {
        if (const std::string why = view_->Draw(); !why.empty()) Host::Get().output().Error(why);
        times_.drawn = true;
        dirty_ = false;
        // What drawing itself brings up to date is shown by it.
        shown_ = SceneRevision();
    }
    if (measures) glFinish();
    times_.view = Since(start);
    start = Clock::now();
    context_->MakeCurrent();
    view_->Show(place_.x, height() - place_.y - place_.height);
    redraw = false;
    redraw = surroundings_.Draw(width(), height()) || redraw;
    if (measures) glFinish();
    times_.surroundings = Since(start);
}

void Window::Impl::Breathe() {
    if (drawing_) return;
    while (XPending(x_->display()) > 0) {
        XEvent event;
        XtAppNextEvent(x_->app(), &event);
        if (event.xany.window == XtWindow(pad_) && event.type != KeyPress) continue;
        Dispatch(event);
    }
    drawing_ = true;
    Arrange();
    context_->MakeCurrent();
    view_->Show(place_.x, height() - place_.y - place_.height);
    surroundings_.Draw(width(), height());
    context_->Swap();
    drawing_ = false;
    redraw = true;
}

Window::Window(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
Window::~Window() = default;

std::unique_ptr<Window> Window::Open(const Options& options, Surroundings& surroundings,
                                     std::string& error) {
    auto impl = std::make_unique<Impl>(options, surroundings);
    error = impl->Open(options);
    if (!error.empty()) return nullptr;
    return std::unique_ptr<Window>(new Window(std::move(impl)));
}

void Window::Run() {
    impl_->onFrame = onFrame;
    impl_->Run();
}
void Window::Close() {
    impl_->closing = true;
}
void Window::Breathe() {
    impl_->Breathe();
}
View& Window::view() {
    return impl_->view();
}
std::string Window::LookThrough(const std::string& camera) {
    const std::string why = Host::Get().views.LookThrough(impl_->view(), camera);
    if (why.empty()) impl_->camera = camera;
    impl_->Touch();
    return why;
}
const std::string& Window::camera() const {
    return impl_->camera;
}
int Window::samples() const {
    return impl_->samples;
}
void Window::SetSamples(int samples) {
    impl_->SetSamples(samples);
}
void Window::Measure() {
    impl_->measures = true;
}
void Window::Touch() {
    impl_->Touch();
}
void Window::Redraw() {
    impl_->redraw = true;
}
Picture Window::Read() {
    impl_->DrawAll(false);
    return ReadPixels(impl_->width(), impl_->height());
}
void Window::SetTitle(const std::string& title) {
    impl_->SetTitle(title);
}
int Window::width() const {
    return impl_->width();
}
int Window::height() const {
    return impl_->height();
}
bool Window::isDragging() const {
    return impl_->isDragging();
}

}  // namespace minihost
