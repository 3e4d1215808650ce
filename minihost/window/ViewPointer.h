#pragma once

#include <functional>
#include <string>

#include "maya/MEvent.h"
#include "maya/MPxContext.h"

struct _WidgetRec;
union _XEvent;

namespace minihost {

class View;

/// Hands what the pointer does in a view's widget to the tool that is on, or to the camera: with
/// Alt the left button tumbles, the middle tracks, the right dollies, and the wheel dollies
/// always.
class ViewPointer {
  public:
    /// While `busy` answers true, no drag begins.
    ViewPointer(View& view, _WidgetRec* widget, std::function<bool()> busy);
    ViewPointer(const ViewPointer&) = delete;
    ViewPointer& operator=(const ViewPointer&) = delete;

    /// Whether a button that was pressed in the view is held still.
    bool isDragging() const { return drag_ != Drag::Nothing; }

  private:
    enum class Drag { Nothing, Tool, Tumble, Track, Dolly };

    static void Handle(_WidgetRec*, void* self, _XEvent* event, char*);
    void Press(const _XEvent& event);
    void Release(const _XEvent& event);
    void Move(const _XEvent& event);
    void MoveCamera(int right, int down);
    /// Tells all handlers of the widget that the pointer has come to where it is pressed.
    void Hover(const _XEvent& press);
    /// A position of the view, y downward, and X's state of the modifiers.
    void Tell(const std::string& tool, MStatus (MPxContext::*what)(MEvent&), int x, int y,
              unsigned state);

    View& view_;
    _WidgetRec* widget_;
    std::function<bool()> busy_;
    Drag drag_ = Drag::Nothing;
    unsigned button_ = 1;
    /// The tool that a drag belongs to.
    std::string tool_;
    /// Where the pointer was last, y downward.
    int x_ = -1, y_ = -1;
};

}  // namespace minihost
