#pragma once

#include <X11/Intrinsic.h>

namespace minihost {

/// A widget that takes the pointer and shows nothing itself: what lies below it is seen. Its parent
/// places it. Managed by nobody: realize it with its parent, then map it.
extern WidgetClass viewWidgetClass;

}  // namespace minihost
