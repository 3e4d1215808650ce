#pragma once

#include "maya/MStatus.h"

/// What the pointer did in a view.
class MEvent {
  public:
    enum MouseButtonType {
        kLeftMouse = 64,
        kMiddleMouse = 128,
    };
    enum ModifierType { shiftKey = 1, controlKey = 4, middleMouseButton = 8 };

    MEvent() = default;
    MEvent(short x, short y, MouseButtonType button, unsigned modifiers)
        : x_(x), y_(y), button_(button), modifiers_(modifiers) {}

    /// In pixels of the view, y upward.
    MStatus getPosition(short& x, short& y) const {
        x = x_;
        y = y_;
        return MS::kSuccess;
    }
    MouseButtonType mouseButton(MStatus* status = nullptr) const {
        if (status) *status = MStatus(MS::kSuccess);
        return button_;
    }
    bool isModifierShift() const { return modifiers_ & shiftKey; }
    bool isModifierControl() const { return modifiers_ & controlKey; }
    /// The middle button is held while another one does something.
    bool isModifierMiddleMouseButton() const { return modifiers_ & middleMouseButton; }
    bool isModifierNone() const { return modifiers_ == 0; }

  private:
    short x_ = 0, y_ = 0;
    MouseButtonType button_ = kLeftMouse;
    unsigned modifiers_ = 0;
};
