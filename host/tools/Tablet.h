#pragma once

struct _WidgetRec;

namespace VantrelSDK {

// The pressure of a stylus, by the X input extension. Only one tablet is used. Without one the
// pressure is 1.

/// Looks for a stylus on the display of the views' windows and opens it. False without one; what
/// failed is not tried again by itself. Where there is no window yet, nothing has failed.
bool Tablet_Load();
/// Lets go of it, and of all that was heard by it.
void Tablet_Unload();
bool Tablet_Loaded();
bool Tablet_Failed();
/// Whether the preference for a tablet changed since this was asked last.
bool GetTabletPrefChanged();

/// Events of the stylus over a widget count. Nothing without a tablet.
void Tablet_AddEventHandler(_WidgetRec* widget);
void Tablet_RemoveEventHandler(_WidgetRec* widget);

/// The pointer's first button.
void Tablet_SetLMB(bool pressed);
/// 0 to 1. A click of a mouse beside the tablet has a pressure of 1.
float Tablet_GetNormalPressure();

/// The range of a stylus's pressure axis.
struct TabletAxis {
    int least = 0, range = 1;

    /// Of a value on the axis, from 0 to 1.
    float Pressure(int value) const;
};
void Tablet_SetPressure(float pressure);

}  // namespace VantrelSDK
