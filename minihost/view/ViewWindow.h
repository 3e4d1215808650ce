#pragma once

struct _WidgetRec;
struct _XDisplay;

namespace minihost {

/// The window that shows a view.
class ViewWindow {
  public:
    virtual ~ViewWindow() = default;

    /// The view is drawn anew in the next frame.
    virtual void Touch() = 0;
    /// Draws it and shows it now.
    virtual void Show() = 0;

    /// What takes the pointer's events of the view; its pixels are the view's, y downward.
    virtual _WidgetRec* widget() const = 0;
    virtual _XDisplay* display() const = 0;
    virtual unsigned long window() const = 0;
};

}  // namespace minihost
