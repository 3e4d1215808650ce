#pragma once

#include "minihost/anim/KeyframeDelta.h"
#include "minihost/graph/Modifier.h"

// What a person does to keys, by command or in a graph editor: can be taken back, and is told to
// the listeners of {"KeyframesEdited", ""}, whether it is done, taken back or done again. Times are
// in ticks and are rounded to whole ones.

namespace minihost {

/// The curve that feeds a plug, null for none.
NodePtr CurveOf(const Plug& plug);
/// The node type of curves for the plugs of an attribute.
std::string CurveTypeFor(const Attribute& attribute);
/// A new curve, fed by the scene's time, that feeds a plug, by what the plug holds. Null with the
/// reason in modifier.error() where the plug is fed already or holds no number.
NodePtr MakeCurve(Modifier& modifier, const Plug& plug);

/// Sets a key on the curve of a plug, which is made where there is none.
bool SetKey(Modifier& modifier, const Plug& plug, const Key& key);
/// Sets keys as one block. Keys at their times are replaced.
void PasteKeys(Modifier& modifier, const NodePtr& curve, const Keys& keys);
/// Takes out the keys from `first` to `last`, both included; how many there were.
int CutKeys(Modifier& modifier, const NodePtr& curve, double first, double last);
/// Moves keys in time and value. A key that comes to stand on one that stays replaces it.
int MoveKeys(Modifier& modifier, const NodePtr& curve, double first, double last, double byTime,
             double byValue);
/// Scales the times of keys about a pivot. A factor of 0 or less, or not finite, does nothing.
int ScaleKeys(Modifier& modifier, const NodePtr& curve, double first, double last, double factor,
              double pivot);
/// Makes keys breakdowns, or plain keys again; how many changed.
int SetBreakdown(Modifier& modifier, const NodePtr& curve, double first, double last, bool on);

}  // namespace minihost
