#include "host/tools/ViewWindows.h"

#include <maya/M3dView.h>

namespace VantrelSDK {

namespace {

/// Calls `visit(view)` for views with a window until it answers true.
template <class Visit>
bool AnyWindow(const Visit& visit) {
    for (unsigned i = 0; i < M3dView::numberOf3dViews(); ++i) {
        M3dView view;
        if (M3dView::get3dView(i, view) && view.widget() && visit(view)) return true;
    }
    return false;
}

}  // namespace

std::vector<_WidgetRec*> ViewWidgets() {
    std::vector<_WidgetRec*> widgets;
    AnyWindow([&widgets](const M3dView& view) {
        widgets.push_back(view.widget());
        return false;
    });
    return widgets;
}

_XDisplay* ViewDisplay() {
    _XDisplay* display = nullptr;
    AnyWindow([&display](const M3dView& view) { return (display = view.display()) != nullptr; });
    return display;
}

bool FindView(const _WidgetRec* widget, M3dView& view) {
    return AnyWindow([&](const M3dView& candidate) {
        if (candidate.widget() != widget) return false;
        view = candidate;
        return true;
    });
}

}  // namespace VantrelSDK
