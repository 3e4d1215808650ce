#pragma once

#include "minihost/anim/Keys.h"
#include "minihost/graph/NodeType.h"
#include "minihost/graph/Slot.h"

namespace minihost {

/// Registers "time" and the animation curves: "animCurveTU", "animCurveTL", "animCurveTA" and
/// "animCurveTT", whose outputs are numbers, distances, angles and times.
void RegisterAnimTypes(NodeTypes& types);

bool IsCurve(const Node& node);
/// The keys of a curve.
const Keys& KeysOf(Node& curve);
/// Changes the keys of a curve by `edit(Keys&)`, which leaves them in order, and tells what depends
/// on them. No undo, no message.
void EditKeys(Node& curve, const std::function<void(Keys&)>& edit);
/// The value of a curve at a time, whatever its input is.
double ValueOf(Node& curve, double ticks);

}  // namespace minihost
