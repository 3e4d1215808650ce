#include "minihost/window/ViewPointer.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "minihost/Host.h"
#include "minihost/view/Camera.h"

#include <X11/Intrinsic.h>

namespace minihost {
namespace {

constexpr EventMask kMask =
    ButtonPressMask | ButtonReleaseMask | PointerMotionMask | EnterWindowMask;
/// A step of the wheel, and a drag over the whole view, bring the camera to such a share of its
/// distance.
constexpr double kWheelShare = 0.9, kDragShare = 0.1;

short Pixel(int at) {
    return static_cast<short>(std::clamp(at, -32768, 32767));
}

}  // namespace

ViewPointer::ViewPointer(View& view, _WidgetRec* widget, std::function<bool()> busy)
    : view_(view), widget_(widget), busy_(std::move(busy)) {
    XtAddEventHandler(widget, kMask, False, Handle, this);
}

void ViewPointer::Handle(_WidgetRec*, void* self, _XEvent* event, char*) {
    auto& pointer = *static_cast<ViewPointer*>(self);
    switch (event->type) {
        case ButtonPress:
            return pointer.Press(*event);
        case ButtonRelease:
            return pointer.Release(*event);
        case MotionNotify:
            return pointer.Move(*event);
        case EnterNotify:
            if (pointer.drag_ == Drag::Nothing)
                pointer.Tell(Host::Get().tools.current(), &MPxContext::doEnterRegion,
                             event->xcrossing.x, event->xcrossing.y, event->xcrossing.state);
            return;
        default:
            return;
    }
}

void ViewPointer::Tell(const std::string& tool, MStatus (MPxContext::*what)(MEvent&), int x, int y,
                       unsigned state) {
    MPxContext* context = Host::Get().tools.Find(tool);
    if (!context) return;
    unsigned modifiers = 0;
    if (state & ShiftMask) modifiers |= MEvent::shiftKey;
    if (state & ControlMask) modifiers |= MEvent::controlKey;
    MEvent event(Pixel(x), Pixel(view_.height() - 1 - y),
                 button_ == Button2 ? MEvent::kMiddleMouse : MEvent::kLeftMouse, modifiers);
    (context->*what)(event);
}

void ViewPointer::Hover(const XEvent& press) {
    XEvent event = press;
    event.type = MotionNotify;
    event.xmotion.is_hint = NotifyNormal;
    XtDispatchEvent(&event);
}

void ViewPointer::Press(const XEvent& event) {
    const XButtonEvent& press = event.xbutton;
    if (drag_ != Drag::Nothing || busy_()) return;
    if (press.button == Button4 || press.button == Button5) {
        Camera(*view_.camera()).Dolly(press.button == Button4 ? kWheelShare : 1 / kWheelShare);
        return;
    }
    if (press.button > Button3) return;
    if (press.x != x_ || press.y != y_) Hover(event);
    button_ = press.button;
    if (press.state & Mod1Mask) {
        constexpr Drag kDrags[] = {Drag::Tumble, Drag::Track, Drag::Dolly};
        drag_ = kDrags[button_ - Button1];
        return;
    }
    if (button_ == Button3) return;
    drag_ = Drag::Tool;
    tool_ = Host::Get().tools.current();
    Tell(tool_, &MPxContext::doPress, press.x, press.y, press.state);
}

void ViewPointer::Move(const XEvent& event) {
    const XMotionEvent& move = event.xmotion;
    const int right = move.x - x_, down = move.y - y_;
    x_ = move.x;
    y_ = move.y;
    if (drag_ == Drag::Tool) {
        if (tool_ == Host::Get().tools.current())
            Tell(tool_, &MPxContext::doDrag, x_, y_, move.state);
    } else if (drag_ != Drag::Nothing) {
        MoveCamera(right, down);
    }
}

void ViewPointer::MoveCamera(int right, int down) {
    Camera camera(*view_.camera());
    const double width = view_.width(), x = right / width, y = down / width;
    if (drag_ == Drag::Tumble)
        camera.Tumble(-x * 2 * std::numbers::pi, -y * 2 * std::numbers::pi);
    else if (drag_ == Drag::Track)
        camera.Track(x, -y);
    else
        camera.Dolly(std::pow(kDragShare, x - y));
}

void ViewPointer::Release(const XEvent& event) {
    const XButtonEvent& release = event.xbutton;
    if (drag_ == Drag::Nothing || release.button != button_) return;
    // A release says where it is: a drag ends there.
    if (release.x != x_ || release.y != y_) Hover(event);
    if (drag_ == Drag::Tool && tool_ == Host::Get().tools.current())
        Tell(tool_, &MPxContext::doRelease, release.x, release.y, release.state);
    drag_ = Drag::Nothing;
}

}  // namespace minihost
