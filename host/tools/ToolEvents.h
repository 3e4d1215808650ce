#pragma once

#include <maya/M3dView.h>

#include <vector>

struct _WidgetRec;

namespace VantrelSDK {

class PointerListener;

/// The events of the views' windows as a tool takes them: motion, buttons, leaving, and the keys
/// that change modes. Motion is never thinned out. With no window there are no events.
class ToolEvents {
  public:
    /// Hands events to the tool, which must outlive this, from all views that have a window.
    void Add(PointerListener& tool);
    void Remove();
    /// Whether the motion over a view arrives here.
    bool Covers(const M3dView& view) const;

  private:
    PointerListener* listener_ = nullptr;
    std::vector<_WidgetRec*> widgets_;
};

/// The Alt key, as the last event told it.
bool IsAltOptionKeyPressed();
/// What an event says of the keys.
void SetModifiers(bool shift, bool ctrl, bool alt = false);

}  // namespace VantrelSDK
