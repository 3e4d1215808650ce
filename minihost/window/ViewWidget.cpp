#include "minihost/window/ViewWidget.h"

#include <X11/IntrinsicP.h>

namespace minihost {
namespace {

void Realize(Widget widget, XtValueMask* mask, XSetWindowAttributes* attributes) {
    constexpr XtValueMask kOfInput =
        CWEventMask | CWWinGravity | CWDontPropagate | CWOverrideRedirect | CWCursor;
    widget->core.border_width = 0;
    widget->core.window =
        XCreateWindow(XtDisplay(widget), XtWindow(XtParent(widget)), widget->core.x, widget->core.y,
                      widget->core.width, widget->core.height, 0, 0, InputOnly, CopyFromParent,
                      *mask & kOfInput, attributes);
}

WidgetClassRec MakeClass() {
    WidgetClassRec record = {};
    CoreClassPart& core = record.core_class;
    core.superclass = widgetClass;
    static char name[] = "View";
    core.class_name = name;
    core.widget_size = sizeof(WidgetRec);
    core.realize = Realize;
    core.xrm_class = NULLQUARK;
    core.compress_motion = False;
    core.visible_interest = False;
    core.resize = XtInheritResize;
    core.expose = nullptr;
    core.set_values_almost = XtInheritSetValuesAlmost;
    core.version = XtVersion;
    core.query_geometry = XtInheritQueryGeometry;
    core.display_accelerator = XtInheritDisplayAccelerator;
    return record;
}

WidgetClassRec g_class = MakeClass();

}  // namespace

WidgetClass viewWidgetClass = &g_class;

}  // namespace minihost
