#pragma once

#include <vector>

struct _WidgetRec;
struct _XDisplay;
class M3dView;

namespace VantrelSDK {

/// The widgets of the views that have one, each once.
std::vector<_WidgetRec*> ViewWidgets();
/// The display of the first of them; null without one.
_XDisplay* ViewDisplay();
/// The view of a widget. False where it is no view's.
bool FindView(const _WidgetRec* widget, M3dView& view);

}  // namespace VantrelSDK
