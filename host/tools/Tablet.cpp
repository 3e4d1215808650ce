#include "host/tools/Tablet.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "core/sculpt/LNode.h"
#include "host/tools/ViewWindows.h"

// Last, since their macros are names of ours.
#include <X11/Intrinsic.h>
#include <X11/extensions/XInput.h>

namespace VantrelSDK {

namespace {

constexpr char kStylus[] = "Wacom Stylus";
constexpr int kPressureAxis = 2;
/// What is less is no pressure of a stylus.
constexpr float kLeastPressure = 0.001f;

struct {
    Display *display = nullptr, *selecting = nullptr;
    XDevice* device = nullptr;
    int motionType = 0;
    XEventClass motionClass = 0;
    TabletAxis axis;
    XtEventDispatchProc formerDispatch = nullptr;
    bool failed = false, buttonDown = false;
    float pressure = 1;
} tablet;

/// Of the classes of a device the first with a pressure axis that has a range.
bool FindAxis(const XDeviceInfo& device, TabletAxis& axis) {
    auto* at = reinterpret_cast<const char*>(device.inputclassinfo);
    for (int i = 0; i < device.num_classes; ++i) {
        const auto* any = reinterpret_cast<const XAnyClassInfo*>(at);
        if (any->c_class == ValuatorClass) {
            const auto* valuators = reinterpret_cast<const XValuatorInfo*>(at);
            if (valuators->num_axes > kPressureAxis) {
                const XAxisInfo& pressure = valuators->axes[kPressureAxis];
                axis = {pressure.min_value, pressure.max_value - pressure.min_value};
                return pressure.max_value > pressure.min_value;
            }
        }
        at += any->length;
    }
    return false;
}

bool IsStylus(Display* display, const XDeviceInfo& device) {
    if (device.type == None) return false;
    const std::unique_ptr<char, int (*)(void*)> name(XGetAtomName(display, device.type), XFree);
    return name && std::strcmp(name.get(), kStylus) == 0;
}

/// The first stylus, opened; null without one.
XDevice* OpenStylus(Display* display, TabletAxis& axis) {
    int opcode = 0, event = 0, error = 0, count = 0;
    if (!XQueryExtension(display, "XInputExtension", &opcode, &event, &error)) return nullptr;
    const std::unique_ptr<XDeviceInfo, void (*)(XDeviceInfo*)> devices(
        XListInputDevices(display, &count), XFreeDeviceList);
    for (int i = 0; devices && i < count; ++i) {
        const XDeviceInfo& device = devices.get()[i];
        if (IsStylus(display, device))
            return FindAxis(device, axis) ? XOpenDevice(display, device.id) : nullptr;
    }
    return nullptr;
}

/// Xt asks it for the events of widgets that listen.
void selectEvents(Widget widget, int*, XtPointer*, int count, XtPointer) {
    if (count > 0 && XtIsRealized(widget))
        XSelectExtensionEvent(XtDisplay(widget), XtWindow(widget), &tablet.motionClass, 1);
}

Boolean dispatchEvent(XEvent* event) {
    const auto* motion = reinterpret_cast<const XDeviceMotionEvent*>(event);
    Widget widget = XtWindowToWidget(motion->display, motion->window);
    return widget ? XtDispatchEventToWidget(widget, event) : False;
}

void eventHandler(Widget, XtPointer, XEvent* event, Boolean* goOn) {
    *goOn = True;
    if (event->type != tablet.motionType) return;
    const auto* motion = reinterpret_cast<const XDeviceMotionEvent*>(event);
    const int axis = kPressureAxis - motion->first_axis;
    if (axis < 0 || axis >= motion->axes_count) return;
    Tablet_SetPressure(tablet.axis.Pressure(motion->axis_data[axis]));
}

}  // namespace

float TabletAxis::Pressure(int value) const {
    return std::clamp(static_cast<float>(value - least) / static_cast<float>(range), 0.0f, 1.0f);
}

bool Tablet_Load() {
    Tablet_Unload();
    tablet.failed = false;
    Display* display = ViewDisplay();
    if (!display) return false;
    tablet.device = OpenStylus(display, tablet.axis);
    tablet.failed = !tablet.device;
    if (tablet.failed) return false;
    tablet.display = display;
    DeviceMotionNotify(tablet.device, tablet.motionType, tablet.motionClass);
    // Once for a display: Xt takes a second one for a mistake.
    if (std::exchange(tablet.selecting, display) != display)
        XtRegisterExtensionSelector(display, tablet.motionType, tablet.motionType, selectEvents,
                                    nullptr);
    tablet.formerDispatch = XtSetEventDispatcher(display, tablet.motionType, dispatchEvent);
    return true;
}

void Tablet_Unload() {
    if (!tablet.device) return;
    if (ViewDisplay() == tablet.display) {
        XtSetEventDispatcher(tablet.display, tablet.motionType, tablet.formerDispatch);
        XCloseDevice(tablet.display, tablet.device);
    }
    tablet.device = nullptr;
    tablet.display = nullptr;
    tablet.pressure = 1;
}

bool Tablet_Loaded() {
    return tablet.device != nullptr;
}

bool Tablet_Failed() {
    return tablet.failed;
}

bool GetTabletPrefChanged() {
    static int known = LNode::prefDoUseTablet;
    return std::exchange(known, LNode::prefDoUseTablet) != LNode::prefDoUseTablet;
}

void Tablet_AddEventHandler(_WidgetRec* widget) {
    if (!Tablet_Loaded() || XtDisplay(widget) != tablet.display) return;
    XtInsertEventTypeHandler(widget, tablet.motionType, &tablet.motionClass, eventHandler, nullptr,
                             XtListTail);
}

void Tablet_RemoveEventHandler(_WidgetRec* widget) {
    if (!Tablet_Loaded() || XtDisplay(widget) != tablet.display) return;
    XtRemoveEventTypeHandler(widget, tablet.motionType, &tablet.motionClass, eventHandler, nullptr);
}

void Tablet_SetLMB(bool pressed) {
    tablet.buttonDown = pressed;
}

void Tablet_SetPressure(float pressure) {
    tablet.pressure = pressure;
}

float Tablet_GetNormalPressure() {
    if (tablet.buttonDown && tablet.pressure < kLeastPressure) tablet.pressure = 1;
    return tablet.pressure;
}

}  // namespace VantrelSDK
