#include "host/tools/ToolEvents.h"

#include <algorithm>

#include "core/sculpt/LNode.h"
#include "host/tools/PointerListener.h"
#include "host/tools/Tablet.h"
#include "host/tools/ViewWindows.h"

// Last, since their macros are names of ours.
#include <X11/Intrinsic.h>
#include <X11/keysym.h>

namespace VantrelSDK {

namespace {

constexpr EventMask kPointerEvents =
    PointerMotionMask | LeaveWindowMask | ButtonPressMask | ButtonReleaseMask;
constexpr EventMask kKeyEvents = KeyPressMask | KeyReleaseMask;

bool altPressed = false;

void TakeModifiers(unsigned state) {
    SetModifiers(state & ShiftMask, state & ControlMask, state & Mod1Mask);
}

/// Motion and leaving, where y counts downward.
struct PointerRecord {
    enum Kind { kMove, kLeave } kind;
    int x, y;
};

void motionEventHandler(PointerListener& tool, Widget widget, const PointerRecord& record) {
    M3dView view;
    if (!FindView(widget, view)) return;
    if (record.kind == PointerRecord::kLeave) return tool.onMouseLeave();
    tool.onMouseMove(view, static_cast<short>(record.x),
                     static_cast<short>(view.portHeight() - record.y - 1));
}

void XEventHandler(Widget widget, XtPointer client, XEvent* event, Boolean* goOn) {
    *goOn = True;
    PointerListener& tool = *static_cast<PointerListener*>(client);
    switch (event->type) {
        case MotionNotify:
            TakeModifiers(event->xmotion.state);
            tool.BeforeMove();
            motionEventHandler(tool, widget,
                               {PointerRecord::kMove, event->xmotion.x, event->xmotion.y});
            break;
        case LeaveNotify:
            motionEventHandler(tool, widget,
                               {PointerRecord::kLeave, event->xcrossing.x, event->xcrossing.y});
            break;
        case ButtonPress:
        case ButtonRelease:
            if (event->xbutton.button == Button1) Tablet_SetLMB(event->type == ButtonPress);
            break;
        default:
            break;
    }
}

/// The keys that make another mode of the tool's, which is seen, and the one that takes a drag
/// back.
void KeyHandler(Widget, XtPointer client, XEvent* event, Boolean* goOn) {
    *goOn = True;
    if (event->type != KeyPress && event->type != KeyRelease) return;
    const bool down = event->type == KeyPress;
    bool shift = IsShiftPressed(), ctrl = IsCtrlPressed(), alt = altPressed;
    switch (XLookupKeysym(&event->xkey, 0)) {
        case XK_Shift_L:
        case XK_Shift_R:
            shift = down;
            break;
        case XK_Control_L:
        case XK_Control_R:
            ctrl = down;
            break;
        case XK_Alt_L:
        case XK_Alt_R:
            alt = down;
            break;
        case XK_Escape:
            if (down) static_cast<PointerListener*>(client)->onCancel();
            return;
        default:
            return;
    }
    SetModifiers(shift, ctrl, alt);
    M3dView::active3dView().refresh(true, false);
}

/// Keys go to the window that a view is in: one that the view took would be lost for the others.
Widget WindowOf(Widget widget) {
    while (!XtIsShell(widget) && XtParent(widget)) widget = XtParent(widget);
    return widget;
}

}  // namespace

bool IsAltOptionKeyPressed() {
    return altPressed;
}

void SetModifiers(bool shift, bool ctrl, bool alt) {
    SetShiftPressed(shift);
    SetCtrlPressed(ctrl);
    altPressed = alt;
}

void ToolEvents::Add(PointerListener& tool) {
    listener_ = &tool;
    const std::vector<_WidgetRec*> present = ViewWidgets();
    std::erase_if(widgets_, [&](_WidgetRec* w) { return !std::ranges::count(present, w); });
    for (_WidgetRec* widget : present) {
        if (std::ranges::count(widgets_, widget)) continue;
        XtAddEventHandler(widget, kPointerEvents, False, XEventHandler, &tool);
        XtAddEventHandler(WindowOf(widget), kKeyEvents, False, KeyHandler, &tool);
        Tablet_AddEventHandler(widget);
        widgets_.push_back(widget);
    }
}

void ToolEvents::Remove() {
    // Handlers of a window that is gone went with it.
    for (_WidgetRec* widget : ViewWidgets()) {
        if (!std::ranges::count(widgets_, widget)) continue;
        XtRemoveEventHandler(widget, kPointerEvents, False, XEventHandler, listener_);
        XtRemoveEventHandler(WindowOf(widget), kKeyEvents, False, KeyHandler, listener_);
        Tablet_RemoveEventHandler(widget);
    }
    widgets_.clear();
    listener_ = nullptr;
}

bool ToolEvents::Covers(const M3dView& view) const {
    return view.widget() && std::ranges::count(widgets_, view.widget()) > 0;
}

}  // namespace VantrelSDK
